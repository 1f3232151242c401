package com.velotra.tv.tavro.tool.input;

/** A line that cannot be read: where it is, and why. */
public record Malformed(Place place, String reason) {
    @Override
    public String toString() {
        return place + ": " + reason;
    }
}
