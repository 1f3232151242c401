// The bytes of a record, colored by field.

const COLORS = 8;
const WIDE = 16;
const NARROW = 8;

const hex = (number, digits) => number.toString(16).padStart(digits, '0');

/** The fields of a record and the bytes between them: {field, from, to}, in order. Bytes between have no field. */
function runs(record) {
    const all = [];
    let at = 0;
    for (const field of record.fields()) {
        if (field.offset > at) {
            all.push({from: at, to: field.offset});
        }
        all.push({field, from: field.offset, to: field.offset + field.width});
        at = Math.max(at, field.offset + field.width);
    }
    if (at < record.kind.size) {
        all.push({from: at, to: record.kind.size});
    }
    return all;
}

/** The bytes of one field in hexadecimal; the beginning of a long one. */
function hexOf(bytes) {
    return [...bytes.subarray(0, WIDE)].map(byte => hex(byte, 2)).join(' ') + (bytes.length > WIDE ? ' …' : '');
}

/** What the tooltip of a field says: value, place, names in the header and in Java. */
function fieldLines(record, run, before) {
    const bytes = record.bytes().subarray(run.from, run.to);
    const range = run.to - run.from === 1 ? `byte ${run.from}` : `bytes ${run.from} to ${run.to - 1}`;
    const place = `${range}: ${hexOf(bytes)}`;
    if (!run.field) {
        return ['reserved', place];
    }
    const lines = [`${run.field.label}: ${record.text(run.field)}`];
    if (before?.has(run.field) && before.text(run.field) !== record.text(run.field)) {
        lines.push(`before: ${before.text(run.field)}`);
    }
    lines.push(place);
    const keys = [...run.field.keys, ...Object.keys(run.field.flags)];
    lines.push(`header: ${record.path(run.field)}`);
    if (keys.length > 0) {
        lines.push(`Java ${keys.length === 1 ? 'key' : 'keys'}: ${keys.join(', ')}`);
    }
    if (run.field.meaning) {
        lines.push(run.field.meaning);
    }
    return lines;
}

const offsets = (size, step, name) => el('div', {class: `offsets ${name}`, 'aria-hidden': 'true'},
    Array.from({length: Math.ceil(size / step)}, (_, i) => el('div', null, hex(i * step, 4))));

/** Makes the grid of bytes. {@code onRun} gets the field under the pointer or the focus, and null after it. */
function byteGrid(record, before, onRun) {
    const bytes = record.bytes();
    const old = before?.bytes();
    let color = 0;
    const elements = runs(record).map(run => {
        const element = el('span', {
            class: `run ${run.field ? `c${color % COLORS}` : 'reserved'}`, role: 'img',
            'aria-label': fieldLines(record, run, before).join('; '),
        });
        color += run.field ? 1 : 0;
        for (let i = run.from; i < run.to; i++) {
            const changed = old && old[i] !== bytes[i];
            element.append(el('span', {class: changed ? 'b changed' : 'b'}, hex(bytes[i], 2)));
        }
        element.run = run;
        return element;
    });
    const grid = el('div', {
        class: 'bytes', role: 'group',
        'aria-label': `${bytes.length} bytes in ${elements.length} fields and reserved parts; `
            + 'arrow keys move from one to the next.',
    }, elements);
    const characters = el('div', {class: 'characters', 'aria-hidden': 'true'}, [...bytes].map(byte =>
        el('span', null, byte >= 0x20 && byte < 0x7F ? String.fromCharCode(byte) : '·')));
    rove(grid, elements);
    tooltip.attach(grid, '.run', element => fieldLines(record, element.run, before), element => {
        onRun(element?.run ?? null);
    });
    const whole = el('div', {class: 'hex'},
        offsets(bytes.length, WIDE, 'wide'), offsets(bytes.length, NARROW, 'small'), grid, characters);
    return {
        element: whole,
        mark: run => elements.forEach(element =>
            element.classList.toggle('marked', run !== null && element.run.from === run.from)),
    };
}
