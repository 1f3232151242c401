package com.velotra.tv.tavro.tool.view;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.google.gson.JsonArray;
import com.google.gson.JsonObject;
import com.google.gson.JsonParser;
import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.VltTvChannelInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteList;
import com.velotra.tv.tavro.tool.ToolProcess;
import com.velotra.tv.tavro.tool.ToolProcess.Result;
import java.io.ByteArrayInputStream;
import java.io.IOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.security.MessageDigest;
import java.util.ArrayList;
import java.util.Base64;
import java.util.List;
import java.util.Map;
import java.util.regex.Matcher;
import java.util.regex.Pattern;
import java.util.stream.Stream;
import java.util.zip.InflaterInputStream;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** The command view and the page that it writes. BrowserTest opens the page. */
class PageTest {
    private static final String EVIL = "</script><!-- \u2028 <img src=x>";
    private static final Path STORAGE = Path.of(System.getenv("TAVRO_HOME"));

    @TempDir
    Path folder;

    private final VltTvChannelList services = VltTvChannelList.getInstance();

    @BeforeEach
    void fill() {
        services.open(1);
        services.clean(1);
        services.add(1, service(EVIL, 101));
        services.add(1, service("Zwölf \u0007\u009b Töne 😀", 102));
        VltTvSatelliteList satellites = VltTvSatelliteList.getInstance();
        satellites.open(1);
        satellites.clean(1);
        VltTvSatelliteInfoBase satellite = new VltTvSatelliteInfoBase();
        satellite.setOrbitPosition(-8);
        satellites.add(1, satellite);
    }

    private static VltTvChannelInfoBase service(String name, int serviceId) {
        return new VltTvChannelInfoBase().setBroadcastType(2).setServiceType(1).setServiceName(name)
                .setServiceId(serviceId).setTslRecId(new RecordId(1, 4));
    }

    private static Result view(Object... words) {
        return ToolProcess.runHere(Stream.concat(Stream.of("view"), Stream.of(words).map(Object::toString))
                .toArray(String[]::new));
    }

    /** The page of a command that must not fail. */
    private String page(Object... directories) throws IOException {
        Path file = folder.resolve("page.html");
        Result result = view(Stream.concat(Stream.of("-o", file), Stream.of(directories)).toArray());
        assertEquals(0, result.exit(), result.err());
        return Files.readString(file);
    }

    private static JsonObject data(String page) {
        Matcher data = Pattern.compile("<script type=\"application/json\" id=\"data\">([^<]*)</script>").matcher(page);
        assertTrue(data.find(), page.substring(0, Math.min(500, page.length())));
        return JsonParser.parseString(data.group(1)).getAsJsonObject();
    }

    private static JsonArray lists(JsonObject data, int side) {
        return data.getAsJsonArray("sides").get(side).getAsJsonObject().getAsJsonArray("lists");
    }

    /** The names of the services in the first list. */
    private static List<String> names(JsonObject data, int side) {
        JsonArray fields = data.getAsJsonArray("kinds").get(0).getAsJsonObject().getAsJsonArray("fields");
        int name = 0;
        while (!fields.get(name).getAsJsonObject().get("name").getAsString().equals("name")) {
            name++;
        }
        List<String> names = new ArrayList<>();
        lists(data, side).get(0).getAsJsonObject().getAsJsonObject("texts").getAsJsonArray(Integer.toString(name))
                .forEach(text -> names.add(text.getAsString()));
        return names;
    }

    // By another process: closing a database file in this one would release the locks of its connection.
    private Path copyOfStorage() throws Exception {
        Path copy = Files.createDirectory(folder.resolve("copy"));
        assertEquals(0, ToolProcess.run(List.of("sqlite3", STORAGE.resolve("lists.db").toString(),
                "VACUUM INTO '" + copy.resolve("lists.db") + "'"), folder, folder.resolve("out"), Map.of()));
        return copy;
    }

    private static String one(String text, String pattern) {
        List<String> found = Pattern.compile(pattern, Pattern.DOTALL).matcher(text).results()
                .map(match -> match.group(1)).toList();
        assertEquals(1, found.size(), pattern + ": " + found.size() + " found");
        return found.get(0);
    }

    @Test
    void thePageIsWrittenAndNamed() {
        Path file = folder.resolve("page.html");
        assertEquals(new Result(0, file + ": 3 records in 2 lists; open it in a web browser\n", ""),
                view("-o", file));
        assertTrue(Files.exists(file));
    }

    @Test
    void standardOutputGetsTheSameBytesAsAFile() throws IOException {
        Path file = folder.resolve("page.html");
        view("-o", file, STORAGE);
        Result printed = view("-o", "-");
        assertEquals("", printed.err());
        assertEquals(Files.readString(file), printed.out());
    }

    @Test
    void theBytesOfEveryRecordAreInThePage() throws IOException {
        JsonObject list = lists(data(page()), 0).get(0).getAsJsonObject();
        byte[] packed = Base64.getDecoder().decode(list.get("bytes").getAsString());
        byte[] bytes = new InflaterInputStream(new ByteArrayInputStream(packed)).readAllBytes();
        assertArrayEquals(services.getAllBytes(1), bytes);
        assertEquals(2, list.get("records").getAsInt());
        assertEquals(1, list.get("id").getAsInt());
    }

