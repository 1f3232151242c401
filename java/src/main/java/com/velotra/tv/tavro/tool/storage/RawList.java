package com.velotra.tv.tavro.tool.storage;

/**
 * A list, as the natives of {@link ToolLibrary} return it.
 *
 * @param kind the number of its kind
 * @param name the bytes of its storage name, in UTF-8
 * @param records the number of its records
 * @param version its version; 0 if it was read with its bytes
 * @param changed when it was last changed, in milliseconds since 1970 (UTC); negative if that is not known
 * @param bytes the bytes of its records in list order; null if they were not read
 */
record RawList(int kind, int listId, byte[] name, int records, long version, long changed, byte[] bytes) {}
