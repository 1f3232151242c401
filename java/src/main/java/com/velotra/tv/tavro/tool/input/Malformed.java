package com.velotra.tv.tavro.tool.input;

/** A line that cannot be parsed: its place and the reason. */
public record Malformed(Place place, String reason) {
    @Override
    public String toString() {
        return place + ": " + reason;
    }
}
