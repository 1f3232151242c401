package com.velotra.tv.tavro.tool.comparing;

import com.velotra.tv.tavro.services.channellist.Printable;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Layout;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.records.RecordList;

/** How records are called in texts for people. */
public final class Titles {
    private Titles() {}

    /** Returns the identifier of a record: LIST,RECORD, or the record id alone if it is not of a list. */
    public static String id(RecordList list, Record record) {
        return (list.listId() == 0 ? "" : list.listId() + ",") + record.id();
    }

    /** Returns the identifier of a record and its name, which is the frequency for a stream without a name. */
    public static String of(RecordList list, Record record) {
        String name = name(record);
        String text = name.isEmpty() && record.kind() == Kind.STREAMS
                ? "at " + value(record, "frequency")
                : '"' + Printable.of(name) + '"';
        return id(list, record) + " " + text;
    }

    /** Returns the name of a record as it is stored. */
    public static String name(Record record) {
        return value(record, "name");
    }

    private static String value(Record record, String field) {
        return Layout.of(record.kind()).field(field).orElseThrow().format(record);
    }
}
