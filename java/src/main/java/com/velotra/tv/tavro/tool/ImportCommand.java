package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.tool.changes.Change;
import com.velotra.tv.tavro.tool.exchange.ListTablesImport;
import com.velotra.tv.tavro.tool.importing.Importer;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.input.ImportReport;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.storage.Access;
import com.velotra.tv.tavro.tool.storage.Snapshot;
import com.velotra.tv.tavro.tool.storage.Storage;
import com.velotra.tv.tavro.tool.storage.StoredLists;
import com.velotra.tv.tavro.tool.transponders.ListIds;
import java.io.ByteArrayOutputStream;
import java.io.IOException;
import java.io.PrintStream;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.Optional;
import java.util.OptionalInt;
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
                + "file decides what it is: an exported list as CSV or JSON, a DVBv5 table (transponders or "
                + "services), a one-line scan table, or one of channels.conf, sources.conf and diseqc.conf in the "
                + "form of Debian's vdr.",
            "",
            "A record that is already in its list is updated, so a file can be imported again. Satellite "
                + "transponders refer to the satellite at their position, whether imported now or earlier. The "
                + "position comes from channels.conf or from the end of the file's name, as in Astra-19.2E.",
            "",
            "If anything cannot be imported, nothing is, unless --partial is given."},
        footer = {"", "Examples: ./tavro import sources.conf diseqc.conf dvb-s",
            "          ./tavro import --list 1 channels.conf",
            "          ./tavro import --dry-run services.csv"})
final class ImportCommand implements Callable<Integer> {
    private static final int DEFAULT_FIRST_LIST = 11;

    @Mixin
    private HelpOption help;

    @Parameters(paramLabel = "FILE", arity = "1..*",
            description = "A file, a folder of files, a pipe, or - for standard input.")
    private List<Path> paths = new ArrayList<>();

    @Option(names = "--list", paramLabel = "ID", converter = Converters.FirstList.class,
            description = "For CSV and JSON, the list id (default: the one in the file). For other files, the "
                    + "first list id (default 11): terrestrial services and streams go to ID, cable to ID+1, "
                    + "satellites with their services and streams to ID+2.")
    private Integer listId;

    @Option(names = {"-k", "--kind"}, paramLabel = "KIND", converter = Converters.KindName.class,
            description = "Kind of list, for a CSV file without a kind column: services, streams, networks or "
                    + "satellites.")
    private Kind kind;

    @Option(names = "--replace", description = "Remove the records that are missing from a CSV or JSON list.")
    private boolean replace;

    @Option(names = "--partial", description = "If files or lines are malformed, import the rest.")
    private boolean partial;

    @Option(names = {"-n", "--dry-run"}, description = "Change nothing; only print what would be done.")
    private boolean dryRun;

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
        if (dryRun) {
            return printChanges();
        }
        Access.readWrite();
        ImportReport report = new ImportReport(System.err);
        Importer importer = read(report);
        needFiles(report);
        ListTablesImport tables = tables(importer);
        Change.make("import", change -> {
            store(importer, tables, report, change);
            return null;
        });
        return summary(report, tables);
    }

    private Importer read(ImportReport report) {
        ListIds ids = ListIds.from(listId == null ? DEFAULT_FIRST_LIST : listId);
        Importer importer = Preconditions.withLibrary(() -> new Importer(ids, report, Optional.ofNullable(kind)));
        paths.forEach(importer::read);
        return importer;
    }

    private ListTablesImport tables(Importer importer) {
        return new ListTablesImport(importer.tables(),
                listId == null ? OptionalInt.empty() : OptionalInt.of(listId), replace);
    }

    private int summary(ImportReport report, ListTablesImport tables) {
        report.print(System.out);
        tables.summary().forEach(System.out::println);
        return report.complete() ? ExitCode.DONE : ExitCode.FAILED;
    }

    /** Finds out what an import would change: of CSV and JSON here, of other formats in a copy of the lists. */
    private int printChanges() throws IOException, InterruptedException {
        ByteArrayOutputStream messages = new ByteArrayOutputStream();
        ImportReport report = new ImportReport(new PrintStream(messages, true, StandardCharsets.UTF_8));
        Importer importer = read(report);
        int exit;
        if (importer.hasRecords()) {
            exit = ImportRehearsal.run(arguments(), importer.standardInput());
        } else {
            System.err.print(messages.toString(StandardCharsets.UTF_8));
            needFiles(report);
            ListTablesImport tables = tables(importer);
            messages.reset();
            tables.plan(report, StoredLists::read);
            System.err.print(messages.toString(StandardCharsets.UTF_8));
            requireComplete(report);
            exit = summary(report, tables);
        }
        System.out.println("dry run: nothing was changed");
        return exit;
    }

    /** Returns the arguments of this command without the dry run. */
    private List<String> arguments() {
        List<String> arguments = new ArrayList<>(List.of("import"));
        if (listId != null) {
            arguments.add("--list=" + listId);
        }
        if (kind != null) {
            arguments.add("--kind=" + kind);
        }
        if (replace) {
            arguments.add("--replace");
        }
        if (partial) {
            arguments.add("--partial");
        }
        arguments.add("--");
        paths.forEach(path -> arguments.add(path.toString()));
        return arguments;
    }

    private static void needFiles(ImportReport report) {
        if (!report.anyFile()) {
            throw new Failure("nothing was imported; " + report.whyNothing());
        }
    }

    private void store(Importer importer, ListTablesImport tables, ImportReport report, Change change) {
        tables.plan(report, change::read);
        if (!partial) {
            importer.check((kind, id) -> { }, report::notImported);
            requireComplete(report);
        }
        importer.check(change::save, (place, reason) -> { });
        tables.store(change);
        importer.store((transponder, id) -> { }, (service, id, stream) -> { });
        requireComplete(report);
    }

    private void requireComplete(ImportReport report) {
        if (!partial && !report.complete()) {
            report.printProblems(System.out);
            throw new Failure("nothing was imported: " + report.problems()
                    + "; correct the files, or import the rest with --partial");
        }
    }
}
