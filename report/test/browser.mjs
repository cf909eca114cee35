// SPDX-License-Identifier: Apache-2.0

// A headless Chromium, and pages built for a test.

import { execFileSync } from 'node:child_process';
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { fileURLToPath, pathToFileURL } from 'node:url';
import { chromium } from 'playwright-core';
import { fillPage, scriptJson } from '../fill.mjs';

/// What join.cmake wrote.
export const readTemplate = () => readFileSync(process.env.REPORT_TEMPLATE
    ?? here('../../build/dev/report/page.html'), 'utf8');

const here = (path) => fileURLToPath(new URL(path, import.meta.url));

/// The command of the build.
export const command = () => process.env.REPORT_COMMAND ?? here('../../build/dev/tool/recordkit');

/// The document of the example board.
export function readExample() {
    const options = { encoding: 'utf8', maxBuffer: 1 << 28, cwd: here('../..') };
    const report = JSON.parse(process.env.REPORT_DOCUMENT ? readFileSync(process.env.REPORT_DOCUMENT, 'utf8')
        : execFileSync(command(), ['report', 'examples/board', '--json'], options));
    // The same pictures at any time.
    report.made.time = '2026-11-21T00:00:00Z';
    return report;
}

const NAMES = ['chromium', 'chromium-browser', 'google-chrome'];

function findChromium() {
    if (process.env.CHROMIUM) {
        return process.env.CHROMIUM;
    }
    for (const name of NAMES) {
        try {
            return execFileSync('sh', ['-c', `command -v ${name}`], { encoding: 'utf8' }).trim();
        } catch {
            // The next name.
        }
    }
    throw new Error(`none of ${NAMES.join(', ')} is installed; CHROMIUM may name a browser`);
}

export class Browser {
    async start() {
        this.folder = mkdtempSync(join(tmpdir(), 'recordkit-report-'));
        this.pages = 0;
        // Chromium's own sandbox cannot be started by root, as in many containers.
        const args = process.getuid?.() === 0 ? ['--no-sandbox'] : [];
        this.browser = await chromium.launch({ executablePath: findChromium(), args });
    }

    async stop() {
        await this.browser?.close();
        rmSync(this.folder, { recursive: true, force: true });
    }

    /// Opens the page with a document, an object or a text, and waits until it has an element.
    async open(document, options = {}, ready = '#contents li') {
        this.template ??= readTemplate();
        const file = join(this.folder, `${this.pages++}.html`);
        writeFileSync(file, fillPage(this.template, typeof document === 'string' ? document : scriptJson(document)));
        return this.openFile(file, options, ready);
    }

    /// The same for a page that is there. Errors, console messages and requests are collected.
    async openFile(file, { hash = '', ...options } = {}, ready = '#contents li') {
        const context = await this.browser.newContext({ viewport: { width: 1280, height: 900 }, ...options });
        context.setDefaultTimeout(60000);
        const page = await context.newPage();
        const heard = { errors: [], requests: [] };
        page.on('pageerror', (error) => heard.errors.push(error.message));
        page.on('console', (message) => heard.errors.push(message.text()));
        page.on('request', (request) => heard.requests.push(request.url()));
        page.on('dialog', (dialog) => { heard.errors.push(`dialog ${dialog.message()}`); dialog.dismiss(); });
        heard.url = pathToFileURL(file).href;
        await page.goto(heard.url + hash);
        await page.locator(ready).first().waitFor({ state: 'attached' });
        return { page, heard, close: () => context.close() };
    }
}

export const nextPicture = (page) => page.evaluate(() => new Promise((done) => requestAnimationFrame(() => setTimeout(done))));
