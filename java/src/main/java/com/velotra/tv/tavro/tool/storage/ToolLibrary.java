package com.velotra.tv.tavro.tool.storage;

import com.velotra.tv.tavro.tool.input.Failure;
import java.nio.charset.Charset;
import java.nio.charset.StandardCharsets;
import java.nio.file.Path;

/**
 * The natives of the tool itself, in {@code libtavro_tool.so}, which must be loaded first. They read storage
 * directories and list files without the channel list library, and throw {@link Failure} with a message for the user.
 * Kinds are given by their numbers.
 */
final class ToolLibrary {
    private static final String NAME = "tavro_tool";

    /** How Java names files. */
    private static final Charset FILE_NAMES = Charset.forName(System.getProperty("sun.jnu.encoding", "UTF-8"));

    private static boolean loaded;

    private ToolLibrary() {}

    /**
     * Loads the library; a second call does nothing. Call it before the natives.
     *
     * @throws Failure saying where the library was looked for
     */
    static synchronized void load() {
        if (loaded) {
            return;
        }
        try {
            System.loadLibrary(NAME);
            loaded = true;
        } catch (UnsatisfiedLinkError e) {
            throw new Failure("cannot load " + System.mapLibraryName(NAME) + " from java.library.path "
                    + System.getProperty("java.library.path") + "; build it with ./tavro build, and start"
                    + " Java with -Djava.library.path=CLONE/build/host/lib (" + e.getMessage() + ")");
        }
    }

    /** Loads the library, and returns the name of a file as the natives take it. */
    static byte[] bytes(Path path) {
        load();
        return path.toAbsolutePath().toString().getBytes(FILE_NAMES);
    }

    /** Returns the exception for a message in UTF-8. The natives call it. */
    static Failure failure(byte[] message) {
        return new Failure(new String(message, StandardCharsets.UTF_8));
    }

    /** Returns a handle for the other natives until it is closed. Only one thread may use it at a time. */
    static native long openSnapshot(byte[] directory);

    static native void closeSnapshot(long snapshot);

    /** Returns the lists of which {@code kind << 16 | listId} is in a range, without their bytes. */
    static native RawList[] lists(long snapshot, int first, int last);

    /** Returns a list with its bytes; null if it does not exist. */
    static native RawList list(long snapshot, int kind, int listId);

    static native RawList readFile(byte[] path);

    /** Returns the list in the content of a list file; {@code name} is for messages. */
    static native RawList parseFile(byte[] content, byte[] name);

    static native void writeFile(byte[] path, int kind, int listId, byte[] name, byte[] records);

    static native boolean isListFile(byte[] path);

    static native void setReadOnly(boolean readOnly);

    /** Replaces the faults of the stand-ins; null returns to the faults of the environment and of the properties. */
    static native void setFaults(byte[] faults);
}
