package com.velotra.tv.tavro.tool.matching;

import com.velotra.tv.tavro.services.channellist.ServiceFlag;
import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Layout;
import java.util.Map;
import java.util.function.Function;
import java.util.stream.Collectors;
import java.util.stream.Stream;

/** Fields that have a meaning here. */
final class Fields {
    static final Map<Kind, Field> NAME = ofEach("name");
    static final Map<Kind, Field> RECORD_ID = ofEach("record_id");

    private Fields() {}

    /** Returns the field of a kind with that name, which exists. */
    static Field of(Kind kind, String name) {
        return Layout.of(kind).field(name).orElseThrow();
    }

    /** Returns the bit of a flag in a flag word of services. */
    static long bit(String word, ServiceFlag flag) {
        return of(Kind.SERVICES, word).flags().stream().filter(bit -> bit.key().equals(flag.key())).findFirst()
                .orElseThrow().mask();
    }

    private static Map<Kind, Field> ofEach(String name) {
        return Stream.of(Kind.values()).collect(Collectors.toMap(Function.identity(), kind -> of(kind, name)));
    }
}
