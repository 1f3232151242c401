package com.velotra.tv.tavro.tool.editing;

import com.velotra.tv.tavro.services.channellist.TvList;
import com.velotra.tv.tavro.services.channellist.VltTvChannelInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.tool.changes.UndoHistory;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.storage.ListEntry;
import com.velotra.tv.tavro.tool.storage.Storage;
import com.velotra.tv.tavro.tool.storage.StoredLists;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Comparator;
import java.util.List;
import java.util.stream.Stream;

/** The storage of this process, for tests of commands that change it. */
final class EditedLists {
    private EditedLists() {}

    /** Deletes all lists, and what can be undone. */
    static void deleteAll() throws IOException {
        Path undo = Storage.directory().resolve("undo");
        if (Files.exists(undo)) {
            try (Stream<Path> files = Files.walk(undo)) {
                for (Path file : files.sorted(Comparator.reverseOrder()).toList()) {
                    Files.delete(file);
                }
            }
        }
        VltTvChannelList.getInstance(); // makes the storage, if there is none
        VltTvChannelList.getInstance().exists(1);
        for (ListEntry list : StoredLists.all()) {
            TvList lists = list.kind().lists();
            lists.delete(list.listId());
        }
    }

    /** Makes a list of DVB services with these names, service ids from 101, and logical channel numbers from 1. */
    static void services(int listId, String... names) {
        VltTvChannelList lists = VltTvChannelList.getInstance();
        lists.open(listId);
        int number = 0;
        for (String name : names) {
            number++;
            lists.add(listId, new VltTvChannelInfoBase().setServiceName(name).setServiceId(100 + number)
                    .setBroadcastType(2).setServiceType(1).setMajorChannelNumber(number)
                    .setLogicalChannelNumber(number));
        }
    }

    /** Returns the services of a list as "record name". */
    static List<String> names(int listId) {
        return VltTvChannelList.getInstance().getAll(listId).stream()
                .map(service -> service.recordId() + " " + service.name()).toList();
    }

    static byte[] bytes(Kind kind, int listId) {
        return StoredLists.read(kind, listId).bytes();
    }

    /** Returns the commands that can be undone. */
    static List<String> undoable() {
        return UndoHistory.of(Storage.directory()).entries().stream().map(entry -> entry.command()).toList();
    }
}
