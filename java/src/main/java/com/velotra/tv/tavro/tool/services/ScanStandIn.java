package com.velotra.tv.tavro.tool.services;

import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.tool.storage.Sqlite3;
import java.nio.file.Path;
import java.util.Map;
import java.util.stream.Collectors;

/**
 * Notes the network of services, as the middleware's own scan does on a TV.
 *
 * <p>No key of a channel object stores it: the bytes 30 to 33 of a service record are the middleware's to write. Here
 * they are written into the stored records through Debian's sqlite3.
 */
final class ScanStandIn {
    private ScanStandIn() {}

    /**
     * Makes services of one list point at network records.
     *
     * @param networks the network record of each service, by the service's record id
     * @throws com.velotra.tv.tavro.tool.input.Failure when the database cannot be used; none is noted then
     */
    static void noteNetworks(Path storage, int listId, Map<Integer, RecordId> networks) {
        Map<RecordId, String> services = networks.entrySet().stream().collect(Collectors.groupingBy(
                Map.Entry::getValue, Collectors.mapping(entry -> entry.getKey().toString(), Collectors.joining(","))));
        StringBuilder sql = new StringBuilder("BEGIN IMMEDIATE;\n");
        services.forEach((network, records) -> sql.append(String.format(
                "UPDATE records SET bytes = CAST(substr(bytes, 1, 30) || x'%s%s' || substr(bytes, 35) AS BLOB)"
                        + " WHERE kind = 1 AND list_id = %d AND record_id IN (%s);%n",
                littleEndian(network.listId()), littleEndian(network.recordId()), listId, records)));
        sql.append(String.format("UPDATE lists SET version = version + 1 WHERE kind = 1 AND list_id = %d;%nCOMMIT;%n",
                listId));
        Sqlite3.run(storage.resolve("lists.db"), sql.toString());
    }

    private static String littleEndian(int number) {
        return String.format("%02x%02x", number & 0xFF, number >> 8 & 0xFF);
    }
}
