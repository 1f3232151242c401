// The table of a kind: one page of its rows. It is a grid: one stop for the Tab key, arrow keys move among the cells.

const PAGE_SIZE = 100;
const collator = new Intl.Collator('en', {numeric: true, sensitivity: 'base'});

class Table {
    constructor(kind, rows, compared) {
        this.kind = kind;
        this.rows = rows;
        this.compared = compared;
        this.standard = COLUMNS[kind.number](kind);
        this.names = new Set(this.standard.map(column => column.name));
        this.columns = this.standard;
        this.filter = {text: '', list: '', state: ''};
        this.sort = {name: null, down: false};
        this.page = 0;
        this.texts = new Map();
    }

    /** Shows the standard columns among {@code names}, and the fields among them. */
    choose(names) {
        this.names = names;
        const more = this.kind.fields.map(field => field.name)
            .filter(name => names.has(name) && !this.standard.some(column => column.name === name));
        this.columns = [...this.standard.filter(column => names.has(column.name) || column.main),
            ...more.map(name => fieldColumn(this.kind, name))];
    }

    /** What words are searched in: all standard columns. */
    text(row) {
        let text = this.texts.get(row);
        if (text === undefined) {
            text = this.standard.map(column => String(column.value(row.record))).join('\n').toLowerCase()
                + `\n${row.record.name}`;
            this.texts.set(row, text);
        }
        return text;
    }

    /** Finds the rows to show. Returns what is wrong with the search, if anything. */
    find() {
        const {text, list, state} = this.filter;
        const query = compile(this.kind, text, row => this.text(row));
        this.found = this.rows.filter(row => (list === '' || row.record.list.id === Number(list))
            && (state === '' || row.state === state || state === 'different' && row.state !== SAME)
            && query.test(row));
        const column = this.columns.find(column => column.name === this.sort.name);
        if (column) {
            const keys = new Map(this.found.map(row => [row, column.value(row.record)]));
            const sign = this.sort.down ? -1 : 1;
            // Rows without a value come last either way.
            this.found.sort((a, b) => {
                const [x, y] = [keys.get(a), keys.get(b)];
                return x === '' || y === '' ? (x === '') - (y === '')
                    : sign * (typeof x === 'number' && typeof y === 'number' ? x - y
                        : collator.compare(String(x), String(y)));
            });
        }
        this.page = 0;
        return query.problem;
    }

    get pages() {
        return Math.max(1, Math.ceil(this.found.length / PAGE_SIZE));
    }

    /** Turns to the page with a row. Returns whether the table has it. */
    turnTo(row) {
        const at = this.found.indexOf(row);
        if (at >= 0) {
            this.page = Math.floor(at / PAGE_SIZE);
        }
        return at >= 0;
    }

    /** Makes the table. {@code all}: with all rows, for printing. */
    element(selected, onSort, all = false) {
        const shown = all ? this.found : this.found.slice(this.page * PAGE_SIZE, (this.page + 1) * PAGE_SIZE);
        const offset = all ? 0 : this.page * PAGE_SIZE;
        const body = shown.map((row, i) => this.row(row, offset + i, row === selected));
        const table = el('table', {role: 'grid', 'aria-labelledby': 'heading', 'aria-rowcount': this.found.length + 1},
            el('thead', null, this.head(onSort)), el('tbody', null, body));
        navigate(table);
        return table;
    }

    head(onSort) {
        const mark = this.compared
            ? el('th', {scope: 'col', class: 'state narrow'}, el('span', {class: 'unseen'}, 'difference')) : null;
        return el('tr', {'aria-rowindex': 1}, mark, this.columns.map(column => {
            const sorted = this.sort.name === column.name;
            return el('th', {
                scope: 'col', class: classes(column),
                'aria-sort': sorted ? (this.sort.down ? 'descending' : 'ascending') : 'none',
            }, el('button', {type: 'button', 'data-column': column.name, onclick: () => onSort(column.name)},
                capital(column.label), el('span', {class: 'arrow', 'aria-hidden': 'true'},
                    sorted ? (this.sort.down ? '▼' : '▲') : '')));
        }));
    }

    row(row, index, selected) {
        const state = STATES[row.state];
        const mark = this.compared
            ? el('td', {class: 'state narrow', title: state.label}, el('span', {'aria-hidden': 'true'}, state.mark),
                el('span', {class: 'unseen'}, state.label)) : null;
        const line = el('tr', {'aria-rowindex': index + 2, class: row.state, 'aria-selected': String(selected)}, mark,
            this.columns.map(column => el(column.main ? 'th' : 'td',
                {class: classes(column), scope: column.main ? 'row' : null},
                column.main ? el('a', {href: row.href}, column.cell(row.record)) : column.cell(row.record))));
        line.addEventListener('click', event => {
            if (!event.target.closest('a') && !getSelection().toString()) {
                location.hash = row.href;
            }
        });
        return line;
    }
}

const classes = column => [column.right ? 'right' : '', column.narrow ? 'narrow' : ''].join(' ').trim() || null;

/** Arrow keys in a grid. The part of a cell that has the focus is its link or button, or else the cell. */
function navigate(table) {
    const part = cell => cell.querySelector('a, button') ?? cell;
    for (const focusable of table.querySelectorAll('a, button, td:not(:has(a)), th:not(:has(a, button))')) {
        focusable.tabIndex = -1;
    }
    let current = part(table.querySelector('[aria-selected=true] th') ?? table.querySelector('tbody th')
        ?? table.querySelector('th'));
    current.tabIndex = 0;
    table.addEventListener('focusin', event => {
        current.tabIndex = -1;
        current = event.target;
        current.tabIndex = 0;
    });
    table.addEventListener('keydown', event => {
        const cell = event.target.closest('td, th');
        if (!cell || event.altKey || event.metaKey) {
            return;
        }
        const line = cell.parentElement;
        const seen = [...line.cells].filter(cell => cell.offsetParent !== null);
        const column = seen.indexOf(cell);
        const [x, y] = {
            ArrowRight: [column + 1, 0], ArrowLeft: [column - 1, 0], ArrowDown: [column, 1], ArrowUp: [column, -1],
            Home: [0, event.ctrlKey ? -Infinity : 0], End: [Infinity, event.ctrlKey ? Infinity : 0],
        }[event.key] ?? [];
        if (x === undefined) {
            return;
        }
        event.preventDefault();
        const clamp = (value, length) => Math.max(0, Math.min(length - 1, value));
        const to = table.rows[clamp(line.rowIndex + y, table.rows.length)];
        const cells = [...to.cells].filter(cell => cell.offsetParent !== null);
        part(cells[clamp(x, cells.length)]).focus();
    });
}
