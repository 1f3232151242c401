package com.velotra.tv.tavro.tool;

import com.velotra.tv.tavro.services.channellist.ChannelListException;
import com.velotra.tv.tavro.tool.storage.ListEntry;
import com.velotra.tv.tavro.tool.storage.ListFile;
import com.velotra.tv.tavro.tool.storage.Storage;
import com.velotra.tv.tavro.tool.storage.StoredLists;
import java.io.IOException;
import java.io.InputStream;
import java.io.OutputStream;
import java.io.PrintStream;
import java.io.UncheckedIOException;
import java.lang.management.ManagementFactory;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.Comparator;
import java.util.List;
import java.util.Optional;
import java.util.stream.Stream;

/**
 * Imports into a copy of the lists, in a second virtual machine with a storage directory of its own: what an import of
 * scan tables and service lists changes is found out by the natives.
 */
final class ImportRehearsal {
    private ImportRehearsal() {}

    /**
     * Runs the tool with a copy of all lists. Returns its exit code.
     *
     * @param standardInput of the tool; empty for none
     */
    static int run(List<String> arguments, Optional<byte[]> standardInput) throws IOException, InterruptedException {
        Path folder = Files.createTempDirectory("tavro-dry-run");
        try {
            Path lists = Files.createDirectory(folder.resolve("lists"));
            if (Storage.hasLists(Storage.directory())) {
                for (ListEntry list : StoredLists.all()) {
                    ListFile.write(lists.resolve(list.kind() + "-" + list.listId()),
                            StoredLists.read(list.kind(), list.listId()));
                }
            }
            return runSecondMachine(folder, lists, arguments, standardInput.orElse(new byte[0]));
        } finally {
            delete(folder);
        }
    }

    private static int runSecondMachine(Path folder, Path lists, List<String> arguments, byte[] standardInput)
            throws IOException, InterruptedException {
        List<String> command = new ArrayList<>();
        command.add(Path.of(System.getProperty("java.home"), "bin", "java").toString());
        // The options of this machine: where the library is, and how to run on an emulator.
        command.addAll(ManagementFactory.getRuntimeMXBean().getInputArguments());
        command.addAll(List.of("-cp", System.getProperty("java.class.path"), ImportRehearsal.class.getName(),
                lists.toString()));
        command.addAll(arguments);
        ProcessBuilder builder = new ProcessBuilder(command);
        builder.environment().put("TAVRO_HOME", folder.resolve("home").toString());
        builder.environment().remove("TAVRO_READ_ONLY");
        Process process = builder.start();
        Thread errors = new Thread(() -> copy(process.getErrorStream(), System.err));
        errors.start();
        try (OutputStream input = process.getOutputStream()) {
            input.write(standardInput);
        } catch (IOException e) {
            // It ended early, and says why.
        }
        copy(process.getInputStream(), System.out);
        errors.join();
        return process.waitFor();
    }

    private static void copy(InputStream from, PrintStream to) {
        try {
            from.transferTo(to);
            to.flush();
        } catch (IOException e) {
            throw new UncheckedIOException(e);
        }
    }

    private static void delete(Path folder) throws IOException {
        try (Stream<Path> files = Files.walk(folder)) {
            for (Path file : files.sorted(Comparator.reverseOrder()).toList()) {
                Files.delete(file);
            }
        }
    }

    /**
     * The second virtual machine.
     *
     * @param arguments folder with list files named KIND-ID, and the arguments of the tool
     */
    public static void main(String[] arguments) throws IOException {
        try (Stream<Path> files = Files.list(Path.of(arguments[0]))) {
            for (Path file : files.toList()) {
                String[] name = file.getFileName().toString().split("-");
                new Converters.KindName().convert(name[0]).lists().load(Integer.parseInt(name[1]), file.toString());
            }
        } catch (ChannelListException e) {
            System.err.println("tavro: cannot copy a list for the dry run: " + e.problem());
            System.exit(ExitCode.FAILED);
        }
        Main.main(Arrays.copyOfRange(arguments, 1, arguments.length));
    }
}
