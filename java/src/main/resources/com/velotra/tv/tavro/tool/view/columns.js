// The columns of the tables: {name, label, right, narrow, value(record), cell(record)}. Narrow columns are shown on a
// phone, too. The value is for sorting and searching, the cell for reading.

const NONE = '–';

function link(record) {
    return el('a', {href: new Row(record, undefined, record.list.side === page.shownSide ? SAME : 'removed').href},
        bdi(title(record)));
}

function referenceColumn(to, label) {
    const target = record => referred(record, to);
    return {
        name: `to_${to}`, label,
        value: record => target(record)?.record ? title(target(record).record) : target(record)?.name ?? '',
        cell: record => {
            const found = target(record);
            return !found ? NONE : found.record ? link(found.record) : `${found.name} (missing)`;
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

const VISIBLE = 0x8;
const SCRAMBLED = 0x800;
const BLOCKED = 0x100;
const IN_USE = 0x2000;

function serviceFlags(record) {
    const flag = bit => record.flag('network_mask', bit);
    return [flag(SCRAMBLED) && 'scrambled', !flag(VISIBLE) && 'hidden', flag(BLOCKED) && 'blocked']
        .filter(text => text).join(', ');
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
        fieldColumn(kind, 'service_type', {label: 'type', right: false}),
        referenceColumn(STREAMS, 'transport stream'),
        referenceColumn(NETWORKS, 'network'),
        referenceColumn(SATELLITES, 'satellite'),
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
        referenceColumn(SATELLITES, 'satellite'),
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
        derived('in_use', 'in use', record => record.flag('mask', IN_USE) ? 'yes' : 'no'),
        derived('lnb', 'oscillators', oscillators),
        countColumn(STREAMS, 'transport streams'),
        countColumn(SERVICES, 'services'),
    ],
};
