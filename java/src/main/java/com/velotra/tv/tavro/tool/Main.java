package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.services.channellist.ChannelListException;
import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamList;
import java.io.BufferedOutputStream;
import java.io.FileDescriptor;
import java.io.FileOutputStream;
import java.io.IOException;
import java.io.PrintStream;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.Optional;
import java.util.concurrent.Callable;
import java.util.function.Supplier;
import picocli.CommandLine;
import picocli.CommandLine.Command;
import picocli.CommandLine.ITypeConverter;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Option;
import picocli.CommandLine.ParameterException;
import picocli.CommandLine.Parameters;
import picocli.CommandLine.Spec;

/** The command-line tool. Exit codes: 0 done, 1 could not be done, 2 not understood. */
@Command(
        name = "tavro",
        description = "Shows what is in channel lists.",
        subcommands = {Main.ListCommand.class, Main.ShowCommand.class, Main.ImportCommand.class, Main.DemoCommand.class,
            Main.LoadCommand.class})
public final class Main {
    @Mixin
    private HelpOption help;

    private Main() {}

    /** Runs the tool and ends the virtual machine with its exit code. */
    public static void main(String[] arguments) {
        System.setOut(utf8(FileDescriptor.out));
        System.setErr(utf8(FileDescriptor.err));
        System.exit(run(arguments));
    }

    // Service names come in all scripts: a locale with an encoding of its own must not lose any.
    private static PrintStream utf8(FileDescriptor descriptor) {
        return new PrintStream(
                new BufferedOutputStream(new FileOutputStream(descriptor)), true, StandardCharsets.UTF_8);
    }

    static int run(String... arguments) {
        return new CommandLine(new Main())
                .registerConverter(RecordId.class, new RecordIdConverter())
                .setCaseInsensitiveEnumValuesAllowed(true)
                .setExecutionExceptionHandler((failure, command, parsed) -> {
                    if (failure instanceof Failure || failure instanceof ChannelListException) {
                        System.err.println("tavro: " + failure.getMessage());
                    } else if (failure instanceof IOException) {
                        System.err.println("tavro: a file cannot be read or written: " + failure);
                    } else {
                        throw failure;
                    }
                    return 1;
                })
                .execute(arguments);
    }

    /** Every command explains itself. */
    static final class HelpOption {
        @Option(names = {"-h", "--help"}, usageHelp = true, description = "Prints this text.")
        boolean asked;
    }

    /** Something that the user asked for and that cannot be done; its message says why. */
    static final class Failure extends RuntimeException {
        private static final long serialVersionUID = 1L;

        Failure(String message) {
            super(message);
        }
    }

    private static final class RecordIdConverter implements ITypeConverter<RecordId> {
        @Override
        public RecordId convert(String text) {
            try {
                return RecordId.parse(text);
            } catch (IllegalArgumentException e) {
                throw new CommandLine.TypeConversionException(e.getMessage());
            }
        }
    }

    /** Does something with the library; one that cannot be loaded is the user's to mend. */
    private static <T> T withLibrary(Supplier<T> body) {
        try {
            return body.get();
        } catch (UnsatisfiedLinkError e) {
            throw new Failure(e.getMessage());
        }
    }

    /** Makes sure that a list is there, in a storage directory that is there already. */
    private static void needList(Kind kind, int listId) {
        Path directory = Storage.directory();
        Storage.problem(directory).ifPresent(problem -> {
            throw new Failure(problem);
        });
        // Loading the library over a directory without lists would make an empty database in it. The library cuts
        // ids to 16 bits, so that a wider one would name another list.
        if (!Storage.hasLists(directory) || !fits16Bits(listId) || !withLibrary(kind::lists).exists(listId)) {
            throw new Failure("there is no " + kind.one + " list " + listId + " in " + directory);
        }
    }

    /** Which kind of list is meant. */
    static final class KindOption {
        @Option(names = {"-k", "--kind"}, paramLabel = "KIND", defaultValue = "services",
                description = "services (the default), streams, networks or satellites.")
        Kind kind;
    }

    private static boolean fits16Bits(int id) {
        return id >= 0 && id <= 0xFFFF;
    }

