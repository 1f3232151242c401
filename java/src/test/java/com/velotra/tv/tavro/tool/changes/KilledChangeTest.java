package com.velotra.tv.tavro.tool.changes;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.VltTvChannelInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.tool.ToolProcess;
import com.velotra.tv.tavro.tool.ToolProcess.Result;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.storage.StoredLists;
import java.nio.file.Path;
import java.util.List;
import java.util.Map;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** A command that is killed in the middle can be undone. */
class KilledChangeTest {
    private static final VltTvChannelList SERVICES = VltTvChannelList.getInstance();

    @TempDir
    Path folder;

    /** A command that changes two of three lists and is killed. */
    static final class Killed {
        private Killed() {}

        public static void main(String[] arguments) {
            Change.make("three lists", change -> {
                for (int list = 1; list <= 2; list++) {
                    change.save(Kind.SERVICES, list);
                    SERVICES.remove(new RecordId(list, 1));
                }
                change.save(Kind.SERVICES, 3);
                Runtime.getRuntime().halt(9);
                return null;
            });
        }
    }

    @Test
    void aKilledCommandCanBeUndone() throws Exception {
        for (int list = 1; list <= 2; list++) {
            SERVICES.open(list);
            SERVICES.add(list, new VltTvChannelInfoBase().setServiceName("Uno").setServiceId(list));
        }
        byte[] first = StoredLists.read(Kind.SERVICES, 1).bytes();
        byte[] second = StoredLists.read(Kind.SERVICES, 2).bytes();

        List<String> command = ToolProcess.command(System.getProperty("java.library.path"));
        command.set(command.size() - 1, Killed.class.getName());
        assertEquals(9, ToolProcess.run(command, folder, folder.resolve("out"), Map.of()));
        assertEquals(0, SERVICES.getAll(2).size());

        Result list = ToolProcess.runHere("undo", "--list");
        assertEquals("""
                number  time                 command                       lists
                     1  TIME  three lists (did not finish)  service list 1, service list 2, service list 3
                """, list.out().replaceAll("\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d", "TIME"));
        assertEquals(new Result(0,
                """
                undone: three lists
                  service list 1: restored
                  service list 2: restored
                  service list 3: it was as before
                """,
                "  'three lists' did not finish; ./tavro undo 1 restores the lists that it changed\n"),
                ToolProcess.runHere("undo"));
        assertEquals(List.of(first.length, second.length), List.of(
                StoredLists.read(Kind.SERVICES, 1).bytes().length, StoredLists.read(Kind.SERVICES, 2).bytes().length));
    }
}
