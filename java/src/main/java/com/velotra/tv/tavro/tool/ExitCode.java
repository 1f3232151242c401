package com.velotra.tv.tavro.tool;

/** Exit codes of the tool. */
final class ExitCode {
    static final int DONE = 0;
    /** Wholly or partly. */
    static final int FAILED = 1;
    /** Of diff: the two sides differ. */
    static final int DIFFERENT = 1;
    static final int WRONG_USAGE = 2;

    private ExitCode() {}
}
