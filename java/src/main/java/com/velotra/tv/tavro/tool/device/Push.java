package com.velotra.tv.tavro.tool.device;

import com.velotra.tv.tavro.services.channellist.Printable;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.storage.ListFile;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;

/** Copies the library, the conformance checks and list files to a folder of a device. */
public final class Push {
    static final String LIBRARY = "libvelotra_tavro_channellist.so";
    static final String PROGRAM = "tavro-conform";
    static final String BUILD = "build it with an NDK as docs/porting.md describes, or name another file with ";

    private final Adb adb;
    private final DeviceFiles files;
    private final String directory;
    private final String self;

    /**
     * Creates it.
     *
     * @param directory folder of the device
     * @param self how the user called the tool
     */
    public Push(Adb adb, String directory, String self) {
        this.adb = adb;
        this.directory = directory;
        this.self = self;
        files = new DeviceFiles(adb);
    }

    /**
     * Copies the files and prints what to do next. Checks them all before the first copy.
     *
     * @param program the conformance checks, or null if there are none
     */
    public void run(Path library, Path program, List<Path> data) {
        Elf.needLibrary(library, "JNI_OnLoad", BUILD + "--library");
        if (program != null) {
            Elf.needProgram(program, BUILD + "--program");
        }
        for (Path file : data) {
            if (!Files.isRegularFile(file) || !Files.isReadable(file)) {
                throw new Failure("cannot read " + Printable.of(file.toString()) + ": no such file, or permission "
                        + "denied");
            }
        }
        adb.needDevice();
        adb.need("cannot create " + directory, "mkdir", "-p", directory);
        push(library, LIBRARY, "644");
        if (program != null) {
            push(program, PROGRAM, "755");
        }
        for (Path file : data) {
            push(file, file.getFileName().toString(), "644");
            if (ListFile.isOne(file)) {
                System.out.println("  note: this is a list file of the workstation; a TV's middleware loads only its "
                        + "own");
            }
        }
        System.out.println(program == null
                ? "Next: build " + PROGRAM + " and push again, or " + self + " device push --install"
                : "Next: " + self + " device conform, or " + self + " device push --install");
    }

    private void push(Path file, String name, String mode) {
        String remote = directory + "/" + name;
        String checked = files.push(file, remote, mode);
        System.out.println(Printable.of(remote) + ": " + file.toFile().length() + " bytes, mode " + mode + ", "
                + "" + checked);
    }
}
