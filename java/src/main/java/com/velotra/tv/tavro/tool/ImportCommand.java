package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.tool.importing.Importer;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.input.ImportReport;
import com.velotra.tv.tavro.tool.storage.Access;
import com.velotra.tv.tavro.tool.storage.Snapshot;
import com.velotra.tv.tavro.tool.storage.Storage;
import com.velotra.tv.tavro.tool.transponders.ListIds;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.concurrent.Callable;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Option;
import picocli.CommandLine.Parameters;

/** ./tavro import. */
@Command(
        name = "import",
        description = {
            "Imports services, transport streams, networks and satellites from files into lists. The content of a "
                + "file decides what it is: a DVBv5 table (transponders or services), a one-line scan table, or "
                + "one of channels.conf, sources.conf and diseqc.conf in the form of Debian's vdr.",
            "",
            "A record that is already in its list is updated, so a file can be imported again. Satellite "
                + "transponders refer to the satellite at their position, whether imported now or earlier. The "
                + "position comes from channels.conf or from the end of the file's name, as in Astra-19.2E."},
        footer = {"", "Examples: ./tavro import sources.conf diseqc.conf dvb-s",
            "          ./tavro import --list 1 channels.conf",
            "          ./tavro list 13 --kind satellites"})
final class ImportCommand implements Callable<Integer> {
    @Mixin
    private HelpOption help;

    @Parameters(paramLabel = "FILE", arity = "1..*",
            description = "A file, a folder of files, a pipe, or - for standard input.")
    private List<Path> paths = new ArrayList<>();

    @Option(names = "--list", paramLabel = "ID", defaultValue = "11", converter = Converters.FirstList.class,
            description = "First list id (default ${DEFAULT-VALUE}): terrestrial services and streams go to ID, "
                    + "cable to ID+1, satellites with their services and streams to ID+2.")
    private int firstList;

    @Override
    public Integer call() throws Exception {
        Path directory = Storage.directory();
        if (Files.exists(directory)) {
            Preconditions.needDirectory(directory);
        }
        if (Storage.hasLists(directory)) {
            Access.readOnly();
            Snapshot.open(directory).close(); // throws if it cannot be read or is damaged
        }
        Access.readWrite();
        ImportReport report = new ImportReport(System.err);
        Importer importer = Preconditions.withLibrary(() -> new Importer(ListIds.from(firstList), report));
        paths.forEach(importer::read);
        if (!report.anyFile()) {
            throw new Failure("nothing was imported; " + report.whyNothing());
        }
        try {
            importer.store((transponder, id) -> { }, (service, id, stream) -> { });
        } finally {
            report.print(System.out);
        }
        return report.complete() ? ExitCode.DONE : ExitCode.FAILED;
    }
}
