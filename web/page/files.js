// Where the page's files come from: out of the page itself, or from the server it came from.
'use strict';

// What assemble wrote into the page: names, sizes, the pack's index, facts of the show.
const page = JSON.parse(document.getElementById('facts').textContent);

const embedded = (name) => document.getElementById('file-' + name);

const slice = 1 << 18; // characters of base64, a few milliseconds

// The bytes of an element's base64 text, uncompressed; in slices, between which the page has its turn.
async function unpack(element) {
    const text = element.textContent;
    const parts = [];
    for (let place = 0; place < text.length; place += slice) {
        parts.push(Uint8Array.from(atob(text.slice(place, place + slice)), (letter) => letter.charCodeAt(0)));
        await new Promise((resolve) => setTimeout(resolve, 0));
    }
    const stream = new Blob(parts).stream().pipeThrough(new DecompressionStream('gzip'));
    return new Response(stream).arrayBuffer();
}

// Tells how much has come, how much will, and how long that will take: {done, all} in bytes, seconds
// left or null while nobody can know.
class Progress {
    constructor(all, tell) {
        Object.assign(this, {all, tell, done: 0, begin: performance.now()});
    }

    add(bytes) {
        this.done = Math.min(this.all, this.done + bytes);
        const seconds = (performance.now() - this.begin) / 1000;
        const left = seconds > 0.5 && this.done > 0 ? seconds * (this.all - this.done) / this.done : null;
        this.tell({done: this.done, all: this.all, left});
    }
}

async function download(file, progress) {
    const response = await fetch(file.name);
    if (!response.ok)
        throw new Error(`${file.name}: the server says ${response.status}`);
    const bytes = new Uint8Array(file.size);
    const reader = response.body.getReader();
    let filled = 0;
    for (;;) {
        const {done, value} = await reader.read();
        if (done)
            break;
        if (filled + value.length > file.size)
            throw new Error(`${file.name} is longer than it should be`);
        bytes.set(value, filled);
        filled += value.length;
        progress.add(value.length);
    }
    if (filled !== file.size)
        throw new Error(`${file.name} broke off`);
    return bytes.buffer;
}

async function take(name, progress) {
    const element = embedded(name);
    if (!element)
        return download(page.files[name], progress);
    const bytes = await unpack(element);
    progress.add(bytes.byteLength);
    return bytes;
}

// Has the pictures painted that did not come: each in a worker, while the rest is on its way. A promise
// of pixels for each.
function paintPictures(painter, worker, index) {
    return index.filter(({painted}) => painted).map((file) => new Promise((resolve, reject) => {
        const hand = new Worker(worker);
        const leave = (settle, value) => {
            hand.terminate();
            settle(value);
        };
        hand.onmessage = ({data}) => data.kind === 'painted' ? leave(resolve, {file, pixels: data.pixels})
            : leave(reject, new Error(data.reason));
        hand.onerror = (event) => leave(reject, new Error(event.message));
        hand.postMessage({order: 'paint', painter, name: file.painted.name});
    }));
}

// What came of a painted picture is its file less what is painted, byte by byte.
function addPixels(pack, {file, pixels}) {
    const {first, row, stride} = file.painted;
    const bytes = new Uint8Array(pack, file.offset, file.size);
    for (let from = 0, to = first; from < pixels.length; from += row, to += stride)
        for (let i = 0; i < row; ++i)
            bytes[to + i] += pixels[from + i];
}

// {program: a compiled module, pack: all of Data/ in one buffer, worker: where its script is}
async function takeFiles(tell) {
    const {program, painter} = page.files;
    const coming = page.index.filter(({painted}) => !painted).reduce((sum, {size}) => sum + size, 0);
    const progress = new Progress(program.size + painter.size + coming, tell);
    const script = embedded('worker');
    const worker = script ? URL.createObjectURL(new Blob([script.textContent], {type: 'text/javascript'}))
                          : page.files.worker.name;
    const paintings = painter.size === 0 ? []
        : paintPictures(await WebAssembly.compile(await take('painter', progress)), worker, page.index);
    const [code, data] = await Promise.all([take('program', progress), take('pack', progress)]);
    for (const [number, painting] of paintings.entries()) {
        tell({painted: number, all: paintings.length});
        addPixels(data, await painting);
    }
    return {program: await WebAssembly.compile(code), pack: data, worker};
}
