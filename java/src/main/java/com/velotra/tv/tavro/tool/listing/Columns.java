package com.velotra.tv.tavro.tool.listing;

import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Layout;
import com.velotra.tv.tavro.tool.records.Record;
import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Locale;
import java.util.Map;
import java.util.Optional;

/** The columns of each record kind: computed ones, and one for each field and each flag. */
public final class Columns {
    /** Short names of columns, for every kind that has the column. */
    private static final Map<String, String> ALIASES = Map.ofEntries(
            Map.entry("record", "record_id"), Map.entry("freq", "frequency"), Map.entry("pol", "polarization"),
            Map.entry("sr", "symbol_rate"), Map.entry("mod", "modulation"), Map.entry("bw", "bandwidth"),
            Map.entry("sid", "service_id"), Map.entry("tsid", "transport_stream_id"),
            Map.entry("onid", "original_network_id"), Map.entry("nid", "network_id"), Map.entry("pos", "position"),
            Map.entry("sat", "satellite"));

    private final Map<String, Column> byName = new LinkedHashMap<>();
    private final List<Column> usual = new ArrayList<>();
    private final List<Column> optional = new ArrayList<>();

    private Columns(Kind kind) {
        computed(kind).forEach(column -> byName.put(column.name(), column));
        Layout.of(kind).fields().forEach(this::addField);
    }

    /** Adds the column of a field, and one for each of its flags under the name of its Java key. */
    private void addField(Field field) {
        byName.putIfAbsent(field.name(), Column.of(field));
        field.flags().forEach(flag -> byName.putIfAbsent(flag.key().toLowerCase(Locale.ROOT),
                Column.flag(flag.key(), flag.key(), field, flag.key())));
    }

    private static List<Column> computed(Kind kind) {
        return switch (kind) {
            case SERVICES -> ServiceColumns.ALL;
            case STREAMS -> StreamColumns.ALL;
            case NETWORKS -> NetworkColumns.ALL;
            case SATELLITES -> SatelliteColumns.ALL;
        };
    }

    // Which columns a list is printed with, by their short names. Those with a question mark are printed only if one of
    // the records has a value.
    private static final class Holder {
        static final Map<Kind, Columns> ALL = Map.of(
                Kind.SERVICES, new Columns(Kind.SERVICES).usual("record", "lcn", "name", "sid", "type", "scrambled",
                        "shown", "stream_record", "freq?", "pol?", "satellite?"),
                Kind.STREAMS, new Columns(Kind.STREAMS).usual("record", "standard", "freq", "pol?", "sr", "tsid",
                        "onid", "network_record", "network?", "satellite?", "name"),
                Kind.NETWORKS, new Columns(Kind.NETWORKS).usual("record", "network_id", "name", "version", "favorite",
                        "candidate"),
                Kind.SATELLITES, new Columns(Kind.SATELLITES).usual("record", "position", "name", "in_use", "lnb",
                        "diseqc"));
    }

    private Columns usual(String... names) {
        for (String name : names) {
            boolean always = !name.endsWith("?");
            Column column = get(always ? name : name.substring(0, name.length() - 1)).orElseThrow();
            usual.add(column);
            if (!always) {
                optional.add(column);
            }
        }
        return this;
    }

    /** Returns the columns of a kind. */
    public static Columns of(Kind kind) {
        return Holder.ALL.get(kind);
    }

    /** Returns all columns, computed ones first. */
    public List<Column> all() {
        return List.copyOf(byName.values());
    }

    /** Returns the columns that a list is printed with, unless others are chosen. */
    public List<Column> usual() {
        return List.copyOf(usual);
    }

    /** Returns whether a usual column is left out of a table in which it has no value. */
    public boolean isOptional(Column column) {
        return optional.contains(column);
    }

    /** Returns the column with that name or short name; case does not matter, and - may be used for _. */
    public Optional<Column> get(String name) {
        String plain = name.toLowerCase(Locale.ROOT).replace('-', '_');
        Column column = byName.get(plain);
        return Optional.ofNullable(column != null ? column : byName.get(ALIASES.getOrDefault(plain, plain)));
    }

    /** Returns the short names of a column, in alphabetical order. */
    public List<String> shortNames(Column column) {
        return ALIASES.entrySet().stream()
                .filter(alias -> alias.getValue().equals(column.name()) && !byName.containsKey(alias.getKey()))
                .map(Map.Entry::getKey).sorted().toList();
    }

    // What the columns of all kinds share.

    static Field field(Kind kind, String name) {
        return Layout.of(kind).field(name).orElseThrow();
    }

    /** The column of a field. */
    static Column column(Kind kind, String name, String heading) {
        return Column.of(field(kind, name)).headed(heading);
    }

    /** LIST,RECORD as two fields say it; null for list 0, which stands for no record. */
    static String reference(Field list, Field record, Record of) {
        long listId = list.number(of);
        return listId == 0 ? null : listId + "," + record.number(of);
    }
}
