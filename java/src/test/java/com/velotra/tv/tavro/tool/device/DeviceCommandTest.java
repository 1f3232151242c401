package com.velotra.tv.tavro.tool.device;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.tool.ToolProcess;
import com.velotra.tv.tavro.tool.ToolProcess.Result;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** ./tavro device, except log, over a fake adb. */
class DeviceCommandTest {
    private static final String TMP = "/data/local/tmp/tavro";
    private static final String PROPERTY = "vendor.vlt.broadcast.log.level";

    @TempDir
    Path folder;
    private FakeAdb adb;

    @BeforeEach
    void fakeAdb() throws IOException {
        adb = new FakeAdb(folder);
    }

    private static Result failed(String message) {
        return new Result(1, "", "tavro: " + message + "\n");
    }

    private static Result refused(String message) {
        return new Result(2, "", "tavro: device: " + message + "\nSee: ./tavro device --help\n");
    }

    // ---- The device.

    private Result logLevelWhen(String pattern, String message) throws IOException {
        adb.fail(pattern, 1, message);
        return adb.run("log-level");
    }

    @Test
    void aDeviceThatIsNotReadyIsExplained() throws IOException {
        adb.file("devices", "List of devices attached\nX1\tdevice\nX2\tunauthorized\n\n");
        assertEquals(failed("no device is connected: connect one by USB and allow USB debugging in its developer "
                + "options, "
                + "or run /adb connect ADDRESS"), logLevelWhen("get-state", "error: no devices/emulators found\n"));
        assertEquals(failed("several devices are connected: choose one with -s or $ANDROID_SERIAL: X1, X2"),
                logLevelWhen("get-state", "error: more than one device/emulator\n"));
        assertEquals(failed("the device does not allow this computer to debug it: accept the question on its screen, "
                + "or "
                + "remove and insert the cable if there is none"),
                logLevelWhen("get-state", "error: device unauthorized.\nThis adb server's $ADB_VENDOR_KEYS is not "
                        + "set\n"));
        assertEquals(failed("the device is offline: run /adb reconnect, or restart the device"),
                logLevelWhen("get-state", "error: device offline\n"));
        adb.fail("-s X3 get-state", 1, "error: device 'X3' not found\n");
        assertEquals(failed("the device X3 is not connected; connected: X1, X2"), adb.run("-s", "X3", "log-level"));
        assertEquals(failed("adb reports: something else"), logLevelWhen("get-state", "error: something else\n"));
    }

    @Test
    void aMissingAdbIsAFailure() {
        assertEquals(failed("cannot run /no/adb: No such file or directory; install the Debian package adb, or name "
                + "the "
                + "program with --adb or $ADB"), ToolProcess.runHere("device", "--adb=/no/adb", "log-level"));
    }

    @Test
    void badInputIsReported() {
        assertEquals(refused("Missing required parameter: 'ACTION'"), adb.run());
        assertEquals(refused("unknown action 'reboot': use push, conform, log-level, log, pull"), adb.run("reboot"));
        assertEquals(refused("pull: missing argument REMOTE"), adb.run("pull"));
        assertEquals(refused("pull: unexpected argument 'c'"), adb.run("pull", "a", "b", "c"));
        assertEquals(refused("log-level: unexpected argument 'E'"), adb.run("log-level", "D", "E"));
        assertEquals(refused("option '--junit' is for conform, not for push"), adb.run("push", "--junit=x"));
        assertEquals(refused("option '--directory' is for push, conform, log-level, not for log"),
                adb.run("log", "--directory=/data"));
        assertEquals(refused("'tmp' is not a folder of the device: it must begin with /"),
                adb.run("push", "--directory", "tmp"));
        assertEquals(refused("push: --install and --restore take no files"), adb.run("push", "--install", "file"));
        assertEquals(refused("push: --install and --restore exclude each other"),
                adb.run("push", "--install", "--restore"));
        assertEquals(refused("log-level: --reset takes no level"), adb.run("log-level", "--reset", "D"));
        assertEquals(refused("log-level: 'X' is not a level: use V or D for all lines, I, W or E for errors, or off"),
                adb.run("log-level", "X"));
    }

    // ---- conform

    @Test
    void conformRunsTheChecksAndBringsTheResults() throws IOException {
        Files.createDirectories(adb.device(TMP));
        Path program = adb.device(TMP + "/tavro-conform");
        Files.writeString(program,
                "#!/bin/sh\necho \"ok 1 - $LD_LIBRARY_PATH $*\"; echo '<x/>' >conform.xml; exit 1\n");
        program.toFile().setExecutable(true);
        String reports = "--format=tap --format=junit --output=" + TMP + "/conform.xml";
        assertEquals(new Result(1, "ok 1 - /vendor/lib " + reports + " --filter=svl.*\n", "Results: /r.xml\n"),
                adb.run("conform", "--junit=" + folder + "/r.xml", "--", "--filter=svl.*"));
        assertEquals("<x/>\n", Files.readString(folder.resolve("r.xml")));
        assertEquals("""
                get-state
                shell test -e %1$s/tavro-conform
                shell rm -f %1$s/conform.xml
                shell cd %1$s && LD_LIBRARY_PATH=/vendor/lib ./tavro-conform %2$s '--filter=svl.*'
                shell test -e %1$s/conform.xml
                pull %1$s/conform.xml /r.xml
                """.formatted(TMP, reports), adb.calls());
        assertEquals(failed("cannot write /none/r.xml: there is no folder /none"),
                adb.run("conform", "--junit=" + folder + "/none/r.xml"));
        assertEquals("", adb.calls());
        Files.writeString(program, "#!/bin/sh\nexit 0\n");
        assertEquals(failed("tavro-conform wrote no results to " + TMP + "/conform.xml; look at its messages above, "
                + "and leave --junit out if it was not to run the checks"), adb.run("conform", "--junit=r.xml"));
        Files.writeString(program, "#!/bin/sh\nexit 139\n");
        assertEquals(failed("tavro-conform did not run to its end: exit code 139; look at the last check above and at "
                + "adb "
                + "logcat"), adb.run("conform"));
        Files.delete(program);
        assertEquals(failed(TMP + "/tavro-conform is not on the device: run device push first"), adb.run("conform"));
    }

