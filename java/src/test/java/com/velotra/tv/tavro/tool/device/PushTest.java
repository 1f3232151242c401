package com.velotra.tv.tavro.tool.device;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.velotra.tv.tavro.tool.ToolProcess.Result;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.StandardOpenOption;
import java.util.Arrays;
import java.util.List;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** ./tavro device push, over a fake adb. */
class PushTest {
    private static final String LIBRARY = "libvelotra_tavro_channellist.so";
    private static final String TMP = "/data/local/tmp/tavro";

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
    void pushTakesTheDeviceBuildOfTheClone() throws IOException {
        Path build = folder.resolve("build/device");
        Files.createDirectories(build.resolve("bin"));
        Files.createDirectories(build.resolve("lib"));
        ElfFile.library(build.resolve("lib").resolve(LIBRARY), "JNI_OnLoad");
        ElfFile.library(build.resolve("bin/tavro-conform"), "main");
        System.setProperty("tavro.root", folder.toString());
        try {
            assertEquals(0, adb.run("push").exit());
        } finally {
            System.clearProperty("tavro.root");
        }
        assertEquals(List.of(LIBRARY, "tavro-conform"), adb.files(TMP));
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
        Path list = adb.storedList(3);
        assertEquals("  note: this is a list file of the workstation; a TV's middleware loads only its own",
                adb.run("push", "--library=" + library, list.toString()).out().lines().toList().get(2));
    }

    // ---- --install and --restore

    private Result install() {
        return adb.run("push", "--install", "--library=" + library);
    }

    @Test
    void installKeepsTheOldLibraryAndRestoreBringsItBack() throws IOException {
        Path target = adb.device("/vendor/lib/" + LIBRARY);
        Files.writeString(target, "old");
        assertEquals(new Result(0, """
                /vendor/lib/%1$s: 280 bytes, mode 644, SHA-256 is equal
                The library that was there before is /vendor/lib/%1$s.before-tavro
                Next: restart the process that loads it, or adb reboot; --restore undoes this.
                """.formatted(LIBRARY), ""), install());
        assertEquals("""
                get-state
                root
                wait-for-device
                shell id -u
                remount
                shell test -e %1$s.before-tavro
                shell test -e %1$s.before-tavro-none
                shell test -e %1$s
                shell cp -p %1$s %3$s.new && mv %3$s.new %3$s || { rm -f %3$s.new; false; }
                push /%2$s %1$s.new
                shell chmod 644 %1$s.new
                shell sha256sum %1$s.new
                shell chown root:root %1$s.new
                shell mv %1$s.new %1$s
                shell restorecon %1$s
                """.formatted("/vendor/lib/" + LIBRARY, LIBRARY, "/vendor/lib/" + LIBRARY + ".before-tavro"),
                adb.calls());
        Files.write(library, new byte[] {0}, StandardOpenOption.APPEND);
        assertEquals(0, install().exit()); // again: what was there before the first one stays saved
        adb.fail("*restorecon*", 1, "SELinux: no label");
        assertEquals(failed("cannot put the earlier library back; run push --restore again: SELinux: no label"),
                adb.run("push", "--restore"));
        adb.file("failing", "");
        assertEquals(new Result(0, "/vendor/lib/" + LIBRARY + ": the earlier library is back\n"
                + "Next: restart the process that loads it, or adb reboot.\n", ""), adb.run("push", "--restore"));
        assertEquals("old", Files.readString(target));
        assertEquals(List.of(LIBRARY), adb.files("/vendor/lib"));
    }

    @Test
    void restoreRemovesALibraryThatWasNotThere() throws IOException {
        assertEquals(failed("nothing to restore: push --install has not changed this device"),
                adb.run("push", "--restore"));
        assertEquals("There was no library before; --restore removes it.",
                install().out().lines().toList().get(1));
        assertEquals(List.of(LIBRARY, LIBRARY + ".before-tavro-none"), adb.files("/vendor/lib"));
        assertEquals(new Result(0, "/vendor/lib/" + LIBRARY + ": removed; there was no library before\n"
                + "Next: restart the process that loads it, or adb reboot.\n", ""), adb.run("push", "--restore"));
        assertEquals(List.of(), adb.files("/vendor/lib"));
    }

    @Test
    void anInstallThatFailsLeavesTheOldLibrary() throws IOException {
        Path target = adb.device("/vendor/lib/" + LIBRARY);
        Files.writeString(target, "old");
        adb.fail("shell cp *", 1, "cp: No space left on device");
        assertEquals(failed("cannot save the installed library; nothing was changed: cp: No space left on device"),
                install());
        adb.fail("push*", 1, "adb: error: device 'X1' not found\n");
        assertEquals(failed("cannot push /" + LIBRARY + " to /vendor/lib/" + LIBRARY + ".new: the device is not "
                + "connected; "
                + "connected: none; the installed library is unchanged"), install());
        adb.fail("shell mv *.new *", 1, "mv: bad");
        assertEquals(failed("cannot rename the copy: mv: bad; the installed library is unchanged"), install());
        assertEquals("old", Files.readString(target));
        assertEquals(List.of(LIBRARY, LIBRARY + ".before-tavro"), adb.files("/vendor/lib"));
        Files.delete(adb.device("/vendor/lib/" + LIBRARY + ".before-tavro"));
        adb.fail("shell restorecon*", 1, "SELinux: no label");
        assertEquals(failed("cannot set the SELinux label of /vendor/lib/" + LIBRARY
                + ": SELinux: no label; the earlier state is back"), install());
        assertEquals("old", Files.readString(target));
        assertEquals(List.of(LIBRARY), adb.files("/vendor/lib"));
    }

    @Test
    void installNeedsRootAndAWritableVendorPartition() throws IOException {
        adb.file("user", "2000\n");
        adb.fail("root", 0, "adbd cannot run as root in production builds\n");
        assertEquals(failed("the device's shell is not root: adbd cannot run as root in production builds; installing "
                + "needs "
                + "a userdebug or eng build. push without --install needs no root"), install());
        adb.file("user", "0\n");
        adb.fail("remount", 1, "remount failed\n");
        assertEquals(failed("cannot make /vendor writable: run adb disable-verity and adb reboot first: remount "
                + "failed"),
                install());
        assertEquals(List.of(), adb.files("/vendor/lib"));
    }
}
