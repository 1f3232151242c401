package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.tool.records.Kind;
import picocli.CommandLine.Option;

/** The option that limits a command to one kind of list. */
final class AnyKindOption {
    @Option(names = {"-k", "--kind"}, paramLabel = "KIND", converter = Converters.KindName.class,
            description = "Only services, streams, networks or satellites.")
    private Kind kind;

    /** Returns whether the command uses a kind. */
    boolean includes(Kind other) {
        return kind == null || kind == other;
    }

    /** Returns what the command looks at, in messages: "service list" or "list". */
    String noun() {
        return kind == null ? "list" : kind.noun() + " list";
    }
}