    // ---- log-level

    @Test
    void logLevelShowsWhichPropertyCounts() throws IOException {
        assertEquals(new Result(0, PROPERTY + " = (empty)\npersist." + PROPERTY + " = (empty)\n"
                + "The library writes no lines.\n", ""), adb.run("log-level"));
        adb.property("persist." + PROPERTY, "error");
        assertEquals(new Result(0, PROPERTY + " = (empty)\npersist." + PROPERTY + " = error\n"
                + "The library writes errors only.\n", ""), adb.run("log-level"));
        adb.property(PROPERTY, "verbose");
        assertEquals(new Result(0, PROPERTY + " = verbose\npersist." + PROPERTY
                + " = error (ignored: the first property is not empty)\nThe library writes all lines.\n", ""),
                adb.run("log-level"));
    }

    @Test
    void resetBringsBackTheValueFromBeforeTheFirstChange() throws IOException {
        assertEquals(failed("nothing to reset: log-level has not changed " + PROPERTY + " on this device"),
                adb.run("log-level", "--reset"));
        adb.property(PROPERTY, "e x'y");
        assertEquals("The library writes all lines.", adb.run("log-level", "D").out().lines().toList().get(2));
        assertEquals("The library writes no lines.", adb.run("log-level", "off").out().lines().toList().get(2));
        adb.calls();
        assertEquals(new Result(0, PROPERTY + " = e x'y\npersist." + PROPERTY + " = (empty)\n"
                + "The library writes errors only.\n", ""), adb.run("log-level", "--reset"));
        assertEquals("""
                get-state
                shell test -e %1$s/log-level.before
                shell cat %1$s/log-level.before
                shell setprop %2$s 'e x'\\''y'
                shell getprop %2$s
                shell rm %1$s/log-level.before
                get-state
                shell getprop %2$s
                shell getprop persist.%2$s
                """.formatted(TMP, PROPERTY), adb.calls());
        assertEquals(1, adb.run("log-level", "--reset").exit());
    }

    @Test
    void aLevelThatDoesNotStickIsAFailure() throws IOException {
        adb.file("fixed", "");
        assertEquals(failed(PROPERTY + " is (empty), not D: the device's shell may not set it (setprop reported no "
                + "error); "
                + "run adb root, or see docs/selinux.md"), adb.run("log-level", "D"));
        adb.fail("shell setprop*", 1, "Failed to set property '" + PROPERTY + "' to 'D'.\nSee dmesg\n");
        assertEquals(failed(PROPERTY + " is (empty), not D: the device's shell may not set it (Failed to set property '"
                + PROPERTY + "' to 'D'.; See dmesg); run adb root, or see docs/selinux.md"), adb.run("log-level", "D"));
    }

    // ---- pull

    @Test
    void aPulledListFileIsShownAndCompared() throws IOException {
        Files.copy(adb.storedList(4), adb.device("/data/a.list"));
        Path local = folder.resolve("b.list");
        Result result = adb.run("pull", "/data/a.list", local.toString(), "--show", "--diff=4");
        assertEquals(0, result.exit());
        assertEquals("", result.err());
        assertEquals("get-state\npull /data/a.list /b.list\n", adb.calls());
        assertEquals(ToolProcess.runHere("dump", local.toString()).out().replace(folder.toString(), "")
                + ToolProcess.runHere("diff", "4", local.toString()).out().replace(folder.toString(), ""),
                result.out().replaceFirst("/b.list: \\d+ bytes from /data/a.list\n", ""));
        VltTvChannelList.getInstance().clean(4);
        assertEquals(1, adb.run("pull", "/data/a.list", folder + "/c.list", "--diff=4").exit());
    }

    @Test
    void aFileInAnotherFormatIsExplained() throws IOException {
        Files.write(adb.device("/data/tv.bin"), new byte[552]);
        assertEquals(new Result(1, "/tv.bin: 552 bytes from /data/tv.bin\n", "tavro: /tv.bin is not a list file of the "
                + "workstation: a TV's middleware has a format of its own. If it is records one after the other, use "
                + "./tavro dump FILE --kind KIND; to read its lists otherwise, dump the byte arrays that the natives "
                + "return\n"), adb.run("pull", "/data/tv.bin", folder.toString(), "--show"));
        assertEquals("file /x.bin, 1 service of 552 bytes", adb.run("pull", "/data/tv.bin", folder + "/x.bin", "--show",
                "--kind=services").out().lines().toList().get(1));
    }

    @Test
    void pullOverwritesNothing() throws IOException {
        Files.writeString(adb.device("/data/a"), "new");
        Files.writeString(folder.resolve("a"), "old");
        assertEquals(failed("/a exists already; remove it, or name another file"),
                adb.run("pull", "/data/a", folder.toString()));
        assertEquals(failed("'/' is not the path of a file"), adb.run("pull", "/", folder.toString()));
        assertEquals("", adb.calls());
        adb.fail("pull*", 1, "adb: error: failed to stat remote object '/data/b': No such file or directory\n");
        assertEquals(failed("cannot pull /data/b: adb reports: error: failed to stat remote object '/data/b': No such "
                + "file or "
                + "directory"), adb.run("pull", "/data/b", folder.toString()));
    }
}
