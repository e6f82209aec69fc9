// Keys and mouse, as the program asks for them.
'use strict';

// As web/shell/page.h has them.
const kinds = {keydown: 1, keyup: 2, mousemove: 3};
const namedKeys = {ArrowUp: -1, ArrowDown: -2, ArrowLeft: -3, ArrowRight: -4, Escape: 27, Enter: 13,
    Backspace: 8, Tab: 9};

// The number of a key, null for one that no program is told of.
function keyCode(key) {
    if (key in namedKeys)
        return namedKeys[key];
    return key.length === 1 ? key.toLowerCase().codePointAt(0) : null;
}

const escapeEvent = [kinds.keydown, namedKeys.Escape, 0];

// Calls `tell` with what a program is to know of keys, and of the mouse over `picture`, which is `width`
// pixels wide. Escape is the page's.
function followInput(picture, width, tell) {
    for (const kind of ['keydown', 'keyup'])
        document.addEventListener(kind, (event) => {
            const code = event.ctrlKey || event.altKey || event.metaKey ? null : keyCode(event.key);
            if (code !== null && code !== namedKeys.Escape)
                tell([kinds[kind], code, 0], event);
        });
    picture.addEventListener('mousemove', (event) => {
        const scale = width / picture.clientWidth;
        tell([kinds.mousemove, Math.round(event.movementX * scale), Math.round(event.movementY * scale)], event);
    });
}
