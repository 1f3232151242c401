// The details of one record: what it refers to, what refers to it, its fields and its bytes.

const SHOWN_LINKS = 12;

/** Fills the panel with a record. */
function showDetails(row, rows) {
    const panel = byId('details');
    if (!row) {
        fill(panel, el('p', {class: 'empty'}, 'Select a record to see its fields and bytes.'));
        return;
    }
    const {record, before} = row;
    const list = record.list;
    const fields = fieldTable(record, before);
    const grid = byteGrid(record, before, run => fields.mark(run));
    fields.onField(run => grid.mark(run));
    fill(panel,
        el('header', null,
            el('button', {type: 'button', class: 'back', onclick: () => byId('heading').focus()},
                'Back to the table'),
            el('p', {class: 'kind'}, `${capital(record.kind.noun)} ${record.name}`,
                row.state === SAME ? null : el('span', {class: `badge ${row.state}`}, STATES[row.state].label)),
            el('h2', {id: 'selected', tabindex: '-1'}, bdi(title(record))),
            el('p', {class: 'hint'}, `List ${list.id}, `, bdi(list.name), `, version ${list.version}`)),
        relations(record),
        streamsOf(row, rows),
        changes(record, before),
        el('h3', {id: 'fieldsHeading'}, 'Fields'), fields.element,
        el('h3', null, 'Bytes'), grid.element);
}

/** Links to other records, in both directions. */
function relations(record) {
    const to = REFERENCES.filter(reference => reference.from === record.kind.number)
        .map(reference => [reference, referred(record, reference.to)]).filter(([, found]) => found)
        .flatMap(([{label}, found]) => [el('dt', null, capital(label)), el('dd', null,
            found.record ? link(found.record) : `${found.name} is missing`,
            found.record ? el('span', {class: 'hint'}, ` ${found.name}`) : null)]);
    const from = REFERENCES.filter(reference => reference.to === record.kind.number)
        .flatMap(reference => back(record, reference));
    return to.length + from.length === 0 ? null : el('dl', {class: 'relations'}, to, from);
}

function back(record, reference) {
    const records = referring(record, reference.from);
    const kind = page.data.kinds[reference.from];
    if (records.length === 0) {
        return [];
    }
    const spectrumInstead = reference.from === STREAMS && reference.to === SATELLITES;
    const query = `${reference.list}=${record.list.id} ${reference.record}=${record.id}`;
    return [el('dt', null, capital(kind.name === 'streams' ? 'transport streams' : kind.name)), el('dd', null,
        el('a', {class: 'all', href: `#${kind.name}?q=${encodeURIComponent(query)}`},
            `${plural(records.length, kind.noun)} in the table`),
        spectrumInstead ? null : el('ul', {class: 'links'},
            records.slice(0, SHOWN_LINKS).map(other => el('li', null, link(other))),
            records.length > SHOWN_LINKS
                ? el('li', {class: 'hint'}, `and ${records.length - SHOWN_LINKS} more`) : null))];
}

/** The spectrum of a satellite. */
function streamsOf(row, rows) {
    const ofSatellite = row.record.kind.number === SATELLITES ? referring(row.record, STREAMS) : [];
    const streams = new Set(ofSatellite.map(key));
    if (streams.size === 0) {
        return null;
    }
    const own = rows[STREAMS].filter(other => other.record.list.side === row.record.list.side
        && streams.has(key(other.record)));
    const box = el('div', {class: 'plot'});
    const band = {label: title(row.record), medium: SATELLITE, rows: own};
    requestAnimationFrame(() => box.replaceChildren(spectrum(band, null, box.clientWidth)));
    return [el('h3', null, 'Transport streams by frequency'), box];
}

const key = record => `${record.list.id},${record.id}`;

const valueOf = (record, {field, from, to}) => !field ? hexOf(record.bytes().subarray(from, to))
    : record.has(field) ? record.text(field) : NONE;

const columnHeads = (...labels) =>
    el('thead', null, el('tr', null, labels.map(label => el('th', {scope: 'col'}, label))));

/** The fields that differ, with both values; nothing if there is no record before. */
function changes(record, before) {
    const different = before ? runs(record).filter(run => !sameRun(record, before, run)) : [];
    if (different.length === 0) {
        return null;
    }
    const lines = different.map(run => el('tr', null, el('th', {scope: 'row'}, labelOf(run)),
        el('td', {class: 'old'}, bdi(valueOf(before, run))), el('td', {class: 'new'}, bdi(valueOf(record, run)))));
    return [el('h3', null, 'Changes'), el('table', {class: 'fields changes'},
        columnHeads('Field', 'Before', 'After'), el('tbody', null, lines))];
}

const labelOf = run => run.field?.label ?? `reserved, from byte ${run.from}`;

/** The table of all fields. */
function fieldTable(record, before) {
    const lines = runs(record).filter(run => run.field).map(run => {
        const {field} = run;
        const text = record.text(field);
        const differs = before && !sameRun(record, before, run);
        const zero = /^(|0|0x0+)( kHz| MHz| Bd)?$/.test(text);
        const line = el('tr', {class: `${differs ? 'differs' : ''}${zero ? ' zero' : ''}`},
            el('td', {class: 'right offset'}, run.from), el('th', {scope: 'row'}, field.label),
            el('td', null, bdi(text)));
        line.run = run;
        return line;
    });
    const element = el('table', {class: 'fields', 'aria-labelledby': 'fieldsHeading'},
        columnHeads('Offset', 'Field', 'Value'), el('tbody', null, lines));
    return {
        element,
        mark: run => lines.forEach(line => line.classList.toggle('marked', run !== null && line.run.from === run.from)),
        onField: listener => {
            element.addEventListener('pointerover', event => listener(event.target.closest('tr')?.run ?? null));
            element.addEventListener('pointerleave', () => listener(null));
        },
    };
}

const sameRun = (a, b, run) => sameBytes(a.bytes().subarray(run.from, run.to), b.bytes().subarray(run.from, run.to));
