package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;

import java.io.IOException;
import java.lang.reflect.InvocationTargetException;
import java.lang.reflect.Method;
import java.net.URL;
import java.net.URLClassLoader;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** What docs/porting.md says about two versions of the library in one process. */
class TwoLibrariesTest {
    private static final String NAME = "libvelotra_tavro_channellist.so";
    private static final int LIST = 7;

    @TempDir
    private Path folder; // one per test: each class loader needs a file of its own

    private final Path library = Path.of(System.getProperty("java.library.path").split(":")[0], NAME).toAbsolutePath();
    private final VltTvChannelList first = VltTvChannelList.getInstance();

    /** Loads the classes anew, and the library from a file. */
    private static final class SecondLoader extends URLClassLoader {
        private final Path library;

        SecondLoader(Path library) {
            super(new URL[] {TvList.class.getProtectionDomain().getCodeSource().getLocation()},
                    ClassLoader.getPlatformClassLoader());
            this.library = library;
        }

        @Override
        protected String findLibrary(String name) {
            return library.toString();
        }

        Object services() throws ReflectiveOperationException {
            return loadClass(VltTvChannelList.class.getName()).getMethod("getInstance").invoke(null);
        }
    }

    private static Object call(Object services, String name, int list) throws ReflectiveOperationException {
        Method method = services.getClass().getDeclaredMethod(name, int.class);
        method.setAccessible(true);
        return method.invoke(services, list);
    }

    private Path copy() throws IOException {
        return Files.copy(library, folder.resolve("libsecond_version.so"));
    }

    @BeforeEach
    @AfterEach
    void closeTheList() {
        first.native_close(LIST);
        Script.reset();
    }

    @Test
    void oneFileIsLoadedByOneClassLoaderOnly() throws IOException {
        try (SecondLoader loader = new SecondLoader(library)) {
            InvocationTargetException refused = assertThrows(InvocationTargetException.class, loader::services);
            assertEquals("Native Library " + library.toRealPath() + " already loaded in another classloader",
                    messageOf(refused));
        }
    }

    private static String messageOf(Throwable thrown) {
        Throwable cause = thrown;
        while (cause.getCause() != null) {
            cause = cause.getCause();
        }
        return cause.getMessage();
    }

    @Test
    void aCopyWithAnotherNameHasItsOwnHandleMap() throws Exception {
        try (SecondLoader loader = new SecondLoader(copy())) {
            Object second = loader.services();
            call(second, "native_close", LIST);
            Script.reset();
            first.native_open(LIST);
            assertEquals(0, call(second, "native_open", LIST));
            assertEquals(2, Script.linesWith("x_svl_open(").size());
            call(second, "native_close", LIST);
            first.native_clean(LIST);
            assertEquals(List.of("x_svl_close(0x10007)"), Script.linesWith("x_svl_close("));
            assertEquals(2, Script.linesWith("x_svl_open(").size()); // the list is still open in the first one
        }
    }

    @Test
    void aListThatOneVersionDeletesKeepsItsHandleInTheOther() throws Exception {
        try (SecondLoader loader = new SecondLoader(copy())) {
            Object second = loader.services();
            first.native_open(LIST);
            call(second, "native_open", LIST);
            call(second, "native_delete", LIST);
            Script.reset();
            Script.answer("x_svl_lock", -1);
            first.native_clean(LIST);
            assertEquals(List.of("x_svl_clean(0x10007)"), Script.linesWith("x_svl_clean("));
            assertEquals(List.of(), Script.linesWith("x_svl_open("));
        }
    }
}
