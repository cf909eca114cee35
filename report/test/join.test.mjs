// SPDX-License-Identifier: Apache-2.0

import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { createHash } from 'node:crypto';
import { appendFileSync, cpSync, mkdtempSync, readFileSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { after, before, describe, it } from 'node:test';
import { fileURLToPath } from 'node:url';
import { fillPage } from '../fill.mjs';

const REPORT = fileURLToPath(new URL('..', import.meta.url));
const D3 = process.env.D3_FOLDER ?? '/usr/share/nodejs';

describe('joining the page', () => {
    let folder;
    before(() => { folder = mkdtempSync(join(tmpdir(), 'recordkit-join-')); });
    after(() => rmSync(folder, { recursive: true, force: true }));

    /// A copy of the sources.
    const copy = (name) => {
        const source = join(folder, name);
        cpSync(join(REPORT, 'src'), join(source, 'src'), { recursive: true });
        cpSync(join(REPORT, 'd3-license.txt'), join(source, 'd3-license.txt'));
        return source;
    };

    const run = (source, d3 = D3) => {
        const page = join(source, 'page.html');
        const code = join(source, 'code.cpp');
        const { status, stderr } = spawnSync('cmake',
            [`-DSOURCE=${source}`, `-DD3=${d3}`, `-DPAGE=${page}`, `-DCODE=${code}`, '-P', join(REPORT, 'join.cmake')], { encoding: 'utf8' });
        return { status, stderr: stderr.replace(/\s+/g, ' '), page, code };
    };

    it('writes the same bytes again, with the digests of its scripts and styles', () => {
        const source = copy('twice');
        const first = readFileSync(run(source).page, 'utf8');
        assert.equal(readFileSync(run(source).page, 'utf8'), first);
        const texts = [...first.matchAll(/<(?:script|script type="module"|style)>([^]*?)<\/(?:script|style)>/g)].map(([, text]) => text);
        assert.equal(texts.length, 3);
        for (const text of texts) {
            assert.ok(first.includes(`'sha256-${createHash('sha256').update(text).digest('base64')}'`));
        }
        assert.ok(first.includes('THE SOFTWARE IS PROVIDED "AS IS"'));
    });

    it('writes a C++ source of the same bytes', () => {
        const { page, code } = run(copy('code'));
        const arrays = [...readFileSync(code, 'utf8').matchAll(/\[\] = \{([^}]*)\}/g)]
            .map(([, bytes]) => Buffer.from([...bytes.matchAll(/'\\x(..)'/g)].map(([, hex]) => parseInt(hex, 16))).toString('utf8'));
        assert.equal(arrays.join('@DOCUMENT@'), readFileSync(page, 'utf8'));
    });

    const refusals = [
        ['a module that ends its element', 'src/dom.mjs', '\n// </script>\n', /a module contains "<\/script"/],
        ['a module that begins a comment', 'src/dom.mjs', '\n// <!--\n', /a module contains "<!--"/],
        ['a style sheet that ends its element', 'src/page.css', '/* </STYLE> */', /the style sheet contains "<\/style"/],
        ['two modules with the same name', 'src/filter.mjs', '\nfunction element() {}\n', /element is in dom.mjs and in filter.mjs/],
        ['names that it does not compare', 'src/filter.mjs', '\nconst { element } = {};\n', /filter.mjs: "const { element } = {};" declares names/],
        ['an import of several lines', 'src/filter.mjs', '\nimport {\n    a } from "./dom.mjs";\n', /filter.mjs: "import {" is not on one line/],
        ['a second place for the document', 'src/dom.mjs', '\n// @DOCUMENT@\n', /more than once/],
    ];
    refusals.forEach(([what, file, text, message], index) => it(`refuses ${what}`, () => {
        const source = copy(`bad${index}`);
        appendFileSync(join(source, file), text);
        const { status, stderr } = run(source);
        assert.equal(status, 1);
        assert.match(stderr, message);
    }));

    it('names the packages where d3 is missing', () => {
        const { status, stderr } = run(copy('missing'), folder);
        assert.equal(status, 1);
        assert.match(stderr, /d3-array\.min\.js was not found: install d3's modules \(Debian: node-d3-array .*node-d3-axis\), or set RECORDKIT_D3_FOLDER/);
    });
});

describe('filling the page', () => {
    it('puts the document in the place of its marker, whatever it contains', () => {
        assert.equal(fillPage('a@DOCUMENT@b', '$& $1'), 'a$& $1b');
        assert.throws(() => fillPage('a', ''), /@DOCUMENT@ once/);
        assert.throws(() => fillPage('@DOCUMENT@@DOCUMENT@', ''), /@DOCUMENT@ once/);
    });
});
