// SPDX-License-Identifier: Apache-2.0

// Puts template, style sheet, library, modules and a document into one HTML file.
//
//   node build.mjs DOCUMENT.json PAGE.html [--library FOLDER]
//
// FOLDER contains the modules of d3, a folder each; by default where Debian's packages install them.

import { createHash } from 'node:crypto';
import { readFileSync, writeFileSync } from 'node:fs';
import { dirname, join } from 'node:path';
import { fileURLToPath, pathToFileURL } from 'node:url';

const HERE = dirname(fileURLToPath(import.meta.url));
const DEBIAN_LIBRARIES = '/usr/share/nodejs';
const LIBRARY = ['array', 'collection', 'color', 'format', 'interpolate', 'time', 'time-format', 'scale', 'selection', 'axis'];

// Each module follows those that it imports.
const MODULES = ['dom', 'severity', 'document', 'filter', 'timeline', 'table', 'page'];

const source = (name) => readFileSync(join(HERE, 'src', name), 'utf8');

function libraryText(folder) {
    const parts = LIBRARY.map((name) => readFileSync(join(folder, `d3-${name}`, 'dist', `d3-${name}.min.js`), 'utf8').trim());
    return [`/*\n${readFileSync(join(HERE, 'd3-license.txt'), 'utf8')}*/`, ...parts].join('\n');
}

/// The modules as one: without the lines that import, and without "export". Their names at the top
/// level are therefore different from each other.
export function joinModules() {
    const names = new Map();
    return MODULES.map((module) => {
        const text = source(`${module}.mjs`);
        for (const [, name] of text.matchAll(/^(?:export )?(?:async )?(?:function|const|let|class) (\w+)/gm)) {
            if (names.has(name)) {
                throw new Error(`${name} is in ${names.get(name)}.mjs and in ${module}.mjs`);
            }
            names.set(name, module);
        }
        return text.replace(/^import .*;\n/gm, '').replace(/^export /gm, '').replace(/^\/\/ SPDX.*\n/, '').trim();
    }).join('\n\n');
}

/// A JSON text that may be an HTML script element's: without "<", so that neither an end tag nor a
/// comment begins in it.
export const scriptJson = (value) => JSON.stringify(value).replaceAll('<', '\\u003c');

export function buildPage(document, { library = DEBIAN_LIBRARIES } = {}) {
    const style = source('page.css');
    const script = libraryText(library);
    const modules = joinModules();
    for (const text of [script, modules, style]) {
        if (/<\/(script|style)|<!--/i.test(text)) {
            throw new Error('a script or style would end its element');
        }
    }
    const digest = (text) => `'sha256-${createHash('sha256').update(text).digest('base64')}'`;
    const parts = {
        POLICY: `default-src 'none'; script-src ${digest(script)} ${digest(modules)}; style-src ${digest(style)}; img-src data:; `
            + `base-uri 'none'; form-action 'none'`,
        STYLE: style, LIBRARY: script, MODULES: modules, DOCUMENT: scriptJson(document),
    };
    return source('index.html').replace(/@([A-Z]+)@/g, (all, name) => parts[name] ?? all);
}

if (process.argv[1] && import.meta.url === pathToFileURL(process.argv[1]).href) {
    const [from, to, option, folder] = process.argv.slice(2);
    if (to === undefined || (option !== undefined && (option !== '--library' || folder === undefined))) {
        console.error('usage: node build.mjs DOCUMENT.json PAGE.html [--library FOLDER]');
        process.exit(2);
    }
    const page = buildPage(JSON.parse(readFileSync(from, 'utf8')), { library: folder });
    writeFileSync(to, page);
}
