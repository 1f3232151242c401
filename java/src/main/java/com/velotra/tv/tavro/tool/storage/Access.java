package com.velotra.tv.tavro.tool.storage;

/**
 * Whether the library may write to the storage directory. Every command chooses at its start, before it uses the
 * library or a {@link Snapshot} of this directory. Lists that are open stay open.
 */
public final class Access {
    private static boolean reading;

    private Access() {}

    /**
     * Lets the library only read, from now on. It opens no file of the storage directory for writing and creates none;
     * changes and write locks fail. It sees the lists as they are at its next read, until this is called again.
     *
     * @throws com.velotra.tv.tavro.tool.input.Failure if the library cannot be loaded
     */
    public static void readOnly() {
        ToolLibrary.load();
        ToolLibrary.setReadOnly(true);
        reading = true;
    }

    /**
     * Lets the library read and write, from now on, unless TAVRO_READ_ONLY forbids it.
     *
     * @throws com.velotra.tv.tavro.tool.input.Failure if the library cannot be loaded
     * @throws IllegalStateException if a snapshot of the storage directory is open, which would keep the library from
     *     writing
     */
    public static void readWrite() {
        if (Snapshot.isOpenFor(Storage.directory())) {
            throw new IllegalStateException("close the snapshots of " + Storage.directory() + " first");
        }
        end();
    }

    /** Ends the access of a command that only reads: this process no longer keeps the state that it has seen. */
    public static void end() {
        if (reading) {
            ToolLibrary.setReadOnly(false);
            reading = false;
        }
    }
}
