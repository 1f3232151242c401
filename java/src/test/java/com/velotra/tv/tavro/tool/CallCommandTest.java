package com.velotra.tv.tavro.tool;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.velotra.tv.tavro.services.channellist.VltTvChannelInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteList;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamList;
import com.velotra.tv.tavro.tool.ToolProcess.Result;
import com.velotra.tv.tavro.tool.records.Kind;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import java.util.Map;
import java.util.regex.Matcher;
import java.util.regex.Pattern;
import java.util.stream.Collectors;
import java.util.stream.Stream;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.CsvSource;

/** ./tavro call. */
class CallCommandTest {
    private static final String SEE = "See: " + Shell.command() + " call --help\n";

    /** Service list 1 with one service; no other list. */
    @BeforeEach
    void lists() {
        for (int id = 1; id <= 2; id++) {
            for (Kind kind : Kind.values()) {
                if (kind.lists().exists(id)) {
                    kind.lists().delete(id);
                }
            }
        }
        VltTvChannelList.getInstance().open(1);
        VltTvChannelList.getInstance().add(1, new VltTvChannelInfoBase().setServiceName("News").setServiceId(7));
    }

    /** Runs the command; times, addresses and messages of the virtual machine are shortened. */
    private static Result call(String... words) {
        Result result = ToolProcess.runHere(
                Stream.concat(Stream.of("call"), Arrays.stream(words)).toArray(String[]::new));
        return new Result(result.exit(), result.out().replaceAll("\\(\\d+\\.\\d{3} ms\\)", "(T)")
                .replaceAll("NoSuchFieldError: .*svlIdSvlRecId.* \\(T", "NoSuchFieldError: svlIdSvlRecId (T")
                .replaceAll("int -?\\d+: address", "int N: address"), result.err());
    }

    private static void assertPrints(String out, String... words) {
        assertEquals(new Result(0, out, ""), call(words));
    }

    private static void assertWrong(String message, String... words) {
        assertEquals(new Result(2, "", "tavro: call: " + message + "\n" + SEE), call(words));
    }

    @Test
    void aRecordIsPrintedFieldByField() {
        assertPrints("""
                VltTvChannelList.native_getSvlInfo("1,1")
                = byte[552], 1 service (T)
                  record id                      1
                  channel id                     0x00000000
                  network flags                  0x00000001 (0x1)
                  option flags                   0x00000000
                  option flags 2                 0x00000000
                  service id                     7
                  transport stream list          0
                  transport stream record        0
                  network list                   0
                  network record                 0
                  satellite list                 0
                  satellite record               0
                  broadcast type                 0
                  service type                   0
                  name                           "News"
                """, "services.native_getSvlInfo", "1,1");
    }

    @Test
    void severalCallsShareTheOpenLists() {
        assertPrints("""
                VltTvSatelliteList.nativeOpen(2)
                = int 0: done (T)
                VltTvSatelliteList.nativeAdd(2, VltTvSatelliteInfoBase{Name="A\u00b7 b", OrbitPosition=-50})
                = String "2,1" (T)
                VltTvSatelliteList.nativeAdd(2, VltTvSatelliteInfoBase{})
                = String "2,2" (T)
                VltTvSatelliteList.nativeGetInfo("2,1", ["Name", "OrbitPosition"])
                = VltTvSatelliteInfo with 3 values (T)
                  RecId                    "2,1"
                  Name                     "A\u00b7 b"
                  OrbitPosition            -50
                VltTvSatelliteList.nativeGetInfoList(2, ["OrbitPosition"])
                = ArrayList of 2 objects (T)
                  VltTvSatelliteInfo{RecId="2,1", OrbitPosition=-50}
                  VltTvSatelliteInfo{RecId="2,2", OrbitPosition=0}
                VltTvSatelliteList.nativeGetInfo("2,3", null)
                = null (T)
                VltTvSatelliteList.nativeSetup()
                = int N: address of the manager's slot, cut to an int (T)
                VltTvSatelliteList.nativeRemove("2")
                = int -1: the identifier has no comma (T)
                """,
                "satellites.nativeOpen", "2", "+", "satellites.nativeAdd", "2", "name=A\u0007 b", "OrbitPosition=-50",
                ",", "VltTvSatelliteList.nativeAdd", "2", "{}",
                "+", "satellites.nativeGetInfo", "2,1", "Name,OrbitPosition",
                "+", "satellites.nativeGetInfoList", "2", "[\"OrbitPosition\"]",
                "+", "satellites.nativeGetInfo", "2,3", "null",
                "+", "satellites.nativeSetup", "+", "satellites.nativeRemove", "2");
    }

