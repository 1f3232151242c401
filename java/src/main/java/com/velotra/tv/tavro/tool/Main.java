package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.services.channellist.ChannelListException;
import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.ServiceRecord;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import java.io.BufferedOutputStream;
import java.io.FileDescriptor;
import java.io.FileOutputStream;
import java.io.IOException;
import java.io.PrintStream;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Optional;
import java.util.concurrent.Callable;
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
        subcommands = {Main.ListCommand.class, Main.ShowCommand.class, Main.DemoCommand.class, Main.LoadCommand.class})
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

    private static VltTvChannelList lists() {
        try {
            return VltTvChannelList.getInstance();
        } catch (UnsatisfiedLinkError e) {
            throw new Failure(e.getMessage());
        }
    }

    /** The lists of the storage directory, which must be there already. */
    private static VltTvChannelList existing(int listId) {
        Path directory = Storage.directory();
        Storage.problem(directory).ifPresent(problem -> {
            throw new Failure(problem);
        });
        // Loading the library over a directory without lists would make an empty database in it. The library cuts
        // ids to 16 bits, so that a wider one would name another list.
        if (Storage.hasLists(directory) && fits16Bits(listId)) {
            VltTvChannelList lists = lists();
            if (lists.exists(listId)) {
                return lists;
            }
        }
        throw new Failure("there is no service list " + listId + " in " + directory);
    }

    private static boolean fits16Bits(int id) {
        return id >= 0 && id <= 0xFFFF;
    }

    @Command(
            name = "list",
            description = "Prints the services of a list as a table.",
            footer = {"", "Example: ./tavro list 1"})
    static final class ListCommand implements Callable<Integer> {
        @Mixin
        HelpOption help;

        @Parameters(paramLabel = "ID", description = "The list, by its number.")
        int listId;

        @Option(names = "--first", paramLabel = "N", description = "Prints no more than N services.")
        int first = Integer.MAX_VALUE;

        @Spec
        CommandLine.Model.CommandSpec spec;

        @Override
        public Integer call() {
            if (first < 0) {
                throw new ParameterException(spec.commandLine(), "--first takes a number from 0, not " + first);
            }
            var services = existing(listId).getAll(listId);
            System.out.print(ServiceTable.of(services, first, columns()));
            System.out.printf("%d services%n", services.size());
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
            description = "Prints one service, decoded field by field.",
            footer = {"", "Example: ./tavro show 1,17 --hex"})
    static final class ShowCommand implements Callable<Integer> {
        @Mixin
        HelpOption help;

        @Parameters(paramLabel = "LIST,RECORD", description = "The service, by list and record.")
        RecordId id;

        @Option(names = "--hex", description = "Prints the record's bytes too.")
        boolean hex;

        @Override
        public Integer call() {
            VltTvChannelList lists = existing(id.listId());
            ServiceRecord service = Optional.of(id).filter(record -> fits16Bits(record.recordId())).flatMap(lists::get).orElseThrow(
                    () -> new Failure("list " + id.listId() + " has no record " + id.recordId()));
            service.describe(hex).lines().map(Text::printable).forEach(System.out::println);
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

        @Parameters(index = "1", description = "Folder for the files that the demo writes.")
        Path work;

        @Override
        public Integer call() throws Exception {
            Storage.demoProblem(work).ifPresent(problem -> {
                throw new Failure(problem);
            });
            return new Demo(lists(), sources, work, System.out).run() ? 0 : 1;
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
            VltTvChannelList lists = lists();
            lists.open(listId, file.toString());
            Files.write(records, lists.getAllBytes(listId));
            return 0;
        }
    }
}
