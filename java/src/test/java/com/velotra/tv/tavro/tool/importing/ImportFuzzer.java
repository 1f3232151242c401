package com.velotra.tv.tavro.tool.importing;

import com.velotra.tv.tavro.services.channellist.ServiceRecord;
import com.velotra.tv.tavro.services.channellist.TvList;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkList;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteList;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamList;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.input.Format;
import com.velotra.tv.tavro.tool.input.ImportReport;
import com.velotra.tv.tavro.tool.input.Malformed;
import com.velotra.tv.tavro.tool.input.Place;
import com.velotra.tv.tavro.tool.input.Source;
import com.velotra.tv.tavro.tool.satellites.SatelliteImport;
import com.velotra.tv.tavro.tool.services.ChannelsConf;
import com.velotra.tv.tavro.tool.services.DvbV5Services;
import com.velotra.tv.tavro.tool.services.Service;
import com.velotra.tv.tavro.tool.transponders.DvbV5File;
import com.velotra.tv.tavro.tool.transponders.LegacyFile;
import com.velotra.tv.tavro.tool.transponders.ListIds;
import com.velotra.tv.tavro.tool.transponders.Transponder;
import java.io.ByteArrayOutputStream;
import java.io.IOException;
import java.io.PrintStream;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import java.util.Random;
import java.util.regex.Matcher;
import java.util.regex.Pattern;
import java.util.stream.Stream;

/**
 * Passes mutated files to the parsers of all formats, and imports some of them. No parser may throw, except what says
 * that a file cannot be imported. Numbers of malformed lines must exist, services must be in range, and messages must
 * be printable. Takes libFuzzer's options; see fuzz.sh.
 */
public final class ImportFuzzer {
    private static final int STORE_EVERY = 100;
    private static final int MOST_LETTERS = 600; // of a message
    private static final long MOST_NANOSECONDS = 20_000_000_000L;

    private static final ListIds LISTS = ListIds.from(1);
    private static final String NAME = "fuzz-19.2E";
    private static final Pattern MALFORMED = Pattern.compile("  malformed line " + NAME + ":(\\d+): \\S.*");

    // What is put into lines: numbers at the limits, words and separators of the formats, and unusual characters.
    private static final String[] PIECES = {
        "0", "-1", "1", "65535", "65536", "2147483647", "2147483648", "99999999999999999999", "1e9", "0x10", "1/2",
        "999/0", ":", ";", ",", "=", "[", "]", "#", "@", "|", "+", " ", "\t", "\n", "\r", "\r\n", "\u0000",
        "\u001b[2J", "\u0085", "\u00e4", "\u20ac", "\ud83d\ude00", "\ufeff", "S19.2E", "S180W", "S180.1W", "S999E",
        "S-1E", "T", "T2", "C", "S", "S2", "A", "[CHANNEL]", "[", "[x", "FREQUENCY = ", "SERVICE_ID = 1",
        "VCHANNEL = 16384", "DELIVERY_SYSTEM = DVBT", "DELIVERY_SYSTEM = ISDBT", "POLARIZATION = OFF", ":@16383",
        ":@", "[E0 10 38 F0]", "[E0", "W1000000", "V", "H", "8MHz", "1.712MHz", "QAM64", "8PSK", "AUTO", "NONE",
        "1 2:", "$",
    };

    private final Random random;
    private final List<byte[]> seeds;
    private final int longest;
    private final Path file;

    private ImportFuzzer(long seed, List<byte[]> seeds, int longest, Path file) {
        this.random = new Random(seed);
        this.seeds = seeds;
        this.longest = longest;
        this.file = file;
    }

    /** Takes options of the form {@code -NAME=VALUE}, folders with files to begin with, and files to run once. */
    public static void main(String[] words) throws IOException {
        long runs = Long.MAX_VALUE;
        long end = Long.MAX_VALUE;
        long seed = System.nanoTime();
        int longest = 3000;
        String prefix = "";
        List<byte[]> seeds = new ArrayList<>();
        List<byte[]> inputs = new ArrayList<>();
        for (String word : words) {
            String value = word.substring(word.indexOf('=') + 1);
            switch (word.startsWith("-") ? word.substring(0, Math.max(word.indexOf('='), 0)) : "") {
                case "-runs" -> runs = Long.parseLong(value);
                case "-max_total_time" -> end = System.currentTimeMillis() + 1000 * Long.parseLong(value);
                case "-seed" -> seed = Long.parseLong(value);
                case "-max_len" -> longest = Integer.parseInt(value);
                case "-artifact_prefix" -> prefix = value;
                case "" -> read(Path.of(word), seeds, inputs);
                default -> {
                    System.out.println("the target importers has no option " + word);
                    System.exit(1);
                }
            }
        }
        ImportFuzzer fuzzer = new ImportFuzzer(seed, seeds, longest, Files.createTempDirectory("import").resolve(NAME));
        long done = 0;
        for (byte[] input : inputs) {
            fuzzer.run(input, true, prefix);
            done++;
        }
        for (; inputs.isEmpty() && done < runs && System.currentTimeMillis() < end; done++) {
            fuzzer.run(fuzzer.mutated(), done % STORE_EVERY == 0, prefix);
        }
        Files.deleteIfExists(fuzzer.file);
        System.out.println("stat::number_of_executed_units: " + done);
    }

