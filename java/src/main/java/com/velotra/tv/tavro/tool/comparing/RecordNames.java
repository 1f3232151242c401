package com.velotra.tv.tavro.tool.comparing;

import com.velotra.tv.tavro.services.channellist.Printable;
import com.velotra.tv.tavro.tool.listing.Titles;
import com.velotra.tv.tavro.tool.records.Layout;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.records.RecordList;

/** Names of records in texts for people. */
public final class RecordNames {
    private RecordNames() {}

    /** Returns the identifier of a record: LIST,RECORD, or the record id alone if it is not of a list. */
    public static String id(RecordList list, Record record) {
        return (list.listId() == 0 ? "" : list.listId() + ",") + record.id();
    }

    /** Returns the identifier of a record and its name, or what stands for the name. */
    public static String of(RecordList list, Record record) {
        String name = name(record);
        return id(list, record) + " " + (name.isEmpty() ? Titles.of(record) : '"' + Printable.of(name) + '"');
    }

    /** Returns the name of a record as it is stored. */
    public static String name(Record record) {
        return Layout.of(record.kind()).field("name").orElseThrow().format(record);
    }
}
