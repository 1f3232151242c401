package com.velotra.tv.tavro.tool.shell;

import picocli.CommandLine;

/** The commands of the tool, for the shell. */
public interface ToolCommands {
    /** Runs a command in this virtual machine. Returns its exit code. */
    int run(String... words);

    /** Returns the tool's commands and their options, for completion. */
    CommandLine describe();

    /** Returns how the user called the tool. */
    String self();
}
