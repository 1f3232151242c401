package com.velotra.tv.tavro.tool.device;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.velotra.tv.tavro.tool.ToolProcess;
import com.velotra.tv.tavro.tool.ToolProcess.Result;
import java.io.ByteArrayInputStream;
import java.io.IOException;
import java.io.InputStream;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.Optional;
import java.util.concurrent.TimeUnit;
import java.util.regex.Matcher;
import java.util.regex.Pattern;
import java.util.stream.Stream;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** ./tavro device log. */
class LogTest {
    private static final String TIME = "11-22 14:55:38.123  1234  1250 ";

    @TempDir
    Path folder;
    private FakeAdb adb;

    @BeforeEach
    void fakeAdb() throws IOException {
        adb = new FakeAdb(folder);
    }

    /** The lines of a log that are the library's. */
    private String filtered(String... lines) throws IOException {
        Path log = Files.writeString(folder.resolve("saved.txt"), String.join("\n", lines) + "\n");
        Result result = adb.run("log", log.toString());
        assertEquals("", result.err());
        assertEquals(0, result.exit());
        return result.out();
    }

    @Test
    void linesAreFoundByTagAndByBeginning() throws IOException {
        assertEquals(
                TIME + "E Tavro_onLoad_channellist: channellist JNI_OnLoad OK.\n"
                        + TIME + "D         : [jni_VltTvList_Init] [com_velotra_tv_tavro_channellist_add_Info][812]\n"
                        + TIME + "D [SATELITE] NativeVltTvSatelliteList_Cpp: [open]: satId = 1\n"
                        + TIME + "D         : ibrdcst==2 _set_header_info,\n"
                        + TIME + "E         : Invalid String.\n",
                filtered(
                        "--------- beginning of main",
                        TIME + "I ActivityManager: Start proc 1234",
                        TIME + "E Tavro_onLoad_channellist: channellist JNI_OnLoad OK.",
                        TIME + "D         : [jni_VltTvList_Init] [com_velotra_tv_tavro_channellist_add_Info][812] ",
                        TIME + "D         : a line of another program without a tag",
                        TIME + "D [SATELITE] NativeVltTvSatelliteList_Cpp: [open]: satId = 1 ",
                        TIME + "D         : ibrdcst==2 _set_header_info,",
                        TIME + "D NativeVltTvOther: [open]: satId = 1 ",
                        TIME + "E         : Invalid String.",
                        "not a line of a log"));
    }

    /** Since Android 11 a line without a tag gets the program's name. */
    @Test
    void linesWithTheProgramsNameAreFoundByProcess() throws IOException {
        String ours = TIME + "E app_process32: Invalid param.";
        assertEquals(
                TIME + "D app_process32: [jni_VltTvList_Init] Key List size = 3\n" + ours + "\n",
                filtered(
                        ours.replace(" 1234 ", " 4321 "),
                        ours,
                        TIME + "D app_process32: [jni_VltTvList_Init] Key List size = 3",
                        ours.replace(" 1234 ", " 4321 "),
                        ours.replace("app_process32", "Parser"),
                        ours));
        assertEquals(
                TIME + "E Tavro_onLoad_channellist: channellist JNI_OnLoad OK.\n" + ours + "\n",
                filtered(ours, TIME + "E Tavro_onLoad_channellist: channellist JNI_OnLoad OK.", ours));
    }

    @Test
    void theLinesOfOneTextAreJoined() throws IOException {
        assertEquals(
                TIME + "D         : stdvb.s_svc_name==One\\nTwo\\nThree _set_dvb_info\n"
                        + TIME + "D         : stdvb.s_svc_name==Four _set_dvb_info\n"
                        + TIME + "D NativeVltTvChannelList_Cpp: [NativeVltTvChannelList][getInfo]:rec_id:1 "
                        + "ui2_prog_id:2 "
                        + "ac_name:A\\nB\n"
                        + TIME + "D NativeVltTvChannelList_Cpp: [NativeVltTvChannelList][getInfo]: mwdbId = 1 recId = "
                        + "1\n",
                filtered(
                        TIME + "D         : stdvb.s_svc_name==One",
                        TIME + "D         : Two",
                        TIME + "D         : Three _set_dvb_info",
                        TIME + "D         : stdvb.s_svc_name==Four _set_dvb_info",
                        TIME.replace("1250", "1251") + "D         : of another thread",
                        TIME + "D NativeVltTvChannelList_Cpp: [NativeVltTvChannelList][getInfo]:rec_id:1 ui2_prog_id:2 "
                                + "ac_name:A",
                        TIME + "D NativeVltTvChannelList_Cpp: B",
                        TIME + "D NativeVltTvChannelList_Cpp: [NativeVltTvChannelList][getInfo]: mwdbId = 1 recId = "
                                + "1"));
    }

    /** Bug reports have the user before the process; other options of logcat add the year and the zone. */
    @Test
    void otherFormsOfTimeAndUserAreRead() throws IOException {
        String text = "E Tavro_onLoad_channellist: ERROR: GetEnv failed";
        String lines = String.join("\n",
                "11-22 14:55:38.123  1000  1234  1250 " + text,
                "11-22 14:55:38.123  root  1234  1250 " + text,
                "2026-11-22 14:55:38.123456 +0100  1234  1250 " + text) + "\n";
        assertEquals(lines, filtered(lines.split("\n")));
    }

    @Test
    void controlCharactersAreShownAsDots() throws IOException {
        assertEquals(TIME + "E Tavro_onLoad_channellist: a·[31mb\n",
                filtered(TIME + "E Tavro_onLoad_channellist: a\u001b[31mb"));
    }

