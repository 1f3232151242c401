package com.velotra.tv.tavro.tool.records;

import java.io.ByteArrayOutputStream;
import java.util.AbstractList;
import java.util.List;
import java.util.Optional;

/**
 * The records of one list in list order, in memory: a list of a storage directory, the content of a list file, or what
 * a command is about to store. Immutable.
 */
public final class RecordList extends AbstractList<Record> {
    private final Kind kind;
    private final int listId;
    private final String name;
    private final byte[] bytes;
    private int[] placeOfId; // by record id: index + 1, or 0

    private RecordList(Kind kind, int listId, String name, byte[] bytes) {
        this.kind = kind;
        this.listId = listId;
        this.name = name;
        this.bytes = bytes;
    }

    /** Views consecutive records, which must not change afterwards. {@code name} is the storage name of the list. */
    public static RecordList of(Kind kind, int listId, String name, byte[] records) {
        if (records.length % kind.recordBytes() != 0) {
            throw new IllegalArgumentException(records.length + " bytes is not a whole number of "
                    + kind.recordBytes() + "-byte " + kind.noun() + " records");
        }
        return new RecordList(kind, listId, name, records);
    }

    /** Copies records into a list. */
    public static RecordList of(Kind kind, int listId, String name, List<Record> records) {
        ByteArrayOutputStream all = new ByteArrayOutputStream(records.size() * kind.recordBytes());
        records.forEach(record -> all.writeBytes(record.bytes()));
        return new RecordList(kind, listId, name, all.toByteArray());
    }

    public Kind kind() {
        return kind;
    }

    public int listId() {
        return listId;
    }

    /** Returns the name under which the storage has the list. */
    public String name() {
        return name;
    }

    @Override
    public int size() {
        return bytes.length / kind.recordBytes();
    }

    @Override
    public Record get(int index) {
        if (index < 0 || index >= size()) {
            throw new IndexOutOfBoundsException(index);
        }
        return Record.view(kind, bytes, index * kind.recordBytes());
    }

    /** Returns the record with that id. */
    public Optional<Record> byId(int recordId) {
        if (placeOfId == null) {
            placeOfId = new int[1 << 16];
            for (int i = size() - 1; i >= 0; i--) {
                placeOfId[get(i).id()] = i + 1;
            }
        }
        int place = recordId < 0 || recordId >= placeOfId.length ? 0 : placeOfId[recordId];
        return place == 0 ? Optional.empty() : Optional.of(get(place - 1));
    }

    /** Returns the bytes of all records, in list order. */
    public byte[] bytes() {
        return bytes.clone();
    }
}
