package com.velotra.tv.tavro.tool.view;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.velotra.tv.tavro.tool.records.Record;
import java.io.IOException;
import java.io.InputStream;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.stream.IntStream;
import org.junit.jupiter.api.AfterAll;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.Assumptions;
import org.junit.jupiter.api.BeforeAll;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** The page in a browser. All tests share one browser. */
class BrowserTest {
    private static final String CELLS =
            "return [...document.querySelectorAll(arguments[0])].map(e => e.innerText.trim())";
    private static final String[] KINDS = {"services", "streams", "networks", "satellites"};

    @TempDir
    static Path folder;

    private static Browser browser;
    private static Path page;
    private static Path comparison;

    @BeforeAll
    static void start() throws IOException {
        Assumptions.assumeTrue(Files.exists(Browser.CHROMIUM) && Files.exists(Browser.DRIVER),
                "skipped: the packages chromium and chromium-driver are not installed");
        page = Fixture.page(folder.resolve("page.html"), Fixture.directory("tv", Fixture.services()));
        comparison = Fixture.page(folder.resolve("comparison.html"), Fixture.directory("before", Fixture.services()),
                Fixture.directory("after", Fixture.changedServices()));
        browser = new Browser(folder.resolve("profile"));
    }

    @AfterAll
    static void stop() {
        if (browser != null) {
            browser.close();
        }
    }

    @BeforeEach
    void reset() {
        browser.media("screen", "light");
        browser.size(1280, 900);
        browser.requests();
    }

    @AfterEach
    void thePageIsQuietAndLoadsNothing() {
        assertEquals(List.of(), browser.console());
        assertEquals(List.of(), browser.requests().stream()
                .filter(address -> !address.startsWith("file://" + folder) && !address.equals("about:blank")).toList());
    }

    private static List<String> column(int number) {
        return browser.texts(CELLS, "#table tbody tr > :nth-child(" + number + ")");
    }

    private static void search(String text) {
        browser.run("const box = document.getElementById('search'); box.value = arguments[0];"
                + "box.dispatchEvent(new Event('input'))", text);
        browser.settle();
    }

    private static String focused() {
        return browser.text("const e = document.activeElement; return e.getAttribute('aria-label') ?? e.innerText");
    }

    @Test
    void wordsAreSearchedInAllColumns() {
        browser.open(page, "#services");
        assertEquals("250 services", browser.visible("#count"));
        search("\"SERVICE 12\" net");
        assertEquals(IntStream.rangeClosed(120, 129).mapToObj(i -> "Service " + i).toList(), column(2));
        assertEquals("10 of 250 services", browser.visible("#count"));
        search("no such service");
        assertEquals("0 of 250 services", browser.visible("#count"));
        assertEquals(List.of(), column(2));
    }

    @Test
    void conditionsOnFieldsAreSearched() {
        browser.open(page, "#services");
        search("lcn>248");
        assertEquals(List.of("Service 249", "Service 250"), column(2));
        search("sid=1004 name=\"service 004\"");
        assertEquals(List.of("Service 004"), column(2));
        search("colour=red");
        assertEquals("Service records have no field “colour”. 0 of 250 services", browser.visible("#count"));
        browser.open(page, "#streams");
        search("freq>=11831000 pol=0");
        assertEquals(List.of("11870 MHz H"), column(1));
    }

    @Test
    void aHeadingSortsItsColumnUpAndDown() {
        browser.open(page, "#services");
        browser.click("[data-column=service_id]");
        browser.click("[data-column=service_id]");
        assertEquals(List.of("Service 250", "Service 249"), column(2).subList(0, 2));
        String state = "return [...document.querySelectorAll('#table th')]"
                + ".map(e => e.getAttribute('aria-sort')).filter(sort => /ing$/.test(sort))";
        assertEquals(List.of("descending"), browser.texts(state));
        browser.click("[data-column=service_id]");
        assertEquals(List.of("Service 001", "Service 002"), column(2).subList(0, 2));
        assertEquals(List.of("ascending"), browser.texts(state));
        assertEquals("Service id▲", focused());
    }

    @Test
    void aServiceLeadsToItsStreamAndBack() {
        browser.open(page, "#services/1,31");
        assertEquals("Service 031", browser.visible("#selected"));
        browser.click("#details a[href='#streams/1,2']");
        assertEquals("10778 MHz H", browser.visible("#selected"));
        assertEquals("10778 MHz H", focused());
        assertEquals("Transport streams", browser.visible("#heading"));
        browser.click("#details a.all");
        assertEquals("9 of 250 services", browser.visible("#count"));
        assertEquals(List.of("Service 001", "Service 031", "Service 061"), column(2).subList(0, 3));
    }

