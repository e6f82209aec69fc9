// The worker that the program runs in, so that the page answers whatever the program does. Assembled
// behind the program's own script. One worker plays one show, or decodes the track, and is then ended.
'use strict';

// Milliseconds that mean the same here and in the page.
const wallTime = () => performance.timeOrigin + performance.now();

// The show's time: the wall's, less what it stood still. It stands still from the moment at which
// the music is to begin until its first sample is heard, and while the page is hidden. It never goes
// back.
class ShowClock {
    constructor() {
        this.lag = 0; // milliseconds that it is behind the wall
        this.heldAt = null;
        this.latest = 0;
    }

    now() {
        const time = this.heldAt !== null ? this.heldAt : wallTime() - this.lag;
        this.latest = Math.max(this.latest, time);
        return this.latest;
    }

    hold() {
        this.heldAt = this.now();
        return this.heldAt;
    }

    // From now on it is `time` at the wall's moment `wall`.
    release(time, wall) {
        this.lag = wall - time;
        this.heldAt = null;
    }
}

class Host {
    constructor(canvas, at) {
        this.canvas = canvas;
        this.at = at;
        this.clock = new ShowClock();
        this.events = []; // as nextEvent() has them
        this.paused = false;
        this.waiting = null; // what goes on with the next frame
        this.music = null; // {begin: show time, heard: seconds, wall: when that was heard}
        this.frames = 0;
        this.fences = []; // behind the frames that are not known to be drawn yet
        this.contextAttributes = {
            majorVersion: 2, minorVersion: 0, alpha: false, depth: true, stencil: false,
            antialias: false, premultipliedAlpha: true, preserveDrawingBuffer: false,
            powerPreference: 'high-performance', failIfMajorPerformanceCaveat: false,
            enableExtensionsByDefault: true, explicitSwapControl: false,
        };
    }

    pictureOf(width, height) {
        this.canvas.width = width;
        this.canvas.height = height;
        return this.canvas;
    }

    // Whether the graphics card has taken the context away, which it may do at any time.
    lost() {
        const lost = this.context.isContextLost();
        if (lost)
            postMessage({kind: 'lost'});
        return lost;
    }

    // For whoever measures or compares, each frame may be `step` seconds behind the one before.
    microseconds() {
        if (this.step !== undefined)
            return (1000 + this.frames * this.step) * 1e6;
        return this.clock.now() * 1000;
    }

    // [kind, two numbers], as web/shell/page.h has them; kind 0 when nothing more happened.
    nextEvent() {
        return this.events.shift() || [0, 0, 0];
    }

    nextFrame(wake) {
        ++this.frames;
        this.fence();
        this.tell();
        this.waiting = wake;
        this.schedule();
    }

    // One frame for each of the screen's; while the page is hidden none.
    schedule() {
        if (this.paused || !this.waiting)
            return;
        if (this.unpaced)
            setTimeout(() => this.goOn(), 0);
        else
            requestAnimationFrame(() => this.goOn());
    }

    fence() {
        const gl = this.context;
        if (!gl)
            return;
        this.fences.push(gl.fenceSync(gl.SYNC_GPU_COMMANDS_COMPLETE, 0));
        gl.flush();
    }

    // A browser takes the calls of a frame, and may draw it whenever it gets to it: Firefox on a slow
    // rasteriser had nine seconds of the show still to draw. Two frames may wait, no more.
    isBehind() {
        const gl = this.context;
        while (this.fences.length > 0 &&
               gl.getSyncParameter(this.fences[0], gl.SYNC_STATUS) === gl.SIGNALED)
            gl.deleteSync(this.fences.shift());
        return this.fences.length > 1;
    }

    goOn() {
        if (this.paused || !this.waiting)
            return;
        const wake = this.waiting;
        this.waiting = null;
        if (this.lost())
            return;
        if (this.isBehind()) {
            this.waiting = wake;
            setTimeout(() => this.goOn(), 1);
            return;
        }
        try {
            wake();
            if (!this.waiting)
                this.exit();
        } catch (error) {
            if (error.name !== 'ExitStatus' && !this.lost()) // the first is how a program ends
                throw error;
        }
    }

    tell() {
        const seconds = this.music ? (this.clock.now() - this.music.begin) / 1000 : 0;
        const undrawn = this.fences.length;
        postMessage({kind: 'frame', number: this.frames, seconds, wall: wallTime(), undrawn});
    }

    playMusic() {
        this.music = {begin: this.clock.hold(), heard: -1, wall: wallTime()};
        postMessage({kind: 'play'});
    }

    stopMusic() {
        postMessage({kind: 'stop'});
    }

    secondsHeard() {
        if (!this.music)
            return -1;
        const since = this.paused ? 0 : (wallTime() - this.music.wall) / 1000;
        return this.music.heard < 0 ? this.music.heard : this.music.heard + since;
    }

