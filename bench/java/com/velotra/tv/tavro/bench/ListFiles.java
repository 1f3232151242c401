package com.velotra.tv.tavro.bench;

import com.google.gson.Gson;
import com.google.gson.reflect.TypeToken;
import java.io.BufferedInputStream;
import java.io.BufferedOutputStream;
import java.io.IOException;
import java.io.ObjectInputStream;
import java.io.ObjectOutputStream;
import java.io.Reader;
import java.io.Writer;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.StandardCopyOption;
import java.util.Arrays;
import java.util.List;

/**
 * Whole lists in files, as JSON and as serialized Java objects. Files are replaced by a rename, like stored lists.
 */
final class ListFiles {
    private static final Gson GSON = new Gson();
    private static final int BUFFER = 1 << 16;

    private ListFiles() {}

    static void writeJson(Path file, List<Service> services) throws IOException {
        Path part = part(file);
        try (Writer out = Files.newBufferedWriter(part)) {
            GSON.toJson(services, out);
        }
        Files.move(part, file, StandardCopyOption.ATOMIC_MOVE);
    }

    static List<Service> readJson(Path file) throws IOException {
        try (Reader in = Files.newBufferedReader(file)) {
            return GSON.fromJson(in, new TypeToken<List<Service>>() {}.getType());
        }
    }

    static void writeSerialized(Path file, List<Service> services) throws IOException {
        Path part = part(file);
        try (ObjectOutputStream out = new ObjectOutputStream(
                new BufferedOutputStream(Files.newOutputStream(part), BUFFER))) {
            out.writeObject(services.toArray(Service[]::new));
        }
        Files.move(part, file, StandardCopyOption.ATOMIC_MOVE);
    }

    static List<Service> readSerialized(Path file) throws IOException, ClassNotFoundException {
        try (ObjectInputStream in = new ObjectInputStream(
                new BufferedInputStream(Files.newInputStream(file), BUFFER))) {
            return Arrays.asList((Service[]) in.readObject());
        }
    }

    private static Path part(Path file) {
        return file.resolveSibling(file.getFileName() + ".part");
    }
}
