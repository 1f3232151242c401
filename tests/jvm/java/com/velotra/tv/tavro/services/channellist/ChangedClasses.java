package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertTrue;

import java.io.IOException;
import java.io.InputStream;
import java.io.UncheckedIOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Path;
import java.util.Map;

/** Has classes of the package of its own; in some of them the members of one name are called otherwise. */
final class ChangedClasses extends ClassLoader {
    /** In place of a member: the class is missing. */
    static final String MISSING = "";

    private static final String PACKAGE = ChangedClasses.class.getPackageName() + ".";

    private final Map<String, String> changes;
    private final Path library;

    /** @param changes by the name of a class, the members that get another last letter, or {@link #MISSING} */
    ChangedClasses(Map<String, String> changes) {
        this(changes, null);
    }

    /** The same, with a file in which this loader's classes find the library. */
    ChangedClasses(Map<String, String> changes, Path library) {
        super(ChangedClasses.class.getClassLoader());
        this.changes = changes;
        this.library = library;
    }

    @Override
    protected String findLibrary(String name) {
        return library == null ? null : library.toString();
    }

    @Override
    protected Class<?> loadClass(String name, boolean resolve) throws ClassNotFoundException {
        synchronized (getClassLoadingLock(name)) {
            Class<?> known = findLoadedClass(name);
            if (known != null || !name.startsWith(PACKAGE)) {
                return known != null ? known : super.loadClass(name, resolve);
            }
            String change = changes.get(name);
            if (MISSING.equals(change)) {
                throw new ClassNotFoundException(name);
            }
            byte[] bytes = bytesOf(name);
            if (change != null) {
                rename(bytes, change);
            }
            return defineClass(name, bytes, 0, bytes.length);
        }
    }

    private byte[] bytesOf(String name) throws ClassNotFoundException {
        try (InputStream stream = getParent().getResourceAsStream(name.replace('.', '/') + ".class")) {
            if (stream == null) {
                throw new ClassNotFoundException(name);
            }
            return stream.readAllBytes();
        } catch (IOException e) {
            throw new UncheckedIOException(e);
        }
    }

    /**
     * Changes the last letter of a name in a class file, where it is a constant: the tag 1, its length in two
     * bytes, its text.
     */
    private static void rename(byte[] bytes, String name) {
        String constant = "\1\0" + (char) name.length() + name;
        int at = new String(bytes, StandardCharsets.ISO_8859_1).indexOf(constant);
        assertTrue(at >= 0, name);
        bytes[at + constant.length() - 1] = '_';
    }
}
