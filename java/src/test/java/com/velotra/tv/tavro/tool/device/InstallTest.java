package com.velotra.tv.tavro.tool.device;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.velotra.tv.tavro.tool.ToolProcess.Result;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.StandardOpenOption;
import java.util.List;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** ./tavro device push --install and --restore, over a fake adb. */
class InstallTest {
    private static final String LIBRARY = "libvelotra_tavro_channellist.so";

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
                shell cp -p %1$s %1$s.before-tavro
                push /%2$s %1$s.new
                shell chmod 644 %1$s.new
                shell sha256sum %1$s.new
                shell chown root:root %1$s.new
                shell mv %1$s.new %1$s
                shell restorecon %1$s
                """.formatted("/vendor/lib/" + LIBRARY, LIBRARY), adb.calls());
        Files.write(library, new byte[] {0}, StandardOpenOption.APPEND);
        assertEquals(0, install().exit()); // again: what was there before the first one stays saved
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
