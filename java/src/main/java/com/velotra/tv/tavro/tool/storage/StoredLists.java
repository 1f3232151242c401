package com.velotra.tv.tavro.tool.storage;

import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamList;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.RecordList;
import java.nio.file.Path;
import java.util.List;

/** The lists of the storage directory that the library uses. */
public final class StoredLists {
    private static final int MOST_NAMED = 10; // lists in a message

    private StoredLists() {}

    /** Returns all lists, by kind and id. */
    public static List<ListEntry> all() {
        try (Snapshot snapshot = Snapshot.open(Storage.directory())) {
            return snapshot.lists();
        }
    }

    /**
     * Reads a list. The bytes of services and transport streams come from the natives, the bytes of networks and
     * satellites from the storage, because the natives return these as objects.
     *
     * @throws Failure if the list does not exist or cannot be read
     */
    public static RecordList read(Kind kind, int listId) {
        Path directory = Storage.directory();
        try (Snapshot snapshot = Snapshot.open(directory)) {
            ListEntry entry = snapshot.entry(kind, listId).orElseThrow(() ->
                    missing(kind, listId, directory, snapshot.lists()));
            return switch (kind) {
                case SERVICES -> fromNative(entry, VltTvChannelList.getInstance().getAllBytes(listId));
                case STREAMS -> fromNative(entry, VltTvTransportStreamList.getInstance().getAllBytes(listId));
                default -> snapshot.list(kind, listId).orElseThrow();
            };
        }
    }

    /** A list that a storage directory does not have; the message names those that it has. */
    public static Failure missing(Kind kind, int listId, Path directory, List<ListEntry> lists) {
        List<String> ids = lists.stream().filter(list -> list.kind() == kind)
                .map(list -> String.valueOf(list.listId())).toList();
        String named = ids.isEmpty() ? "none; " + System.getProperty("tavro.command", "./tavro") + " import makes some"
                : kind.noun() + (ids.size() == 1 ? " list " : " lists ")
                        + String.join(", ", ids.subList(0, Math.min(ids.size(), MOST_NAMED)))
                        + (ids.size() > MOST_NAMED ? ", …" : "");
        return new Failure("no " + kind.noun() + " list " + listId + " in " + directory + "; it has " + named);
    }

    /** The natives return a list that cannot be read without records. */
    private static RecordList fromNative(ListEntry entry, byte[] records) {
        if (records.length == 0 && entry.records() > 0) {
            throw new Failure(entry.kind().noun() + " list " + entry.listId() + " in " + Storage.directory() + " has "
                    + entry.records() + " records that cannot be read; see the log line of TavroHost");
        }
        return RecordList.of(entry.kind(), entry.listId(), entry.name(), records);
    }
}
