// Satellites on the orbital arc, as seen on a map: west is left.

const ANY_POSITION = 3600;

/** Draws the satellites of these rows. The element is a group of links, one per satellite. */
function arc(rows, selected, width) {
    const placed = rows.filter(row => row.record.value('orbital_position') !== ANY_POSITION)
        .sort((a, b) => a.record.value('orbital_position') - b.record.value('orbital_position'));
    if (placed.length === 0) {
        return null;
    }
    const degrees = placed.map(row => row.record.value('orbital_position') / 10);
    const west = Math.floor((degrees[0] - 4) / 10) * 10;
    const east = Math.ceil((degrees.at(-1) + 4) / 10) * 10;
    const narrow = width < 520;
    const side = narrow ? 12 : 28;
    const depth = Math.min(width * 0.13, 110);
    // A parabola: close to an ellipse seen from below, and even in longitude.
    const x = degree => side + (degree - west) / (east - west) * (width - 2 * side);
    const levels = stack(placed, selected, i => x(degrees[i]));
    const labelled = row => row === selected || !narrow && referring(row.record, STREAMS).length > 0;
    const top = 14 + 15 * Math.min(3, placed.filter(labelled).length) + Math.max(...levels.values()) * 9;
    const height = top + depth + 28;
    const y = degree => top + depth * (2 * (degree - west) / (east - west) - 1) ** 2;

    const steps = 48;
    const path = Array.from({length: steps + 1}, (_, i) => west + (east - west) * i / steps)
        .map((degree, i) => `${i ? 'L' : 'M'}${x(degree).toFixed(1)} ${y(degree).toFixed(1)}`).join('');
    const spacing = [5, 10, 15, 30, 45, 60, 90].find(step => (east - west) / step * 46 < width - 2 * side) ?? 90;
    const ticks = [];
    for (let degree = Math.ceil(west / spacing) * spacing; degree <= east; degree += spacing) {
        ticks.push(svg('line', {class: 'tick', x1: x(degree), x2: x(degree), y1: y(degree), y2: y(degree) + 7}),
            svg('text', {class: 'axis', x: x(degree), y: y(degree) + 20, 'text-anchor': 'middle'},
                degree === 0 ? '0°' : `${Math.abs(degree)}°${degree < 0 ? 'W' : 'E'}`));
    }

    const links = [];
    const labels = [];
    placed.forEach((row, i) => {
        const cx = x(degrees[i]);
        const cy = y(degrees[i]) - levels.get(row) * 9;
        const streams = referring(row.record, STREAMS).length;
        const current = row === selected;
        const link = svg('a', {
            href: row.href, class: `dot ${row.state} ${streams ? 'used' : ''}`, 'aria-current': current ? 'true' : null,
            'aria-label': `${title(row.record)}, ${position(row.record)}, ${plural(streams, 'transport stream')}`
                + (row.state === SAME ? '' : `, ${STATES[row.state].label}`),
        }, svg('circle', {class: 'target', cx, cy, r: 9}),
        svg('circle', {cx, cy, r: current ? 6.5 : streams ? 5 : 3.2}));
        link.row = row;
        links.push(link);
        if (labelled(row)) {
            labels.push({cx, cy, current, text: title(row.record), streams});
        }
    });
    const drawing = svg('svg', {
        role: 'group', width, height, viewBox: `0 0 ${width} ${height}`,
        'aria-label': `${plural(placed.length, 'satellite')} on the orbital arc from ${degreeText(degrees[0])} to `
            + `${degreeText(degrees.at(-1))}; arrow keys move from one to the next. The table has the same satellites.`,
    }, svg('path', {class: 'orbit', d: path}), ticks, links, callouts(labels, width));
    const box = el('div', null, drawing); // deliberate: an SVG element that listens for the focus would get it itself
    const choose = rove(box, links);
    choose(Math.max(0, links.findIndex(link => link.row === selected)));
    tooltip.attach(box, 'a.dot', link => {
        const {record, state} = link.row;
        return [title(record), position(record), plural(referring(record, STREAMS).length, 'transport stream'),
            plural(referring(record, SERVICES).length, 'service'), ...(state === SAME ? [] : [STATES[state].label])];
    });
    return box;
}

/** How far above the arc each dot is, so that none hides another. Satellites in use come first. */
function stack(placed, selected, x) {
    const rank = row => row === selected ? 0 : referring(row.record, STREAMS).length ? 1 : 2;
    const taken = [];
    const levels = new Map();
    placed.map((row, i) => ({row, x: x(i), rank: rank(row)})).sort((a, b) => a.rank - b.rank).forEach(dot => {
        let level = 0;
        while (taken[level]?.some(other => Math.abs(other - dot.x) < 8)) {
            level++;
        }
        (taken[level] ??= []).push(dot.x);
        levels.set(dot.row, level);
    });
    return levels;
}

const degreeText = degree => `${Math.abs(degree)}°${degree < 0 ? ' W' : ' E'}`;

/** Labels above the dots, as many as fit: the selected one first, then those with most streams. */
function callouts(labels, width) {
    const taken = [];
    labels.sort((a, b) => b.current - a.current || b.streams - a.streams);
    return labels.flatMap(({cx, cy, current, text}) => {
        const short = text.length > 28 ? `${text.slice(0, 27)}…` : text;
        const half = short.length * 3.5 + 4;
        const at = Math.max(half, Math.min(width - half, cx));
        const line = [0, 1, 2].find(line =>
            !taken.some(label => label.line === line && Math.abs(label.at - at) < label.half + half + 6));
        if (line === undefined) {
            return [];
        }
        taken.push({at, half, line});
        const base = 12 + line * 14;
        return [svg('line', {class: 'leader', x1: cx, y1: cy - 6, x2: cx, y2: base + 4}),
            svg('text', {class: current ? 'label current' : 'label', x: at, y: base, 'text-anchor': 'middle'}, short)];
    });
}
