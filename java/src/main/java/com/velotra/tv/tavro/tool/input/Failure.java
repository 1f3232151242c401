package com.velotra.tv.tavro.tool.input;

/** A request of the user that cannot be fulfilled; the message says why. */
public final class Failure extends RuntimeException {
    private static final long serialVersionUID = 1L;

    public Failure(String message) {
        super(message);
    }
}
