package com.velotra.tv.tavro.tool;

import picocli.CommandLine.Option;

/** The help option of every command. */
final class HelpOption {
    @Option(names = {"-h", "--help"}, usageHelp = true, description = "Print this text and exit.")
    private boolean help;
}
