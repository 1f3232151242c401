package com.velotra.tv.tavro.tool.view;

import com.google.gson.Gson;
import com.google.gson.JsonElement;
import com.google.gson.JsonObject;
import com.google.gson.JsonParser;
import java.io.BufferedReader;
import java.io.IOException;
import java.net.URI;
import java.net.http.HttpClient;
import java.net.http.HttpRequest;
import java.net.http.HttpRequest.BodyPublishers;
import java.net.http.HttpResponse.BodyHandlers;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.Base64;
import java.util.List;
import java.util.Map;
import java.util.regex.Matcher;
import java.util.regex.Pattern;
import java.util.stream.StreamSupport;

/** A Chromium without a window, driven over the WebDriver protocol. */
final class Browser implements AutoCloseable {
    static final Path CHROMIUM = Path.of("/usr/bin/chromium");
    static final Path DRIVER = Path.of("/usr/bin/chromedriver");

    private static final Pattern STARTED = Pattern.compile("started successfully on port (\\d+)");
    private static final Gson GSON = new Gson();
    private static final Map<String, String> KEYS = Map.of(
            "Tab", "\uE004", "Enter", "\uE007", "Escape", "\uE00C", "End", "\uE010", "Home", "\uE011",
            "Left", "\uE012", "Up", "\uE013", "Right", "\uE014", "Down", "\uE015");

    private final HttpClient client = HttpClient.newHttpClient();
    private final Process driver;
    private final URI session;

    /** Starts a browser that keeps its files in {@code folder}. */
    Browser(Path folder) throws IOException {
        driver = new ProcessBuilder(DRIVER.toString(), "--port=0").redirectErrorStream(true).start();
        URI root = URI.create("http://localhost:" + port(driver.inputReader()) + "/session");
        List<String> arguments = List.of("--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
                "--disable-background-networking", "--no-first-run", "--user-data-dir=" + folder);
        JsonObject made = send("POST", root, Map.of("capabilities", Map.of("alwaysMatch", Map.of(
                "goog:loggingPrefs", Map.of("browser", "ALL", "performance", "ALL"),
                "goog:chromeOptions", Map.of("binary", CHROMIUM.toString(), "args", arguments))))).getAsJsonObject();
        session = URI.create(root + "/" + made.get("sessionId").getAsString());
    }

    private static int port(BufferedReader output) throws IOException {
        for (String line = output.readLine(); line != null; line = output.readLine()) {
            Matcher started = STARTED.matcher(line);
            if (started.find()) {
                return Integer.parseInt(started.group(1));
            }
        }
        throw new IOException("chromedriver did not start");
    }

    private JsonElement send(String method, URI to, Object body) {
        HttpRequest request = HttpRequest.newBuilder(to)
                .method(method, body == null ? BodyPublishers.noBody() : BodyPublishers.ofString(GSON.toJson(body)))
                .build();
        try {
            String response = client.send(request, BodyHandlers.ofString()).body();
            JsonElement value = JsonParser.parseString(response).getAsJsonObject().get("value");
            if (value.isJsonObject() && value.getAsJsonObject().has("error")) {
                throw new AssertionError(value.getAsJsonObject().get("message").getAsString());
            }
            return value;
        } catch (IOException | InterruptedException e) {
            throw new AssertionError(e);
        }
    }

    private JsonElement post(String command, Object body) {
        return send("POST", URI.create(session + command), body);
    }

    /** Opens a page and waits until it is ready. */
    void open(Path page, String hash) {
        post("/url", Map.of("url", "about:blank")); // so that the same page with another hash is loaded anew
        post("/url", Map.of("url", page.toUri() + hash));
        async("(function wait() { document.documentElement.dataset.ready ? done() : setTimeout(wait, 5); })()");
    }

    /** Runs the body of a function and returns its value. */
    JsonElement run(String script, Object... arguments) {
        return post("/execute/sync", Map.of("script", script, "args", List.of(arguments)));
    }

