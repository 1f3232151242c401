package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.services.channellist.ChannelListException;
import com.velotra.tv.tavro.services.channellist.Printable;
import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.tool.demo.Demo;
import com.velotra.tv.tavro.tool.importing.Importer;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.input.ImportReport;
import com.velotra.tv.tavro.tool.input.Source;
import com.velotra.tv.tavro.tool.input.Text;
import com.velotra.tv.tavro.tool.storage.Database;
import com.velotra.tv.tavro.tool.storage.Storage;
import com.velotra.tv.tavro.tool.tables.Kind;
import com.velotra.tv.tavro.tool.transponders.ListIds;
import java.io.BufferedOutputStream;
import java.io.FileDescriptor;
import java.io.FileOutputStream;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import java.util.concurrent.Callable;
import java.util.function.Supplier;
import picocli.CommandLine;
import picocli.CommandLine.Command;
import picocli.CommandLine.ITypeConverter;
import picocli.CommandLine.IVersionProvider;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Option;
import picocli.CommandLine.Parameters;

/** The command-line tool. Exit codes: 0 done, 1 failed, wholly or partly, 2 wrong usage. */
@Command(
        name = Main.NAME,
        description = "Shows what is in channel lists.",
        versionProvider = Main.Version.class,
        subcommands = {Main.ListCommand.class, Main.ShowCommand.class, Main.ImportCommand.class,
                Main.DemoCommand.class})
public final class Main {
    static final String NAME = "./tavro";

    private static final int DONE = 0;
    private static final int FAILED = 1;
    private static final int WRONG_USAGE = 2;

    private static final int LAST_LIST = 65_535;

    @Mixin
    private HelpOption help;

    @Option(names = "--version", versionHelp = true, description = "Print the version and exit.")
    private boolean version;

    private Main() {}

    /** Runs the tool and ends the virtual machine with its exit code. */
    public static void main(String[] arguments) {
        SafeOutput.Stream out = SafeOutput.over(new BufferedOutputStream(new FileOutputStream(FileDescriptor.out)));
        SafeOutput.Stream err = SafeOutput.over(new BufferedOutputStream(new FileOutputStream(FileDescriptor.err)));
        System.setOut(out);
        System.setErr(err);
        int exit = run(arguments);
        IOException failure = out.failure();
        if (failure != null) {
            // Whoever closed a pipe has read enough, as in ./tavro list 1 | head.
            if (!String.valueOf(failure.getMessage()).contains("Broken pipe")) {
                System.err.println("tavro: cannot write the output: " + failure.getMessage());
            }
            exit = Math.max(exit, FAILED);
        }
        System.exit(exit);
    }

    static int run(String... arguments) {
        try {
            return execute(arguments);
        } catch (Error e) { // such as too little memory: picocli leaves these alone
            System.err.println("tavro: internal error, please report it: " + e);
            return FAILED;
        }
    }

    private static int execute(String... arguments) {
        CommandLine tool = new CommandLine(new Main());
        tool.getSubcommands().values()
                .forEach(command -> command.getCommandSpec().usageMessage().parameterListHeading("%n"));
        return tool.setExpandAtFiles(false) // a file may be called @name
                .registerConverter(RecordId.class, new RecordIdConverter())
                .setParameterExceptionHandler((wrong, words) -> {
                    System.err.println("tavro: " + Printable.of(wrong.getMessage()));
                    String name = wrong.getCommandLine().getCommandName();
                    System.err.println("See: " + Shell.command() + (name.equals(NAME) ? "" : " " + name) + " --help");
                    return WRONG_USAGE;
                })
                .setExecutionExceptionHandler((failure, command, parsed) -> {
                    System.err.println("tavro: " + reason(failure));
                    return FAILED;
                })
                .execute(arguments);
    }

    private static String reason(Exception failure) {
        if (failure instanceof Failure) {
            return failure.getMessage();
        }
        if (failure instanceof ChannelListException) {
            return failure.getMessage() + "; " + Storage.whyItFails();
        }
        if (failure instanceof IOException io) {
            return "a file cannot be read or written: " + io.getMessage() + ": " + Source.reason(io);
        }
        return "internal error, please report it: " + failure;
    }

    /** The version of the jar that this class comes from. */
    static final class Version implements IVersionProvider {
        @Override
        public String[] getVersion() {
            String version = Main.class.getPackage().getImplementationVersion();
            return new String[] {"tavro " + (version == null ? "(unknown version: not run from tavro.jar)" : version)};
        }
    }

