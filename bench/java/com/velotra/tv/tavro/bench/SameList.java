package com.velotra.tv.tavro.bench;

import com.velotra.tv.tavro.services.channellist.BroadcastType;
import com.velotra.tv.tavro.services.channellist.NativeServices;
import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.ServiceRecord;
import com.velotra.tv.tavro.services.channellist.VltTvChannelInfoBase;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.sql.SQLException;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import java.util.stream.IntStream;

/** One list of services, stored in every way that is compared, with the same records. */
final class SameList implements AutoCloseable {
    final int listId;
    final int size;
    final String[] identifiers;
    final BlobTable blobs;
    final ColumnTable columns;
    final List<Service> services;
    final Path stored;
    final Path json;
    final Path serialized;

    /**
     * Creates the list in every form.
     *
     * @throws IllegalStateException if one of them reads back other records than the natives
     */
    SameList(Path home, int listId, int size) throws Exception {
        this.listId = listId;
        this.size = size;
        identifiers = IntStream.rangeClosed(1, size).mapToObj(id -> listId + "," + id).toArray(String[]::new);
        List<byte[]> records = fill(listId, IntStream.range(0, size).mapToObj(SameList::service)::iterator);
        services = records.stream().map(ServiceRecord::new).map(Service::of).toList();
        String name = "services-" + size;
        blobs = new BlobTable(home.resolve(name + "-blobs.db"));
        columns = new ColumnTable(home.resolve(name + "-columns.db"));
        blobs.addAll(records);
        columns.addAll(services);
        stored = home.resolve(name + ".list");
        json = home.resolve(name + ".json");
        serialized = home.resolve(name + ".serialized");
        ListFiles.writeJson(json, services);
        ListFiles.writeSerialized(serialized, services);
        same(Arrays.deepEquals(records.toArray(), blobs.readAll().toArray()), "the table of blobs");
        same(services.equals(columns.readAll()), "the table of columns");
        same(services.equals(ListFiles.readJson(json)), "the JSON file");
        same(services.equals(ListFiles.readSerialized(serialized)), "the file of serialized objects");
        same(Arrays.equals(records.get(size - 1), NativeServices.read(identifiers[size - 1])), "the list");
        same(Arrays.equals(records.get(size - 1), blobs.read(size)), "the table of blobs");
        same(services.get(size - 1).equals(columns.read(size)), "the table of columns");
    }

    private void same(boolean equal, String what) {
        if (!equal) {
            throw new IllegalStateException(
                    what + " of " + size + " services does not contain the records of the list");
        }
    }

    /** Adds services to an empty list; returns their records. */
    static List<byte[]> fill(int listId, Iterable<VltTvChannelInfoBase> services) {
        NativeServices.open(listId);
        for (VltTvChannelInfoBase service : services) {
            NativeServices.add(listId, service);
        }
        byte[] all = NativeServices.readAll(listId);
        List<byte[]> records = new ArrayList<>();
        for (int start = 0; start < all.length; start += ServiceRecord.SIZE) {
            records.add(Arrays.copyOfRange(all, start, start + ServiceRecord.SIZE));
        }
        return records;
    }

    /** Makes a service with the fields that an import sets. */
    static VltTvChannelInfoBase service(int number) {
        VltTvChannelInfoBase service = new VltTvChannelInfoBase();
        service.setBroadcastType(BroadcastType.DVB)
                .setServiceId(number & 0xFFFF)
                .setServiceType(1)
                .setServiceName("Service number " + number)
                .setTslRecId(new RecordId(1, number / 10))
                .setSatlRecId(new RecordId(1, 11))
                .setMajorChannelNumber(number % 10_000)
                .setVnetActive(true)
                .setVnetVisible(true)
                .setVnetNumericSelectable(true)
                .setVnetScrambled(number % 3 == 0)
                .setCaSystemId(number % 3 == 0 ? 0x1702 : 0)
                .setFreeCaMode(number % 3 == 0 ? 1 : 0)
                .setSdtServiceType(1);
        return service;
    }

    @Override
    public void close() throws SQLException, IOException {
        blobs.close();
        columns.close();
        for (Path file : List.of(stored, json, serialized)) {
            Files.deleteIfExists(file);
        }
    }
}