    /** The formats come from the sources; the ledger has the lines of every path of every native. */
    @Test
    void everyLineOfEveryNativeIsFound() throws IOException {
        LogFormats formats = new LogFormats();
        List<String> missed = new ArrayList<>();
        int lines = 0;
        try (Stream<Path> ledger = Files.list(Path.of(System.getProperty("tavro.ledger")))) {
            for (Path file : ledger.sorted().toList()) {
                Matcher line = Pattern.compile("(?m)^ +log \\d (.*?): \"(.*)\"$").matcher(Files.readString(file));
                while (line.find()) {
                    lines++;
                    String text = line.group(2).replace("\\n", "\n").replaceAll("\\s+$", "");
                    boolean found = (line.group(1).equals("-") || formats.hasTag(line.group(1)))
                            && formats.matches(line.group(1), text);
                    if (!found) {
                        missed.add(file.getFileName() + ": " + line.group());
                    }
                }
            }
        }
        assertEquals(List.of(), missed);
        assertTrue(lines > 1000, "only " + lines + " lines in the ledger");
    }

    @Test
    void theLogOfADeviceIsFollowedUntilItEnds() throws IOException {
        String line = TIME + "E Tavro_onLoad_channellist: channellist JNI_OnLoad OK.\n";
        adb.file("logcat", line + TIME + "I Other: line\n");
        assertEquals(
                new Result(1, line, "tavro: the log ended: the device was disconnected or restarted; exit code of "
                        + "adb: 0\n"),
                adb.run("-s", "X1", "log", "--since", "11-22 14:55:38.123"));
        assertEquals("-s X1 get-state\n-s X1 logcat -v threadtime -T 11-22 14:55:38.123\n", adb.calls());
        assertEquals(new Result(0, line, ""), adb.run("log", "--dump"));
        assertEquals("get-state\nlogcat -v threadtime -d\n", adb.calls());
        adb.fail("logcat*", 1, "");
        assertEquals(new Result(1, "", "tavro: the device's log cannot be read: exit code of adb: 1\n"),
                adb.run("log", "-d"));
    }

    @Test
    void stoppingTheToolStopsAdbAndPrintsNothing() throws Exception {
        adb.file("logcat", TIME + "E         : Invalid param.\n");
        adb.file("endless", "");
        ProcessBuilder builder = new ProcessBuilder(
                ToolProcess.command(System.getProperty("java.library.path"), "device", "log"))
                .redirectError(folder.resolve("err").toFile());
        builder.environment().put("ADB", adb.program().toString());
        Process tool = builder.start();
        assertEquals(TIME + "E         : Invalid param.", tool.inputReader().readLine());
        long pid = Long.parseLong(Files.readString(folder.resolve("pid")).strip());
        Optional<ProcessHandle> logcat = ProcessHandle.of(pid);
        tool.destroy();
        assertEquals(143, tool.waitFor());
        assertEquals("", Files.readString(folder.resolve("err")));
        logcat.ifPresent(handle -> handle.onExit().orTimeout(20, TimeUnit.SECONDS).join());
    }

    @Test
    void standardInputIsReadLikeAFile() throws IOException {
        InputStream input = System.in;
        System.setIn(new ByteArrayInputStream((TIME + "E         : Invalid "
                + "param.\n").getBytes(StandardCharsets.UTF_8)));
        try {
            assertEquals(new Result(0, TIME + "E         : Invalid param.\n", ""), adb.run("log", "-"));
        } finally {
            System.setIn(input);
        }
        assertEquals("", adb.calls());
    }

    @Test
    void colorMarksErrorsAndNatives() throws IOException {
        Path log = Files.writeString(folder.resolve("log"), TIME + "E         : Invalid param.\n" + TIME
                + "D         : [jni_VltTvList_Init] [com_velotra_tv_tavro_satellitelist_open][9] \n" + TIME
                + "D         : ivalue==1 _set_header_info,\n");
        assertEquals("\u001b[31m" + TIME + "E         : Invalid param.\u001b[0m\n"
                + "\u001b[1m" + TIME + "D         : [jni_VltTvList_Init] "
                + "[com_velotra_tv_tavro_satellitelist_open][9]\u001b[0m\n"
                + TIME + "D         : ivalue==1 _set_header_info,\n", adb.run("log", "--color", log.toString()).out());
    }

    @Test
    void aLogWithoutLinesOfTheLibraryIsAFailure() throws IOException {
        Path log = Files.writeString(folder.resolve("saved"), "a\n" + TIME + "E Parser: Invalid param.\n");
        assertEquals(
                new Result(1, "", "tavro: none of the 2 lines of /saved is a line of the library; set the level with "
                        + "log-level D before you save a log\n"),
                adb.run("log", log.toString()));
        Files.writeString(log, "E/Tavro_onLoad_channellist( 1234): channellist JNI_OnLoad OK.\n");
        assertEquals(
                new Result(1, "", "tavro: none of the 1 lines of /saved has the form of logcat -v threadtime; save the "
                        + "log as text with adb logcat -d -v threadtime >FILE\n"),
                adb.run("log", log.toString()));
        assertEquals(
                new Result(1, "", "tavro: cannot read /missing: no such file or folder\n"),
                adb.run("log", folder + "/missing"));
        assertEquals(
                new Result(2, "", "tavro: device: log: --dump and --since are for the log of a device, not for a file\n"
                        + "See: ./tavro device --help\n"),
                ToolProcess.runHere("device", "log", "-d", log.toString()));
    }
}
