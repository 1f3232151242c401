package com.velotra.tv.tavro.tool.shell;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.velotra.tv.tavro.services.channellist.VltTvChannelInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.tool.ToolProcess;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.Map;
import org.junit.jupiter.api.BeforeAll;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** What commands load when they start. Most of their time goes into classes, so these are counted, not the time. */
class StartUpTest {
    private static final String OTHER_LIBRARIES = ".*\\] (org\\.jline|com\\.google\\.gson|org\\.apache\\.commons)\\..*";
    private static final int MOST_CLASSES = 1600;

    @TempDir
    Path folder;

    @BeforeAll
    static void addService() {
        VltTvChannelList lists = VltTvChannelList.getInstance();
        lists.open(1);
        lists.clean(1);
        lists.add(1, new VltTvChannelInfoBase().setBroadcastType(2).setServiceName("Uno"));
    }

    private List<String> classesOf(String... arguments) throws Exception {
        Path log = folder.resolve("classes");
        assertEquals(0, ToolProcess.run(folder, Map.of("TAVRO_HOME", System.getenv("TAVRO_HOME"),
                "JAVA_TOOL_OPTIONS", "-Xlog:class+load:file=" + log), arguments).exit());
        return Files.readAllLines(log).stream().filter(line -> line.contains(" source: ")).toList();
    }

    @Test
    void aCommandLoadsOnlyWhatItUses() throws Exception {
        for (String command : List.of("lists", "show 1,1")) {
            List<String> classes = classesOf(command.split(" "));
            assertTrue(classes.stream().anyMatch(line -> line.contains("tool.Main")), "the tool's are not among them");
            assertEquals(List.of(), classes.stream().filter(line -> line.matches(OTHER_LIBRARIES)).toList(), command);
            // A class that picocli loads to describe another command.
            assertEquals(List.of(),
                    classes.stream().filter(line -> line.contains("Converters$FirstList")).toList(), command);
            assertTrue(classes.size() <= MOST_CLASSES, command + " loads " + classes.size() + " classes");
        }
    }
}
