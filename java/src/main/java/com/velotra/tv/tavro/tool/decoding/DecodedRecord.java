package com.velotra.tv.tavro.tool.decoding;

import com.velotra.tv.tavro.services.channellist.Printable;
import com.velotra.tv.tavro.tool.listing.Titles;
import com.velotra.tv.tavro.tool.matching.Companions;
import com.velotra.tv.tavro.tool.matching.Reference;
import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Layout;
import com.velotra.tv.tavro.tool.records.Record;
import java.util.Optional;

/** A record with the text of its values. References are followed to the name of the record that they lead to. */
public final class DecodedRecord {
    private final Record record;
    private final Optional<Companions> companions;

    private DecodedRecord(Record record, Optional<Companions> companions) {
        this.record = record;
        this.companions = companions;
    }

    /** Decodes a record alone. */
    public static DecodedRecord of(Record record) {
        return new DecodedRecord(record, Optional.empty());
    }

    /** Decodes a record, and looks up the records to which it refers. */
    public static DecodedRecord of(Record record, Companions companions) {
        return new DecodedRecord(record, Optional.of(companions));
    }

    Record record() {
        return record;
    }

    Layout layout() {
        return Layout.of(record.kind());
    }

    /** Returns the value of a field for people; for a reference, also what it leads to. */
    String text(Field field) {
        String text = field.describe(record);
        for (Reference reference : Reference.of(record.kind())) {
            if (companions.isPresent() && field == reference.record() && reference.list().number(record) != 0) {
                return text + " (" + target(reference, companions.get()) + ")";
            }
        }
        return text;
    }

    private String target(Reference reference, Companions lists) {
        String id = reference.list().format(record) + "," + reference.record().format(record);
        Optional<Record> target = lists.find(reference, record);
        return id + target.map(found -> " \"" + Printable.of(Titles.of(found)) + '"').orElse(" does not exist");
    }
}
