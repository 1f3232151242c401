package com.velotra.tv.tavro.tool.device;

import com.velotra.tv.tavro.tool.input.Failure;
import java.nio.file.Path;

/**
 * Puts the library into the vendor partition, and the earlier one back. The new file is copied to a name of its own,
 * checked and then renamed, so a copy that fails leaves the old one in place.
 */
public final class Install {
    static final String TARGET = "/vendor/lib/" + Push.LIBRARY;
    static final String BACKUP = TARGET + ".before-tavro";
    static final String NOTHING = TARGET + ".before-tavro-none"; // there was no library
    private static final String NEW = TARGET + ".new";
    private static final String PART = BACKUP + ".new";

    private final Adb adb;
    private final DeviceFiles files;

    public Install(Adb adb) {
        this.adb = adb;
        files = new DeviceFiles(adb);
    }

    /** Installs a library. Only the first installation saves what was there before, so that restore always finds it. */
    public void install(Path library) {
        Elf.needLibrary(library, "JNI_OnLoad", Push.BUILD + "--library");
        becomeWriter();
        boolean first = !files.exists(BACKUP) && !files.exists(NOTHING);
        boolean replaces = files.exists(TARGET);
        if (first && replaces) {
            // Only a whole copy gets the name: one that ended early would be what --restore brings back.
            shell("cannot save the installed library; nothing was changed",
                    "cp -p " + TARGET + " " + PART + " && mv " + PART + " " + BACKUP
                            + " || { rm -f " + PART + "; false; }");
        } else if (first) {
            adb.need("cannot write to /vendor/lib; nothing was changed", "touch", NOTHING);
        }
        String checked;
        try {
            checked = files.push(library, NEW, "644");
            adb.need("cannot set the owner", "chown", "root:root", NEW);
            adb.need("cannot rename the copy", "mv", NEW, TARGET);
        } catch (Failure failure) {
            adb.shell("rm", "-f", NEW);
            throw new Failure(failure.getMessage() + "; the installed library is unchanged");
        }
        try {
            adb.need("cannot set the SELinux label of " + TARGET, "restorecon", TARGET);
        } catch (Failure failure) {
            throw new Failure(failure.getMessage() + "; " + putBack(first));
        }
        System.out.println(TARGET + ": " + library.toFile().length() + " bytes, mode 644, " + checked);
        if (first) {
            System.out.println(replaces ? "The library that was there before is " + BACKUP
                    : "There was no library before; --restore removes it.");
        }
        System.out.println("Next: restart the process that loads it, or adb reboot; --restore undoes this.");
    }

    /** Puts back what was there before the first installation. */
    public void restore() {
        becomeWriter();
        if (files.exists(BACKUP)) {
            // The saved one goes last, so that a restore that failed can be repeated.
            shell("cannot put the earlier library back; run push --restore again", "cp -p " + BACKUP + " " + NEW
                    + " && mv " + NEW + " " + TARGET + " && restorecon " + TARGET + " && rm -f " + BACKUP);
            System.out.println(TARGET + ": the earlier library is back");
        } else if (files.exists(NOTHING)) {
            adb.need("cannot remove " + TARGET, "rm", "-f", TARGET, NOTHING);
            System.out.println(TARGET + ": removed; there was no library before");
        } else {
            throw new Failure("nothing to restore: push --install has not changed this device");
        }
        System.out.println("Next: restart the process that loads it, or adb reboot.");
    }

    /** Runs a line of the device's shell that must succeed. */
    private void shell(String problem, String line) {
        Adb.Reply reply = adb.run("shell", line);
        if (!reply.succeeded()) {
            throw adb.failed(problem, reply);
        }
    }

    private String putBack(boolean first) {
        if (!first) {
            return "the new library is in place; label it, or run push --restore";
        }
        try {
            adb.need("cannot put the earlier state back", "sh", "-c",
                    "if test -e " + BACKUP + "; then mv " + BACKUP + " " + TARGET + "; else rm -f " + TARGET + " "
                    + "" + NOTHING
                            + "; fi");
            return "the earlier state is back";
        } catch (Failure failure) {
            return failure.getMessage() + "; run push --restore when the device is back";
        }
    }

    private void becomeWriter() {
        adb.needDevice();
        Adb.Reply root = adb.run("root"); // exits with 0 even if it refuses
        adb.run("wait-for-device");
        String user = adb.need("cannot ask for the user of the device's shell", "id", "-u");
        if (!user.equals("0")) {
            throw new Failure("the device's shell is not root: " + root.reason()
                    + "; installing needs a userdebug or eng build. push without --install needs no root");
        }
        Adb.Reply remount = adb.run("remount");
        if (!remount.succeeded()) {
            throw adb.failed("cannot make /vendor writable: run adb disable-verity and adb reboot first", remount);
        }
    }
}
