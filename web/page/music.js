// The music: one AudioBufferSourceNode, and how much of it is heard. Where the browser will not play,
// silence keeps the time.
'use strict';

const wallTime = () => performance.timeOrigin + performance.now();
const wait = (milliseconds) => new Promise((resolve) => setTimeout(resolve, milliseconds));

const mostApart = 0.03; // seconds
const leastBetweenJumps = 500; // milliseconds

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
        while (this.looks[0].wall < wall - 500)
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
        this.jumped = 0; // the wall's moment at which it last had to
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

    // Nothing sounds if stop() comes before it has begun.
    async play() {
        this.makeBuffer();
        this.wanted = true;
        this.silent = !this.buffer || !await this.awaken();
        if (!this.wanted)
            return;
        if (this.silent) {
            this.begin = wallTime() / 1000;
        } else {
            this.sound(this.context.currentTime + 0.06);
        }
        await this.goOn();
    }

    async goOn() {
        await this.anchor();
        if (this.wanted)
            this.timer = setInterval(() => this.tell(false), 50);
    }

    // Plays so that sample 0 is, or would have been, due at `begin` of the context's time.
    sound(begin) {
        this.begin = begin;
        this.source = this.context.createBufferSource();
        this.source.buffer = this.buffer;
        this.source.connect(this.context.destination);
        const now = this.context.currentTime;
        this.source.start(Math.max(begin, now), Math.max(0, now - begin));
    }

    silence() {
        if (!this.source)
            return;
        this.source.stop();
        this.source.disconnect();
        this.source = null;
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
        if (this.wanted)
            this.tell(true);
    }

    heardAt(wall) {
        if (this.silent)
            return wall / 1000 - this.begin;
        return this.clock.at(wall) - this.begin - this.latency();
    }

    tell(anchor) {
        const wall = wallTime();
        const heard = this.heardAt(wall);
        if (anchor)
            this.due = wall / 1000 - heard;
        this.report({heard, wall, anchor});
        this.keepUp(wall, wall / 1000 - this.due - heard);
    }

    // A card that ran dry goes on where the show is by now, not where it stopped, so that the music
    // stays with the picture. `late` in seconds.
    keepUp(wall, late) {
        if (this.silent || Math.abs(late) < mostApart || wall < this.jumped + leastBetweenJumps)
            return;
        this.jumped = wall;
        this.silence();
        this.sound(this.begin - late);
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
        await this.goOn();
    }

    stop() {
        this.wanted = false;
        clearInterval(this.timer);
        this.begin = null;
        this.silence();
    }
}
