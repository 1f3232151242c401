// What records are called, how they refer to each other, and how they differ between two directories.

const SAME = 'same';
const STATES = {
    same: {mark: '', label: 'unchanged'},
    changed: {mark: '~', label: 'changed'},
    added: {mark: '+', label: 'added'},
    removed: {mark: '−', label: 'removed'},
};

/** A row of a table: a record, and the record before if two directories are compared. */
class Row {
    constructor(record, before, state) {
        this.record = record;
        this.before = before;
        this.state = state;
    }

    get href() {
        const {list, id} = this.record;
        return `#${this.record.kind.name}/${list.id},${id}${this.state === 'removed' ? '/before' : ''}`;
    }
}

const sameBytes = (a, b) => a.every((byte, i) => byte === b[i]);

/** All rows of each kind. */
function rowsOf({kinds, sides, pairs}) {
    const rows = kinds.map(() => []);
    const last = sides.at(-1);
    last.lists.forEach((list, number) => {
        for (let i = 0; i < list.records; i++) {
            const record = new Rec(list, i);
            if (!pairs) {
                rows[list.kind.number].push(new Row(record, undefined, SAME));
                continue;
            }
            const partner = pairs[number][i];
            const listBefore = sides[0].lists.find(other => other.kind === list.kind && other.id === list.id);
            const before = partner < 0 ? undefined : new Rec(listBefore, partner);
            const state = !before ? 'added' : sameBytes(record.bytes(), before.bytes()) ? SAME : 'changed';
            rows[list.kind.number].push(new Row(record, before, state));
        }
    });
    if (pairs) {
        addRemoved(rows, sides, pairs);
    }
    return rows;
}

function addRemoved(rows, [first, second], pairs) {
    for (const list of first.lists) {
        const after = second.lists.findIndex(other => other.kind === list.kind && other.id === list.id);
        const kept = new Set(after < 0 ? [] : pairs[after]);
        for (let i = 0; i < list.records; i++) {
            if (!kept.has(i)) {
                rows[list.kind.number].push(new Row(new Rec(list, i), undefined, 'removed'));
            }
        }
    }
}

// The fields that hold the list and the record that a record refers to.
const REFERENCES = [
    {from: SERVICES, to: STREAMS, label: 'transport stream', list: 'tsl_id', record: 'tsl_record_id'},
    {from: SERVICES, to: NETWORKS, label: 'network', list: 'nwl_id', record: 'nwl_record_id'},
    {from: SERVICES, to: SATELLITES, label: 'satellite', list: 'satl_id', record: 'satl_record_id'},
    {from: STREAMS, to: NETWORKS, label: 'network', list: 'nwl_id', record: 'nwl_record_id'},
    {from: STREAMS, to: SATELLITES, label: 'satellite', list: 'satl_id', record: 'satl_record_id'},
];

const referenceTo = (from, to) => REFERENCES.find(reference => reference.from === from && reference.to === to);

/** What a record refers to: {name, record}. The record is missing if no list has it; nothing if it refers to none. */
function referred(record, to) {
    const reference = referenceTo(record.kind.number, to);
    const listId = record.value(reference.list);
    const recordId = record.value(reference.record);
    if (!listId) {
        return undefined;
    }
    return {name: `${listId},${recordId}`, record: record.list.side.find(to, listId, recordId)};
}

const backward = new Map();

/** The records of a kind that refer to a record. */
function referring(record, from) {
    const side = record.list.side;
    const to = record.kind.number;
    const reference = referenceTo(from, to);
    if (!reference) {
        return [];
    }
    if (!backward.has(side)) {
        backward.set(side, new Map());
    }
    const indexes = backward.get(side);
    const key = `${from}>${to}`;
    if (!indexes.has(key)) {
        const index = new Map();
        for (const list of side.lists.filter(list => list.kind.number === from)) {
            for (let i = 0; i < list.records; i++) {
                const from = new Rec(list, i);
                const name = `${from.value(reference.list)},${from.value(reference.record)}`;
                index.has(name) ? index.get(name).push(from) : index.set(name, [from]);
            }
        }
        indexes.set(key, index);
    }
    return indexes.get(key).get(record.name) ?? [];
}

const TERRESTRIAL = 1;
const CABLE = 2;
const SATELLITE = 3;
const MEDIA = {[TERRESTRIAL]: 'terrestrial', [CABLE]: 'cable', [SATELLITE]: 'satellite'};
const POLARIZATIONS = ['H', 'V', 'L', 'R'];

/** The frequency of a stream in MHz. Lists have it in kHz; other units are recognized by their size. */
function megahertz(stream) {
    let frequency = stream.value('frequency');
    const most = stream.value('medium') === SATELLITE ? 1e5 : 5e3;
    while (frequency >= most) {
        frequency /= 1000;
    }
    return frequency;
}

/** The symbol rate of a stream in MBd; nothing if it has none. */
function megabaud(stream) {
    const rate = stream.value('sat_symbol_rate') || stream.value('cab_symbol_rate');
    return rate ? rate / (rate >= 1e5 ? 1e6 : 1e3) : undefined;
}

/** The width of a stream in the spectrum in MHz. */
function bandwidth(stream) {
    const rate = megabaud(stream);
    if (stream.value('medium') === TERRESTRIAL) {
        return [8, 6, 7, 8, 5, 10, 1.712][stream.value('ter_bandwidth')] ?? 8;
    }
    const rollOff = stream.value('medium') === CABLE ? 0.15 : [0.35, 0.25, 0.2][stream.value('sat_roll_off')] ?? 0.35;
    return rate ? rate * (1 + rollOff) : 8;
}

const decimal = (number, digits) => number.toFixed(digits).replace(/\.?0+$/, '') || '0';

function polarization(stream) {
    const code = stream.value('sat_polarization');
    return code === undefined ? '' : POLARIZATIONS[code] ?? String(code);
}

function tuning(stream) {
    return `${decimal(megahertz(stream), 3)} MHz ${polarization(stream)}`.trim();
}

/** The orbital position for people, such as 19.2° E. */
function position(satellite) {
    const tenths = satellite.value('orbital_position');
    if (tenths === 3600) {
        return 'any';
    }
    return `${(Math.abs(tenths) / 10).toFixed(1)}° ${tenths < 0 ? 'W' : 'E'}`;
}

/** What a record is called in headings and links: its name, unless no character of it can be seen. */
function title(record) {
    const text = record.describe('name');
    const name = /[^\p{Cc}\p{Cf}\p{Z}]/u.test(text) ? text : '';
    switch (record.kind.number) {
    case STREAMS: return name || tuning(record);
    case SATELLITES: return name || position(record);
    case NETWORKS: return name || `network ${record.value('network_id')}`;
    default: return name || `service ${record.value('service_id')}`;
    }
}
