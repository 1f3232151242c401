// The page: what is shown follows from the address, #KIND, #KIND/LIST,RECORD or #KIND?q=SEARCH, and from the tools.

const page = {data: null, rows: null, tables: null, kind: 0, selected: null, shownSide: null, band: null};

const DEFAULT_TITLES = ['Services', 'Transport streams', 'Networks', 'Satellites'];

async function start() {
    theme();
    tooltip.start();
    page.data = await load();
    page.shownSide = page.data.sides.at(-1);
    page.rows = rowsOf(page.data);
    page.compared = page.data.sides.length === 2;
    page.tables = page.data.kinds.map((kind, i) => new Table(kind, page.rows[i], page.compared));
    page.tables.forEach(table => table.find());
    header();
    tools();
    printing();
    addEventListener('hashchange', follow);
    new ResizeObserver(drawPlot).observe(byId('plot'));
    follow();
    document.documentElement.dataset.ready = 'true';
}

function header() {
    const {sides} = page.data;
    byId('where').replaceChildren(...(page.compared
        ? [bdi(sides[0].directory), ' compared with ', bdi(sides[1].directory)] : [bdi(sides[0].directory)]));
    byId('kinds').replaceChildren(...page.data.kinds.map((kind, i) => {
        const differences = page.compared ? page.rows[i].filter(row => row.state !== SAME).length : 0;
        return el('li', null, el('a', {href: `#${kind.name}`}, DEFAULT_TITLES[i],
            el('span', {class: 'number'}, page.rows[i].length.toLocaleString('en')),
            differences ? el('span', {class: 'badge changed'}, plural(differences, 'difference')) : null));
    }));
}

const table = () => page.tables[page.kind];

/** Shows what the address says. */
function follow() {
    tooltip.hide();
    const inside = byId('details').contains(document.activeElement) || byId('plot').contains(document.activeElement);
    const [path, query] = location.hash.slice(1).split('?');
    const [name, id, before] = path.split('/');
    const kind = page.data.kinds.findIndex(kind => kind.name === name);
    const changed = kind >= 0 && kind !== page.kind;
    page.kind = kind >= 0 ? kind : page.kind;
    const q = new URLSearchParams(query).get('q');
    if (q !== null) {
        table().filter = {text: q, list: '', state: ''};
        table().find();
    }
    page.selected = page.rows[page.kind].find(row => row.record.name === id
        && (row.state === 'removed') === (before === 'before')) ?? null;
    if (page.selected && !table().turnTo(page.selected)) {
        table().filter = {text: '', list: '', state: ''};
        table().find();
        table().turnTo(page.selected);
    }
    page.band = null;
    showKind();
    showDetails(page.selected, page.rows);
    byId('details').scrollTop = 0;
    byId('table').querySelector('[aria-selected=true]')?.scrollIntoView({block: 'nearest'});
    if (!page.started) {
        page.started = true; // deliberate: the focus stays at the beginning of a page that was just opened
    } else if (page.selected && (inside || changed || innerWidth <= 1100)) {
        byId('selected').focus();
    } else if (q !== null || changed) {
        byId('heading').focus();
    }
}

function showKind() {
    byId('heading').textContent = DEFAULT_TITLES[page.kind];
    document.title = `${page.selected ? title(page.selected.record) : DEFAULT_TITLES[page.kind]} – channel lists`;
    byId('kinds').querySelectorAll('a').forEach((a, i) =>
        i === page.kind ? a.setAttribute('aria-current', 'page') : a.removeAttribute('aria-current'));
    byId('tools').hidden = page.rows[page.kind].length === 0;
    fillTools();
    drawPlot();
    drawTable();
}

function drawTable(problem) {
    const current = table();
    const all = current.rows.length;
    const box = byId('table');
    box.replaceChildren();
    if (all > 0) {
        box.append(current.element(page.selected, sortBy, page.printing));
    }
    const noun = current.kind.noun;
    byId('count').textContent = all === 0 ? `There are no ${noun}s.`
        : `${problem ? `${problem} ` : ''}${current.found.length === all ? plural(all, noun)
            : `${current.found.length.toLocaleString('en')} of ${plural(all, noun)}`}`;
    drawPages();
}

function sortBy(name) {
    const {sort} = table();
    table().sort = {name, down: sort.name === name && !sort.down};
    table().find();
    drawTable();
    byId('table').querySelector(`[data-column="${name}"]`).focus();
}

function drawPages() {
    const {page: number, pages} = table();
    const turn = to => {
        table().page = to;
        drawTable();
        byId('count').textContent = `Page ${to + 1} of ${pages}`;
        byId('pages').querySelector(`[data-to="${to > number ? 'next' : 'previous'}"]:not(:disabled)`)?.focus();
    };
    byId('pages').hidden = pages === 1;
    const button = (name, label, to) => el('button',
        {type: 'button', 'data-to': name, disabled: to < 0 || to >= pages, onclick: () => turn(to)}, label);
    const choose = event => turn(Math.max(0, Math.min(pages - 1, Number(event.target.value) - 1)));
    fill(byId('pages'), button('previous', '‹ Previous', number - 1),
        el('label', null, 'Page ',
            el('input', {type: 'number', min: 1, max: pages, value: number + 1, onchange: choose}), ` of ${pages}`),
        button('next', 'Next ›', number + 1));
}