    private static void read(Path path, List<byte[]> seeds, List<byte[]> inputs) throws IOException {
        if (!Files.isDirectory(path)) {
            if (Files.exists(path)) {
                inputs.add(Files.readAllBytes(path));
            }
            return;
        }
        try (Stream<Path> files = Files.list(path).sorted()) {
            for (Path file : files.toList()) {
                seeds.add(Files.readAllBytes(file));
            }
        }
    }

    // ---- Mutations.

    private byte[] mutated() {
        byte[] bytes = seed();
        for (int i = random.nextInt(6); i >= 0; i--) {
            bytes = switch (random.nextInt(8)) {
                case 0, 1, 2 -> replaced(bytes, piece().getBytes(StandardCharsets.UTF_8), random.nextInt(8));
                case 3 -> replaced(bytes, new byte[] {(byte) random.nextInt(256)}, random.nextInt(2));
                case 4 -> lines(bytes);
                case 5 -> replaced(bytes, slice(seed()), random.nextInt(40));
                case 6 -> replaced(bytes, new byte[0], random.nextInt(12));
                default -> replaced(bytes, repeated(), 0);
            };
        }
        if (random.nextInt(20) == 0) {
            String text = new String(bytes, StandardCharsets.UTF_8);
            bytes = text.getBytes(random.nextBoolean() ? StandardCharsets.UTF_16LE : StandardCharsets.UTF_16BE);
        }
        return bytes.length <= longest ? bytes : Arrays.copyOf(bytes, longest);
    }

    private byte[] seed() {
        return seeds.isEmpty() ? new byte[0] : seeds.get(random.nextInt(seeds.size()));
    }

    private String piece() {
        return PIECES[random.nextInt(PIECES.length)];
    }

    private byte[] repeated() {
        return piece().repeat(1 + random.nextInt(60)).getBytes(StandardCharsets.UTF_8);
    }

    private byte[] slice(byte[] bytes) {
        int start = random.nextInt(bytes.length + 1);
        return Arrays.copyOfRange(bytes, start, Math.min(bytes.length, start + random.nextInt(120)));
    }

    /** Replaces {@code removed} bytes by others, at a place that is often the beginning of a word. */
    private byte[] replaced(byte[] bytes, byte[] others, int removed) {
        int at = random.nextInt(bytes.length + 1);
        while (random.nextInt(4) != 0 && at > 0 && at < bytes.length && bytes[at - 1] >= '.') {
            at--;
        }
        int rest = Math.min(bytes.length, at + removed);
        byte[] all = Arrays.copyOf(bytes, at + others.length + bytes.length - rest);
        System.arraycopy(others, 0, all, at, others.length);
        System.arraycopy(bytes, rest, all, at + others.length, bytes.length - rest);
        return all;
    }

    /** Removes, repeats and swaps lines. */
    private byte[] lines(byte[] bytes) {
        List<String> lines = new ArrayList<>(
                List.of(new String(bytes, StandardCharsets.ISO_8859_1).split("\n", -1)));
        int at = random.nextInt(lines.size());
        switch (random.nextInt(3)) {
            case 0 -> lines.remove(at);
            case 1 -> lines.add(random.nextInt(lines.size() + 1), lines.get(at));
            default -> lines.add(random.nextInt(lines.size()), lines.remove(at));
        }
        return String.join("\n", lines).getBytes(StandardCharsets.ISO_8859_1);
    }

    // ---- Rules.

    private void run(byte[] input, boolean stores, String prefix) throws IOException {
        long start = System.nanoTime();
        try {
            parse(new Source(NAME, NAME, input));
            if (stores) {
                store(input);
            }
            require(System.nanoTime() - start < MOST_NANOSECONDS, "a file of " + input.length + " bytes takes no time");
        } catch (RuntimeException | StackOverflowError | OutOfMemoryError e) {
            Path kept = Path.of(prefix + "crash-" + Integer.toHexString(Arrays.hashCode(input)));
            Files.write(kept, input);
            e.printStackTrace(System.out);
            System.out.println("Test unit written to " + kept);
            System.exit(1);
        }
    }

    private static void require(boolean holds, String rule) {
        if (!holds) {
            throw new IllegalStateException("BROKEN RULE: " + rule);
        }
    }

