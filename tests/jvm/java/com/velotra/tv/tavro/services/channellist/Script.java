package com.velotra.tv.tavro.services.channellist;

/** Control of the scripted platform, with what only these tests need. */
final class Script extends com.velotra.tv.tavro.scripted.Script {
    static {
        System.loadLibrary("tavro_copies");
    }

    private Script() {}

    /**
     * Runs something in a copy of this process, which may end it. Returns all that it printed, and as the last line
     * {@code exit N} or {@code signal N}. The copy has a single thread, so it must do little.
     */
    static native String inACopy(Runnable runnable);
}
