// The data of the page: kinds, lists and records as the storage has them.

const SERVICES = 0;
const STREAMS = 1;
const NETWORKS = 2;
const SATELLITES = 3;

/** One list: its bytes, and what the values in them mean. */
class List {
    constructor(json, kind, side) {
        Object.assign(this, json, {kind, side});
        this.kindNumber = json.kind;
    }

    async unpack() {
        const text = atob(this.bytes);
        const packed = new Uint8Array(text.length);
        for (let i = 0; i < packed.length; i++) {
            packed[i] = text.charCodeAt(i);
        }
        const stream = new Blob([packed]).stream().pipeThrough(new DecompressionStream('deflate'));
        this.bytes = new Uint8Array(await new Response(stream).arrayBuffer());
        this.view = new DataView(this.bytes.buffer);
    }

    shape(index) {
        return this.shapes[Array.isArray(this.shapeOf) ? this.shapeOf[index] : this.shapeOf];
    }
}

/** One record of a list. */
class Rec {
    constructor(list, index) {
        this.list = list;
        this.index = index;
    }

    get kind() {
        return this.list.kind;
    }

    get id() {
        return this.list.view.getUint16(this.index * this.kind.size + this.kind.idOffset, true);
    }

    /** LIST,RECORD. */
    get name() {
        return `${this.list.id},${this.id}`;
    }

    bytes() {
        return this.list.bytes.subarray(this.index * this.kind.size, (this.index + 1) * this.kind.size);
    }

    /** The fields of this record, by offset. */
    fields() {
        return this.list.shape(this.index).fields.map(index => this.kind.fields[index])
            .sort((a, b) => a.offset - b.offset);
    }

    has(field) {
        const shape = this.list.shape(this.index);
        shape.set ??= new Set(shape.fields);
        return field !== undefined && shape.set.has(field.index);
    }

    /** The value of a number field. */
    number(field) {
        const at = this.index * this.kind.size + field.offset;
        const view = this.list.view;
        switch (field.width) {
        case 1: return view.getUint8(at);
        case 2: return field.style === 'SIGNED' ? view.getInt16(at, true) : view.getUint16(at, true);
        default: return view.getUint32(at, true);
        }
    }

    /** The value of a field for people. */
    text(field) {
        if (field.style === 'TEXT') {
            const texts = this.list.texts[field.index];
            return Array.isArray(texts) ? texts[this.index] : texts;
        }
        const number = this.number(field);
        return this.list.shape(this.index).meanings[field.index]?.[number] ?? String(number);
    }

    /** A number field by its name; nothing if this record does not have it. */
    value(name) {
        const field = this.kind.byName.get(name);
        return this.has(field) ? this.number(field) : undefined;
    }

    /** A field as text by its name; nothing if this record does not have it. */
    describe(name) {
        const field = this.kind.byName.get(name);
        return this.has(field) ? this.text(field) : undefined;
    }

    /** Whether the flag of a Java key is set. */
    flag(key) {
        const {field, mask} = this.kind.flags.get(key);
        return this.has(field) && (this.number(field) & mask) !== 0;
    }

    /** The name of a field's structure member in the header. */
    path(field) {
        return this.list.shape(this.index).paths[field.index] ?? field.path;
    }
}

/** The lists of one storage directory. */
class Side {
    constructor(json, kinds) {
        this.directory = json.directory;
        this.lists = json.lists.map(list => new List(list, kinds[list.kind], this));
        this.places = new Map();
    }

    /** The record with that id; nothing if there is none. */
    find(kind, listId, recordId) {
        const list = this.lists.find(list => list.kind.number === kind && list.id === listId);
        if (!list) {
            return undefined;
        }
        if (!this.places.has(list)) {
            const places = new Map();
            for (let i = list.records - 1; i >= 0; i--) {
                places.set(new Rec(list, i).id, i);
            }
            this.places.set(list, places);
        }
        const index = this.places.get(list).get(recordId);
        return index === undefined ? undefined : new Rec(list, index);
    }
}

/** Reads the data in the page. */
async function load() {
    const element = byId('data');
    const json = JSON.parse(element.textContent);
    element.remove();
    json.kinds.forEach((kind, number) => {
        kind.number = number;
        kind.fields.forEach((field, index) => {
            field.index = index;
        });
        kind.flags = new Map(kind.fields.flatMap(field =>
            Object.entries(field.flags).map(([key, mask]) => [key, {field, mask}])));
        kind.byName = new Map(kind.fields.map(field => [field.name, field]));
    });
    const sides = json.sides.map(side => new Side(side, json.kinds));
    await Promise.all(sides.flatMap(side => side.lists.map(list => list.unpack())));
    return {kinds: json.kinds, sides, pairs: json.pairs};
}
