package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.util.List;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.EnumSource;

/** Loads that the platform makes hard. */
class ScriptedLoadTest extends SatellitePlatform {
    private static final int NO_FREE_ID = 65535;

    private TvList of(ListKind kind) {
        return List.of(lists, streams, networks, satellites).get(kind.ordinal());
    }

    private static String prefix(ListKind kind) {
        return "x_" + List.of("svl", "tsl", "nwl", "satl").get(kind.ordinal());
    }

    private ChannelListException failedLoad(ListKind kind) {
        return assertThrows(ChannelListException.class, () -> of(kind).load(1, "/data/list"));
    }

    @ParameterizedTest
    @EnumSource
    void aListWithoutAFreeRecordIdIsNotLoaded(ListKind kind) {
        Script.always(prefix(kind) + "_qry_rec_id", 0, NO_FREE_ID);
        assertTrue(failedLoad(kind).getMessage().endsWith(
                "; the list accepts no further record, which this needs; clean or delete it first, or see the log"));
        assertEquals(List.of(), Script.linesWith("_fs_sync"));
        assertEquals(List.of(), Script.linesWith("_delete"));
    }

    @ParameterizedTest
    @EnumSource
    void aListThatWasMadeForAFailedLoadIsDeleted(ListKind kind) {
        Script.answer(prefix(kind) + "_open", -5);
        Script.answer(prefix(kind) + "_open", -5);
        Script.always(prefix(kind) + "_qry_rec_id", 0, NO_FREE_ID);
        failedLoad(kind);
        assertEquals(1, Script.linesWith(prefix(kind) + "_create(").size());
        assertEquals(1, Script.linesWith(prefix(kind) + "_delete(").size());
    }

    /** A record of the kind whose name is "probe". */
    private static byte[] probe(ListKind kind) {
        int[] sizes = {ServiceRecord.SIZE, TransportStreamRecord.SIZE, 304, SIZE};
        int[] names = {ServiceField.NAME.offset(), TransportStreamField.NAME.offset(), 13, 282};
        return Records.withText(new byte[sizes[kind.ordinal()]], names[kind.ordinal()], "probe");
    }

    @ParameterizedTest
    @EnumSource
    void aProbeThatIsStillThereMeansThatNothingWasLoaded(ListKind kind) {
        Script.answer(prefix(kind) + "_qry_rec_id", 0, 6);
        Script.always(prefix(kind) + "_get_rec", probe(kind));
        ChannelListException failure = assertThrows(
                ChannelListException.class, () -> of(kind).replaceByFile(1, "/data/list", "probe"));
        assertTrue(failure.getMessage().endsWith("The list was left as it was"), failure.getMessage());
        assertEquals(1, Script.linesWith("_fs_sync").size());
        assertEquals(1, Script.linesWith(prefix(kind) + "_del_rec(").size());
        assertEquals(List.of(), Script.linesWith("_delete("));
    }

    @ParameterizedTest
    @EnumSource
    void aProbeThatCannotBeRemovedIsNamed(ListKind kind) {
        Script.answer(prefix(kind) + "_qry_rec_id", 0, 6);
        Script.always(prefix(kind) + "_get_rec", probe(kind));
        Script.always(prefix(kind) + "_del_rec", -5, 0);
        ChannelListException failure = assertThrows(
                ChannelListException.class, () -> of(kind).replaceByFile(1, "/data/list", "probe"));
        assertTrue(failure.getMessage().endsWith("The list now has a record 'probe' that could not be removed"),
                failure.getMessage());
    }
}
