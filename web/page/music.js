// The music: one AudioBufferSourceNode, and how much of it is heard. Where the browser will not play,
// silence keeps the time.
'use strict';

const wallTime = () => performance.timeOrigin + performance.now();
const wait = (milliseconds) => new Promise((resolve) => setTimeout(resolve, milliseconds));

// The audio clock moves in steps of a buffer. Right behind a step it is exact, and in between late: of
// several looks the one that saw it furthest ahead of the wall is believed.
class AudioClock {
    constructor(context) {
        this.context = context;
        this.forget();
    }

    forget() {
        this.looks = [];
    }

    look() {
        const wall = wallTime();
        const ahead = this.context.currentTime * 1000 - wall;
        this.looks.push({wall, ahead});
        while (this.looks[0].wall < wall - 2000)
            this.looks.shift();
    }

    // The context's time in seconds at the wall's moment `wall`.
    at(wall) {
        this.look();
        return (wall + Math.max(...this.looks.map(({ahead}) => ahead))) / 1000;
    }
}

class Music {
    // `report({heard, wall, anchor})` is called while it plays.
    constructor(report) {
        this.report = report;
        this.context = null;
        this.source = null;
        this.begin = null; // the context's time of the first sample, or the wall's in silence
        this.silent = true;
    }

    // To be called by a click: browsers let nothing sound before.
    allow() {
        if (!window.AudioContext || this.context)
            return;
        try {
            this.context = new AudioContext({latencyHint: 'interactive'});
            this.clock = new AudioClock(this.context);
            this.context.resume().catch(() => {});
        } catch (error) {
            this.context = null;
        }
    }

    load({rate, sides}) {
        this.rate = rate;
        this.sides = sides;
        this.buffer = null;
    }

    makeBuffer() {
        if (this.buffer || !this.sides || !this.context)
            return;
        this.buffer = this.context.createBuffer(this.sides.length, this.sides[0].length, this.rate);
        this.sides.forEach((side, number) => this.buffer.copyToChannel(side, number));
    }

    async awaken() {
        for (let tries = 0; this.context && tries < 50; ++tries) {
            if (this.context.state === 'running')
                return true;
            await wait(20);
        }
        return false;
    }

    // How far ahead of the ear the clock is.
    latency() {
        return this.context.outputLatency || this.context.baseLatency || 0;
    }

    async play() {
        this.makeBuffer();
        this.silent = !this.buffer || !await this.awaken();
        if (this.silent) {
            this.begin = wallTime() / 1000;
        } else {
            this.source = this.context.createBufferSource();
            this.source.buffer = this.buffer;
            this.source.connect(this.context.destination);
            this.begin = this.context.currentTime + 0.06;
            this.source.start(this.begin);
        }
        await this.anchor();
        this.timer = setInterval(() => this.tell(false), 50);
    }

    // The show's time goes on from here.
    async anchor() {
        if (!this.silent) {
            this.clock.forget();
            for (let looks = 0; looks < 10; ++looks) {
                this.clock.look();
                await wait(4);
            }
        }
        this.tell(true);
    }

    heardAt(wall) {
        if (this.silent)
            return wall / 1000 - this.begin;
        return this.clock.at(wall) - this.begin - this.latency();
    }

    tell(anchor) {
        const wall = wallTime();
        this.report({heard: this.heardAt(wall), wall, anchor});
    }

    async pause() {
        clearInterval(this.timer);
        this.pausedAt = wallTime();
        if (this.context && !this.silent)
            await this.context.suspend();
    }

    async resume() {
        if (this.begin === null)
            return;
        if (this.silent)
            this.begin += (wallTime() - this.pausedAt) / 1000;
        else
            await this.context.resume();
        await this.anchor();
        this.timer = setInterval(() => this.tell(false), 50);
    }

    stop() {
        clearInterval(this.timer);
        this.begin = null;
        if (this.source) {
            this.source.onended = null;
            this.source.stop();
            this.source.disconnect();
            this.source = null;
        }
    }
}
