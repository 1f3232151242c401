package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.tool.records.Kind;
import picocli.CommandLine.Option;

/** The option that chooses the kind of list. */
final class KindOption {
    @Option(names = {"-k", "--kind"}, paramLabel = "KIND", defaultValue = "services",
            converter = Converters.KindName.class,
            description = "services (the default), streams, networks or satellites.")
    private Kind kind;

    Kind kind() {
        return kind;
    }
}
