package com.velotra.tv.tavro.tool.transponders;

/** Thrown for a transponder or service that cannot become a record; the message is the reason. */
public final class NotImportable extends Exception {
    private static final long serialVersionUID = 1L;

    public NotImportable(String reason) {
        super(reason);
    }
}