    /** Every command explains itself. */
    static final class HelpOption {
        @Option(names = {"-h", "--help"}, usageHelp = true, description = "Print this text and exit.")
        boolean asked;
    }

    private static final class RecordIdConverter implements ITypeConverter<RecordId> {
        @Override
        public RecordId convert(String text) {
            try {
                RecordId id = RecordId.parse(text);
                if (!id.namesRecord()) {
                    throw new IllegalArgumentException(
                            "'" + text + "' names no record: list ids are 1 to " + LAST_LIST + ", record ids 0 to "
                                    + (LAST_LIST - 1));
                }
                return id;
            } catch (IllegalArgumentException e) {
                throw new CommandLine.TypeConversionException(e.getMessage());
            }
        }
    }

    /** A list id of the command line. */
    private static final class ListIdConverter implements ITypeConverter<Integer> {
        @Override
        public Integer convert(String text) {
            return number(text, 1, LAST_LIST, "a list id");
        }
    }

    /** The first of the lists that an import fills. */
    private static final class FirstListConverter implements ITypeConverter<Integer> {
        @Override
        public Integer convert(String text) {
            return number(text, 1, LAST_LIST - ListIds.COUNT + 1, "the id of the first of " + ListIds.COUNT + " lists");
        }
    }

    private static final class KindConverter implements ITypeConverter<Kind> {
        @Override
        public Kind convert(String text) {
            return Arrays.stream(Kind.values()).filter(kind -> kind.toString().equals(text)).findFirst().orElseThrow(
                    () -> new CommandLine.TypeConversionException(
                            "'" + text + "' is not services, streams, networks or satellites"));
        }
    }

    private static final class CountConverter implements ITypeConverter<Integer> {
        @Override
        public Integer convert(String text) {
            return number(text, 0, Integer.MAX_VALUE, "a number of records");
        }
    }

    private static int number(String text, int least, int most, String what) {
        // No sign, no blanks and no digits of other scripts, all of which Java takes.
        if (text.matches("[0-9]{1,10}")) {
            long value = Long.parseLong(text);
            if (value >= least && value <= most) {
                return (int) value;
            }
        }
        throw new CommandLine.TypeConversionException(
                "'" + text + "' is not " + what + ": it must be from " + least + " to " + most);
    }

    /** Does something with the library; one that cannot be loaded is the user's to repair. */
    private static <T> T withLibrary(Supplier<T> body) {
        try {
            return body.get();
        } catch (UnsatisfiedLinkError e) {
            throw new Failure(e.getMessage());
        }
    }

    private static void needDirectory(Path directory) {
        Storage.problem(directory).ifPresent(problem -> {
            throw new Failure(problem);
        });
    }

    /** Makes sure that a list is there, in a storage directory that is there already. */
    private static void needList(Kind kind, int listId) {
        Path directory = Storage.directory();
        needDirectory(directory);
        // Loading the library over a directory without lists would make an empty database in it.
        boolean hasLists = Storage.hasLists(directory);
        if (hasLists && withLibrary(kind::lists).exists(listId)) {
            return;
        }
        if (hasLists && Database.hasList(directory, kind.number, listId)) {
            throw new Failure(kind.one + " list " + listId + " in " + directory
                    + " cannot be opened; the log line of TavroHost says why");
        }
        throw new Failure("no " + kind.one + " list " + listId + " in " + directory);
    }

    /** Which kind of list is meant. */
    static final class KindOption {
        @Option(names = {"-k", "--kind"}, paramLabel = "KIND", defaultValue = "services",
                converter = KindConverter.class,
                description = "services (the default), streams, networks or satellites.")
        Kind kind;
    }

    @Command(
            name = "list",
            description = "Prints the services, transport streams, networks or satellites of a list as a table.",
            footer = {"", "Examples: ./tavro list 1", "          ./tavro list 1 --kind streams"})
    static final class ListCommand implements Callable<Integer> {
        @Mixin
        HelpOption help;

        @Parameters(paramLabel = "ID", converter = ListIdConverter.class, description = "List id, 1 to 65535.")
        int listId;

        @Mixin
        KindOption of;

        @Option(names = "--first", paramLabel = "N", converter = CountConverter.class,
                description = "Show at most N records.")
        int first = Integer.MAX_VALUE;

