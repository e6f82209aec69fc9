// The page: what is to be seen and done, before, during and after the show.
'use strict';

const element = (id) => document.getElementById(id);
const parameters = new URLSearchParams(location.search);

// For whoever measures: seconds from frame to frame, in the place of real time.
const stepGiven = parameters.has('step') ? Number(parameters.get('step')) : undefined;

const texts = {
    ready: `${page.show.seconds ? 'Two minutes, with music. ' : ''}F: full screen. Escape ends.`,
    starting: 'Starting …',
    paused: 'Paused while the page is hidden.',
    ended: `That was ${page.show.title}.`,
    lost: 'The graphics card took the picture away. It can be played again.',
    silent: 'This browser plays no sound here: silence keeps the time.',
    unable: 'This browser offers no WebGL 2 to the page, and the show is drawn with it.',
};

function say(text) {
    element('status').textContent = text;
}

// States: loading, ready, playing, over, unable. The style sheet shows what belongs to each.
function enter(state, text) {
    document.body.dataset.state = state;
    element('end').hidden = state !== 'playing';
    element('play').disabled = state === 'loading';
    element('play').textContent = state === 'over' ? 'Play again' : 'Play';
    say(text);
}

const clockText = (seconds) => `${Math.floor(seconds / 60)}:${String(Math.floor(seconds % 60)).padStart(2, '0')}`;
const megabytes = (bytes) => (bytes / 1e6).toFixed(1);

function showProgress({done, all, left, painted}) {
    if (painted !== undefined) {
        say(`Painting the city: ${painted} of ${all} pictures`);
        return;
    }
    element('progress').value = done / all;
    const rest = left === null ? '' : `, ${Math.ceil(left)} s left`;
    say(`Loading: ${megabytes(done)} of ${megabytes(all)} MB${rest}`);
}

function layChapters() {
    const list = document.querySelector('#chapters ol');
    page.show.flights.forEach((flight, number) => {
        const item = document.createElement('li');
        const end = number + 1 < page.show.flights.length ? page.show.flights[number + 1].begin : page.show.seconds;
        item.style.flexGrow = end - flight.begin;
        const time = document.createElement('time');
        time.textContent = clockText(flight.begin);
        const name = document.createElement('span');
        name.textContent = flight.name;
        item.append(time, name);
        list.append(item);
    });
}

let chapter = null;

// Marks the flight that is on; null marks none.
function markChapter(seconds) {
    const {flights} = page.show;
    if (flights.length === 0)
        return;
    const now = seconds === null ? null : flights.filter(({begin}) => begin <= seconds).length - 1;
    if (now === chapter)
        return;
    chapter = now;
    document.querySelectorAll('#chapters li').forEach((item, number) => {
        if (number === now)
            item.setAttribute('aria-current', 'true');
        else
            item.removeAttribute('aria-current');
    });
    element('picture').setAttribute('aria-label',
        now === null ? 'The show\'s picture' : `The show's picture: ${flights[now].name}`);
}

// The engine's log page, as rows.
function showLog(text) {
    if (!parameters.has('log') || !text)
        return;
    const rows = [...new DOMParser().parseFromString(text, 'text/html').querySelectorAll('tr')].slice(1);
    element('log').hidden = false;
    document.querySelector('#log tbody').replaceChildren(...rows.map((row) => {
        const line = document.createElement('tr');
        const cells = [...row.cells].map((cell) => cell.textContent.trim());
        line.classList.toggle('error', cells[1] === 'ERROR');
        line.append(...cells.map((cell) => Object.assign(document.createElement('td'), {textContent: cell})));
        return line;
    }));
}

