package com.velotra.tv.tavro.tool.view;

import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Layout;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.records.RecordList;
import com.velotra.tv.tavro.tool.storage.ListEntry;
import com.velotra.tv.tavro.tool.view.PageData.Lists;
import com.velotra.tv.tavro.tool.view.PageData.Stored;
import java.io.IOException;
import java.io.Writer;
import java.nio.ByteBuffer;
import java.nio.ByteOrder;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.Optional;
import java.util.stream.IntStream;

/** Lists for pages, made without the library. */
final class Fixture {
    static final int STREAMS = 30;
    static final int SERVICES = 250;
    static final String EVIL = "<img src=x onerror=alert(1)><script>alert(2)</script>";

    private Fixture() {}

    /** Returns a record with the values of some fields: name, value, name, value, … */
    static Record record(Kind kind, Object... values) {
        byte[] bytes = new byte[kind.recordBytes()];
        for (int i = 0; i < values.length; i += 2) {
            Layout.of(kind).field(values[i].toString()).orElseThrow().parse(values[i + 1].toString(), bytes);
        }
        return Record.of(kind, bytes);
    }

    static Record service(int number, String name) {
        return record(Kind.SERVICES, "record_id", number, "name", name, "broadcast_type", 2, "service_type", 1,
                "service_id", (1000 + number) % 65536, "lcn", number,
                "tsl_id", 1, "tsl_record_id", number % STREAMS + 1,
                "nwl_id", 1, "nwl_record_id", 1, "satl_id", 1, "satl_record_id", 1, "network_mask", "0x8");
    }

    /** The services of the page: record 7 has a name with markup. */
    static List<Record> services() {
        return IntStream.rangeClosed(1, SERVICES)
                .mapToObj(i -> service(i, i == 7 ? EVIL : String.format("Service %03d", i))).toList();
    }

    /** Services with the names "Service 00000", "Service 00001", … */
    static List<Record> manyServices(int count) {
        byte[] bytes = service(0, "Service 00000").bytes();
        int name = offset("name");
        List<Record> services = new ArrayList<>();
        for (int i = 0; i < count; i++) {
            for (int digit = 0, rest = i; digit < 5; digit++, rest /= 10) {
                bytes[name + 12 - digit] = (byte) ('0' + rest % 10);
            }
            ByteBuffer.wrap(bytes).order(ByteOrder.LITTLE_ENDIAN).putShort(offset("record_id"), (short) i)
                    .putShort(offset("lcn"), (short) i).putShort(offset("tsl_record_id"), (short) (i % STREAMS + 1));
            services.add(Record.of(Kind.SERVICES, bytes));
        }
        return services;
    }

    private static int offset(String field) {
        return Layout.of(Kind.SERVICES).field(field).orElseThrow().offset();
    }

    private static List<Record> satelliteStreams() {
        return IntStream.rangeClosed(1, STREAMS).mapToObj(i -> record(Kind.STREAMS, "record_id", i,
                "broadcast_type", 2, "medium", 3, "frequency", 10_700_000 + i * 39_000, "sat_polarization", i % 2,
                "sat_symbol_rate", 27_500_000, "transport_stream_id", 1000 + i, "original_network_id", 1,
                "nwl_id", 1, "nwl_record_id", 1, "satl_id", 1, "satl_record_id", 1)).toList();
    }

    private static List<Record> otherStreams() {
        return List.of(
                record(Kind.STREAMS, "record_id", 1, "medium", 1, "frequency", 529_833, "ter_bandwidth", 3),
                record(Kind.STREAMS, "record_id", 2, "medium", 1, "frequency", 538_000, "ter_bandwidth", 3),
                record(Kind.STREAMS, "record_id", 3, "medium", 2, "frequency", 410_000, "cab_symbol_rate", 6_900_000));
    }

    private static Stored list(Kind kind, int listId, List<Record> records) {
        String name = "list_" + kind.code() + "_" + listId;
        return new Stored(new ListEntry(kind, listId, name, records.size(), 3, Optional.empty()),
                RecordList.of(kind, listId, name, records));
    }

    /** Returns a directory with lists of all kinds, and with these services. */
    static Lists directory(String name, List<Record> services) {
        List<Record> satellites = List.of(
                record(Kind.SATELLITES, "record_id", 1, "orbital_position", 192, "name", "Uno"),
                record(Kind.SATELLITES, "record_id", 2, "orbital_position", -50, "name", "Due"),
                record(Kind.SATELLITES, "record_id", 3, "orbital_position", 3600, "name", "Any"));
        return new Lists(Path.of("/", name), List.of(
                list(Kind.SERVICES, 1, services),
                list(Kind.STREAMS, 1, satelliteStreams()),
                list(Kind.STREAMS, 2, otherStreams()),
                list(Kind.NETWORKS, 1, List.of(record(Kind.NETWORKS, "record_id", 1, "network_id", 1, "name", "Net"))),
                list(Kind.SATELLITES, 1, satellites)));
    }

    /** Returns the services after some changes: 5 has another name, 7 is gone, 251 is new. */
    static List<Record> changedServices() {
        List<Record> changed = new ArrayList<>(services());
        changed.set(4, service(5, "Cinque"));
        changed.remove(6);
        changed.add(service(251, "Nuovo"));
        return changed;
    }

    static Path page(Path file, Lists... directories) throws IOException {
        try (Writer out = Files.newBufferedWriter(file)) {
            Page.write(new PageData(List.of(directories)), out);
        }
        return file;
    }
}
