package com.velotra.tv.tavro.tool.storage;

import com.velotra.tv.tavro.tool.input.Failure;
import java.nio.charset.StandardCharsets;

/** Faults of the stand-ins in this process; docs/failure-injection.md describes them. */
public final class Faults {
    private Faults() {}

    /**
     * Replaces all faults. Counting begins anew.
     *
     * @throws Failure if the text has an invalid entry; then nothing changes
     */
    public static void set(String text) {
        ToolLibrary.load();
        ToolLibrary.setFaults(text.getBytes(StandardCharsets.UTF_8));
    }

    /** Returns to the faults of the environment and of the properties. */
    public static void reset() {
        ToolLibrary.load();
        ToolLibrary.setFaults(null);
    }
}