// One run of the program in a worker of its own, on a canvas of its own: a replay finds nothing of
// the last one.
class Show {
    constructor(files, music) {
        this.music = music;
        this.frames = 0;
        this.asked = wallTime();
        this.worker = new Worker(files.worker);
        this.worker.onmessage = ({data}) => this.hear(data);
        this.worker.onerror = (event) => this.finish(`The program failed: ${event.message}`);
        const fresh = element('picture').cloneNode();
        element('picture').replaceWith(fresh);
        const canvas = fresh.transferControlToOffscreen();
        this.order('play', {program: files.program, pack: files.pack, index: page.index, canvas,
            words: [], unpaced: parameters.has('unpaced'), step: stepGiven}, [canvas]);
        if (!page.show.seconds) // the show listens to Escape alone
            followInput(fresh, page.show.width, (event, cause) => this.input(event, cause));
    }

    order(name, values = {}, transfer = []) {
        this.worker.postMessage({order: name, ...values}, transfer);
    }

    hear(message) {
        const answers = {
            begun: () => {},
            play: () => this.startMusic(),
            stop: () => this.music.stop(),
            frame: () => this.frame(message),
            said: () => console.warn(message.text),
            log: () => showLog(message.log),
            errors: () => { this.errors = message.errors; },
            lost: () => this.finish(texts.lost),
            failed: () => this.finish(`The program failed: ${message.reason}`),
            ended: () => { showLog(message.log); this.finish(texts.ended); },
        };
        answers[message.kind]();
    }

    async startMusic() {
        this.music.report = (heard) => { this.heard = heard; this.order('hear', heard); };
        await this.music.play();
        if (this.over)
            return;
        say(this.music.silent ? texts.silent : '');
        this.order('log');
    }

    frame({number, seconds, wall, undrawn}) {
        this.frames = number;
        this.at = {seconds, wall, undrawn};
        if (number === 1)
            this.firstFrame = wall;
        if (number === 1 && !page.show.music) // nothing is waited for any more
            say('');
        markChapter(seconds);
    }

    escape() {
        this.order('event', {event: escapeEvent});
    }

    input(event, cause) {
        if (this.over)
            return;
        if (cause.key && cause.key.startsWith('Arrow')) // which would scroll the page
            cause.preventDefault();
        this.order('event', {event});
    }

    async pause() {
        this.order('pause');
        say(texts.paused);
        await this.music.pause();
    }

    async resume() {
        this.order('resume');
        say('');
        await this.music.resume();
    }

    finish(text) {
        if (this.over)
            return;
        this.over = true;
        this.music.stop();
        this.worker.terminate();
        markChapter(null);
        if (document.fullscreenElement)
            document.exitFullscreen();
        enter('over', text);
        element('play').focus();
    }
}

// The track is decoded beside everything else, while nobody waits for it.
function decodeTrack(files, music) {
    if (!page.show.music)
        return Promise.resolve();
    const worker = new Worker(files.worker);
    return new Promise((resolve) => {
        worker.onmessage = ({data}) => {
            if (data.kind === 'track')
                music.load(data);
            worker.terminate();
            resolve();
        };
        worker.postMessage({order: 'decode', program: files.program, pack: files.pack, index: page.index,
            path: page.show.music});
    });
}

// Runs the program without anybody looking: with these words behind its name, and this environment.
// `take` gets its pictures, and whoever names a file `taken` what it left there: {status, log, file}.
function runAside(files, {words = [], environment = {}, taken = null, step}, take = () => {}) {
    const worker = new Worker(files.worker);
    return new Promise((resolve, reject) => {
        const answers = {
            picture: take,
            failed: ({reason}) => reject(new Error(reason)),
            lost: () => reject(new Error(texts.lost)),
            said: ({text}) => console.info(text),
            ended: (ended) => { worker.terminate(); resolve(ended); },
        };
        worker.onmessage = ({data}) => answers[data.kind] && answers[data.kind](data);
        const canvas = new OffscreenCanvas(page.show.width, page.show.height);
        worker.postMessage({order: 'play', program: files.program, pack: files.pack, index: page.index,
            canvas, words, environment, taken, unpaced: true, step}, [canvas]);
    });
}

// The pictures of these moments, as the film has them: {number, pixels, width, height} each.
async function pictures(files, moments, take) {
    const {log} = await runAside(files, {words: moments.map(String)}, take);
    showLog(log);
}