    // The page says how much of the music is heard at a moment, and whether the show is to go by it.
    hear({heard, wall, anchor}) {
        if (!this.music)
            return;
        Object.assign(this.music, {heard, wall});
        if (anchor)
            this.clock.release(this.music.begin + heard * 1000, wall);
    }

    pause() {
        this.paused = true;
        this.clock.hold();
    }

    resume() {
        this.paused = false;
        this.schedule();
    }

    takeSamples(samples, frames, rate) {
        if (!this.track)
            this.track = {rate, filled: 0, sides: [new Float32Array(frames), new Float32Array(frames)]};
        const {sides: [left, right]} = this.track;
        for (let i = 0; i < samples.length; i += 2, ++this.track.filled) {
            left[this.track.filled] = samples[i] / 32768;
            right[this.track.filled] = samples[i + 1] / 32768;
        }
    }

    takePicture(number, pixels, width, height) {
        postMessage({kind: 'picture', number, pixels, width, height}, [pixels.buffer]);
    }
}

// Lays the files of the pack where the program looks for them.
function lay(FS, pack, index) {
    for (const {path, offset, size} of index) {
        const place = '/' + path;
        FS.mkdirTree(place.slice(0, place.lastIndexOf('/')));
        FS.writeFile(place, new Uint8Array(pack, offset, size), {canOwn: true});
    }
}

function instantiate(program, host, environment, whenEnded) {
    return createProgram({
        host,
        instantiateWasm: (imports, done) => {
            WebAssembly.instantiate(program, imports).then((instance) => done(instance));
            return {};
        },
        print: (text) => postMessage({kind: 'said', text}),
        printErr: (text) => postMessage({kind: 'said', text}),
        preRun: [(module) => Object.assign(module.ENV, environment)],
        onExit: whenEnded,
        onAbort: (reason) => postMessage({kind: 'failed', reason: String(reason)}),
    });
}

function fileOf(FS, path) {
    try {
        return FS.readFile(path);
    } catch (error) {
        return new Uint8Array(0);
    }
}

const logOf = (FS) => new TextDecoder().decode(fileOf(FS, '/Vell_log.html'));

// `taken`: a file of the program's that is wanted when it has ended.
async function play({program, pack, index, canvas, words, environment, taken, unpaced, step}) {
    const host = new Host(canvas);
    Object.assign(host, {unpaced, step});
    self.host = host;
    const module = await instantiate(program, host, environment, (status) => postMessage({
        kind: 'ended', status, log: logOf(module.FS), file: taken ? fileOf(module.FS, taken) : null}));
    host.log = () => logOf(module.FS);
    // By their own names: ccall() would take the show's pause for its own.
    host.error = () => module._web_error();
    host.exit = () => module._web_exit();
    lay(module.FS, pack, index);
    postMessage({kind: 'begun'});
    module.callMain(words);
}

async function decode({program, pack, index, path}) {
    const host = new Host(null);
    const module = await instantiate(program, host, {}, () => {});
    lay(module.FS, pack, index.filter((file) => file.path === path));
    const played = module.ccall('web_decode', 'number', ['string'], [path]);
    if (!played || !host.track) {
        postMessage({kind: 'silence'});
        return;
    }
    const {rate, sides} = host.track;
    postMessage({kind: 'track', rate, sides}, sides.map((side) => side.buffer));
}

// Paints the picture of a facade: its pixels, four bytes each, rows from the top.
async function paint({painter, name}) {
    const module = await createPainter({
        instantiateWasm: (imports, done) => {
            WebAssembly.instantiate(painter, imports).then((instance) => done(instance));
            return {};
        },
    });
    const size = module.ccall('web_paint', 'number', ['string'], [name]);
    const place = module.ccall('web_painted', 'number', [], []);
    const pixels = module.HEAPU8.slice(place, place + size);
    postMessage({kind: 'painted', pixels}, [pixels.buffer]);
}

const orders = {
    play,
    decode,
    paint,
    event: ({event}) => { self.host.events.push(event); },
    pause: () => self.host.pause(),
    resume: () => self.host.resume(),
    hear: (order) => self.host.hear(order),
    log: () => postMessage({kind: 'log', log: self.host.log()}),
    // Errors of OpenGL so far, the browser's and web/gl's own, for whoever checks the page.
    errors: () => postMessage({kind: 'errors', errors: [self.host.context.getError(), self.host.error()]}),
    // What a graphics card does at its worst, for whoever checks the page.
    lose: () => {
        self.host.context.getExtension('WEBGL_lose_context').loseContext();
    },
};

onmessage = ({data}) => {
    const done = orders[data.order](data);
    if (done)
        done.catch((error) => postMessage({kind: 'failed', reason: String(error && error.stack || error)}));
};
