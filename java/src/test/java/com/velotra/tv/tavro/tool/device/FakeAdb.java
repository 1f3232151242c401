package com.velotra.tv.tavro.tool.device;

import com.velotra.tv.tavro.services.channellist.VltTvChannelInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.tool.ToolProcess;
import java.io.IOException;
import java.io.InputStream;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.stream.Stream;

/** A program adb that records its calls and serves the files of a folder as those of a device. */
final class FakeAdb {
    private final Path folder;

    FakeAdb(Path folder) throws IOException {
        this.folder = folder;
        try (InputStream script = FakeAdb.class.getResourceAsStream("fake-adb")) {
            Files.write(program(), script.readAllBytes());
        }
        if (!program().toFile().setExecutable(true)) {
            throw new IOException("cannot make " + program() + " executable");
        }
        for (String name : List.of("device/data/local/tmp", "device/vendor/lib", "properties")) {
            Files.createDirectories(folder.resolve(name));
        }
        for (String name : List.of("calls", "failing", "logcat", "devices")) {
            Files.writeString(folder.resolve(name), "");
        }
        file("user", "0\n");
    }

    Path program() {
        return folder.resolve("adb");
    }

    /** Writes a file of the fake: logcat, devices, user or fixed. */
    void file(String name, String text) throws IOException {
        Files.writeString(folder.resolve(name), text);
    }

    /** Lets calls whose arguments match a shell pattern fail. */
    void fail(String pattern, int exit, String message) throws IOException {
        Files.writeString(folder.resolve("failing"), pattern + "|" + exit + "|" + message.replace("\n", "\\n") + "\n");
    }

    /** Sets a property of the device. */
    void property(String name, String value) throws IOException {
        Files.writeString(folder.resolve("properties").resolve(name), value + "\n");
    }

    /** A file of the device. */
    Path device(String path) {
        return folder.resolve("device" + path);
    }

    /** Names of the files in a folder of the device, sorted. */
    List<String> files(String path) throws IOException {
        try (Stream<Path> files = Files.list(device(path))) {
            return files.map(file -> file.getFileName().toString()).sorted().toList();
        }
    }

    /** Returns the calls since the last time. The folder's name is left out. */
    String calls() throws IOException {
        String calls = Files.readString(folder.resolve("calls"), StandardCharsets.UTF_8);
        Files.writeString(folder.resolve("calls"), "");
        return calls.replace(folder.toString(), "");
    }

    /** Runs ./tavro device with this adb. The folder's name is left out of what it prints. */
    ToolProcess.Result run(String... words) {
        String[] all = new String[2 + words.length];
        all[0] = "device";
        all[1] = "--adb=" + program();
        System.arraycopy(words, 0, all, 2, words.length);
        ToolProcess.Result result = ToolProcess.runHere(all);
        return new ToolProcess.Result(result.exit(), result.out().replace(folder.toString(), ""),
                result.err().replace(folder.toString(), ""));
    }

    /** A list file with one service, as the library stores it. */
    Path storedList(int id) {
        VltTvChannelList services = VltTvChannelList.getInstance();
        services.open(id);
        services.add(id, new VltTvChannelInfoBase().setBroadcastType(2).setServiceName("One").setServiceId(101));
        Path file = folder.resolve("stored.list");
        services.store(id, file.toString());
        return file;
    }
}
