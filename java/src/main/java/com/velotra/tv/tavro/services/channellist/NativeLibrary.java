package com.velotra.tv.tavro.services.channellist;

/** Loads the library that the natives of the list classes are in. */
final class NativeLibrary {
    private static final String NAME = "velotra_tavro_channellist";

    private NativeLibrary() {}

    /**
     * Loads the library; a second call does nothing.
     *
     * @throws UnsatisfiedLinkError saying where the library was looked for
     */
    static void load() {
        try {
            System.loadLibrary(NAME);
        } catch (UnsatisfiedLinkError e) {
            UnsatisfiedLinkError clearer = new UnsatisfiedLinkError(
                    "cannot load " + System.mapLibraryName(NAME) + " from java.library.path "
                            + System.getProperty("java.library.path") + "; build it with ./tavro build, and start"
                            + " Java with -Djava.library.path=CLONE/build/host/lib (" + e.getMessage() + ")");
            clearer.initCause(e);
            throw clearer;
        }
    }
}
