// The search: words that must occur, and conditions on fields such as lcn=5 or freq>11000000.

// Short names of fields: the first one that the kind has.
const ALIASES = {
    freq: ['frequency'],
    pol: ['sat_polarization', 'polarization'],
    sr: ['sat_symbol_rate', 'cab_symbol_rate'],
    sid: ['service_id'],
    tsid: ['transport_stream_id'],
    onid: ['original_network_id'],
    nid: ['network_id'],
    pos: ['orbital_position'],
    record: ['record_id'],
};

const CONDITION = /^([a-z][a-z0-9_-]*)(!=|<=|>=|=|<|>)(.*)$/i;

const COMPARE = {
    '=': (a, b) => a === b,
    '!=': (a, b) => a !== b,
    '<': (a, b) => a < b,
    '>': (a, b) => a > b,
    '<=': (a, b) => a <= b,
    '>=': (a, b) => a >= b,
};

/** The words of a search; quotes keep spaces. */
function words(text) {
    return [...text.matchAll(/((?:[^\s"]|"[^"]*"?)+)/g)].map(match => match[1].replaceAll('"', ''));
}

function fieldsNamed(kind, name) {
    const wanted = name.toLowerCase().replaceAll('-', '_');
    return (ALIASES[wanted] ?? [wanted]).map(field => kind.byName.get(field)).filter(field => field);
}

/** One condition on one field. A text equals a value that one of its words begins with. */
function condition(fields, operator, value) {
    const number = value.trim() === '' ? NaN : Number(value);
    const lower = value.toLowerCase();
    return record => fields.some(field => {
        if (!record.has(field)) {
            return false;
        }
        if (field.style !== 'TEXT' && !Number.isNaN(number)) {
            return COMPARE[operator](record.number(field), number);
        }
        const text = record.text(field).toLowerCase();
        const equal = field.style === 'TEXT'
            ? text === lower : lower !== '' && text.split(/[^a-z0-9]+/).some(word => word.startsWith(lower));
        return operator === '=' ? equal : operator === '!=' ? !equal : COMPARE[operator](text, lower);
    });
}

/** Compiles a search to {test(row), problem}. {@code textOf} returns the text of a row in which words are searched. */
function compile(kind, text, textOf) {
    const tests = [];
    let problem;
    for (const word of words(text)) {
        const [, name, operator, value] = CONDITION.exec(word) ?? [];
        if (!name) {
            const lower = word.toLowerCase();
            tests.push(row => textOf(row).includes(lower));
            continue;
        }
        const fields = fieldsNamed(kind, name);
        if (fields.length === 0) {
            problem = `${capital(kind.noun)} records have no field “${name}”.`;
        }
        const test = condition(fields, operator, value);
        tests.push(row => test(row.record));
    }
    return {test: row => tests.every(test => test(row)), problem};
}