    /** Runs a script that calls {@code done(value)} in the end. */
    JsonElement async(String script) {
        return post("/execute/async", Map.of("script", "const done = arguments[0];" + script, "args", List.of()));
    }

    String text(String script, Object... arguments) {
        return run(script, arguments).getAsString();
    }

    /** Returns the texts in an array. */
    List<String> texts(String script, Object... arguments) {
        return StreamSupport.stream(run(script, arguments).getAsJsonArray().spliterator(), false)
                .map(JsonElement::getAsString).toList();
    }

    /** Returns the text of the visible elements that a selector finds, one per line. */
    String visible(String selector) {
        return text("return [...document.querySelectorAll(arguments[0])].filter(e => e.checkVisibility())"
                + ".map(e => e.innerText).join('\\n')", selector);
    }

    /** Follows a link or presses a button, as the pointer does. */
    void click(String selector) {
        JsonObject found = post("/element", Map.of("using", "css selector", "value", selector)).getAsJsonObject();
        String id = found.entrySet().iterator().next().getValue().getAsString();
        post("/element/" + id + "/click", Map.of());
        settle();
    }

    /** Presses keys one after the other: characters, or names of special keys. */
    void press(String... keys) {
        List<Map<String, String>> actions = new ArrayList<>();
        for (String key : keys) {
            String value = KEYS.getOrDefault(key, key);
            actions.add(Map.of("type", "keyDown", "value", value));
            actions.add(Map.of("type", "keyUp", "value", value));
        }
        post("/actions", Map.of("actions", List.of(Map.of("type", "key", "id", "keys", "actions", actions))));
        settle();
    }

    /** Waits until the page has handled its events and drawn twice. */
    void settle() {
        async("requestAnimationFrame(() => requestAnimationFrame(() => setTimeout(done, 0)))");
    }

    /** Sets the size of the page in CSS pixels. */
    void size(int width, int height) {
        devtools("Emulation.setDeviceMetricsOverride",
                Map.of("width", width, "height", height, "deviceScaleFactor", 1, "mobile", false));
        settle();
    }

    /** Sets the medium, "screen" or "print", and the color scheme, "light" or "dark". */
    void media(String medium, String scheme) {
        devtools("Emulation.setEmulatedMedia", Map.of("media", medium,
                "features", List.of(Map.of("name", "prefers-color-scheme", "value", scheme))));
        settle();
    }

    private void devtools(String command, Map<String, ?> parameters) {
        post("/goog/cdp/execute", Map.of("cmd", command, "params", parameters));
    }

    /** Returns the messages of the console since the last call. */
    List<String> console() {
        return log("browser").stream().map(entry -> entry.get("message").getAsString()).toList();
    }

    /** Returns the addresses that were requested since the last call. */
    List<String> requests() {
        return log("performance").stream()
                .map(entry -> JsonParser.parseString(entry.get("message").getAsString()).getAsJsonObject()
                        .getAsJsonObject("message"))
                .filter(message -> message.get("method").getAsString().equals("Network.requestWillBeSent"))
                .map(message -> message.getAsJsonObject("params").getAsJsonObject("request").get("url").getAsString())
                .toList();
    }

    private List<JsonObject> log(String type) {
        List<JsonObject> entries = new ArrayList<>();
        post("/se/log", Map.of("type", type)).getAsJsonArray().forEach(entry -> entries.add(entry.getAsJsonObject()));
        return entries;
    }

    /** Writes a picture of what is visible, as PNG. */
    void picture(Path file) throws IOException {
        String png = send("GET", URI.create(session + "/screenshot"), null).getAsString();
        Files.write(file, Base64.getDecoder().decode(png));
    }

    @Override
    public void close() {
        send("DELETE", session, null);
        driver.destroy();
        try {
            driver.waitFor();
        } catch (InterruptedException e) {
            throw new AssertionError(e);
        }
    }
}
