// What web/shell/page.h declares: each call goes to the worker's `Module.host`.
mergeInto(LibraryManager.library, {
    page_open_picture__deps: ['$GL'],
    page_open_picture: function(width, height) {
        const handle = GL.createContext(Module.host.pictureOf(width, height), Module.host.contextAttributes);
        if (!handle || !GL.makeContextCurrent(handle))
            return 0;
        Module.host.context = GL.currentContext.GLctx;
        return 1;
    },
    page_next_frame: function() {
        return Asyncify.handleSleep((wake) => Module.host.nextFrame(wake));
    },
    page_microseconds: function() {
        return Module.host.microseconds();
    },
    page_next_event: function(values) {
        const [kind, ...numbers] = Module.host.nextEvent();
        HEAP32.set(numbers, values >> 2);
        return kind;
    },
    page_play_music: function() {
        Module.host.playMusic();
    },
    page_stop_music: function() {
        Module.host.stopMusic();
    },
    page_seconds_heard: function() {
        return Module.host.secondsHeard();
    },
    page_take_samples: function(samples, count, frames, rate) {
        Module.host.takeSamples(HEAP16.subarray(samples >> 1, (samples >> 1) + count), frames, rate);
    },
    page_take_picture: function(number, pixels, width, height) {
        Module.host.takePicture(number, HEAPU8.slice(pixels, pixels + 4 * width * height), width, height);
    },
});