    @Test
    void namesAreCompleteAndCannotEndTheData() throws IOException {
        String page = page();
        assertEquals(List.of(EVIL, "Zwölf \u0007\u009b Töne 😀"), names(data(page), 0));
        String json = one(page, "id=\"data\">([^<]*)</script>");
        assertTrue(json.contains("\\u003c/script\\u003e\\u003c!-- \\u2028 \\u003cimg src\\u003dx\\u003e"), json);
        assertTrue(json.contains("Zwölf \\u0007\\u009b Töne"), json);
        assertEquals(0, json.codePoints().filter(Character::isISOControl).count());
    }

    @Test
    void thePolicyAllowsOnlyTheStyleAndTheScriptOfThePage() throws Exception {
        String page = page();
        String policy = one(page, "Content-Security-Policy\" content=\"([^\"]*)\"");
        assertEquals("default-src 'none'; style-src '" + hash(one(page, "<style>(.*)</style>")) + "'; script-src '"
                + hash(one(page, "<script>(.*)</script>")) + "'; base-uri 'none'; form-action 'none'", policy);
    }

    private static String hash(String text) throws Exception {
        byte[] digest = MessageDigest.getInstance("SHA-256").digest(text.getBytes(StandardCharsets.UTF_8));
        return "sha256-" + Base64.getEncoder().encodeToString(digest);
    }

    @Test
    void thePageNamesNoOtherFile() throws IOException {
        String page = page();
        String markup = page.replaceAll("(?s)<script.*?</script>|<style>.*?</style>", "");
        assertFalse(Pattern.compile("\\b(src|href)=\"(?!#)").matcher(markup).find());
        // The namespace of SVG is a name, not an address to load.
        assertEquals(List.of("http://www.w3.org/2000/svg"),
                Pattern.compile("\\w+://[^'\"\\s]*").matcher(page).results().map(match -> match.group()).toList());
    }

    @Test
    void theSameListsGiveTheSamePage() throws IOException {
        assertEquals(page(), page(STORAGE));
    }

    @Test
    void twoDirectoriesArePairedRecordByRecord() throws Exception {
        Path before = copyOfStorage();
        services.update(1, VltTvChannelInfoBase.forRecord(new RecordId(1, 2)).setServiceName("Due"));
        services.add(1, service("Tre", 103));
        services.remove(new RecordId(1, 1));
        JsonObject data = data(page(before, STORAGE));
        assertEquals("[[1,-1],[0]]", data.get("pairs").toString());
        assertEquals(List.of("Due", "Tre"), names(data, 1));
    }

    @Test
    void aPageIsReplacedAndAnotherFileIsKept() throws IOException {
        Path file = folder.resolve("page.html");
        view("-o", file);
        services.add(1, service("Tre", 103));
        assertEquals(0, view("-o", file).exit());
        assertTrue(Files.readString(file).contains("Tre"));
        Path other = Files.writeString(folder.resolve("other.html"), "<!doctype html>\n<p>mine");
        assertEquals(new Result(1, "", "tavro: " + other + " exists and is not a page of this command; remove it, or "
                + "choose another file with -o\n"), view("-o", other));
        assertEquals("<!doctype html>\n<p>mine", Files.readString(other));
        try (Stream<Path> files = Files.list(folder)) {
            assertEquals(List.of("other.html", "page.html"),
                    files.map(path -> path.getFileName().toString()).sorted().toList());
        }
    }

    @Test
    void aDirectoryWithoutListsGivesAPage() throws IOException {
        Path empty = Files.createDirectory(folder.resolve("empty"));
        assertEquals("[]", lists(data(page(empty)), 0).toString());
        assertEquals(0, empty.toFile().list().length);
    }

    @Test
    void badDirectoriesAndFilesAreReported() throws IOException {
        Path missing = folder.resolve("missing");
        assertEquals(new Result(1, "", "tavro: cannot read the storage directory " + missing
                + ": no such directory; set TAVRO_HOME to the one that holds your lists\n"), view(missing));
        assertEquals(1, view(STORAGE, missing).exit());
        assertEquals(new Result(1, "", "tavro: cannot write " + missing.resolve("page.html")
                + ": no such file or folder; choose another file with -o\n"), view("-o", missing.resolve("page.html")));
        assertEquals(new Result(1, "", "tavro: cannot write " + folder + ": it is a directory; choose a file in it "
                + "with -o\n"), view("-o", folder));
        assertEquals(new Result(1, "", "tavro: the name of the output file is empty; use -o FILE, or -o - for standard "
                + "output\n"), view("-o", ""));
        assertEquals(new Result(2, "", "tavro: view: Unmatched argument at index 3: 'c'\nSee: ./tavro view --help\n"),
                view("a", "b", "c"));
        Path damaged = Files.createDirectory(folder.resolve("damaged"));
        Files.writeString(damaged.resolve("lists.db"), "not a database, but long enough to be read as one".repeat(9));
        Result result = view(damaged);
        assertEquals(1, result.exit());
        assertTrue(result.err().startsWith("tavro: ") && result.err().contains(damaged + "/lists.db"), result.err());
        assertFalse(Files.exists(Path.of("tavro-lists.html")));
    }
}
