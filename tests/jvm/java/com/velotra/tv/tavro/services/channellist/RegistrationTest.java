package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertDoesNotThrow;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertNotEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;
import static org.junit.jupiter.api.DynamicTest.dynamicTest;

import java.io.File;
import java.io.IOException;
import java.lang.reflect.InvocationTargetException;
import java.lang.reflect.Method;
import java.lang.reflect.Modifier;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Arrays;
import java.util.Comparator;
import java.util.List;
import java.util.Map;
import java.util.function.Consumer;
import java.util.stream.Collectors;
import java.util.stream.Stream;
import org.junit.jupiter.api.BeforeAll;
import org.junit.jupiter.api.DynamicTest;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.TestFactory;
import org.junit.jupiter.api.io.TempDir;

/**
 * The natives that the list classes declare and those that the library registers are the same.
 *
 * <p>A native without a registration cannot be called. A registration without a native makes the library refuse to be
 * loaded, so that no test over it passes; that it refuses is shown by list classes of which one native is called
 * otherwise.
 */
class RegistrationTest {
    private static final String PACKAGE = RegistrationTest.class.getPackageName() + ".";
    private static final int FAILED = -22;

    private static final List<TvList> LISTS = List.of(
            VltTvChannelList.getInstance(), VltTvTransportStreamList.getInstance(), VltTvNetworkList.getInstance(),
            VltTvSatelliteList.getInstance());

    // Arguments for a list that there cannot be.
    private static final Map<Class<?>, Object> ARGUMENTS = Map.of(
            int.class, 0,
            String.class, "0,0",
            List.class, List.of(),
            VltTvChannelInfoBase.class, new VltTvChannelInfoBase(),
            VltTvTransportStreamInfoBase.class, new VltTvTransportStreamInfoBase(),
            VltTvNetworkInfoBase.class, new VltTvNetworkInfoBase(),
            VltTvSatelliteInfoBase.class, new VltTvSatelliteInfoBase());

    private static final String LOADED = "loaded.so";
    private static final ClassLoader KEEPER = new ChangedClasses(Map.of());

    @TempDir
    static Path folder;

    // While the copy is loaded, a link to it that is refused is not unloaded: on the way the virtual machine would read
    // a name that is freed by then, which sanitizers report.
    @BeforeAll
    static void keepTheLibraryLoaded() throws IOException, ReflectiveOperationException {
        load(Files.copy(library(), folder.resolve(LOADED)), KEEPER);
    }

    private static List<Method> natives(TvList list) {
        return Arrays.stream(list.getClass().getDeclaredMethods())
                .filter(method -> Modifier.isNative(method.getModifiers()))
                .sorted(Comparator.comparing(Method::toString))
                .toList();
    }

    @Test
    void theFourListClassesDeclareSeventyTwoNatives() {
        assertEquals(
                Map.of("VltTvChannelList", 20, "VltTvTransportStreamList", 18, "VltTvNetworkList", 17,
                        "VltTvSatelliteList", 17),
                LISTS.stream()
                .collect(Collectors.toMap(list -> list.getClass().getSimpleName(), list -> natives(list).size())));
    }

    @TestFactory
    Stream<DynamicTest> everyNativeIsRegisteredAndReturnsForAMissingList() {
        return LISTS.stream().flatMap(list -> natives(list).stream().map(
                method -> dynamicTest(method.toString().replace(PACKAGE, ""), () -> call(list, method))));
    }

    private static void call(TvList list, Method method) throws Throwable {
        Object result;
        try {
            result = method.invoke(list, Arrays.stream(method.getParameterTypes()).map(ARGUMENTS::get).toArray());
        } catch (InvocationTargetException e) {
            throw e.getCause(); // UnsatisfiedLinkError when it is not registered
        }
        if (method.getName().equals("nativeSetup")) {
            assertNotEquals(0, result);
        } else {
            assertEquals(expected(method), result);
        }
    }

    private static Object expected(Method method) {
        Class<?> type = method.getReturnType();
        if (type == int.class) {
            // There is nothing to update, and only one of the natives that open a list reports that it could not create
            // it.
            boolean opens = method.getName().endsWith("pen")
                    && !(method.getDeclaringClass() == VltTvChannelList.class && method.getParameterCount() == 1);
            return opens || method.getName().endsWith("pdateInfoList") ? 0 : FAILED;
        }
        return type == String.class ? "" : type == List.class ? List.of() : null;
    }

    @TestFactory
    Stream<DynamicTest> theLibraryIsNotLoadedWhenANativeIsMissing() {
        return LISTS.stream().flatMap(list -> natives(list).stream().map(Method::getName).distinct().map(
                name -> dynamicTest(list.getClass().getSimpleName() + "." + name, () -> {
                    String called = list.getClass().getName() + "." + name;
                    NoSuchMethodError missing = assertThrows(
                            NoSuchMethodError.class,
                            () -> load(called + ".so", new ChangedClasses(Map.of(list.getClass().getName(), name))));
                    assertTrue(missing.getMessage().contains(called + "("), missing.getMessage());
                })));
    }

    @Test
    void theLibraryIsLoadedWhenAllNativesAreThere() {
        assertDoesNotThrow(() -> load("accepted.so", new ChangedClasses(Map.of())));
    }

    @Test
    void theScriptedPlatformIsRefusedWhenTheStandInsAreLoaded() {
        assertEquals(
                "cannot use the scripted platform: " + library().resolveSibling("libvelotra_tv_services.so")
                        + " is loaded already; use Script before the first list class, or start with"
                        + " ./tavro run --platform=scripted",
                assertThrows(UnsatisfiedLinkError.class, Script::reset).getMessage());
    }

    /** The library's file. */
    private static Path library() {
        return Arrays.stream(System.getProperty("java.library.path").split(File.pathSeparator))
                .map(directory -> Path.of(directory, System.mapLibraryName("velotra_tavro_channellist")))
                .filter(Files::exists)
                .findFirst().orElseThrow();
    }

    /**
     * Loads the library for a loader. A virtual machine loads a file for one loader alone, so that each has a link of
     * its own, called {@code name}, to one copy.
     */
    private static void load(String name, ClassLoader loader) throws IOException, ReflectiveOperationException {
        load(Files.createLink(folder.resolve(name), folder.resolve(LOADED)), loader);
    }

    @SuppressWarnings("unchecked")
    private static void load(Path library, ClassLoader loader) throws ReflectiveOperationException {
        Class<?> loading = Class.forName(Loading.class.getName(), true, loader);
        ((Consumer<String>) loading.getDeclaredConstructor().newInstance()).accept(library.toString());
    }

    /** Loads a library for the class loader that this class is from. */
    public static final class Loading implements Consumer<String> {
        @Override
        public void accept(String library) {
            System.load(library);
        }
    }
}
