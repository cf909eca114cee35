// SPDX-License-Identifier: Apache-2.0

import { byId, count, dataTable, element } from './dom.mjs';
import { severityMark } from './severity.mjs';

const UNREAD = ['not readable', 'not recognised'];

/// What was read, and before that what was not, or had problems.
export function showInputs(report) {
    const section = byId('inputs');
    const worth = (input) => (UNREAD.includes(input.kind) || input.left_out || input.problems.length > 0 ? 0 : 1);
    const inputs = report.inputs.slice().sort((a, b) => worth(a) - worth(b));
    const unread = inputs.filter((input) => UNREAD.includes(input.kind) || input.left_out).length;
    section.append(element('p', {}, `${count(inputs.length - unread)} read, ${count(unread)} not recognised, not readable or left out.`));
    if (inputs.length > 0) {
        section.append(dataTable('Files', [
            { name: 'Name', cell: (input) => input.name },
            { name: 'Kind', cell: (input) => element('span', {}, worth(input) === 0 ? severityMark('warning') : '', input.kind) },
            { name: 'From', cell: (input) => input.root },
            { name: 'Problems', cell: (input) => (input.problems.length === 0 && input.left_out ? 'left out' : input.problems.join('; ')) },
        ], inputs, Math.max(20, inputs.filter((input) => worth(input) === 0).length)));
    }
}
