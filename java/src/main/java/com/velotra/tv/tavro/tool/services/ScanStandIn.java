package com.velotra.tv.tavro.tool.services;

import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.tool.storage.Sqlite3;
import java.nio.file.Path;
import java.util.Map;
import java.util.stream.Collectors;

/**
 * Writes the network references of service records, which the middleware's own scan does on a TV.
 *
 * <p>No key of the Java object sets them: only the middleware writes bytes 30 to 33 of a service record. Here they are
 * written into the database by Debian's sqlite3.
 */
final class ScanStandIn {
    private ScanStandIn() {}

    /**
     * Makes services of a list refer to network records.
     *
     * @param networks network record of each service, by record id of the service
     * @throws com.velotra.tv.tavro.tool.input.Failure if the database cannot be used; nothing is written then
     */
    static void writeNetworks(Path storage, int listId, Map<Integer, RecordId> networks) {
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
