// SPDX-License-Identifier: Apache-2.0

// Puts a document into the page, as the command does.
//
//   node fill.mjs TEMPLATE.html DOCUMENT.json PAGE.html

import { readFileSync, writeFileSync } from 'node:fs';
import { pathToFileURL } from 'node:url';

/// A JSON text that may be an HTML script element's: without "<", so that neither an end tag nor a
/// comment begins in it.
export const scriptJson = (value) => JSON.stringify(value).replaceAll('<', '\\u003c');

/// `template` is the page that join.cmake writes.
export function fillPage(template, json) {
    const [before, after, more] = template.split('@DOCUMENT@');
    if (after === undefined || more !== undefined) {
        throw new Error('the template does not contain @DOCUMENT@ once');
    }
    return before + json + after;
}

if (process.argv[1] && import.meta.url === pathToFileURL(process.argv[1]).href) {
    const [template, document, page] = process.argv.slice(2);
    if (page === undefined) {
        console.error('usage: node fill.mjs TEMPLATE.html DOCUMENT.json PAGE.html');
        process.exit(2);
    }
    writeFileSync(page, fillPage(readFileSync(template, 'utf8'), scriptJson(JSON.parse(readFileSync(document, 'utf8')))));
}
