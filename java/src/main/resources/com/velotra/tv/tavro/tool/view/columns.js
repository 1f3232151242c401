// The columns of the tables: {name, label, right, narrow, value(record), cell(record)}. Narrow columns are shown on a
// phone, too. The value is for sorting and searching, the cell for reading.

const NONE = '–';

function link(record, text = title(record)) {
    const state = record.list.side === page.shownSide ? SAME : 'removed';
    return el('a', {href: new Row(record, undefined, state).href}, bdi(text));
}

/** A column of links to records of another kind. */
function referenceColumn(to, label, textOf = title) {
    const target = record => referred(record, to);
    return {
        name: `to_${to}`, label,
        value: record => {
            const found = target(record);
            return found?.record ? [...new Set([textOf(found.record), title(found.record)])].join(' ')
                : found?.name ?? '';
        },
        cell: record => {
            const found = target(record);
            return !found ? NONE : found.record ? link(found.record, textOf(found.record)) : `${found.name} (missing)`;
        },
    };
}

function fieldColumn(kind, name, extra = {}) {
    const field = kind.byName.get(name);
    const number = field.style !== 'TEXT';
    return {
        name, label: field.label, right: number,
        value: record => !record.has(field) ? '' : number ? record.number(field) : record.text(field),
        cell: record => record.has(field) ? bdi(record.text(field)) : NONE,
        ...extra,
    };
}

const countColumn = (from, label) => ({
    name: `from_${from}`, label, right: true,
    value: record => referring(record, from).length,
    cell: record => referring(record, from).length.toLocaleString('en'),
});

const recordColumn = {
    name: 'record', label: 'record', right: true,
    value: record => record.list.id * 65536 + record.id,
    cell: record => record.name,
};

const nameColumn = {
    name: 'name', label: 'name', narrow: true, main: true,
    value: title,
    cell: record => bdi(title(record)),
};

function serviceFlags(record) {
    const words = [record.flag('VnetScrambled') && 'scrambled', !record.flag('VnetVisible') && 'hidden',
        record.flag('ventChannelBlock') && 'blocked', record.flag('VoptDeletedByUser') && 'deleted'];
    return words.filter(word => word).join(', ');
}

const derived = (name, label, value, extra = {}) =>
    ({name, label, value, cell: record => value(record) === '' ? NONE : String(value(record)), ...extra});

function oscillators(satellite) {
    const low = satellite.value('lnb_low_frequency');
    const high = satellite.value('lnb_high_frequency');
    return high ? `${low}/${high} MHz` : low ? `${low} MHz` : '';
}

/** The columns that the table of a kind shows at first. */
const COLUMNS = {
    [SERVICES]: kind => [
        fieldColumn(kind, 'lcn', {label: 'LCN', narrow: true,
            cell: record => record.value('lcn') ? String(record.value('lcn')) : NONE}),
        nameColumn,
        recordColumn,
        fieldColumn(kind, 'service_id'),
        fieldColumn(kind, 'service_type', {label: 'type', right: false,
            cell: record => record.describe('service_type').replace(/^\d+ \((.*)\)$/, '$1')}),
        referenceColumn(STREAMS, 'transport stream'),
        referenceColumn(NETWORKS, 'network'),
        referenceColumn(SATELLITES, 'satellite', position),
        derived('flags', 'flags', serviceFlags),
    ],
    [STREAMS]: kind => [
        nameColumn,
        recordColumn,
        derived('medium', 'medium', record => MEDIA[record.value('medium')] ?? `medium ${record.value('medium')}`),
        derived('mhz', 'MHz', megahertz, {right: true, narrow: true, cell: record => decimal(megahertz(record), 3)}),
        derived('pol', 'pol.', polarization),
        derived('baud', 'MBd', record => megabaud(record) ?? '', {right: true,
            cell: record => megabaud(record) ? decimal(megabaud(record), 3) : NONE}),
        fieldColumn(kind, 'transport_stream_id', {label: 'stream id'}),
        fieldColumn(kind, 'original_network_id', {label: 'orig. network'}),
        referenceColumn(NETWORKS, 'network'),
        referenceColumn(SATELLITES, 'satellite', position),
        countColumn(SERVICES, 'services'),
    ],
    [NETWORKS]: kind => [
        nameColumn,
        recordColumn,
        fieldColumn(kind, 'network_id', {narrow: true}),
        fieldColumn(kind, 'version'),
        fieldColumn(kind, 'flags', {right: false}),
        countColumn(STREAMS, 'transport streams'),
        countColumn(SERVICES, 'services'),
    ],
    [SATELLITES]: () => [
        derived('position', 'position', position, {right: true, narrow: true,
            value: record => record.value('orbital_position')}),
        nameColumn,
        recordColumn,
        derived('in_use', 'in use', record => record.flag('MaskStatusOn') ? 'yes' : 'no'),
        derived('lnb', 'oscillators', oscillators),
        countColumn(STREAMS, 'transport streams'),
        countColumn(SERVICES, 'services'),
    ],
};
