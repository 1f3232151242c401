package com.velotra.tv.tavro.tool.call;

import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkList;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteList;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamList;
import com.velotra.tv.tavro.tool.input.Similar;
import com.velotra.tv.tavro.tool.records.Kind;
import java.lang.reflect.Method;
import java.lang.reflect.Modifier;
import java.util.Arrays;
import java.util.Comparator;
import java.util.List;
import java.util.Locale;
import java.util.stream.Stream;

/** The natives of the four list classes. */
public final class Natives {
    private Natives() {}

    private static Class<?> listClass(Kind kind) {
        return switch (kind) {
            case SERVICES -> VltTvChannelList.class;
            case STREAMS -> VltTvTransportStreamList.class;
            case NETWORKS -> VltTvNetworkList.class;
            case SATELLITES -> VltTvSatelliteList.class;
        };
    }

    /** Returns the natives of a class by name, the shorter overload first. */
    static List<Native> of(Kind kind) {
        return Arrays.stream(listClass(kind).getDeclaredMethods())
                .filter(method -> Modifier.isNative(method.getModifiers()))
                .sorted(Comparator.comparing(Method::getName).thenComparing(Method::getParameterCount)
                        .thenComparing(method -> Arrays.toString(method.getParameterTypes())))
                .map(method -> new Native(kind, method))
                .toList();
    }

    /** Returns the names of all natives for completion, such as services.native_open. */
    public static List<String> names() {
        return Stream.of(Kind.values())
                .flatMap(kind -> of(kind).stream().map(each -> kind + "." + each.name()).distinct())
                .toList();
    }

    /** Returns a text with each native, its parameters and what they mean. */
    public static String page() {
        StringBuilder page = new StringBuilder();
        for (Kind kind : Kind.values()) {
            List<Native> natives = of(kind);
            page.append(page.isEmpty() ? "" : "\n").append(listClass(kind).getSimpleName()).append(" (")
                    .append(kind).append("), ").append(natives.size()).append(" natives\n");
            for (Native each : natives) {
                page.append("  ").append(each.signature()).append('\n');
                if (!each.meanings().isEmpty()) {
                    page.append("      ").append(each.meanings()).append('\n');
                }
            }
        }
        return page.toString();
    }

    /**
     * Returns the natives with the name that a user has written, as CLASS.NATIVE: several if it is overloaded.
     *
     * @throws WrongCall if there is none
     */
    static List<Native> find(String word) {
        int dot = word.lastIndexOf('.');
        if (dot < 0) {
            throw new WrongCall("'" + word + "' is not CLASS.NATIVE, such as services.native_open; --list prints all");
        }
        Kind kind = kind(word.substring(0, dot));
        String name = word.substring(dot + 1);
        List<Native> natives = of(kind);
        List<Native> found = natives.stream().filter(each -> each.name().equals(name)).toList();
        if (found.isEmpty()) {
            throw new WrongCall(listClass(kind).getSimpleName() + " has no native '" + name + "'"
                    + suggestion(name, natives.stream().map(Native::name).distinct().toList())
                    + "; --list prints all");
        }
        return found;
    }

    private static Kind kind(String name) {
        for (Kind kind : Kind.values()) {
            Class<?> type = listClass(kind);
            if (Stream.of(kind.toString(), type.getSimpleName(), type.getName()).anyMatch(name::equals)) {
                return kind;
            }
        }
        List<String> names = Stream.of(Kind.values())
                .flatMap(kind -> Stream.of(kind.toString(), listClass(kind).getSimpleName())).toList();
        throw new WrongCall("unknown class '" + name + "'" + Similar.suggestion(name, names)
                + "; use services, streams, networks or satellites, or a list class such as VltTvChannelList");
    }

    /** Suggests a native also for a name without "native" or in another spelling, such as "open". */
    private static String suggestion(String name, List<String> names) {
        return names.stream().filter(each -> plain(each).equals(plain(name))).findFirst()
                .map(each -> "; did you mean '" + each + "'?").orElseGet(() -> Similar.suggestion(name, names));
    }

    private static String plain(String name) {
        return name.toLowerCase(Locale.ROOT).replace("_", "").replaceFirst("^native", "");
    }
}
