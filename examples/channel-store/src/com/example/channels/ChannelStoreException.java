package com.example.channels;

/** A change or a load failed. The message is for the log; menus show a text of their own. */
public class ChannelStoreException extends Exception {
    private static final long serialVersionUID = 1L;

    ChannelStoreException(String message, Throwable cause) {
        super(message, cause);
    }
}
