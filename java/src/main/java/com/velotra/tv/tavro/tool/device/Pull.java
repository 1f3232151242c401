package com.velotra.tv.tavro.tool.device;

import com.velotra.tv.tavro.services.channellist.Printable;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.storage.ListFile;
import java.nio.file.Files;
import java.nio.file.Path;

/** Copies a file of a device to this machine. */
public final class Pull {
    private final Adb adb;

    public Pull(Adb adb) {
        this.adb = adb;
    }

    /**
     * Copies the file.
     *
     * @param local file or folder of this machine; an existing file is refused
     * @return the copy
     */
    public Path run(String remote, Path local) {
        Path name = Path.of(remote).getFileName();
        if (name == null) {
            throw new Failure("'" + Printable.of(remote) + "' is not the path of a file");
        }
        Path file = Files.isDirectory(local) ? local.resolve(name.toString()) : local;
        if (Files.exists(file)) {
            throw new Failure(Printable.of(file.toString()) + " exists already; remove it, or name another file");
        }
        adb.needDevice();
        adb.pull(remote, file);
        System.out.println(Printable.of(file + ": " + file.toFile().length() + " bytes from " + remote));
        return file;
    }

    /** Checks that the copy is a list file, which show and diff can read. */
    public static void needListFile(Path file, String self) {
        if (!ListFile.isOne(file)) {
            throw new Failure(Printable.of(file.toString()) + " is not a list file of the workstation: a TV's "
                    + "middleware "
                    + "has a format of its own. If it is records one after the other, use " + self
                    + " dump FILE --kind KIND; to read its lists otherwise, dump the byte arrays that the natives "
                    + "return");
        }
    }
}
