package com.velotra.tv.tavro.tool.sources;

import java.nio.file.Path;

/** A line that cannot be read: where it is, and why. */
public record Malformed(Path file, int line, String reason) {
    @Override
    public String toString() {
        return file + ":" + line + ": " + reason;
    }
}
