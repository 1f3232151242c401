package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.tool.storage.Access;
import picocli.CommandLine.Option;

/** The option of commands that change lists to only say what they would do. */
final class DryRunOption {
    @Option(names = {"-n", "--dry-run"}, description = "Change nothing; only print what would be done.")
    private boolean dryRun;

    /** Returns whether it is a dry run. Opens nothing for writing in that case; call it before the lists are used. */
    boolean on() {
        if (dryRun) {
            Access.readOnly();
        }
        return dryRun;
    }

    /** Prints the summary of a command. */
    void done(String summary) {
        System.out.println((dryRun ? "dry run: " : "") + summary);
    }
}