    @Test
    void aStreamLeadsToItsNetworkAndSatellite() {
        browser.open(page, "#streams/1,2");
        browser.click("#details a[href='#networks/1,1']");
        assertEquals("Net", browser.visible("#selected"));
        browser.open(page, "#streams/1,2");
        browser.click("#details a[href='#satellites/1,1']");
        assertEquals("Uno", browser.visible("#selected"));
        browser.click("#details a.stream:nth-of-type(3)");
        assertEquals("10817 MHz V", browser.visible("#selected"));
    }

    @Test
    void pagesOfTheTableAreTurned() {
        browser.open(page, "#services");
        assertEquals(100, column(2).size());
        browser.click("[data-to=next]");
        browser.click("[data-to=next]");
        assertEquals(50, column(2).size());
        assertEquals("Page 3 of 3", browser.visible("#count"));
        browser.open(page, "#services/1,210");
        assertEquals("Service 210", browser.visible("#table [aria-selected=true] th"));
    }

    @Test
    void theKeyboardAloneReachesEverything() {
        browser.open(page, "#satellites");
        browser.press("Tab");
        assertEquals("Skip to the records", focused());
        browser.press("Enter", "Tab");
        assertEquals("Due, 5.0° W, 0 transport streams", focused());
        assertEquals("Due\n5.0° W\n0 transport streams\n0 services", browser.visible("#tip"));
        browser.press("Right", "Enter");
        assertEquals("Uno", browser.visible("#selected"));
        assertEquals("Uno", focused());
        browser.open(page, "#services");
        browser.run("document.querySelector('#columns summary').focus()");
        browser.press("Tab");
        assertEquals("Service 001", focused());
        browser.press("Down", "Down", "Left");
        assertEquals("3", focused());
        browser.press("End", "Home", "Right", "Up", "Up", "Up");
        assertEquals("Name", focused());
        browser.press("Enter", "Down", "Down", "Enter");
        assertEquals("Service 001", browser.visible("#selected"));
    }

    @Test
    void theFocusIsVisibleEverywhere() {
        browser.open(page, "#services/1,3");
        for (int stop = 0; stop < 16; stop++) {
            browser.press("Tab");
            assertEquals("visible", browser.text("const e = document.activeElement, s = getComputedStyle(e);"
                    + "const inner = getComputedStyle(e.querySelector('.b') ?? e);"
                    + "return s.outlineStyle !== 'none' || inner.boxShadow !== 'none' ? 'visible' : e.outerHTML"));
        }
    }

    @Test
    void aFieldIsDescribedUnderTheFocusInTheBytes() {
        browser.open(page, "#services/1,3");
        browser.run("document.querySelector('.run[tabindex=\"0\"]').focus()");
        browser.press("Right", "Right");
        assertEquals("channel id: 0x00000000 (major 0)\nbytes 4 to 7: 00 00 00 00\nheader: t_header.ui4_channel_id\n"
                + "Java keys: MajorChannelNumber, MinorChannelNumber\n"
                + "holds the channel numbers, in bits that depend on the broadcast type", browser.visible("#tip"));
        assertEquals("channel id", browser.visible(".fields .marked th"));
        browser.press("Escape");
        assertEquals("", browser.visible("#tip"));
        browser.press("Left");
        assertEquals("reserved\nbytes 2 to 3: 00 00", browser.visible("#tip"));
        assertEquals(552, browser.run("return document.querySelectorAll('.run .b').length").getAsInt());
    }

    @Test
    void markupInANameIsShownAsText() {
        browser.open(page, "#services/1,7");
        assertEquals(Fixture.EVIL, browser.visible("#selected"));
        assertTrue(column(2).contains(Fixture.EVIL));
        assertEquals(0, browser.run("return document.querySelectorAll('img, #main script').length").getAsInt());
        search("<IMG");
        assertEquals(List.of(Fixture.EVIL), column(2));
    }

    @Test
    void aNameWithoutVisibleCharactersIsReplaced() throws IOException {
        Path blank = Fixture.page(folder.resolve("blank.html"), Fixture.directory("tv", List.of(
                Fixture.service(1, " \n"), Fixture.service(2, "\u202E\u200B"), Fixture.service(3, " \u00E9 "))));
        browser.open(blank, "#services/1,2");
        assertEquals(List.of("service 1001", "service 1002", "\u00E9"), column(2));
        assertEquals("service 1002", browser.visible("#selected"));
    }

