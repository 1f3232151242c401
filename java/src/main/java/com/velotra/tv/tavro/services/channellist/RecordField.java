package com.velotra.tv.tavro.services.channellist;

/** A named field of a record: where it is, and what it is called when printed. */
public interface RecordField {
    /** How a value is printed. */
    enum Style { NUMBER, HEX, TEXT }

    /** What the field is called. */
    String label();

    /** Bytes from the record's start. */
    int offset();

    /** Bytes; 1, 2 or 4 for numbers. */
    int width();

    /** How the value is printed. */
    Style style();
}
