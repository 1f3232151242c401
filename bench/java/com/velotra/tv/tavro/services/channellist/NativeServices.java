package com.velotra.tv.tavro.services.channellist;

/** Calls the natives of the service lists directly, without the Java layer's checks. */
public final class NativeServices {
    private static final VltTvChannelList LISTS = VltTvChannelList.getInstance();

    private NativeServices() {}

    /** Opens a list; creates it if it does not exist. */
    public static void open(int listId) {
        check(LISTS.native_open(listId) == 0, "open");
    }

    /** Adds a service. */
    public static void add(int listId, VltTvChannelInfoBase service) {
        check(!LISTS.nativeAdd(listId, service).isEmpty(), "add to");
    }

    /** Returns the bytes of a record. */
    public static byte[] read(String identifier) {
        return LISTS.native_getSvlInfo(identifier);
    }

    /** Returns the bytes of all records of a list. */
    public static byte[] readAll(int listId) {
        return LISTS.native_getSvlInfoList(listId);
    }

    /** Writes a list to a file. */
    public static void store(int listId, String path) {
        check(LISTS.native_store(listId, path) == 0, "store");
    }

    private static void check(boolean done, String what) {
        if (!done) {
            throw new IllegalStateException("cannot " + what + " a service list; the log says why");
        }
    }
}