    @Test
    void theColorSchemeFollowsTheSystemAndTheButton() {
        String background = "return getComputedStyle(document.documentElement).backgroundColor";
        browser.open(page, "#services");
        String light = browser.text(background);
        browser.media("screen", "dark");
        String dark = browser.text(background);
        assertEquals("true", browser.text("return document.getElementById('theme').ariaPressed"));
        browser.click("#theme");
        assertEquals(light, browser.text(background));
        browser.media("screen", "light");
        browser.click("#theme");
        assertEquals(dark, browser.text(background));
        assertFalse(light.equals(dark));
    }

    @Test
    void textHasContrastInBothColorSchemes() throws IOException {
        String contrast;
        try (InputStream in = BrowserTest.class.getResourceAsStream("contrast.js")) {
            contrast = new String(in.readAllBytes(), StandardCharsets.UTF_8);
        }
        for (String scheme : List.of("light", "dark")) {
            browser.media("screen", scheme);
            browser.open(comparison, "#services/1,5");
            assertEquals(List.of(), browser.texts(contrast), scheme);
            browser.open(page, "#satellites/1,1");
            assertEquals(List.of(), browser.texts(contrast), scheme);
        }
    }

    @Test
    void nothingIsWiderThanAPhoneOrAZoomedPage() {
        for (int width : new int[] {360, 320}) { // 320: 1280 at 400 %
            browser.size(width, 640);
            for (String kind : KINDS) {
                browser.open(page, "#" + kind + "/1,1");
                assertEquals(List.of("0", "0", "0"), browser.texts("return ['html', '#table', '#details']"
                        + ".map(name => document.querySelector(name)).map(e => `${e.scrollWidth - e.clientWidth}`)"),
                        kind);
                assertTrue(browser.visible("#selected").length() > 2, kind);
            }
        }
    }

    @Test
    void aPrintedTableHasAllRowsAndNoControls() {
        browser.open(page, "#services");
        browser.media("print", "light");
        assertEquals(250, column(2).size());
        assertEquals("", browser.visible("button:not(th button), form, .kinds, #pages"));
        browser.media("screen", "light");
        assertEquals(100, column(2).size());
    }

    @Test
    void twoDirectoriesAreCompared() {
        browser.open(comparison, "#services");
        assertEquals("/before compared with /after", browser.visible("#where"));
        browser.run("const state = document.getElementById('state'); state.value = 'different';"
                + "state.dispatchEvent(new Event('change'))");
        assertEquals(List.of("Cinque", "Nuovo", Fixture.EVIL), column(3));
        assertEquals(List.of("changed", "added", "removed"), browser.texts("return "
                + "[...document.querySelectorAll('#table tbody .state .unseen')].map(e => e.textContent)"));
        browser.open(comparison, "#services/1,5");
        assertEquals(List.of("name", "Service 005", "Cinque"), browser.texts(
                "return [...document.querySelector('.changes tbody tr').cells].map(e => e.textContent)"));
        assertEquals("Service 1,5changed", browser.visible("#details .kind"));
        browser.open(comparison, "#services/1,7/before");
        assertEquals("Service 1,7removed", browser.visible("#details .kind"));
    }

    @Test
    void streamsArePlottedByMediumAndSatellite() {
        browser.open(page, "#streams");
        assertEquals(List.of("19.2° E Uno", "Terrestrial, list 2", "Cable, list 2"),
                browser.texts(CELLS, "#plot option"));
        assertEquals(List.of("H", "V"),
                browser.texts(CELLS.replace("innerText", "textContent"), "#plot .strip + text"));
        assertEquals(30, browser.run("return document.querySelectorAll('#plot a').length").getAsInt());
        browser.open(page, "#streams/2,3");
        assertEquals("410 MHz, 6.9 MBd, stream id 0, 0 services",
                browser.text("return document.querySelector('#plot a').getAttribute('aria-label')"));
    }

    @Test
    void aListOfTheMostServicesIsShownQuickly() throws IOException {
        List<Record> services = Fixture.manyServices(65_534);
        Path large = Fixture.page(folder.resolve("large.html"), Fixture.directory("tv", services));
        browser.open(large, "#services");
        double ready = browser.run("return performance.now()").getAsDouble();
        assertTrue(ready < 3000, ready + " ms until the page was ready");
        assertEquals("65,534 services", browser.visible("#count"));
        browser.run("document.querySelector('[data-column=name]').click()");
        browser.run("document.querySelector('[data-column=name]').click()");
        assertEquals("Service 65533", column(2).get(0));
        browser.run("document.getElementById('search').value = '\"service 6553\"'");
        browser.async("document.getElementById('search').dispatchEvent(new Event('input'));"
                + "new MutationObserver(done).observe(document.getElementById('count'), {childList: true})");
        assertEquals("4 of 65,534 services", browser.visible("#count"));
        browser.open(large, "#streams/1,4");
        assertEquals("2,185 services in the table", browser.visible("#details a.all"));
    }
}
