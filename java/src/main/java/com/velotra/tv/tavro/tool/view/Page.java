package com.velotra.tv.tavro.tool.view;

import java.io.IOException;
import java.io.InputStream;
import java.io.UncheckedIOException;
import java.io.Writer;
import java.nio.charset.StandardCharsets;
import java.security.MessageDigest;
import java.security.NoSuchAlgorithmException;
import java.util.Base64;
import java.util.List;

/**
 * The page as HTML: markup, style, scripts and data in one file. A browser loads nothing else for it, and its policy
 * does not allow any other style or script.
 */
public final class Page {
    /** The beginning of every page. */
    public static final String BEGINNING = "<!doctype html>\n<html lang=\"en\" data-page=\"tavro view\">\n";

    private static final List<String> SCRIPTS = List.of("dom.js", "data.js", "records.js", "query.js", "tooltip.js",
            "columns.js", "table.js", "arc.js", "spectrum.js", "bytes.js", "details.js", "main.js");

    private Page() {}

    /** Writes the page of that data. The same data gives the same bytes. */
    public static void write(PageData data, Writer out) throws IOException {
        String style = resource("page.css");
        String script = script();
        String policy = "default-src 'none'; style-src '" + hash(style) + "'; script-src '" + hash(script) + "'; "
                + "base-uri 'none'; form-action 'none'";
        out.write(BEGINNING);
        out.write("<head>\n<meta charset=\"utf-8\">\n<meta http-equiv=\"Content-Security-Policy\" content=\"" + policy
                + "\">\n<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
                + "<meta name=\"color-scheme\" content=\"light dark\">\n<title>Channel lists</title>\n<style>");
        out.write(style);
        out.write("</style>\n</head>\n");
        out.write(resource("page.html"));
        out.write("<script type=\"application/json\" id=\"data\">");
        data.write(out);
        out.write("</script>\n<script>");
        out.write(script);
        out.write("</script>\n</body>\n</html>\n");
        out.flush();
    }

    /** All scripts as one, in a scope of its own. */
    private static String script() {
        StringBuilder all = new StringBuilder("\n(() => {\n'use strict';\n");
        SCRIPTS.forEach(name -> all.append("\n// ").append(name).append('\n').append(resource(name)));
        return all.append("})();\n").toString();
    }

    /** The name by which a policy allows exactly this text. */
    private static String hash(String text) {
        try {
            byte[] digest = MessageDigest.getInstance("SHA-256").digest(text.getBytes(StandardCharsets.UTF_8));
            return "sha256-" + Base64.getEncoder().encodeToString(digest);
        } catch (NoSuchAlgorithmException e) {
            throw new IllegalStateException(e); // every Java platform has SHA-256
        }
    }

    private static String resource(String name) {
        try (InputStream in = Page.class.getResourceAsStream(name)) {
            return new String(in.readAllBytes(), StandardCharsets.UTF_8);
        } catch (IOException e) {
            throw new UncheckedIOException(e);
        }
    }
}