    @Command(
            name = "list",
            description = "Prints the services, transport streams, networks or satellites of a list as a table.",
            footer = {"", "Examples: ./tavro list 1", "          ./tavro list 1 --kind streams"})
    static final class ListCommand implements Callable<Integer> {
        @Mixin
        HelpOption help;

        @Parameters(paramLabel = "ID", description = "The list, by its number.")
        int listId;

        @Mixin
        KindOption of;

        @Option(names = "--first", paramLabel = "N", description = "Prints no more than N of them.")
        int first = Integer.MAX_VALUE;

        @Spec
        CommandLine.Model.CommandSpec spec;

        @Override
        public Integer call() {
            if (first < 0) {
                throw new ParameterException(spec.commandLine(), "--first takes a number from 0, not " + first);
            }
            needList(of.kind, listId);
            Kind.Listing listing = of.kind.list(listId);
            System.out.print(listing.printer().table(first, columns()));
            System.out.printf("%d %s%n", listing.size(), of.kind.many);
            return 0;
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

        @Parameters(paramLabel = "LIST,RECORD", description = "The record, by its list and its id in it.")
        RecordId id;

        @Mixin
        KindOption of;

        @Option(names = "--hex", description = "Prints the record's bytes too (services and transport streams).")
        boolean hex;

        @Override
        public Integer call() {
            needList(of.kind, id.listId());
            String record = Optional.of(id).filter(asked -> fits16Bits(asked.recordId())).flatMap(asked -> of.kind.show(asked, hex)).orElseThrow(
                    () -> new Failure("list " + id.listId() + " has no record " + id.recordId()));
            record.lines().map(Text::printable).forEach(System.out::println);
            return 0;
        }
    }

    @Command(
            name = "import",
            description = {"Adds the transponders of scan tables (DVBv5 form) to transport stream lists, one a medium.",
                "A file called sources.conf adds satellites to a satellite list, and one called diseqc.conf says how dishes are "
                    + "switched to them (both as in Debian's vdr). The transponders of a table whose name ends with a position, as in "
                    + "Astra-19.2E, point at the satellite there; satellites of this and of earlier imports count."},
            footer = {"", "Examples: ./tavro import /usr/share/dvb/dvb-t", "          ./tavro list 11 --kind streams",
                "          ./tavro import sources.conf diseqc.conf dvb-s", "          ./tavro list 13 --kind satellites"})
    static final class ImportCommand implements Callable<Integer> {
        @Mixin
        HelpOption help;

        @Parameters(paramLabel = "FILE", arity = "1..*", description = "A scan table, sources.conf, diseqc.conf, or a folder of them.")
        List<Path> paths;

        @Option(names = "--list", paramLabel = "ID", defaultValue = "11",
                description = "List for terrestrial streams (${DEFAULT-VALUE}); cable goes to the next, satellite streams and satellites to the one behind.")
        int firstList;

        @Override
        public Integer call() throws Exception {
            for (Path path : paths) {
                if (!Files.isReadable(path)) {
                    throw new Failure("cannot read " + path + ": " + (Files.exists(path) ? "you may not" : "there is no such file or folder"));
                }
            }
            withLibrary(VltTvTransportStreamList::getInstance);
            new FileImport(paths).run(firstList, System.out, System.err);
            return 0;
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
            Storage.demoProblem(work).ifPresent(problem -> {
                throw new Failure(problem);
            });
            return new Demo(withLibrary(VltTvChannelList::getInstance), sources, dishes, work, System.out).run() ? 0 : 1;
        }
    }

    @Command(name = "load", hidden = true, description = "The demo's second virtual machine: loads a list from a file.")
    static final class LoadCommand implements Callable<Integer> {
        @Parameters(index = "0")
        int listId;

        @Parameters(index = "1")
        Path file;

        @Parameters(index = "2", description = "Receives the bytes of the records.")
        Path records;

        @Override
        public Integer call() throws Exception {
            VltTvChannelList lists = withLibrary(VltTvChannelList::getInstance);
            lists.open(listId, file.toString());
            Files.write(records, lists.getAllBytes(listId));
            return 0;
        }
    }
}
