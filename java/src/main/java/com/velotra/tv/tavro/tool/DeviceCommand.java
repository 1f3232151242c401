package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.tool.device.Adb;
import com.velotra.tv.tavro.tool.device.Conform;
import com.velotra.tv.tavro.tool.device.Install;
import com.velotra.tv.tavro.tool.device.Log;
import com.velotra.tv.tavro.tool.device.LogLevel;
import com.velotra.tv.tavro.tool.device.Pull;
import com.velotra.tv.tavro.tool.device.Push;
import com.velotra.tv.tavro.tool.output.Terminal;
import com.velotra.tv.tavro.tool.records.Kind;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.concurrent.Callable;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Model.CommandSpec;
import picocli.CommandLine.Option;
import picocli.CommandLine.ParameterException;
import picocli.CommandLine.Parameters;
import picocli.CommandLine.Spec;

/** ./tavro device. */
@Command(
        name = "device",
        description = {
            "Works with a device through adb. ACTION is one of these:",
            "",
            "  push [FILE...]         copy library, tavro-conform and FILEs to the device",
            "  conform [-- ARG...]    run tavro-conform, which checks the middleware",
            "  log-level [LEVEL]      show or set which lines the library writes: V, D,",
            "                         I, W, E or off",
            "  log [FILE]             follow the library's lines of the log, or print those",
            "                         of a saved log (- for standard input)",
            "  pull REMOTE [LOCAL]    copy a file from the device, and show or compare it",
            "",
            "Exit codes: 0 done, 1 failed (conform: a check failed; pull --diff: the lists differ), 2 wrong usage."},
        footer = {"", "Examples: ./tavro device push",
            "          ./tavro device conform --junit results.xml -- --filter='svl.*'",
            "          ./tavro device log-level D && ./tavro device log",
            "          ./tavro device log bugreport.txt",
            "          ./tavro device pull /data/tv/services.list --diff 1"})
final class DeviceCommand implements Callable<Integer> {
    private static final String STANDARD_INPUT = "-";

    @Spec
    private CommandSpec spec;

    @Mixin
    private HelpOption help;

    @Parameters(index = "0", paramLabel = "ACTION", converter = DeviceAction.Converter.class, description = "See "
            + "above.")
    private DeviceAction action;

    @Parameters(index = "1..*", arity = "0..*", paramLabel = "ARGUMENT", description = "Arguments of the action.")
    private List<String> arguments = List.of();

    @Option(names = {"-s", "--serial"}, paramLabel = "SERIAL",
            description = "Serial number of the device. The default is $ANDROID_SERIAL, or the only device.")
    private String serial;

    @Option(names = "--adb", paramLabel = "FILE", description = "The program adb. The default is $ADB, or adb in PATH.")
    private String adbProgram;

    @Option(names = "--directory", paramLabel = "DIR", defaultValue = "/data/local/tmp/tavro",
            description = "push, conform, log-level: folder of the device (${DEFAULT-VALUE}).")
    private String directory;

    @Option(names = "--library", paramLabel = "FILE",
            description = "push: the library (build/device/lib/libvelotra_tavro_channellist.so).")
    private Path library;

    @Option(names = "--program", paramLabel = "FILE",
            description = "push: the conformance checks (build/device/bin/tavro-conform, if it is built).")
    private Path program;

    @Option(names = "--install",
            description = "push: put the library into /vendor/lib instead, which needs root. Keeps the old one.")
    private boolean install;

    @Option(names = "--restore", description = "push: undo all --install.")
    private boolean restore;

    @Option(names = "--junit", paramLabel = "FILE", description = "conform: write the results also as JUnit XML.")
    private Path junit;

    @Option(names = "--reset", description = "log-level: set the value from before the first change.")
    private boolean reset;

    @Option(names = {"-d", "--dump"}, description = "log: print the log up to now, and exit.")
    private boolean dump;

    @Option(names = "--since", paramLabel = "TIME",
            description = "log: begin at a time such as '11-22 14:55:38.123', or with the last TIME lines.")
    private String since;

    @Option(names = "--color", description = "log: print colors also if the output is not a terminal.")
    private boolean color;

    @Option(names = "--show", description = "pull: print the records of the file, as ./tavro dump does.")
    private boolean show;

    @Option(names = "--diff", paramLabel = "OTHER", description = "pull: compare OTHER, as in ./tavro diff, with the "
            + "file.")
    private String diff;

