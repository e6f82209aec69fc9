// All that the page's painter paints, as files: paint.js PAINTER FOLDER
'use strict';

const fs = require('fs');
const path = require('path');

const [painter, folder] = process.argv.slice(2);

const wasmBinary = fs.readFileSync(painter.replace(/js$/, 'wasm'));

require(path.resolve(painter))({wasmBinary}).then((module) => {
    const nameOf = (number) => module.ccall('web_facade', 'string', ['number'], [number]);
    for (let number = 0, name; (name = nameOf(number)); ++number) {
        const size = module.ccall('web_paint', 'number', ['string'], [name]);
        const place = module.ccall('web_painted', 'number', [], []);
        fs.writeFileSync(path.join(folder, name), module.HEAPU8.subarray(place, place + size));
    }
});
