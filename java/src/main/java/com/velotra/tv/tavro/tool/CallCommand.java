package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.tool.call.NativeCall;
import com.velotra.tv.tavro.tool.call.Natives;
import com.velotra.tv.tavro.tool.call.WrongCall;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.storage.Access;
import com.velotra.tv.tavro.tool.storage.Faults;
import java.util.ArrayList;
import java.util.Iterator;
import java.util.List;
import java.util.concurrent.Callable;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Model.CommandSpec;
import picocli.CommandLine.Option;
import picocli.CommandLine.ParameterException;
import picocli.CommandLine.Parameters;
import picocli.CommandLine.Spec;

/** ./tavro call. */
@Command(
        name = "call",
        description = {
            "Calls natives of the list classes, and prints what Java sees: the result with its type and content, "
                + "or the exception, and the time. The library's log lines go to standard error. nativeSetup is "
                + "called first. Several calls are separated by a word + and made in one process.",
            "",
            "Natives change lists directly: ./tavro undo does not know of these changes.",
            "",
            "An argument is a number, a text, null, keys (KEY,KEY), a JSON array, or a record object (words "
                + "KEY=VALUE, or a JSON object). If null fits several natives, write its type: String:null. A text "
                + "in double quotes is read as JSON. Options after -- are arguments.",
            "",
            "Exits with 1 if a native throws an exception, and with 0 otherwise."},
        footer = {"", "Examples: ./tavro call services.native_open 1 + services.native_getSvlInfo 1,3",
            "          ./tavro call services.native_clean 1 --fault x_svl_clean=-106",
            "          ./tavro call networks.native_getInfo 1,1 NetworkName,NwlNetworkId"})
final class CallCommand implements Callable<Integer> {
    @Mixin
    private HelpOption help;

    @Spec
    private CommandSpec spec;

    @Parameters(index = "0", arity = "0..1", paramLabel = "NATIVE", completionCandidates = Names.class,
            description = "CLASS.NATIVE; CLASS is services, streams, networks or satellites, or the name of the list "
                    + "class.")
    private String called;

    @Parameters(index = "1..*", paramLabel = "ARGUMENT", description = "Arguments, as --list describes them.")
    private final List<String> rest = new ArrayList<>();

    @Option(names = "--list", description = "Print all natives with their arguments.")
    private boolean list;

    @Option(names = "--fault", paramLabel = "FAULT",
            description = "Let calls of the middleware fail, such as x_svl_open=-5; see docs/failure-injection.md. "
                    + "Replaces the faults of the environment and of the properties.")
    private final List<String> faults = new ArrayList<>();

    /** The natives, for completion. */
    static final class Names implements Iterable<String> {
        @Override
        public Iterator<String> iterator() {
            return Natives.names().iterator();
        }
    }

    @Override
    public Integer call() {
        if (list) {
            if (called != null || !faults.isEmpty()) {
                throw new ParameterException(spec.commandLine(), "--list cannot be combined with a call");
            }
            System.out.print(Natives.page());
            return ExitCode.DONE;
        }
        List<NativeCall> calls = calls();
        Access.readWrite();
        calls.forEach(each -> each.kind().lists()); // loads the library and makes the managers
        if (faults.isEmpty()) {
            return run(calls);
        }
        try {
            Faults.set(String.join(" ", faults));
        } catch (Failure e) {
            throw new ParameterException(spec.commandLine(), e.getMessage());
        }
        try {
            return run(calls);
        } finally {
            Faults.reset();
        }
    }

    private List<NativeCall> calls() {
        if (called == null) {
            throw new ParameterException(spec.commandLine(), "missing argument NATIVE; --list prints all natives");
        }
        List<String> words = new ArrayList<>(List.of(called));
        words.addAll(rest);
        try {
            return NativeCall.read(words);
        } catch (WrongCall e) {
            throw new ParameterException(spec.commandLine(), e.getMessage());
        }
    }

    private static int run(List<NativeCall> calls) {
        boolean returned = true;
        for (NativeCall each : calls) {
            returned &= each.run(System.out);
        }
        return returned ? ExitCode.DONE : ExitCode.FAILED;
    }
}
