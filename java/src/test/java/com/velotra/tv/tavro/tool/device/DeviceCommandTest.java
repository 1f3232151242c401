package com.velotra.tv.tavro.tool.device;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.velotra.tv.tavro.services.channellist.VltTvChannelInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.tool.ToolProcess;
import com.velotra.tv.tavro.tool.ToolProcess.Result;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Arrays;
import java.util.Map;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** ./tavro device, except log, over a fake adb. */
class DeviceCommandTest {
    private static final String LIBRARY = "libvelotra_tavro_channellist.so";
    private static final String TMP = "/data/local/tmp/tavro";
    private static final String PROPERTY = "vendor.vlt.broadcast.log.level";

    @TempDir
    Path folder;
    private FakeAdb adb;
    private Path library;

    @BeforeEach
    void fakeAdb() throws IOException {
        adb = new FakeAdb(folder);
        library = ElfFile.library(folder.resolve(LIBRARY), "JNI_OnLoad");
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
    void aMissingAdbIsAFailure() throws IOException, InterruptedException {
        assertEquals(failed("cannot run /no/adb: No such file or directory; install the Debian package adb, or name "
                + "the "
                + "program with --adb or $ADB"), ToolProcess.runHere("device", "--adb=/no/adb", "log-level"));
        assertEquals(failed("cannot run /none: No such file or directory; install the Debian package adb, or name the "
                + "program with --adb or $ADB"), ToolProcess.run(folder, Map.of("ADB", "/none"), "device",
                "log-level"));
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

    // ---- push

    @Test
    void pushCopiesChecksAndSaysWhatIsNext() throws IOException {
        Path program = ElfFile.library(folder.resolve("conform"), "main");
        Path data = Files.writeString(folder.resolve("tv list.bin"), "12345");
        Result result = adb.run("push", "--library=" + library, "--program", program.toString(), data.toString());
        assertEquals(new Result(0, """
                %1$s/libvelotra_tavro_channellist.so: 280 bytes, mode 644, SHA-256 is equal
                %1$s/tavro-conform: 274 bytes, mode 755, SHA-256 is equal
                %1$s/tv list.bin: 5 bytes, mode 644, SHA-256 is equal
                Next: ./tavro device conform, or ./tavro device push --install
                """.formatted(TMP), ""), result);
        assertEquals("""
                get-state
                shell mkdir -p %1$s
                push /%2$s %1$s/%2$s
                shell chmod 644 %1$s/%2$s
                shell sha256sum %1$s/%2$s
                push /conform %1$s/tavro-conform
                shell chmod 755 %1$s/tavro-conform
                shell sha256sum %1$s/tavro-conform
                push /tv list.bin %1$s/tv list.bin
                shell chmod 644 '%1$s/tv list.bin'
                shell sha256sum '%1$s/tv list.bin'
                """.formatted(TMP, LIBRARY), adb.calls());
    }

    @Test
    void onlyALibraryForTheDeviceIsPushed() throws IOException {
        String remedy = "; build it with an NDK as docs/porting.md describes, or name another file with --library";
        assertEquals(failed("cannot read /none.so: no such file or folder" + remedy), push(folder.resolve("none.so")));
        assertEquals(failed("/text is not an ELF file" + remedy), push(Files.writeString(folder.resolve("text"), "x")));
        assertEquals(failed("/l is not built for 32-bit ARM: it is for 64 bits and machine 183" + remedy),
                push(ElfFile.write(folder.resolve("l"), 2, 183, "JNI_OnLoad", "libc.so")));
        assertEquals(failed("/l is not built for 32-bit ARM: it is for 32 bits and machine 3" + remedy),
                push(ElfFile.write(folder.resolve("l"), 1, 3, "JNI_OnLoad", "libc.so")));
        assertEquals(failed("/l is built for Linux, not for Android: it needs libc.so.6" + remedy),
                push(ElfFile.write(folder.resolve("l"), 1, ElfFile.ARM, "JNI_OnLoad", "libc.so.6")));
        assertEquals(failed("/l does not export JNI_OnLoad" + remedy),
                push(ElfFile.library(folder.resolve("l"), "JNI_OnUnload")));
        byte[] cut = Files.readAllBytes(library);
        assertEquals(failed("/l is damaged: a table is outside the file" + remedy),
                push(Files.write(folder.resolve("l"), Arrays.copyOf(cut, cut.length - 20))));
        assertEquals(failed("/text is not an ELF file" + remedy.replace("--library", "--program")),
                adb.run("push", "--library=" + library, "--program=" + folder + "/text"));
        assertEquals(failed("cannot read /no.list: no such file, or permission denied"),
                adb.run("push", "--library=" + library, folder + "/no.list"));
        assertEquals("", adb.calls());
    }

    private Result push(Path file) {
        return adb.run("push", "--library=" + file);
    }

    @Test
    void aCopyThatDiffersIsAFailure() throws IOException {
        adb.fail("shell sha256sum*", 127, "sh: sha256sum: not found");
        assertEquals(new Result(0, TMP + "/" + LIBRARY + ": 280 bytes, mode 644, size is equal\n"
                + "Next: build tavro-conform and push again, or ./tavro device push --install\n", ""), push(library));
        adb.fail("push*", 1, "adb: error: failed to copy: No space left on device\n");
        assertEquals(failed("cannot push /" + LIBRARY + " to " + TMP + "/" + LIBRARY
                + ": adb reports: error: failed to copy: No space left on device"), push(library));
        adb.fail("shell chmod*", 0, "");
        Files.writeString(adb.device(TMP + "/" + LIBRARY), "");
        adb.fail("push*", 0, "");
        assertEquals(failed("the copy " + TMP + "/" + LIBRARY + " is not equal: the SHA-256 checksum is "
                + "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855, not " + sha256(library)
                + "; look for free space with adb shell df, and push again"), push(library));
    }

    private static String sha256(Path file) throws IOException {
        Process sum = new ProcessBuilder("sha256sum", file.toString()).start();
        return new String(sum.getInputStream().readAllBytes()).substring(0, 64);
    }

    @Test
    void aListFileOfTheWorkstationIsPushedWithANote() {
        Path list = storedList(3);
        assertEquals("  note: this is a list file of the workstation; a TV's middleware loads only its own",
                adb.run("push", "--library=" + library, list.toString()).out().lines().toList().get(2));
    }

    // ---- conform

    @Test
    void conformRunsTheChecksAndBringsTheResults() throws IOException {
        Files.createDirectories(adb.device(TMP));
        Path program = adb.device(TMP + "/tavro-conform");
        Files.writeString(program, "#!/bin/sh\necho \"ok 1 - $*\"; echo '<x/>' >conform.xml; exit 1\n");
        program.toFile().setExecutable(true);
        String reports = "--format=tap --format=junit --output=" + TMP + "/conform.xml";
        assertEquals(new Result(1, "ok 1 - " + reports + " --filter=svl.*\n", "Results: /r.xml\n"),
                adb.run("conform", "--junit=" + folder + "/r.xml", "--", "--filter=svl.*"));
        assertEquals("<x/>\n", Files.readString(folder.resolve("r.xml")));
        assertEquals("""
                get-state
                shell test -e %1$s/tavro-conform
                shell rm -f %1$s/conform.xml
                shell cd %1$s && ./tavro-conform %2$s '--filter=svl.*'
                pull %1$s/conform.xml /r.xml
                """.formatted(TMP, reports), adb.calls());
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

    /** A list file with one service, as the library stores it. */
    private Path storedList(int id) {
        VltTvChannelList services = VltTvChannelList.getInstance();
        services.open(id);
        services.add(id, new VltTvChannelInfoBase().setBroadcastType(2).setServiceName("One").setServiceId(101));
        Path file = folder.resolve("stored.list");
        services.store(id, file.toString());
        return file;
    }

    @Test
    void aPulledListFileIsShownAndCompared() throws IOException {
        Files.copy(storedList(4), adb.device("/data/a.list"));
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