    @Test
    void recordObjectsTakeValuesOfAllTypes() {
        VltTvTransportStreamList.getInstance().open(1);
        assertPrints("""
                VltTvTransportStreamList.nativeAdd(1, VltTvTransportStreamInfoBase{Frequency=5, AcTsName=null, \
                AlternateFrequencyInfoList=[AlternateFrequencyInfoBase[alternateFreq=6, alternateBandwidth=8]]})
                = String "1,1" (T)
                VltTvChannelList.nativeAdd(1, VltTvChannelInfoBase{TargetRegionCode=[1, 2], ServiceName=""})
                = String "1,2" (T)
                VltTvChannelList.native_updateInfoList(1, [VltTvChannelInfoBase{SvlIdSvlRecId="1,1", \
                ServiceName="{"}, VltTvChannelInfoBase{SvlIdSvlRecId="1,2", ServiceName="null"}])
                = int 0: done (T)
                VltTvChannelList.native_getSvlInfoList(1)
                = byte[1104], 2 services (T)
                  record 1  {
                  record 2  null
                """,
                "streams.nativeAdd", "1", "Frequency=5", "AcTsName=null", "AlternateFrequencyInfoList=[[6,8]]",
                "+", "services.nativeAdd", "1", "{\"TargetRegionCode\": [1, 2], \"ServiceName\": \"\"}",
                "+", "services.native_updateInfoList", "1", "[{\"SvlIdSvlRecId\": \"1,1\", \"ServiceName\": \"{\"}, "
                        + "{\"SvlIdSvlRecId\": \"1,2\", \"ServiceName\": \"null\"}]",
                "+", "services.native_getSvlInfoList", "1");
    }

    @Test
    void injectedFaultsShowWhatJavaSeesOfEachFailure() {
        VltTvSatelliteList.getInstance().open(1);
        VltTvSatelliteList.getInstance().add(1, new VltTvSatelliteInfoBase());
        assertPrints("""
                VltTvChannelList.native_clean(1)
                = int -22: failed (T)
                VltTvChannelList.native_getSvlInfo("1,1")
                = null (T)
                VltTvChannelList.nativeAdd(1, VltTvChannelInfoBase{ServiceName="B"})
                = String "": failed (T)
                VltTvSatelliteList.nativeGetInfoList(1, null)
                = null (T)
                VltTvChannelList.native_getSvlInfo("1,2")
                = null (T)
                VltTvChannelList.native_clean(1)
                = int 0: done (T)
                """,
                "--fault", "x_svl_clean:1=-106", "--fault=x_svl_get_rec=-104 x_svl_add_rec=-11",
                "services.native_clean", "1", "+", "services.native_getSvlInfo", "1,1",
                "+", "services.nativeAdd", "1", "ServiceName=B", "+", "satellites.nativeGetInfoList", "1", "null",
                "+", "services.native_getSvlInfo", "1,2", "+", "services.native_clean", "1",
                "--fault", "x_satl_get_rec_by_rec_idx=-106");
        assertPrints("VltTvChannelList.native_clean(1)\n= int 0: done (T)\n", "services.native_clean", "1");
    }

    @Test
    void anExceptionIsPrintedAndTheCallsAfterItAreMade() {
        assertEquals(new Result(1, """
                VltTvChannelList.native_updateInfoList(1, ["x"])
                threw java.lang.NoSuchFieldError: svlIdSvlRecId (T)
                VltTvChannelList.native_close(1)
                = int 0: done (T)
                """, ""),
                call("services.native_updateInfoList", "1", "[\"x\"]", "+", "services.native_close", "1"));
    }

    @Test
    void theListHasAllNativesWithTheirArguments() {
        Result result = call("--list");
        assertEquals(0, result.exit());
        assertEquals(72, result.out().lines().filter(line -> line.matches("  [^ ].*\\(.*\\)")).count());
        assertEquals("""
                  String nativeAdd(int mwdbId, VltTvNetworkInfoBase network)
                      mwdbId: list id; network: KEY=VALUE… or a JSON object
                  String nativeAdd(int mwdbId, String identifier)
                      mwdbId: list id; identifier: record, as LIST,RECORD
                  int nativeRemove(String identifier)
                """, result.out().lines().dropWhile(line -> !line.startsWith("VltTvNetworkList")).skip(1).limit(5)
                        .collect(Collectors.joining("\n", "", "\n")));
    }

