package com.velotra.tv.tavro.tool.shell;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.velotra.tv.tavro.services.channellist.VltTvChannelInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkList;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.Map;
import java.util.TreeMap;
import org.junit.jupiter.api.BeforeAll;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;
import picocli.CommandLine;
import picocli.CommandLine.Command;
import picocli.CommandLine.Option;
import picocli.CommandLine.Parameters;

class SuggestionsTest {
    @TempDir
    Path folder;

    /** One command with every kind of argument. */
    @Command(name = "tool")
    static final class Tool {
        @Command(name = "get", description = "Gets a record. Nothing more.")
        void get(
                @Option(names = {"-k", "--kind"}, paramLabel = "KIND", description = "Its kind.") String kind,
                @Option(names = "--all", description = "All of them.") boolean all,
                @Option(names = "--from", paramLabel = "OTHER") String other,
                @Option(names = "--columns", paramLabel = "COLUMN,...") String columns,
                @Option(names = "--hidden", hidden = true) boolean hidden,
                @Parameters(paramLabel = "LIST,RECORD") String record,
                @Parameters(paramLabel = "KEY=VALUE") List<String> keys) {}

        @Command(name = "go")
        void go(@Parameters(paramLabel = "ID") int id, @Parameters(paramLabel = "FILE") List<String> files) {}
    }

    @BeforeAll
    static void addRecords() {
        VltTvChannelList services = VltTvChannelList.getInstance();
        for (int list : List.of(1, 12)) {
            services.open(list);
            services.clean(list);
        }
        for (String name : List.of("Uno", "Due")) {
            services.add(12, new VltTvChannelInfoBase().setBroadcastType(2).setServiceName(name));
        }
        VltTvNetworkList networks = VltTvNetworkList.getInstance();
        networks.open(5);
        networks.clean(5);
        VltTvNetworkInfoBase network = new VltTvNetworkInfoBase();
        network.setNetworkName("Astra");
        networks.add(5, network);
    }

    private static List<String> complete(String line) {
        Map<String, CommandLine> commands = new TreeMap<>(new CommandLine(new Tool()).getSubcommands());
        return new Suggestions(commands).complete(Words.before(line, line.length())).stream()
                .map(found -> found.word() + (found.whole() ? "|" : "") + found.description())
                .toList();
    }

    @Test
    void commandsAreCompleted() {
        assertEquals(List.of("get|Gets a record.", "go|"), complete("g"));
        assertEquals(List.of("exit|Ends the shell."), complete("ex"));
        assertEquals(List.of("get|", "go|"), complete("help g"));
        assertEquals(List.of(), complete("help get "));
        assertEquals(List.of(), complete("unknown "));
    }

    @Test
    void optionsAreCompleted() {
        assertEquals(List.of("--all|All of them."), complete("get --a"));
        assertEquals(List.of("--kind=Its kind."), complete("get 1,2 --k"));
        assertEquals(List.of(), complete("get --hid"));
        assertEquals(List.of(), complete("get -- --a"));
    }

    @Test
    void valuesOfOptionsAreCompleted() {
        assertEquals(List.of("streams|"), complete("get -k st"));
        assertEquals(List.of("--kind=satellites|"), complete("get --kind=sa"));
        assertEquals(List.of(), complete("get --all=s"));
        assertEquals(List.of("name,service_idservice id"), complete("get --columns name,service_i"));
        assertEquals(List.of("12|2 records"), complete("get --from 12"));
    }

    @Test
    void listsAndRecordsAreCompletedWithTheirNames() {
        assertEquals(List.of("1|0 records", "12|2 records"), complete("go "));
        assertEquals(List.of("1,0 records", "12,2 records"), complete("get 1"));
        assertEquals(List.of("12,1|Uno", "12,2|Due"), complete("get --all 12,"));
        assertEquals(List.of("12,2|Due"), complete("get --columns x 12,2"));
        assertEquals(List.of(), complete("get 99,"));
        assertEquals(List.of(), complete("get x,"));
    }

    @Test
    void theKindChoosesTheLists() {
        for (String kind : List.of("-k networks", "-knetworks", "-k=networks", "--kind networks", "--kind=networks")) {
            assertEquals(List.of("5,1|Astra"), complete("get " + kind + " 5,"), kind);
        }
    }

    @Test
    void keysAreCompleted() {
        assertEquals(List.of("profile_name=service profile name"), complete("get 12,1 name=x prof"));
        assertEquals(List.of("network_id=network id"), complete("get 5,1 -k networks network_i"));
        assertEquals(List.of("ServiceName=name"), complete("get 12,1 ServiceNa"));
        assertEquals(List.of("VnetVisible=network flags"), complete("get 12,1 VnetVis"));
    }

    @Test
    void valuesOfKeysAreCompleted() {
        assertEquals(List.of("VnetVisible=yes|", "VnetVisible=no|"), complete("get 12,1 VnetVisible="));
        assertEquals(List.of("sat_polarization=horizontal|"), complete("get -k streams 12,1 sat_polarization=h"));
        assertEquals(List.of(), complete("get 12,1 name="));
        assertEquals(List.of(), complete("get 12,1 none="));
    }

    @Test
    void fileNamesAreCompleted() throws Exception {
        Files.createDirectory(folder.resolve("lists"));
        Files.createFile(folder.resolve("list file"));
        Files.createFile(folder.resolve(".list"));
        assertEquals(List.of(folder + "/list file|", folder + "/lists/"), complete("go 1 x " + folder + "/li"));
        assertEquals(List.of(folder + "/.list|"), complete("go 1 " + folder + "/.l"));
        assertEquals(List.of(), complete("go 1 " + folder + "/none/"));
    }
}