/** The plot above the table: the arc of the satellites, or the spectrum of streams. */
function drawPlot() {
    const box = byId('plot');
    const width = box.clientWidth;
    const rows = page.rows[page.kind];
    const focused = box.contains(document.activeElement);
    box.replaceChildren();
    if (rows.length === 0 || width === 0) {
        return;
    }
    if (page.kind === SATELLITES) {
        box.append(...[arc(rows, page.selected, width)].filter(drawing => drawing));
    } else if (page.kind === STREAMS) {
        const all = bands(rows);
        const band = all.find(band => band.key === page.band)
            ?? (page.selected && bandOf(all, page.selected)) ?? all[0];
        const choice = el('select', {onchange: event => {
            page.band = event.target.value;
            drawPlot();
            byId('plot').querySelector('select').focus();
        }}, all.map(({key, label}) => el('option', {value: key, selected: key === band.key}, label)));
        box.append(el('label', {class: 'band'}, 'By frequency ', choice), spectrum(band, page.selected, width));
    }
    if (focused) {
        box.querySelector('[tabindex="0"]')?.focus();
    }
}

function tools() {
    let timer = 0;
    const refilter = () => {
        table().filter = {text: byId('search').value, list: byId('list').value, state: byId('state').value};
        drawTable(table().find());
    };
    byId('search').addEventListener('input', () => {
        clearTimeout(timer);
        timer = setTimeout(refilter, table().rows.length > 5000 ? 200 : 0);
    });
    byId('list').addEventListener('change', refilter);
    byId('state').addEventListener('change', refilter);
    byId('tools').addEventListener('submit', event => event.preventDefault());
    byId('columnBoxes').addEventListener('change', () => {
        const names = [...byId('columnBoxes').querySelectorAll('input:checked')].map(box => box.value);
        table().choose(new Set(names));
        drawTable();
    });
    document.querySelector('.skip').addEventListener('click', event => {
        event.preventDefault();
        byId('main').focus();
    });
    byId('heading').tabIndex = -1;
    byId('stateLabel').hidden = !page.compared;
}

function fillTools() {
    const {kind, filter, rows, standard, names} = table();
    byId('search').value = filter.text;
    const lists = [...new Map(rows.map(({record}) => [record.list.id, record.list])).values()];
    byId('list').replaceChildren(el('option', {value: ''}, 'all'),
        ...lists.map(list => el('option', {value: list.id}, `${list.id} (${list.name})`)));
    byId('list').value = filter.list;
    const states = [['', 'all'], ['different', 'all differences'], ['added', 'added'], ['removed', 'removed'],
        ['changed', 'changed'], [SAME, 'unchanged']];
    fill(byId('state'), states.map(([value, label]) => el('option', {value}, label)));
    byId('state').value = filter.state;
    byId('hint').textContent = {
        [SERVICES]: 'Words, or conditions such as lcn<100 or sid=28106',
        [STREAMS]: 'Words, or conditions such as freq>11000000 or pol=h',
        [NETWORKS]: 'Words, or conditions such as nid=1',
        [SATELLITES]: 'Words, or conditions such as pos>=192',
    }[kind.number];
    const box = ({name, label}) => el('label', null,
        el('input', {type: 'checkbox', value: name, checked: names.has(name)}), ` ${label}`);
    const more = kind.fields.filter(field => !standard.some(column => column.name === field.name));
    byId('columnBoxes').replaceChildren(...standard.filter(column => !column.main).map(box), ...more.map(box));
}

function theme() {
    const button = byId('theme');
    const dark = matchMedia('(prefers-color-scheme: dark)');
    const show = chosen => {
        const isDark = chosen ? chosen === 'dark' : dark.matches;
        if (chosen) {
            document.documentElement.dataset.theme = chosen;
        }
        button.setAttribute('aria-pressed', String(isDark));
    };
    dark.addEventListener('change', () => show(document.documentElement.dataset.theme));
    button.addEventListener('click', () => show(button.getAttribute('aria-pressed') === 'true' ? 'light' : 'dark'));
    show();
}

/** A printed table has all its rows. */
function printing() {
    const set = printed => {
        if (page.printing !== printed) {
            page.printing = printed;
            drawTable();
        }
    };
    matchMedia('print').addEventListener('change', event => set(event.matches));
    addEventListener('beforeprint', () => set(true));
    addEventListener('afterprint', () => set(false));
}

start().catch(failure => {
    byId('heading').textContent = `This page cannot be shown: ${failure.message}`;
    throw failure;
});