    @Test
    void everyNativeOfTheListCanBeCalled() {
        Map<String, String> words = Map.of("int", "2", "String", "2,1", "List<String>", "null");
        Map<String, String> shown = Map.of("int", "2", "String", "\"2,1\"", "List<String>", "null");
        List<String> calls = new ArrayList<>();
        List<String> expected = new ArrayList<>();
        String list = "";
        for (String line : call("--list").out().lines().toList()) {
            list = line.startsWith("V") ? line.substring(0, line.indexOf(' ')) : list;
            Matcher signature = Pattern.compile("  [^ ]\\S* (\\w+)\\((.*)\\)").matcher(line);
            if (signature.matches()) {
                List<String> types = signature.group(2).isEmpty() ? List.of()
                        : Stream.of(signature.group(2).split(", ")).map(each -> each.split(" ")[0]).toList();
                calls.addAll(List.of("+", list + "." + signature.group(1)));
                types.forEach(type -> calls.add(words.getOrDefault(type, type.startsWith("List<") ? "[]" : "{}")));
                expected.add(list + "." + signature.group(1) + types.stream()
                        .map(type -> shown.getOrDefault(type, type.startsWith("List<") ? "[]" : type + "{}"))
                        .collect(Collectors.joining(", ", "(", ")")));
            }
        }
        Result result = call(calls.subList(1, calls.size()).toArray(String[]::new));
        assertEquals(new Result(0, String.join("\n", expected), ""), new Result(result.exit(),
                result.out().lines().filter(line -> line.startsWith("V")).collect(Collectors.joining("\n")),
                result.err()));
        assertPrints("VltTvSatelliteList.nativeUpdateInfo(VltTvSatelliteInfoBase{RecId=\"2,9\", Name=\"A\"})\n"
                + "= int -22: failed (T)\n", "satellites.nativeUpdateInfo", "RecId=2,9", "Name=A");
    }

    @ParameterizedTest
    @CsvSource(delimiter = '|', quoteCharacter = '`', textBlock = """
            open                          | 'open' is not CLASS.NATIVE, such as services.native_open; --list prints all
            service.native_open 1         | unknown class 'service'; did you mean 'services'?; use services, streams, \
            networks or satellites, or a list class such as VltTvChannelList
            services.open 1               | VltTvChannelList has no native 'open'; did you mean 'native_open'?; --list \
            prints all
            services.native_opem 1        | VltTvChannelList has no native 'native_opem'; did you mean 'native_open'?; \
            --list prints all
            services.native_open          | the arguments (none) do not fit int native_open(int mwdbId) or int \
            native_open(int mwdbId, String path)
            services.native_clean 1 2     | the arguments '1' '2' do not fit int native_clean(int mwdbId)
            streams.native_updateInfo AcTsName=A TslIdTslRecId=1,1 | the arguments 'AcTsName=A' 'TslIdTslRecId=1,1' do \
            not fit int native_updateInfo(int mwdbId, VltTvTransportStreamInfoBase stream) or int \
            native_updateInfo(int mwdbId, String identifier)
            services.native_clean one     | mwdbId: 'one' is not an int: write -2147483648 to 2147483647
            services.native_clean null    | mwdbId: 'null' is not an int: write -2147483648 to 2147483647
            services.native_clean 2147483648 | mwdbId: '2147483648' is not an int: write -2147483648 to 2147483647
            services.nativeAdd 1 null     | null fits String nativeAdd(int mwdbId, VltTvChannelInfoBase channel) or \
            String nativeAdd(int mwdbId, String identifier); write its type, such as String:null
            services.nativeAdd 1 ServiceNam=x | VltTvChannelInfoBase has no key 'ServiceNam'; did you mean \
            'ServiceName'?; docs/java-contract.md lists the keys
            services.nativeAdd 1 {"ServiceId":"x"} | ServiceId: 'x' is not an int: write -2147483648 to 2147483647
            services.nativeAdd 1 {x       | VltTvChannelInfoBase: '{x' is not JSON
            services.nativeAdd 1 {"ServiceName":[]} | ServiceName: '[]' is not a text
            streams.nativeAdd 1 AlternateFrequencyInfoList=[[1]] | AlternateFrequencyInfoList: '[1]' is not a pair: \
            write [FREQUENCY,BANDWIDTH]
            networks.native_updateInfoList 1 {} | networks: '{}' is not a JSON array
            networks.native_updateInfoList 1 [[]] | networks: '[]' is not a text
            networks.native_getInfo 1,1 NetworkNam | unknown key 'NetworkNam'; did you mean 'NetworkName'?; a JSON \
            array may contain any text
            services.native_open 1 +      | CLASS.NATIVE is missing, at the start or next to a + or a comma
            --list services.native_open   | --list cannot be combined with a call
            --fault x_svl_opn=-5 services.native_open 1 | the fault 'x_svl_opn=-5' is ignored: unknown function \
            'x_svl_opn'; did you mean x_svl_open?
            """)
    void wrongUsageIsExplained(String words, String message) {
        assertWrong(message, words.split(" "));
    }

    @Test
    void aCallWithoutANativeIsWrongUsage() {
        assertWrong("missing argument NATIVE; --list prints all natives");
    }

    @Test
    void typesAndQuotesTellNullFromText() {
        assertPrints("""
                VltTvChannelList.nativeAdd(1, null)
                = String "": failed (T)
                VltTvChannelList.nativeAdd(1, "null")
                = String "": failed (T)
                """,
                "services.nativeAdd", "1", "String:null", "+", "services.nativeAdd", "1", "\"null\"");
    }
}