function paint({pixels, width, height}) {
    const image = new ImageData(width, height);
    for (let y = 0; y < height; ++y)
        image.data.set(pixels.subarray((height - 1 - y) * width * 4, (height - y) * width * 4), y * width * 4);
    for (let i = 3; i < image.data.length; i += 4)
        image.data[i] = 255;
    element('picture').getContext('2d').putImageData(image, 0, 0);
}

async function showMoment(files) {
    const at = Math.min(Math.max(Number(parameters.get('at')) || 0, 0), page.show.seconds - 0.002);
    enter('playing', `Drawing the frame at ${at} s …`);
    markChapter(at);
    await pictures(files, [at], paint);
    say(`The frame at ${at} s.`);
    element('end').hidden = true;
}

// Whether the show can be drawn here: WebGL 2, in a worker.
function able() {
    try {
        return 'transferControlToOffscreen' in HTMLCanvasElement.prototype &&
            Boolean(new OffscreenCanvas(1, 1).getContext('webgl2'));
    } catch (error) {
        return false;
    }
}

// The film beside the page, if it is there, else a still.
function standIn() {
    enter('unable', texts.unable);
    const film = element('film');
    element('still').src = element('still').dataset.address;
    element('still').hidden = element('still').src === 'data:,';
    film.onloadedmetadata = () => {
        film.hidden = false;
        element('still').hidden = true;
        say(`${texts.unable} This is its film.`);
    };
    film.src = 'nimbrel.mp4';
}

let show = null;

function handleKeys(event) {
    if (event.ctrlKey || event.altKey || event.metaKey)
        return;
    const keys = {
        f: toggleFull,
        s: toggleSharp,
        Escape: () => show && !show.over && show.escape(),
    };
    const act = keys[event.key.length === 1 ? event.key.toLowerCase() : event.key];
    if (act)
        act();
}

let leaving = false; // full screen, by F

function toggleFull() {
    leaving = Boolean(document.fullscreenElement);
    if (leaving)
        document.exitFullscreen();
    else
        element('stage').requestFullscreen().catch(() => {});
}

function toggleSharp() {
    const sharp = document.body.classList.toggle('sharp');
    element('sharp').setAttribute('aria-pressed', String(sharp));
}

function followVisibility() {
    if (!show || show.over)
        return;
    if (document.hidden)
        show.pause();
    else
        show.resume();
}

// In full screen the browser keeps Escape for itself: leaving it by that key ends the show, too.
function followFullscreen() {
    if (!document.fullscreenElement && !leaving && show && !show.over)
        show.escape();
}

// As large as what is played.
function layPicture() {
    const {width, height} = page.show;
    document.documentElement.style.setProperty('--ratio', `${width} / ${height}`);
    Object.assign(element('picture'), {width, height});
    element('logo').hidden = element('logo').src === 'data:,';
}

async function begin() {
    layChapters();
    document.addEventListener('keydown', handleKeys);
    document.addEventListener('visibilitychange', followVisibility);
    document.addEventListener('fullscreenchange', followFullscreen);
    layPicture();
    element('sharp').onclick = toggleSharp;
    element('full').onclick = toggleFull;
    element('end').onclick = () => show.escape();
    if (!able()) {
        standIn();
        return;
    }
    const files = await takeFiles(showProgress);
    if (parameters.has('at') && page.show.seconds) {
        await showMoment(files);
        return;
    }
    const music = new Music(() => {});
    const decoded = decodeTrack(files, music);
    element('play').onclick = async () => {
        music.allow();
        enter('playing', texts.starting);
        await decoded;
        show = new Show(files, music);
        window.nimbrel.show = show;
    };
    window.nimbrel = {files, music, decoded, pictures: (moments, take) => pictures(files, moments, take),
        run: (how) => runAside(files, how)};
    enter('ready', texts.ready);
}

begin().catch((error) => {
    console.error(error);
    enter('unable', `The page could not be loaded: ${error.message}`);
});
