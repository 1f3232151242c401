package com.velotra.tv.tavro.tool.storage;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.velotra.tv.tavro.services.channellist.TvList;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.RecordList;
import java.nio.file.Path;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** The longest list, in a virtual machine of 256 MB. */
class StorageFullListTest {
    private static final int LIST = 43;

    @TempDir
    Path folder;

    @Test
    void aFullListIsWrittenStoredAndReadAgain() {
        RecordList list = ListFileTest.list(Kind.SERVICES, LIST, "full", 65_534);
        Path file = folder.resolve("list");
        ListFile.write(file, list);
        assertEquals(list, ListFile.read(file));
        TvList lists = Kind.SERVICES.lists();
        lists.open(LIST, file.toString());
        Access.readOnly();
        try (Snapshot snapshot = Snapshot.open(Storage.directory())) {
            assertEquals(65_534, snapshot.entry(Kind.SERVICES, LIST).orElseThrow().records());
            assertEquals(list, snapshot.list(Kind.SERVICES, LIST).orElseThrow());
        }
        Access.readWrite();
        lists.delete(LIST);
    }
}
