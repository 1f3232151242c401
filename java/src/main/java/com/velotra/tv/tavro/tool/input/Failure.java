package com.velotra.tv.tavro.tool.input;

/** Something that the user asked for and that cannot be done; its message says why. */
public final class Failure extends RuntimeException {
    private static final long serialVersionUID = 1L;

    public Failure(String message) {
        super(message);
    }
}