        @Override
        public Integer call() {
            needList(of.kind, listId);
            Kind.Listing listing = of.kind.list(listId);
            if (listing.size() == 0) {
                checkEmpty();
            }
            System.out.print(listing.printer().table(first, columns()));
            System.out.println(Text.count(listing.size(), of.kind.one));
            return DONE;
        }

        /** The natives report a list that cannot be read as empty. */
        private void checkEmpty() {
            Path directory = Storage.directory();
            int records = Database.records(directory, of.kind.number, listId);
            if (records > 0) {
                throw new Failure(of.kind.one + " list " + listId + " in " + directory + " holds " + records
                        + " records that cannot be read; the log line of TavroHost says why");
            }
        }

        // A terminal gets lines that fit when it says how wide it is; files and pipes get whole lines.
        private static int columns() {
            String columns = System.getenv("COLUMNS");
            boolean known = System.console() != null && columns != null && columns.matches("[1-9]\\d{0,3}");
            return known ? Integer.parseInt(columns) : Integer.MAX_VALUE;
        }
    }

    @Command(
            name = "show",
            description = "Prints one service, transport stream, network or satellite, decoded field by field.",
            footer = {"", "Examples: ./tavro show 1,17 --hex", "          ./tavro show 1,3 --kind streams"})
    static final class ShowCommand implements Callable<Integer> {
        @Mixin
        HelpOption help;

        @Parameters(paramLabel = "LIST,RECORD", description = "Record to show, as LIST,RECORD (for example 3,17).")
        RecordId id;

        @Mixin
        KindOption of;

        @Option(names = "--hex", description = "Also print the record's bytes (services and transport streams).")
        boolean hex;

        @Override
        public Integer call() {
            needList(of.kind, id.listId());
            String record = of.kind.show(id, hex).orElseThrow(() -> {
                Database.check(Storage.directory());
                return new Failure("list " + id.listId() + " has no record " + id.recordId());
            });
            record.lines().map(Printable::of).forEach(System.out::println);
            return DONE;
        }
    }

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
    static final class ImportCommand implements Callable<Integer> {
        @Mixin
        HelpOption help;

        @Parameters(paramLabel = "FILE", arity = "1..*",
                description = "A file, a folder of files, a pipe, or - for standard input.")
        List<Path> paths = new ArrayList<>();

        @Option(names = "--list", paramLabel = "ID", defaultValue = "11", converter = FirstListConverter.class,
                description = "First list id (default ${DEFAULT-VALUE}): terrestrial services and streams go to ID, "
                        + "cable to ID+1, satellites with their services and streams to ID+2.")
        int firstList;

        @Override
        public Integer call() throws Exception {
            Path directory = Storage.directory();
            if (Files.exists(directory)) {
                needDirectory(directory);
            }
            if (Storage.hasLists(directory)) {
                Database.check(directory);
            }
            ImportReport report = new ImportReport(System.err);
            Importer importer = withLibrary(() -> new Importer(ListIds.from(firstList), report));
            paths.forEach(importer::read);
            if (!report.anyFile()) {
                throw new Failure("nothing was imported; " + report.whyNothing());
            }
            try {
                importer.store((transponder, id) -> { }, (service, id, stream) -> { });
            } finally {
                report.print(System.out);
            }
            return report.complete() ? DONE : FAILED;
        }
    }

    @Command(
            name = "demo",
            hidden = true,
            description = "Imports, edits, filters, stores and loads real service lists, and checks every step.",
            footer = {"", "Example: ./tavro demo"})
    static final class DemoCommand implements Callable<Integer> {
        @Mixin
        HelpOption help;

        @Parameters(index = "0", description = "Folder with the channels.conf examples.")
        Path sources;

        @Parameters(index = "1", description = "Folder with sources.conf and diseqc.conf.")
        Path dishes;

        @Parameters(index = "2", description = "Folder for the files that the demo writes.")
        Path work;

        @Override
        public Integer call() throws Exception {
            Demo.problem(work).ifPresent(problem -> {
                throw new Failure(problem);
            });
            if (!new Demo(withLibrary(VltTvChannelList::getInstance), sources, dishes, work, System.out).run()) {
                return FAILED;
            }
            System.out.printf("Look around: TAVRO_HOME=%s %s list %d%n",
                    Shell.quoted(Storage.directory().toString()), Shell.command(), Demo.SATELLITE);
            return DONE;
        }
    }
}
