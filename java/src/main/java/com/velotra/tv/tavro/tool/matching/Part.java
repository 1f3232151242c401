package com.velotra.tv.tavro.tool.matching;

import com.velotra.tv.tavro.services.channellist.ServiceFlag;
import com.velotra.tv.tavro.tool.records.Kind;
import java.util.Arrays;
import java.util.EnumMap;
import java.util.List;
import java.util.Locale;
import java.util.Map;

/**
 * The parts of a list that belong to the user, not to the broadcast. This table says which fields they are; a flag that
 * says whether the user edited a value goes with the value.
 */
public enum Part {
    /** The order of the records. */
    ORDER(Map.of()),
    /** Channel numbers. The index of a number goes with it; the number before any edit is a value of the broadcast. */
    NUMBERS(Map.of(Kind.SERVICES, List.of(
            whole(Kind.SERVICES, "channel_id"), whole(Kind.SERVICES, "lcn"), whole(Kind.SERVICES, "lcn_index"),
            flags("option_mask", ServiceFlag.NUMBER_EDITED, ServiceFlag.LCN_APPLIED)))),
    /** Names. The short name of a service is a value of the broadcast. */
    NAMES(Map.of(
            Kind.SERVICES, List.of(whole(Kind.SERVICES, "name"), flags("option_mask", ServiceFlag.NAME_EDITED)),
            Kind.STREAMS, List.of(whole(Kind.STREAMS, "name")),
            Kind.NETWORKS, List.of(whole(Kind.NETWORKS, "name")),
            Kind.SATELLITES, List.of(whole(Kind.SATELLITES, "name"), whole(Kind.SATELLITES, "name_end")))),
    /** Hidden, locked and deleted services; favorite networks. */
    FLAGS(Map.of(
            Kind.SERVICES, List.of(
                    flags("network_mask", ServiceFlag.VISIBLE, ServiceFlag.EPG, ServiceFlag.CHANNEL_BLOCK,
                            ServiceFlag.NUMERIC_SELECTABLE),
                    flags("option_mask", ServiceFlag.USER_TMP_UNLOCK, ServiceFlag.DELETED_BY_USER)),
            Kind.NETWORKS, List.of(whole(Kind.NETWORKS, "flags"))));

    private final Map<Kind, List<Bits>> bits;

    Part(Map<Kind, List<Bits>> bits) {
        this.bits = bits.isEmpty() ? Map.of() : new EnumMap<>(bits);
    }

    private static Bits whole(Kind kind, String field) {
        return new Bits(Fields.of(kind, field), Bits.WHOLE);
    }

    private static Bits flags(String word, ServiceFlag... flags) {
        return new Bits(Fields.of(Kind.SERVICES, word),
                Arrays.stream(flags).mapToLong(flag -> Fields.bit(word, flag)).reduce(0, (all, bit) -> all | bit));
    }

    /** Returns the fields that hold this part in records of a kind. */
    List<Bits> of(Kind kind) {
        return bits.getOrDefault(kind, List.of());
    }

    /** Returns the name of the part in options. */
    @Override
    public String toString() {
        return name().toLowerCase(Locale.ROOT);
    }
}
