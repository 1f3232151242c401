package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.services.channellist.ChannelListException;
import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.ServiceRecord;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.concurrent.Callable;
import picocli.CommandLine;
import picocli.CommandLine.Command;
import picocli.CommandLine.ITypeConverter;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Option;
import picocli.CommandLine.Parameters;

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
        System.exit(run(arguments));
    }

    static int run(String... arguments) {
        return new CommandLine(new Main())
                .registerConverter(RecordId.class, new RecordIdConverter())
                .setExecutionExceptionHandler((failure, command, parsed) -> {
                    if (!(failure instanceof Failure || failure instanceof ChannelListException)) {
                        throw failure;
                    }
                    System.err.println("tavro: " + failure.getMessage());
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

    /** The lists of the storage directory, which must be there already. */
    private static VltTvChannelList existing(int listId) {
        Path directory = Storage.directory();
        Storage.problem(directory).ifPresent(problem -> {
            throw new Failure(problem);
        });
        // Loading the library over a directory without lists would make an empty database in it.
        if (Storage.hasLists(directory)) {
            VltTvChannelList lists = VltTvChannelList.getInstance();
            if (lists.exists(listId)) {
                return lists;
            }
        }
        throw new Failure("there is no service list " + listId + " in " + directory);
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

        @Override
        public Integer call() {
            var services = existing(listId).getAll(listId);
            System.out.print(ServiceTable.of(services, first));
            System.out.printf("%d services%n", services.size());
            return 0;
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
            ServiceRecord service = existing(id.listId()).get(id).orElseThrow(
                    () -> new Failure("list " + id.listId() + " has no record " + id.recordId()));
            System.out.print(service.describe(hex));
            return 0;
        }
    }

    @Command(
            name = "demo",
            hidden = true,
            description = "Imports, edits, filters, stores and loads real service lists. Run it with ./tavro demo.")
    static final class DemoCommand implements Callable<Integer> {
        @Parameters(index = "0", description = "Folder with the channels.conf examples.")
        Path sources;

        @Parameters(index = "1", description = "Folder for the files that the demo writes.")
        Path work;

        @Override
        public Integer call() throws Exception {
            return new Demo(VltTvChannelList.getInstance(), sources, work, System.out).run() ? 0 : 1;
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
            VltTvChannelList lists = VltTvChannelList.getInstance();
            lists.open(listId, file.toString());
            Files.write(records, lists.getAllBytes(listId));
            return 0;
        }
    }
}
