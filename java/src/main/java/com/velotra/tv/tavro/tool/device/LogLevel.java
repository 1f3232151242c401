package com.velotra.tv.tavro.tool.device;

import com.velotra.tv.tavro.services.channellist.Printable;
import com.velotra.tv.tavro.tool.input.Failure;
import java.util.Locale;

/** Shows, sets and resets the property that decides which lines the library writes. */
public final class LogLevel {
    static final String PROPERTY = "vendor.vlt.broadcast.log.level";
    static final String FALLBACK = "persist." + PROPERTY;

    private final Adb adb;
    private final String saved;

    /**
     * Creates it.
     *
     * @param directory folder of the device in which the earlier value is kept
     */
    public LogLevel(Adb adb, String directory) {
        this.adb = adb;
        saved = directory + "/log-level.before";
    }

    /** Prints the values and what they let through. */
    public void show() {
        adb.needDevice();
        String value = get(PROPERTY);
        String fallback = get(FALLBACK);
        System.out.println(PROPERTY + " = " + shown(value));
        System.out.println(FALLBACK + " = " + shown(fallback) + (value.isEmpty() || fallback.isEmpty() ? ""
                : " (ignored: the first property is not empty)"));
        System.out.println("The library writes " + written(value.isEmpty() ? fallback : value) + ".");
    }

    /** Sets the property. The value that it had before the first time is kept on the device. */
    public void set(String value) {
        adb.needDevice();
        String before = get(PROPERTY);
        if (!new DeviceFiles(adb).exists(saved)) {
            adb.need("cannot keep the earlier value", "mkdir", "-p", saved.replaceFirst("/[^/]*$", ""));
            // The line feed is not part of the value.
            Adb.Reply reply = adb.run("shell", "echo " + Adb.line(before) + " > " + Adb.line(saved));
            if (!reply.succeeded()) {
                throw adb.failed("cannot keep the earlier value in " + saved, reply);
            }
        }
        change(value);
        show();
    }

    /** Sets the property to the value that it had before. */
    public void reset() {
        adb.needDevice();
        if (!new DeviceFiles(adb).exists(saved)) {
            throw new Failure("nothing to reset: log-level has not changed " + PROPERTY + " on this device");
        }
        change(adb.need("cannot read " + saved, "cat", saved));
        adb.need("cannot remove " + saved, "rm", saved);
        show();
    }

    private void change(String value) {
        Adb.Reply reply = adb.shell("setprop", PROPERTY, value);
        String found = get(PROPERTY);
        if (!found.equals(value)) {
            throw new Failure(PROPERTY + " is " + shown(found) + ", not " + shown(value) + ": the device's shell may "
                    + "not "
                    + "set it (" + (reply.succeeded() ? "setprop reported no error" : reply.reason())
                    + "); run adb root, or see docs/selinux.md");
        }
    }

    private String get(String property) {
        return adb.need("cannot read " + property, "getprop", property);
    }

    private static String shown(String value) {
        return value.isEmpty() ? "(empty)" : Printable.of(value);
    }

    private static String written(String value) {
        return switch (value.isEmpty() ? "" : value.substring(0, 1).toUpperCase(Locale.ROOT)) {
            case "V", "D" -> "all lines";
            case "I", "W", "E" -> "errors only";
            default -> "no lines";
        };
    }
}
