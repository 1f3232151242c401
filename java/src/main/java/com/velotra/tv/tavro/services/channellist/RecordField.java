package com.velotra.tv.tavro.services.channellist;

/**
 * A named field of a record: where it is, and what it is called when printed. The enums of fields, such as
 * {@link ServiceField}, are generated from the structures of the native side when the project is built.
 */
public interface RecordField {
    /** How a value is read and printed. Only {@code SIGNED} numbers can be negative. */
    enum Style {
        /** An unsigned number. */
        NUMBER,
        /** A signed number. */
        SIGNED,
        /** An unsigned number, printed in hexadecimal. */
        HEX,
        /** A text that ends at a NUL or at the end of the field. */
        TEXT
    }

    /** Name of the field for people. */
    String label();

    /** Bytes from the record's start. */
    int offset();

    /** Bytes; 1, 2 or 4 for numbers. */
    int width();

    /** How the value is printed. */
    Style style();
}
