package com.velotra.tv.tavro.services.channellist;

import java.util.Arrays;
import java.util.List;

/**
 * Control of the scripted platform, which must have been chosen when the virtual machine started (LD_LIBRARY_PATH).
 *
 * <p>The journal holds what the library asked of the platform, one text a call: {@code x_svl_get_rec(0x10001, 17)} for
 * middleware calls (handle = kind &lt;&lt; 16 | list id, services being kind 1) and {@code log 3 TAG: TEXT} for log
 * lines, with {@code -} for a null tag.
 */
final class Script {
    static {
        System.loadLibrary("tavro_script_jni");
    }

    private Script() {}

    /** Clears the journal, the script and the properties. */
    static native void reset();

    /** Gives the next call of that name a status. */
    static void answer(String call, int status) {
        answer0(call, status, false, 0, null);
    }

    /** Gives the next call of that name a status and an out value: a handle, record id, count or channel id. */
    static void answer(String call, int status, int value) {
        answer0(call, status, true, value, null);
    }

    /** Makes the next call of that name succeed with an out record. */
    static void answer(String call, byte[] record) {
        answer0(call, 0, false, 0, record);
    }

    /** Gives every call of that name a status and an out value. */
    static void always(String call, int status, int value) {
        always0(call, status, true, value, null);
    }

    /** Makes every call of that name succeed with an out record. */
    static void always(String call, byte[] record) {
        always0(call, 0, false, 0, record);
    }

    /** The journal. */
    static native String[] lines();

    /** The journal's entries that contain a text. */
    static List<String> linesWith(String part) {
        return Arrays.stream(lines()).filter(line -> line.contains(part)).toList();
    }

    /** The record that the last add or update handed over. */
    static byte[] lastRecord() {
        String[] lines = lines();
        for (int i = lines.length - 1; i >= 0; i--) {
            if (lines[i].contains(", record")) {
                return record(i);
            }
        }
        throw new AssertionError("no record was handed over: " + List.of(lines));
    }

    /** The record that the call at a position of the journal handed over. */
    static native byte[] record(int index);

    /** Begins to count handles anew. */
    static native void forgetHandles();

    /** The handles that are open, in ascending order; each as often as it is open. */
    static native int[] openHandles();

    /** Opens the log gate from a level on, as in {@code "d"}. */
    static void logLevel(String level) {
        setProperty("vendor.vlt.broadcast.log.level", level);
    }

    /**
     * Runs something in a copy of this process, which may end it. Returns all that it printed, and as the last line
     * {@code exit N} or {@code signal N}. The copy has a single thread, so it must do little.
     */
    static native String inACopy(Runnable runnable);

    private static native void answer0(String call, int status, boolean hasValue, int value, byte[] record);

    private static native void always0(String call, int status, boolean hasValue, int value, byte[] record);

    private static native void setProperty(String name, String value);
}
