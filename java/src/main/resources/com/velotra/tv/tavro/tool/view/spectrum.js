// Transport streams by frequency. Streams of a satellite have one row per polarization.

const LANES = 6;
const LANE_HEIGHT = 14;

/** The plots that there are: streams by satellite, and others by medium and list. */
function bands(rows) {
    const found = new Map();
    for (const row of rows) {
        const stream = row.record;
        const medium = stream.value('medium');
        const satellite = medium === SATELLITE ? referred(stream, SATELLITES) : undefined;
        const key = `${medium}/${satellite?.name ?? `list ${stream.list.id}`}`;
        if (!found.has(key)) {
            const label = satellite?.record ? `${position(satellite.record)} ${title(satellite.record)}`
                : satellite ? `satellite ${satellite.name} (missing)`
                    : `${capital(MEDIA[medium] ?? `medium ${medium}`)}, list ${stream.list.id}`;
            found.set(key, {key, label, medium, rows: []});
        }
        found.get(key).rows.push(row);
    }
    return [...found.values()];
}

const bandOf = (all, row) => all.find(band => band.rows.includes(row));

const slack = item => (item.to - item.from) * 0.15;

/** Puts overlapping streams into lanes. Roll-offs may overlap. Returns the number of lanes. */
function pack(items) {
    const ends = [];
    for (const item of items) {
        let lane = ends.findIndex(end => end <= item.from + slack(item));
        lane = lane < 0 ? Math.min(ends.length, LANES - 1) : lane;
        ends[lane] = Math.max(ends[lane] ?? -Infinity, item.to - slack(item));
        item.lane = lane;
    }
    return Math.max(1, ends.length);
}

/** A distance between ticks for at most {@code most} of them. */
function tickStep(span, most) {
    const power = 10 ** Math.floor(Math.log10(span / most));
    return [1, 2, 5, 10].map(factor => factor * power).find(step => span / step <= most);
}

/** Draws the streams of a band. The element is a group of links, one per stream. */
function spectrum(band, selected, width) {
    const items = band.rows.map(row => {
        const middle = megahertz(row.record);
        const half = bandwidth(row.record) / 2;
        return {row, middle, from: middle - half, to: middle + half};
    }).sort((a, b) => a.middle - b.middle);
    const left = band.medium === SATELLITE ? 26 : 10;
    const right = 14;
    const low = Math.min(...items.map(item => item.from));
    const high = Math.max(...items.map(item => item.to));
    const margin = Math.max((high - low) * 0.02, 4);
    const scale = (width - left - right) / (high - low + 2 * margin);
    const x = frequency => left + (frequency - low + margin) * scale;

    const names = band.medium === SATELLITE
        ? [...new Set(['H', 'V', ...items.map(item => polarization(item.row.record))])] : [''];
    const links = [];
    const drawn = [];
    let y = 6;
    for (const name of names) {
        const inRow = items.filter(item => band.medium !== SATELLITE || polarization(item.row.record) === name);
        const height = pack(inRow) * LANE_HEIGHT + 8;
        drawn.push(svg('rect', {class: 'strip', x: left, y, width: width - left - right, height, rx: 3}),
            svg('text', {class: 'axis', x: 6, y: y + height / 2 + 4}, name));
        for (const item of inRow) {
            links.push(mark(item, selected, x, y + 4, scale));
        }
        y += height + 6;
    }
    links.sort((a, b) => a.item.middle - b.item.middle);
    const step = tickStep(high - low + 2 * margin, Math.max(2, (width - left - right) / 70));
    for (let tick = Math.ceil((low - margin) / step) * step; tick <= high + margin; tick += step) {
        drawn.push(svg('line', {class: 'tick', x1: x(tick), x2: x(tick), y1: y - 2, y2: y + 4}),
            svg('text', {class: 'axis', x: x(tick), y: y + 17, 'text-anchor': 'middle'}, decimal(tick, 3)));
    }
    drawn.push(svg('text', {class: 'axis', x: width - right, y: y + 31, 'text-anchor': 'end'}, 'MHz'));
    const height = y + 36;
    const drawing = svg('svg', {
        role: 'group', width, height, viewBox: `0 0 ${width} ${height}`,
        'aria-label': `${plural(items.length, 'transport stream')} of ${band.label} by frequency, from `
            + `${decimal(low, 1)} to ${decimal(high, 1)} MHz; arrow keys move from one to the next. `
            + 'The table has the same streams.',
    }, drawn, links);
    const box = el('div', null, drawing); // deliberate: as for the arc
    const choose = rove(box, links);
    choose(Math.max(0, links.findIndex(link => link.item.row === selected)));
    tooltip.attach(box, 'a.stream', link => lines(link.item.row));
    return box;
}

function mark(item, selected, x, top, scale) {
    const wide = Math.max(3, (item.to - item.from) * scale - 1);
    const link = svg('a', {
        href: item.row.href, class: `stream ${item.row.state}`, 'aria-label': lines(item.row).join(', '),
        'aria-current': item.row === selected ? 'true' : null,
    }, svg('rect', {x: x(item.middle) - wide / 2, y: top + item.lane * LANE_HEIGHT, width: wide,
        height: LANE_HEIGHT - 2, rx: 2}));
    link.item = item;
    return link;
}

/** What the tooltip of a stream says. */
function lines({record, state}) {
    const rate = megabaud(record);
    const name = record.describe('name');
    return [...(name ? [name] : []), tuning(record),
        rate ? `${decimal(rate, 3)} MBd` : `${decimal(bandwidth(record), 3)} MHz wide`,
        `stream id ${record.value('transport_stream_id')}`, plural(referring(record, SERVICES).length, 'service'),
        ...(state === SAME ? [] : [STATES[state].label])];
}
