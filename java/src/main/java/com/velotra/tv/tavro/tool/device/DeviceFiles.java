package com.velotra.tv.tavro.tool.device;

import com.velotra.tv.tavro.services.channellist.Printable;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.input.Source;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.security.MessageDigest;
import java.security.NoSuchAlgorithmException;
import java.util.HexFormat;

/** Copies files to a device and checks the copies. */
final class DeviceFiles {
    private final Adb adb;

    DeviceFiles(Adb adb) {
        this.adb = adb;
    }

    /** Copies a file, sets its mode and checks that the copy is equal. Returns how it was checked. */
    String push(Path file, String remote, String mode) {
        adb.push(file, remote);
        adb.need("cannot set the mode of " + remote, "chmod", mode, remote);
        return verify(file, remote);
    }

    /** Returns whether a file exists on the device. */
    boolean exists(String remote) {
        Adb.Reply reply = adb.shell("test", "-e", remote);
        if (!reply.succeeded() && !reply.err().isBlank()) {
            throw adb.failed("cannot look for " + remote, reply);
        }
        return reply.succeeded();
    }

    private String verify(Path file, String remote) {
        Adb.Reply sum = adb.shell("sha256sum", remote);
        if (sum.succeeded()) {
            compare(remote, "the SHA-256 checksum", sha256(file), sum.out().strip().replaceFirst("\\s.*", ""));
            return "SHA-256 is equal";
        }
        // Before Android 6 there is no sha256sum.
        compare(remote, "the size", size(file), adb.need("cannot check " + remote, "stat", "-c", "%s", remote));
        return "size is equal";
    }

    private static void compare(String remote, String what, String expected, String found) {
        if (!expected.equals(found)) {
            throw new Failure("the copy " + remote + " is not equal: " + what + " is " + Printable.of(found) + ", not "
                    + expected + "; look for free space with adb shell df, and push again");
        }
    }

    private static String size(Path file) {
        try {
            return String.valueOf(Files.size(file));
        } catch (IOException e) {
            throw new Failure("cannot read " + Printable.of(file.toString()) + ": " + Source.reason(e));
        }
    }

    private static String sha256(Path file) {
        try {
            return HexFormat.of().formatHex(MessageDigest.getInstance("SHA-256").digest(Files.readAllBytes(file)));
        } catch (IOException e) {
            throw new Failure("cannot read " + Printable.of(file.toString()) + ": " + Source.reason(e));
        } catch (NoSuchAlgorithmException e) {
            throw new IllegalStateException(e); // every Java has it
        }
    }
}