    private static void parse(Source source) {
        try {
            Format.of(source);
        } catch (Failure e) {
            requireMessage(e.getMessage());
        }
        // Each parser gets every file, whatever its format.
        int lines = countLines(source);
        DvbV5File tables = DvbV5File.read(source);
        requireMalformed(tables.malformed(), lines);
        requireTransponders(tables.transponders(), lines);
        DvbV5Services named = DvbV5Services.of(tables);
        requireMalformed(named.malformed(), lines);
        requireServices(named.services(), lines);
        LegacyFile legacy = LegacyFile.read(source);
        requireMalformed(legacy.malformed(), lines);
        requireTransponders(legacy.transponders(), lines);
        ChannelsConf channels = ChannelsConf.read(source);
        requireMalformed(channels.malformed(), lines);
        requireServices(channels.services(), lines);
        require(channels.services().size() + channels.groups() + channels.malformed().size() <= lines,
                "a line is a service, a heading or malformed");
        ByteArrayOutputStream progress = new ByteArrayOutputStream();
        ImportReport report = new ImportReport(new PrintStream(progress, true, StandardCharsets.UTF_8));
        SatelliteImport satellites = new SatelliteImport(VltTvSatelliteList.getInstance(), 1, report);
        satellites.addSources(source);
        satellites.addSwitches(source);
        requireReport(progress, lines);
    }

    /** Returns an upper limit of the number of lines, which does not depend on the encoding. */
    private static int countLines(Source source) {
        int lines = 1;
        for (byte value : source.bytes()) {
            lines += value == '\n' || value == '\r' ? 1 : 0;
        }
        return lines;
    }

    private static void requireMessage(String message) {
        require(!message.isBlank() && message.length() <= MOST_LETTERS, "a message says something, and not too much");
        require(message.chars().noneMatch(Character::isISOControl), "a message has no control characters");
    }

    private static void requirePlace(Place place, int lines) {
        require(place.source().equals(NAME) && place.line() >= 1 && place.line() <= lines, "a place is in the file");
    }

    private static void requireMalformed(List<Malformed> malformed, int lines) {
        int before = 0;
        for (Malformed line : malformed) {
            requirePlace(line.place(), lines);
            require(line.place().line() >= before, "malformed lines are reported in their order");
            before = line.place().line();
            requireMessage(line.reason());
        }
    }

    private static void requireTransponders(List<Transponder> transponders, int lines) {
        for (Transponder transponder : transponders) {
            requirePlace(transponder.place(), lines);
            require(transponder.values().values().stream().noneMatch(String::isEmpty), "a parameter has a value");
        }
    }

    private static void requireServices(List<Service> services, int lines) {
        for (Service service : services) {
            requirePlace(service.place(), lines);
            for (int id : new int[] {service.serviceId(), service.networkId(), service.transportStreamId()}) {
                require(id >= 0 && id <= 0xFFFF, "an id has 16 bits");
            }
            require(service.number() >= 0 && service.number() <= 0x3FFF, "a channel number has 14 bits");
        }
    }

    private static void requireReport(ByteArrayOutputStream progress, int lines) {
        for (String line : progress.toString(StandardCharsets.UTF_8).split(System.lineSeparator())) {
            if (!line.isEmpty()) {
                requireMessage(line);
            }
            if (line.startsWith("  malformed line ")) {
                Matcher matcher = MALFORMED.matcher(line);
                require(matcher.matches() && Integer.parseInt(matcher.group(1)) <= lines, "a report names a line");
            }
        }
    }

    /** Imports the file into empty lists, twice: the second import must find all records of the first. */
    private void store(byte[] input) throws IOException {
        Files.write(file, input);
        VltTvChannelList services = VltTvChannelList.getInstance();
        VltTvTransportStreamList streams = VltTvTransportStreamList.getInstance();
        List<TvList> lists = List.of(
                services, streams, VltTvNetworkList.getInstance(), VltTvSatelliteList.getInstance());
        for (TvList list : lists) {
            for (int id = LISTS.terrestrial(); id <= LISTS.satellite(); id++) {
                list.open(id);
                list.clean(id);
            }
        }
        importFile();
        List<List<ServiceRecord>> first = new ArrayList<>();
        for (int id = LISTS.terrestrial(); id <= LISTS.satellite(); id++) {
            first.add(services.getAll(id));
            for (ServiceRecord service : services.getAll(id)) {
                require(streams.get(service.transportStream()).isPresent(), "the stream of an imported service exists");
            }
        }
        importFile();
        for (int id = LISTS.terrestrial(); id <= LISTS.satellite(); id++) {
            require(services.getAll(id).size() == first.get(id - LISTS.terrestrial()).size(),
                    "a second import adds no services");
        }
    }

    private void importFile() {
        ByteArrayOutputStream progress = new ByteArrayOutputStream();
        PrintStream out = new PrintStream(progress, true, StandardCharsets.UTF_8);
        ImportReport report = new ImportReport(out);
        Importer importer = new Importer(LISTS, report);
        importer.read(file);
        if (report.anyFile()) {
            importer.store((transponder, id) -> { }, (service, id, stream) -> { });
        }
        report.print(out);
    }
}
