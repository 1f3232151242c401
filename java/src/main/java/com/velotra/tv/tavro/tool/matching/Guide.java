package com.velotra.tv.tavro.tool.matching;

import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.records.RecordList;

/** The entries, each for one record, from which a list takes order, numbers, names and flags. */
public interface Guide {
    /** Returns the number of entries. */
    int size();

    /** Pairs the records of a list with the entries. */
    Pairing pair(Side list);

    /** Writes a part of an entry into the bytes of a record, unless the entry does not have the part. */
    void apply(Part part, int entry, Record record, byte[] bytes);

    /** Returns a guide of the records of another list. */
    static Guide of(Side other) {
        RecordList records = other.list();
        return new Guide() {
            @Override
            public int size() {
                return records.size();
            }

            @Override
            public Pairing pair(Side list) {
                return Matching.of(list, other);
            }

            @Override
            public void apply(Part part, int entry, Record record, byte[] bytes) {
                part.of(records.kind()).forEach(bits -> bits.copy(records.get(entry), record, bytes));
            }
        };
    }
}
