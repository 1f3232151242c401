package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.io.IOException;
import java.io.UncheckedIOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Arrays;
import java.util.List;
import java.util.OptionalInt;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.io.TempDir;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.EnumSource;

/** Loads over the workstation's platform: those that fail say so and change nothing. */
class HostLoadTest {
    private static final int LIST = 71;
    private static final int SOURCE = 72;

    @TempDir
    Path folder;

    private static TvList of(ListKind kind) {
        return List.of(VltTvChannelList.getInstance(), VltTvTransportStreamList.getInstance(),
                VltTvNetworkList.getInstance(),
                VltTvSatelliteList.getInstance()).get(kind.ordinal());
    }

    @AfterEach
    void removeLists() {
        for (ListKind kind : ListKind.values()) {
            for (int id : new int[] {LIST, SOURCE}) {
                if (of(kind).exists(id)) {
                    of(kind).delete(id);
                }
            }
        }
    }

    /** A list file of the kind, with records of these names. */
    private Path file(ListKind kind, String... names) {
        TvList lists = of(kind);
        lists.open(SOURCE);
        for (String name : names) {
            assertFalse(lists.addNamed(SOURCE, name).isEmpty());
        }
        Path file = folder.resolve(kind.name() + names.length);
        lists.store(SOURCE, file.toString());
        lists.delete(SOURCE);
        return file;
    }

    /** A list with records of these names. */
    private static TvList filled(ListKind kind, String... names) {
        TvList lists = of(kind);
        lists.open(LIST);
        for (String name : names) {
            assertFalse(lists.addNamed(LIST, name).isEmpty());
        }
        return lists;
    }

    private static List<String> names(TvList lists) {
        return switch (lists.kind()) {
            case SERVICE -> VltTvChannelList.getInstance().getAll(LIST).stream().map(ServiceRecord::name).toList();
            case TRANSPORT_STREAM ->
                    VltTvTransportStreamList.getInstance().getAll(LIST).stream().map(TransportStreamRecord::name)
                            .toList();
            case NETWORK -> VltTvNetworkList.getInstance().getAll(LIST).stream().map(VltTvNetworkInfo::getNetworkName)
                    .toList();
            case SATELLITE -> VltTvSatelliteList.getInstance().getAll(LIST).stream().map(VltTvSatelliteInfo::getName)
                    .toList();
        };
    }

    private static ChannelListException failedLoad(TvList lists, Path file) {
        ChannelListException failure = assertThrows(ChannelListException.class,
                () -> lists.load(LIST, file.toString()));
        String list = lists.kind().listName();
        assertTrue(failure.getMessage()
                .startsWith("cannot load " + list + " " + LIST + " from the file '" + file + "'"),
                failure.getMessage());
        assertEquals(lists.kind(), failure.kind());
        assertEquals(OptionalInt.of(LIST), failure.listId());
        return failure;
    }

    /** Files that are not list files of the kind. */
    private List<Path> badFiles(ListKind kind) {
        try {
            byte[] good = Files.readAllBytes(file(kind, "Uno", "Due"));
            Path damaged = Files.write(folder.resolve("damaged"), Arrays.copyOf(good, good.length / 2));
            ListKind other = ListKind.values()[(kind.ordinal() + 1) % ListKind.values().length];
            return List.of(
                    folder.resolve("missing"),
                    folder,
                    Files.writeString(folder.resolve("text"), "not a list"),
                    Files.createFile(folder.resolve("no-bytes")),
                    damaged,
                    file(other, "Uno"));
        } catch (IOException e) {
            throw new UncheckedIOException(e);
        }
    }

    @ParameterizedTest
    @EnumSource
    void aFailedLoadSaysWhatToDoAndKeepsTheRecords(ListKind kind) {
        for (Path bad : badFiles(kind)) {
            TvList lists = filled(kind, "Eins", "Zwei");
            for (boolean open : new boolean[] {true, false}) {
                if (!open) {
                    lists.close(LIST);
                }
                ChannelListException failure = failedLoad(lists, bad);
                assertTrue(failure.getMessage().endsWith("; is it there, readable and the file of a " + kind.listName()
                        + "? The list was left as it was"), failure.getMessage());
                assertEquals(List.of("Eins", "Zwei"), names(lists), bad.toString());
            }
            lists.clean(LIST);
            failedLoad(lists, bad);
            assertEquals(List.of(), names(lists), bad.toString());
            assertTrue(lists.exists(LIST));
            lists.delete(LIST);
            failedLoad(lists, bad);
            assertFalse(lists.exists(LIST), "a list that did not exist is not created: " + bad);
        }
    }

    @ParameterizedTest
    @EnumSource
    void aLoadReplacesTheRecordsWhetherOrNotTheListIsOpen(ListKind kind) {
        String file = file(kind, "Uno", "Due", "Tre").toString();
        List<String> loaded = List.of("Uno", "Due", "Tre");
        TvList lists = of(kind);
        lists.load(LIST, file);
        assertEquals(loaded, names(lists), "a list that did not exist");
        lists.load(LIST, file);
        assertEquals(loaded, names(lists), "the same records");
        lists.clean(LIST);
        lists.load(LIST, file);
        assertEquals(loaded, names(lists), "an open list without records");
        lists.addNamed(LIST, "Vier");
        lists.load(LIST, file);
        assertEquals(loaded, names(lists), "an open list with records");
        lists.addNamed(LIST, "Vier");
        lists.close(LIST);
        lists.load(LIST, file);
        assertEquals(loaded, names(lists), "a closed list");
    }

    @ParameterizedTest
    @EnumSource
    void aListFileWithoutRecordsEmptiesTheList(ListKind kind) {
        Path empty = file(kind);
        TvList lists = filled(kind, "Eins");
        lists.load(LIST, empty.toString());
        assertEquals(List.of(), names(lists));
        lists.load(LIST, empty.toString());
        assertTrue(lists.exists(LIST));
    }

    @ParameterizedTest
    @EnumSource
    void anEmptyPathIsAFailedLoad(ListKind kind) {
        TvList lists = filled(kind, "Eins");
        assertEquals(-22, failedLoad(lists, Path.of("")).status());
        assertEquals(List.of("Eins"), names(lists));
        assertThrows(NullPointerException.class, () -> lists.load(LIST, null));
    }

    @ParameterizedTest
    @EnumSource(names = {"TRANSPORT_STREAM", "NETWORK"})
    void aFilterAfterAFailedLoadDoesNotLoadTheFile(ListKind companion) {
        Path wrong = file(companion, "Uno");
        TvList companions = filled(companion, "Eins", "Zwei");
        VltTvChannelList services = VltTvChannelList.getInstance();
        services.open(LIST);
        RecordId service = services.add(LIST, new VltTvChannelInfoBase().setServiceName("S"));
        services.update(LIST, service);
        failedLoad(services, wrong);
        companions.close(LIST);
        byte[] before = services.getAllBytes(LIST);
        services.byTransportStream(LIST, 0);
        services.byNetwork(LIST, 0);
        assertEquals(List.of("Eins", "Zwei"), names(companions));
        assertArrayEquals(before, services.getAllBytes(LIST));
    }
}