    @Option(names = {"-k", "--kind"}, paramLabel = "KIND", converter = Converters.KindName.class,
            description = "pull: the file has records of this kind one after the other: services, streams, networks "
                    + "or satellites.")
    private Kind kind;

    @Override
    public Integer call() {
        check();
        Adb adb = new Adb(adbProgram, serial);
        return switch (action) {
            case PUSH -> push(adb);
            case CONFORM -> new Conform(adb, directory).run(arguments, junit);
            case LOG_LEVEL -> logLevel(new LogLevel(adb, directory));
            case LOG -> log(adb);
            case PULL -> pull(adb);
        };
    }

    private void check() {
        List<String> given = spec.commandLine().getParseResult().matchedOptions().stream()
                .map(option -> option.longestName()).toList();
        String problem = action.problem(arguments, given);
        if (problem == null && (install || restore) && !arguments.isEmpty()) {
            problem = "push: --install and --restore take no files";
        }
        if (problem == null && install && restore) {
            problem = "push: --install and --restore exclude each other";
        }
        if (problem == null && reset && !arguments.isEmpty()) {
            problem = "log-level: --reset takes no level";
        }
        if (problem == null && action == DeviceAction.LOG && !arguments.isEmpty() && (dump || since != null)) {
            problem = "log: --dump and --since are for the log of a device, not for a file";
        }
        if (problem == null && !directory.matches("/.+")) {
            problem = "'" + directory + "' is not a folder of the device: it must begin with /";
        }
        if (problem != null) {
            throw new ParameterException(spec.commandLine(), problem);
        }
    }

    private int push(Adb adb) {
        Path chosen = library == null ? built("lib/libvelotra_tavro_channellist.so") : library;
        if (restore) {
            new Install(adb).restore();
        } else if (install) {
            new Install(adb).install(chosen);
        } else {
            Path usual = built("bin/tavro-conform");
            new Push(adb, directory, Shell.command()).run(chosen,
                    program != null ? program : Files.exists(usual) ? usual : null,
                    arguments.stream().map(Path::of).toList());
        }
        return ExitCode.DONE;
    }

    /** A file of the device build of the clone that the tool comes from. */
    private static Path built(String name) {
        return Path.of(System.getProperty("tavro.root", "."), "build/device", name);
    }

    private int logLevel(LogLevel level) {
        if (reset) {
            level.reset();
        } else if (arguments.isEmpty()) {
            level.show();
        } else if (arguments.get(0).matches("[VDIWEvdiwe]|off")) {
            level.set(arguments.get(0));
        } else {
            throw new ParameterException(spec.commandLine(), "log-level: '" + arguments.get(0)
                    + "' is not a level: use V or D for all lines, I, W or E for errors, or off");
        }
        return ExitCode.DONE;
    }

    private int log(Adb adb) {
        if (color) {
            Terminal.force(Terminal.isOutput(), true, Terminal.columns());
        }
        try {
            if (arguments.isEmpty()) {
                adb.needDevice();
                new Log().ofDevice(adb, since, !dump);
            } else if (arguments.get(0).equals(STANDARD_INPUT)) {
                new Log().ofStandardInput();
            } else {
                new Log().ofFile(Path.of(arguments.get(0)));
            }
        } finally {
            if (color) {
                Terminal.unforce();
            }
        }
        return ExitCode.DONE;
    }

    private int pull(Adb adb) {
        Path file = new Pull(adb).run(arguments.get(0), Path.of(arguments.size() > 1 ? arguments.get(1) : "."));
        if (kind == null && (show || diff != null)) {
            Pull.needListFile(file, Shell.command());
        }
        String[] ofKind = kind == null ? new String[0] : new String[] {"--kind=" + kind};
        int exit = ExitCode.DONE;
        // "./" keeps a name such as 1,17 from being read as a record.
        String name = file.isAbsolute() ? file.toString() : "./" + file;
        if (show) {
            exit = run(ofKind, "dump", "--", name);
        }
        return diff == null ? exit : Math.max(exit, run(ofKind, "diff", "--", diff, name));
    }

    /** Runs another command of the tool, with options after its name. */
    private static int run(String[] options, String command, String... words) {
        String[] all = new String[1 + options.length + words.length];
        all[0] = command;
        System.arraycopy(options, 0, all, 1, options.length);
        System.arraycopy(words, 0, all, 1 + options.length, words.length);
        System.out.flush();
        return Main.run(all);
    }
}
