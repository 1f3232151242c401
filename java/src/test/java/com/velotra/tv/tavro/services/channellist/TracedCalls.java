package com.velotra.tv.tavro.services.channellist;

import java.lang.reflect.InvocationTargetException;
import java.lang.reflect.Method;
import java.lang.reflect.Modifier;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.Comparator;
import java.util.List;
import java.util.stream.Stream;

/** A program that {@link TraceTest} runs with the tracer: it calls natives. */
final class TracedCalls {
    /** The list id of the call between the two parts. */
    static final int BETWEEN = 65535;

    private TracedCalls() {}

    /** Calls some natives with every kind of value, and then every native. With an argument, on two threads. */
    public static void main(String[] arguments) throws Exception {
        if (arguments.length > 0) {
            onTwoThreads();
            System.exit(3);
        }
        someNatives();
        VltTvNetworkList.getInstance().native_close(BETWEEN);
        everyNative();
    }

    private static void onTwoThreads() throws InterruptedException {
        List<Thread> threads = new ArrayList<>();
        for (int i = 1; i <= 2; i++) {
            Thread thread = new Thread(() -> VltTvNetworkList.getInstance().getAll(1), "reader \"" + i + "\"");
            thread.start();
            threads.add(thread);
        }
        for (Thread thread : threads) {
            thread.join();
        }
    }

    private static void someNatives() {
        VltTvNetworkList networks = VltTvNetworkList.getInstance();
        networks.native_open(1);
        VltTvNetworkInfoBase info = new VltTvNetworkInfoBase();
        info.setNetworkName("Köln\n");
        info.setNwlNetworkId(7);
        networks.nativeAdd(1, info);
        VltTvNetworkInfoBase change = VltTvNetworkInfoBase.forRecord(new RecordId(1, 1));
        change.setNwlNetworkId(8);
        networks.native_updateInfoList(1, new ArrayList<>(List.of(change)));
        networks.native_getInfo("1,1", Arrays.asList("NetworkName"));
        networks.native_getInfoList(1, null);
        networks.native_updateInfo(1, "no identifier");
        try {
            networks.nativeAdd(1, new Throwing());
        } catch (IllegalStateException e) {
            System.out.println("thrown: " + e.getMessage());
        }
    }

    /** An object that has no values and throws when it is asked for them. */
    private static final class Throwing extends VltTvNetworkInfoBase {
        @Override
        public boolean isContainsKey(VltTvNetworkInfoBase info, String key) {
            throw new IllegalStateException("deliberate");
        }
    }

    private static void everyNative() throws Exception {
        Object[] lists = {VltTvChannelList.getInstance(), VltTvTransportStreamList.getInstance(),
            VltTvNetworkList.getInstance(), VltTvSatelliteList.getInstance()};
        for (Object list : lists) {
            List<Method> natives = Stream.of(list.getClass().getDeclaredMethods())
                    .filter(method -> Modifier.isNative(method.getModifiers()))
                    .sorted(Comparator.comparing(Method::toString)).toList();
            for (Method method : natives) {
                call(list, method);
            }
        }
    }

    private static void call(Object list, Method method) throws Exception {
        Object[] values = Stream.of(method.getParameterTypes())
                .map(type -> type == int.class ? (Object) 0 : type == String.class ? "" : null).toArray();
        method.setAccessible(true);
        try {
            method.invoke(list, values);
        } catch (InvocationTargetException e) {
            System.out.println(method + " throws " + e.getCause());
        }
    }
}
