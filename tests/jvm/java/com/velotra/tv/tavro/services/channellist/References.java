package com.velotra.tv.tavro.services.channellist;

/**
 * Counts the local references that a native holds. The virtual machine's table of JNI functions is replaced for it.
 *
 * <p>Counted is what the native itself gets from JNI functions, from its entry on; not its arguments, nor what the Java
 * code that it calls does.
 */
final class References {
    static {
        System.loadLibrary("tavro_references");
    }

    private References() {}

    /** The most local references that were alive at once in a native. */
    record Peak(int number, String byFunction) {
        @Override
        public String toString() {
            return number + " (" + byFunction + ")";
        }
    }

    /** The peak of a call of one native. The call is made twice: the first time, classes are loaded and linked. */
    static Peak peak(Runnable call) {
        call.run();
        begin();
        call.run();
        int number = end();
        return new Peak(number, maximumByFunction());
    }

    private static native void begin();

    private static native int end();

    private static native String maximumByFunction();
}
