package com.velotra.tv.tavro.services.channellist;

import java.io.IOException;
import java.lang.reflect.Constructor;
import java.lang.reflect.InvocationTargetException;
import java.lang.reflect.Method;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;

/** Program: loads the library in ways that fail, with copies of it and of the platform that are changed. */
final class TroubleshootingLoads {
    private static final String PACKAGE = TroubleshootingLoads.class.getPackageName() + ".";
    private static final String LIBRARY = System.mapLibraryName("velotra_tavro_channellist");
    private static final List<String> PLATFORM = List.of("libvelotra_tv_services.so", "libvelotra_tv_svl_builder.so",
            "libvelotra_tv_basic.so", "liblog.so", "libcutils.so");
    private static final int CLASS = 4;
    private static final int MACHINE = 18;
    private static final int ARM = 40;

    private final Path work;
    private final Path libraries;
    private final Map<String, Observation> seen = new LinkedHashMap<>();

    private TroubleshootingLoads(Path work, Path libraries) {
        this.work = work;
        this.libraries = libraries;
    }

    /** A step that fails. */
    private interface Attempt {
        String make() throws Exception;
    }

    /** Writes what was seen to the folder {@code arguments[0]}; {@code arguments[1]} has the libraries. */
    public static void main(String[] arguments) throws Exception {
        TroubleshootingLoads loads = new TroubleshootingLoads(Path.of(arguments[0]), Path.of(arguments[1]));
        loads.failToFindOrBind();
        loads.failToRegister();
        loads.failToUseTheStorage();
        TroubleshootingChild.pass(loads.work, loads.seen);
    }

    private void failToFindOrBind() throws Exception {
        see("The library is not found", () -> load(ClassLoader.getSystemClassLoader()));
        see("A native is called before the library is loaded",
                () -> call(new ChangedClasses(Map.of()), "VltTvChannelList", "nativeSetup"));
        Path alone = copy("alone");
        see("A library of the platform is not found", () -> load(new ChangedClasses(Map.of(), alone)));

        Path arm = copy("arm");
        byte[] bytes = Files.readAllBytes(arm);
        bytes[CLASS] = 1;
        bytes[MACHINE] = ARM;
        Files.write(arm, bytes);
        see("The process has another word size", () -> load(new ChangedClasses(Map.of(), arm)));

        Path lacking = complete("lacking");
        Path services = lacking.resolveSibling(PLATFORM.get(0));
        String text = Files.readString(services, StandardCharsets.ISO_8859_1);
        Files.delete(services); // a link
        Files.writeString(services, text.replace("\0x_svl_open\0", "\0x_svl_opem\0"), StandardCharsets.ISO_8859_1);
        see("The middleware lacks a function", () -> load(new ChangedClasses(Map.of(), lacking)));
    }

    private void failToRegister() throws Exception {
        Path good = complete("good");
        load(new ChangedClasses(Map.of(), good));
        see("Another class loader has loaded the library", () -> load(new ChangedClasses(Map.of(), good)));
        see("A list class is missing", () -> load(new ChangedClasses(
                Map.of(PACKAGE + "VltTvSatelliteList", ChangedClasses.MISSING), complete("no-class"))));
        see("A list class lacks a native", () -> load(new ChangedClasses(
                Map.of(PACKAGE + "VltTvNetworkList", "native_clean"), complete("no-native"))));
        TroubleshootingChild.newLines(work);
        renamed("An obfuscator has renamed a method", "isContainsKey");
        renamed("An obfuscator has renamed a field", "serviceName");
    }

    /** Has a native look a member up that is called otherwise. */
    private void renamed(String heading, String member) throws Exception {
        ClassLoader loader = new ChangedClasses(Map.of(PACKAGE + "VltTvChannelInfoBase", member), complete(member));
        load(loader);
        Object info = loader.loadClass(PACKAGE + "VltTvChannelInfoBase").getDeclaredConstructor().newInstance();
        info.getClass().getMethod("setServiceName", String.class).invoke(info, "News");
        call(loader, "VltTvChannelList", "nativeSetup");
        TroubleshootingChild.newLines(work);
        see(heading, () -> call(loader, "VltTvChannelList", "nativeAdd", 1, info));
    }

    private void failToUseTheStorage() throws Exception {
        ClassLoader loader = new ChangedClasses(Map.of(), complete("storage"));
        load(loader);
        call(loader, "VltTvChannelList", "nativeSetup");
        TroubleshootingChild.newLines(work);
        see("The storage directory cannot be used", () -> call(loader, "VltTvChannelList", "native_open", 1));
    }

    private void see(String heading, Attempt attempt) throws IOException {
        String symptom;
        try {
            symptom = attempt.make();
        } catch (InvocationTargetException e) {
            symptom = e.getCause().toString();
        } catch (Exception | LinkageError e) {
            symptom = e.toString();
        }
        seen.put(heading, new Observation(symptom, TroubleshootingChild.newLines(work)));
    }

    /** Loads the library for the classes of a loader. */
    static String load(ClassLoader loader) throws Exception {
        Method load = Class.forName(PACKAGE + "NativeLibrary", true, loader).getDeclaredMethod("load");
        load.setAccessible(true);
        load.invoke(null);
        return "loaded";
    }

    /** Calls a native of a new object. */
    static String call(ClassLoader loader, String list, String name, Object... arguments) throws Exception {
        Class<?> type = Class.forName(PACKAGE + list, true, loader);
        Constructor<?> constructor = type.getDeclaredConstructor();
        constructor.setAccessible(true);
        for (Method method : type.getDeclaredMethods()) {
            if (method.getName().equals(name) && method.getParameterCount() == arguments.length
                    && (arguments.length < 2 || method.getParameterTypes()[1].isInstance(arguments[1]))) {
                method.setAccessible(true);
                return name + " returns " + method.invoke(constructor.newInstance(), arguments);
            }
        }
        throw new NoSuchMethodException(name);
    }

    /** A copy of the library in a folder of its own, which looks for the platform in that folder alone. */
    private Path copy(String folder) throws IOException {
        Path copy = Files.createDirectories(work.resolve(folder)).resolve(LIBRARY);
        String bytes = Files.readString(libraries.resolve(LIBRARY), StandardCharsets.ISO_8859_1);
        String built = libraries.toString();
        return Files.writeString(copy, bytes.replace(built, "/".repeat(built.length())), StandardCharsets.ISO_8859_1);
    }

    /** A copy of the library, with links to the platform. */
    private Path complete(String folder) throws IOException {
        Path copy = copy(folder);
        for (String library : PLATFORM) {
            Files.createSymbolicLink(copy.resolveSibling(library), libraries.resolve(library));
        }
        return copy;
    }
}
