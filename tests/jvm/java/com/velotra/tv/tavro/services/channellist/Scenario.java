package com.velotra.tv.tavro.services.channellist;

import java.lang.reflect.InvocationTargetException;
import java.lang.reflect.Method;
import java.util.Arrays;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.stream.Collectors;

/**
 * One native on one of its paths, over the scripted platform.
 *
 * @param kind the list class
 * @param method the native
 * @param path what is special about this call, in words
 * @param setUp scripts the platform
 * @param failing the JNI call that fails
 * @param arguments the arguments of the native
 */
record Scenario(
        ListClass kind, Method method, String path, Runnable setUp, JniCalls.Failing failing, List<Object> arguments) {
    /** Makes the state in which the path begins. */
    void begin() {
        Script.reset();
        Script.forgetHandles();
        for (ListClass each : ListClass.values()) {
            each.leaveOneListOpen();
        }
        VltTvChannelList.getInstance().nativeSetup(); // a manager that knows no path
        Script.reset();
        setUp.run();
        Script.logLevel("d");
    }

    /** Begins the path, calls the native and records it. */
    JniCalls.Recording record() {
        return record(failing);
    }

    /** The same with another JNI call that fails. */
    JniCalls.Recording record(JniCalls.Failing another) {
        begin();
        return JniCalls.record(names(), another, this::call);
    }

    /** What the native returns. Its exceptions are thrown as they are. */
    Object call() throws Exception {
        try {
            return method.invoke(kind.list(), arguments.toArray());
        } catch (InvocationTargetException e) {
            if (e.getCause() instanceof Exception cause) {
                throw cause;
            }
            throw (Error) e.getCause();
        }
    }

    /** The native: {@code VltTvChannelList.native_open(int, String)}. */
    String nativeName() {
        return nativeName(method);
    }

    static String nativeName(Method method) {
        return method.getDeclaringClass().getSimpleName() + "." + method.getName()
                + Arrays.stream(method.getParameterTypes()).map(Class::getSimpleName)
                        .collect(Collectors.joining(", ", "(", ")"));
    }

    /** The arguments that are objects, and the elements of lists, under the names of the parameters. */
    Map<String, Object> names() {
        Map<String, Object> names = new LinkedHashMap<>();
        names.put("this", kind.list());
        for (int i = 0; i < arguments.size(); i++) {
            Object argument = arguments.get(i);
            if (argument != null && !(argument instanceof Integer)) {
                name(names, parameter(i), argument);
            }
        }
        return names;
    }

    /** The name of a parameter: the type of its value, or what a text stands for. */
    String parameter(int index) {
        Class<?> type = method.getParameterTypes()[index];
        if (type == String.class) {
            return method.getName().matches(".*([oO]pen|[sS]tore)") ? "path" : "identifier";
        } else if (type == List.class) {
            return method.getName().contains("pdate") ? "objects" : "keys";
        }
        return type == int.class ? "number" : "object";
    }

    private static void name(Map<String, Object> names, String name, Object object) {
        names.put(name, object);
        if (object instanceof List<?> list && list.size() <= 9) {
            for (int i = 0; i < list.size(); i++) {
                if (list.get(i) != null) {
                    names.put(name + "[" + i + "]", list.get(i));
                }
            }
        }
    }

    @Override
    public String toString() {
        return nativeName() + ": " + path;
    }
}
