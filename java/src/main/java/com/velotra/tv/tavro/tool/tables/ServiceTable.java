package com.velotra.tv.tavro.tool.tables;

import com.velotra.tv.tavro.services.channellist.ServiceRecord;
import com.velotra.tv.tavro.tool.output.Table;
import java.util.List;

/** Services as a table, one per row. */
public final class ServiceTable {
    private ServiceTable() {}

    /** Formats the first {@code most} services of a list in lines of at most {@code columns}. */
    public static String of(List<ServiceRecord> services, int most, int columns) {
        Table table = new Table(">record", ">LCN", "name", ">service id", "type", "scrambled", "shown",
                "transport stream");
        for (ServiceRecord service : services.subList(0, Math.min(most, services.size()))) {
            table.add(
                    service.recordId(),
                    service.logicalChannelNumber() == 0 ? "-" : service.logicalChannelNumber(),
                    service.name(),
                    service.serviceId(),
                    type(service.serviceType()),
                    service.scrambled() ? "yes" : "no",
                    service.visible() ? "yes" : "no",
                    service.transportStream());
        }
        return table.toString(columns) + Table.more(services.size() - most);
    }

    /** Groups service types like the library's keys. */
    private static String type(int serviceType) {
        return switch (serviceType) {
            case 1, 4, 7 -> "TV";
            case 2, 5, 8 -> "radio";
            default -> "other";
        };
    }
}
