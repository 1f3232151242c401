package com.velotra.tv.tavro.services.channellist;

import java.util.List;
import java.util.Map;
import java.util.concurrent.Callable;

/**
 * Records the JNI calls of natives. Loading the class replaces the virtual machine's table of JNI functions.
 *
 * <p>Recorded is what the natives of the list classes themselves call on this thread; not what the Java code does that
 * they call.
 */
final class JniCalls {
    static {
        System.loadLibrary("tavro_jni_calls");
    }

    private JniCalls() {}

    /**
     * One call of a native.
     *
     * @param result what the native returned
     * @param thrown the exception that was pending when it returned, or null
     * @param calls JNI calls, middleware calls and log lines, in order
     * @param held what the native holds at its end, sorted
     * @param failed whether there was a call to be made to fail
     */
    record Recording(Object result, Throwable thrown, List<String> calls, List<String> held, boolean failed) {}

    /**
     * Which call fails: of those that can fail and whose text contains a text, the one with that number, from 1 on. A
     * look-up or an allocation then returns null with the exception of that function; a call of a Java method throws an
     * IllegalStateException.
     */
    record Failing(String text, int number) {
        static final Failing NONE = new Failing("", 0);

        /** The first call whose text contains a text. */
        static Failing first(String text) {
            return new Failing(text, 1);
        }

        /** The call with that number whose text contains a text. */
        static Failing nth(int number, String text) {
            return new Failing(text, number);
        }

        /** The call with that number of all that can fail. */
        static Failing nth(int number) {
            return nth(number, "");
        }
    }

    /** Records a call. The platform must be scripted before. The names stand for the objects wherever they occur. */
    static Recording record(Map<String, Object> names, Failing failing, Callable<Object> call) {
        Object result = null;
        Throwable thrown = null;
        begin(names.keySet().toArray(String[]::new), names.values().toArray(), failing.text(), failing.number());
        try {
            result = call.call();
        } catch (Throwable e) {
            thrown = e;
        }
        end();
        return new Recording(result, thrown, List.of(lines()), List.of(held()), failed());
    }

    /** The most local references that were alive at once in a native. */
    record Peak(int number, String byFunction) {
        @Override
        public String toString() {
            return number + " (" + byFunction + ")";
        }
    }

    /** The peak of a call of one native. */
    static Peak peak(Runnable call) {
        beginCounting();
        call.run();
        end();
        return new Peak(maximum(), maximumByFunction());
    }

    private static native void begin(String[] names, Object[] objects, String failingText, int failingNumber);

    private static native void beginCounting();

    private static native void end();

    private static native String[] lines();

    private static native String[] held();

    private static native boolean failed();

    private static native int maximum();

    private static native String maximumByFunction();
}
