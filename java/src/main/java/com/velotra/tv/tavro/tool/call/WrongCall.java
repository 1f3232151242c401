package com.velotra.tv.tavro.tool.call;

/** A call that cannot be made of the user's words; the message says why, and what to write. */
public final class WrongCall extends RuntimeException {
    private static final long serialVersionUID = 1L;

    WrongCall(String message) {
        super(message);
    }
}
