package com.velotra.tv.tavro.services.channellist;

import java.util.Arrays;
import java.util.List;
import java.util.function.Supplier;
import java.util.stream.Stream;

/**
 * Record objects with many values, for scenarios.
 *
 * @param path what is special about the object
 * @param kind the list class
 * @param make makes the object
 * @param storedRecord the record that an update reads
 */
record Filled(String path, ListClass kind, Supplier<KeyedValues> make, byte[] storedRecord) {
    private static final int DVB = 2;

    /** An object, and the look-up of one of its fields that is to fail. */
    record Failure(Filled filled, String field) {
        KeyedValues object(String identifier) {
            return filled.named(identifier);
        }

        KeyedValues object() {
            return filled.object();
        }

        Runnable stored() {
            return filled.stored();
        }
    }

    KeyedValues object() {
        return make.get();
    }

    KeyedValues named(String identifier) {
        return kind.name(make.get(), identifier);
    }

    Runnable stored() {
        return () -> Script.always(kind.call("get_rec"), storedRecord);
    }

    /** The objects that differ in their calls: of each broadcast type, of each medium. The first has all values. */
    static List<Filled> of(ListClass kind) {
        return switch (kind) {
            case SERVICES -> Stream.of(
                    service("all values of a DVB service", DVB), service("all values, broadcast type 3", 3),
                    service("all values, broadcast type 5", 5), service("all values of a DTMB service", 7),
                    service("all values, unknown broadcast type", 0), regions(2), regions(0), nulls(kind),
                    badReferences(kind)).toList();
            case STREAMS -> Stream.of(
                    stream("all values of a terrestrial stream", 1), stream("all values of a cable stream", 2),
                    stream("all values of a satellite stream", 3), stream("all values, unknown medium", 0),
                    manyFrequencies(), nulls(kind), badReferences(kind)).toList();
            default -> List.of(all(kind), nulls(kind));
        };
    }

    /** An object with all values, of which a name is to fail. */
    static Failure failure(ListClass kind) {
        return new Failure(of(kind).get(0), "Name\", \"Ljava"); // the first name
    }

    private static Filled all(ListClass kind) {
        return new Filled("all values", kind, () -> FilledObjects.withAll(kind.object()), kind.record(5));
    }

    private static Filled service(String path, int type) {
        ListClass kind = ListClass.SERVICES;
        return new Filled(path, kind, () -> {
            VltTvChannelInfoBase service = (VltTvChannelInfoBase) FilledObjects.withAll(kind.object());
            service.broadcastType = type;
            return service;
        }, kind.record(5));
    }

    private static Filled regions(int number) {
        ListClass kind = ListClass.SERVICES;
        return new Filled(number + " region codes", kind, () -> {
            VltTvChannelInfoBase service = (VltTvChannelInfoBase) kind.object();
            service.setBroadcastType(DVB).setTargetRegionCode(new int[number]);
            return service;
        }, kind.record(5));
    }

    private static Filled stream(String path, int medium) {
        ListClass kind = ListClass.STREAMS;
        return new Filled(path, kind, () -> {
            VltTvTransportStreamInfoBase stream = (VltTvTransportStreamInfoBase) FilledObjects.withAll(kind.object());
            stream.broadcastMedium = medium;
            stream.alternateFrequencyInfoList = Arrays.copyOf(stream.alternateFrequencyInfoList, 1);
            return stream;
        }, kind.record(5));
    }

    private static Filled manyFrequencies() {
        ListClass kind = ListClass.STREAMS;
        return new Filled("more alternate frequencies than fit", kind, () -> {
            VltTvTransportStreamInfoBase stream = (VltTvTransportStreamInfoBase) kind.object();
            stream.setAlternateFrequencyInfoList(new VltTvTransportStreamInfoBase.AlternateFrequencyInfoBase[6]);
            return stream;
        }, kind.record(5));
    }

    /** Every value that is an object is null. */
    private static Filled nulls(ListClass kind) {
        return new Filled("null values", kind, () -> {
            KeyedValues object = FilledObjects.withAll(kind.object());
            FilledObjects.clearObjects(object);
            if (object instanceof VltTvChannelInfoBase service) {
                service.broadcastType = DVB;
            }
            return object;
        }, kind.record(5));
    }

    private static Filled badReferences(ListClass kind) {
        return new Filled("references that cannot be parsed", kind, () -> {
            KeyedValues object = kind.object();
            if (object instanceof VltTvChannelInfoBase service) {
                service.setTslRecId(null).setSatlRecId(null);
                service.tslRecId = "none";
                service.satlRecId = "1,a";
            } else if (object instanceof VltTvTransportStreamInfoBase stream) {
                stream.setTslNwlRecId(null).setTslSatlRecId(null);
                stream.tslNwlRecId = "none";
                stream.tslSatlRecId = "1,a";
            }
            return object;
        }, kind.record(5));
    }
}
