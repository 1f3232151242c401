package com.velotra.tv.tavro.scripted;

import java.util.Arrays;
import java.util.List;
import java.util.Objects;

/**
 * Control of the scripted platform, which stands in for the middleware, the log and the properties of a TV. A test sets
 * what the next calls of the library return, and reads which calls it made:
 *
 * <pre>{@code
 * VltTvChannelList lists = VltTvChannelList.getInstance();
 * Script.reset();
 * Script.answer("x_svl_add_rec", -113); // the middleware has no space left
 * lists.add(1, new VltTvChannelInfoBase().setServiceName("News")); // throws ChannelListException
 * Script.linesWith("x_svl_add_rec"); // [x_svl_add_rec(0x10001, record)]
 * }</pre>
 *
 * <p><b>Calls.</b> Names and arguments of all calls are in docs/platform-functions.md. A call that has no reply set
 * succeeds: it returns 0 and writes no output, with these exceptions: open and create return a handle,
 * {@code kind << 16 | list id} (kind 1 services, 2 transport streams, 3 networks, 4 satellites), {@code qry_rec_id}
 * returns record id 1, and a count is 0. There are no lists and records: only what is set here.
 *
 * <p><b>Journal.</b> One text per call, in the order of the calls: {@code x_svl_get_rec(0x10001, 17)}. Handles and
 * masks are hexadecimal, other numbers decimal, strings in double quotes, and a record is {@code record} or
 * {@code null}. Output arguments are left out. A log line is {@code log PRIORITY TAG: TEXT}, with {@code -} for a null
 * tag; 3 is debug and 6 error.
 *
 * <p><b>Selection.</b> The first use of this class loads the scripted platform. Use it before the first list class, or
 * select the platform for the whole process with {@code ./tavro run --platform=scripted}. Otherwise the library is
 * bound to another platform, and every method throws an {@link UnsatisfiedLinkError} or {@link NoClassDefFoundError}.
 *
 * <p>All methods may be called from any thread, also while another thread is in a call. The replies and the journal
 * belong to the process; lists that the library has opened stay open when the script is reset.
 */
public class Script {
    static {
        System.loadLibrary("tavro_script_jni");
        String reason = select();
        if (reason != null) {
            throw new UnsatisfiedLinkError("cannot use the scripted platform: " + reason
                    + "; use Script before the first list class, or start with ./tavro run --platform=scripted");
        }
    }

    /** Not for use: all methods are static. */
    protected Script() {}

    /** Clears the journal, the replies and the properties. */
    public static native void reset();

    /**
     * Sets the status of the next call of that name. Replies to the same call are used in the order in which they were
     * set, one per call.
     *
     * @throws IllegalArgumentException if the platform has no such call
     */
    public static void answer(String call, int status) {
        answer0(checked(call), status, false, 0, null);
    }

    /** Sets the status and the output value of the next call of that name: a handle, record id, count or channel id. */
    public static void answer(String call, int status, int value) {
        answer0(checked(call), status, true, value, null);
    }

    /**
     * Makes the next call of that name succeed and write {@code record}: the first bytes of its output record, of 552
     * (service), 724 (transport stream), 304 (network) or 412 (satellite). Further bytes are ignored, and those that
     * are missing are not written. The bytes are copied.
     */
    public static void answer(String call, byte[] record) {
        answer0(checked(call), 0, false, 0, Objects.requireNonNull(record, "record"));
    }

    /** Sets the status of every call of that name that has no reply of its own. */
    public static void always(String call, int status) {
        always0(checked(call), status, false, 0, null);
    }

    /** Sets the status and the output value of every call of that name that has no reply of its own. */
    public static void always(String call, int status, int value) {
        always0(checked(call), status, true, value, null);
    }

    /** Makes every call of that name that has no reply of its own succeed and write {@code record}. */
    public static void always(String call, byte[] record) {
        always0(checked(call), 0, false, 0, Objects.requireNonNull(record, "record"));
    }

    /** Returns the journal. */
    public static native String[] lines();

    /** Returns the texts of the journal that contain {@code part}. */
    public static List<String> linesWith(String part) {
        return Arrays.stream(lines()).filter(line -> line.contains(part)).toList();
    }

    /**
     * Returns a copy of the record that the last add or update passed to the middleware.
     *
     * @throws AssertionError if there was none
     */
    public static byte[] lastRecord() {
        String[] lines = lines();
        for (int i = lines.length - 1; i >= 0; i--) {
            if (lines[i].contains(", record")) {
                return record(i);
            }
        }
        throw new AssertionError("no record was handed over: " + List.of(lines));
    }

    /**
     * Returns a copy of the record that the call at a position of the journal, from 0, passed to the middleware; empty
     * if it passed none.
     */
    public static byte[] record(int index) {
        return record0(Objects.checkIndex(index, lines().length));
    }

    /** Returns the handles that are open, in ascending order; each as often as it is open. */
    public static native int[] openHandles();

    /** Forgets the handles that are open. The library goes on using them. */
    public static native void forgetHandles();

    /** Sets a system property. */
    public static void setProperty(String name, String value) {
        setProperty0(Objects.requireNonNull(name, "name"), Objects.requireNonNull(value, "value"));
    }

    /** Sets the property that lets log lines pass: {@code "d"} for all, {@code "e"} for errors, {@code ""} for none. */
    public static void logLevel(String level) {
        setProperty("vendor.vlt.broadcast.log.level", level);
    }

    private static String checked(String call) {
        if (!isCall(Objects.requireNonNull(call, "call"))) {
            throw new IllegalArgumentException("the platform has no call '" + call
                    + "' that can be scripted; docs/platform-functions.md lists all calls");
        }
        return call;
    }

    /** Returns null, or why the scripted platform cannot be used. */
    private static native String select();

    private static native boolean isCall(String name);

    private static native void answer0(String call, int status, boolean hasValue, int value, byte[] record);

    private static native void always0(String call, int status, boolean hasValue, int value, byte[] record);

    private static native byte[] record0(int index);

    private static native void setProperty0(String name, String value);
}
