package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.services.channellist.ChannelListException;
import com.velotra.tv.tavro.services.channellist.Printable;
import com.velotra.tv.tavro.tool.help.HelpTexts;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.input.Source;
import com.velotra.tv.tavro.tool.listing.MalformedExpression;
import com.velotra.tv.tavro.tool.storage.Access;
import com.velotra.tv.tavro.tool.storage.Storage;
import java.io.BufferedOutputStream;
import java.io.FileDescriptor;
import java.io.FileOutputStream;
import java.io.IOException;
import picocli.CommandLine;
import picocli.CommandLine.Command;
import picocli.CommandLine.IVersionProvider;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Model.CommandSpec;
import picocli.CommandLine.Option;
import picocli.CommandLine.ParameterException;
import picocli.CommandLine.TypeConversionException;

/** The command-line tool. */
@Command(
        name = Main.NAME,
        description = "Shows what is in channel lists.",
        versionProvider = Main.Version.class,
        subcommands = {
            ListsCommand.class,
            FindCommand.class,
            ListCommand.class,
            ShowCommand.class,
            DumpCommand.class,
            DiffCommand.class,
            ViewCommand.class,
            MergeCommand.class,
            OrderCommand.class,
            ExportCommand.class,
            ImportCommand.class,
            DeviceCommand.class,
            ShellCommand.class,
            SetCommand.class,
            AddCommand.class,
            RemoveCommand.class,
            MoveCommand.class,
            CopyCommand.class,
            StoreCommand.class,
            LoadCommand.class,
            CleanCommand.class,
            DeleteCommand.class,
            UndoCommand.class,
            CallCommand.class,
            CompletionCommand.class,
            ManPagesCommand.class,
            DemoCommand.class
        })
public final class Main {
    static final String NAME = "./tavro";

    @Mixin
    private HelpOption help;

    @Option(names = "--version", versionHelp = true, description = "Print the version and exit.")
    private boolean version;

    private Main() {}

    /** Runs the tool and exits with its exit code. */
    public static void main(String[] arguments) {
        SafeOutput.Stream out = SafeOutput.over(new BufferedOutputStream(new FileOutputStream(FileDescriptor.out)));
        SafeOutput.Stream err = SafeOutput.over(new BufferedOutputStream(new FileOutputStream(FileDescriptor.err)));
        System.setOut(out);
        System.setErr(err);
        int exit = run(arguments);
        IOException failure = out.failure();
        if (failure != null) {
            // deliberate: no message for a closed pipe, as in ./tavro list 1 | head
            if (!String.valueOf(failure.getMessage()).contains("Broken pipe")) {
                System.err.println("tavro: cannot write the output: " + failure.getMessage());
            }
            exit = Math.max(exit, ExitCode.FAILED);
        }
        System.exit(exit);
    }

    static int run(String... arguments) {
        try {
            return execute(arguments);
        } catch (Error e) { // such as OutOfMemoryError, which picocli does not catch
            System.err.println("tavro: internal error, please report it: " + e);
            return ExitCode.FAILED;
        } finally {
            Access.end();
        }
    }

    /** Returns the tool with its commands, before anything is parsed. */
    static CommandLine tool() {
        return new CommandLine(new Main());
    }

    /** Returns the tool with the called command alone: to describe all of them takes longer than most of them run. */
    private static CommandLine toolFor(String... arguments) {
        for (Class<?> command : Main.class.getAnnotation(Command.class).subcommands()) {
            if (arguments.length > 0 && command.getAnnotation(Command.class).name().equals(arguments[0])) {
                return new CommandLine(CommandSpec.create().name(NAME)).addSubcommand(command);
            }
        }
        return tool();
    }

    private static int execute(String... arguments) {
        return HelpTexts.uniform(toolFor(arguments)).setExpandAtFiles(false) // a file name may begin with @
                .setParameterExceptionHandler((wrong, words) -> {
                    String name = wrong.getCommandLine().getCommandName();
                    boolean ofCommand = !name.equals(NAME);
                    System.err.println("tavro: " + (ofCommand ? name + ": " : "") + Printable.of(whatIsWrong(wrong)));
                    if (wrong.getCause() instanceof MalformedExpression expression) {
                        System.err.println(expression.marked());
                    }
                    System.err.println("See: " + Shell.command() + (ofCommand ? " " + name : "") + " --help");
                    return ExitCode.WRONG_USAGE;
                })
                .setExecutionExceptionHandler((failure, command, parsed) -> {
                    System.err.println("tavro: " + reason(failure));
                    return ExitCode.FAILED;
                })
                .execute(arguments);
    }

    /** The message of a converter alone, without the words that picocli puts before it. */
    private static String whatIsWrong(ParameterException wrong) {
        return wrong.getCause() instanceof TypeConversionException value ? value.getMessage()
                : wrong.getMessage().replaceFirst("^Error: ", "");
    }

    private static String reason(Exception failure) {
        if (failure instanceof Failure) {
            return failure.getMessage();
        }
        if (failure instanceof ChannelListException list) {
            return list.problem() + "; " + Storage.whyItFails();
        }
        if (failure instanceof IOException io) {
            return "cannot read or write a file: " + io.getMessage() + ": " + Source.reason(io);
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
}
