package com.velotra.tv.tavro.services.channellist;

/** A call of the list natives failed. */
public class ChannelListException extends RuntimeException {
    private static final long serialVersionUID = 1L;

    private final int status;

    /**
     * @param message what failed, with which list or record
     * @param status what the native returned; 0 when it returned no status
     */
    public ChannelListException(String message, int status) {
        super(Printable.of(status == 0 ? message : message + " (status " + status + ")"));
        this.status = status;
    }

    /** What the native answered. */
    public int status() {
        return status;
    }
}
