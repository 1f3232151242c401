package com.velotra.tv.tavro.tool.transponders;

/** A transponder that cannot become a record; the message is the reason. */
public final class NotImportable extends Exception {
    private static final long serialVersionUID = 1L;

    public NotImportable(String reason) {
        super(reason);
    }
}
