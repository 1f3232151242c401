package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;

import java.util.List;
import org.junit.jupiter.api.Test;

/** The control of the scripted platform itself. */
class ScriptedControlTest extends ScriptedPlatform {
    private static String messageOf(Class<? extends Throwable> type, Runnable call) {
        return assertThrows(type, call::run).getMessage();
    }

    @Test
    void aCallThatThePlatformDoesNotHaveIsRefused() {
        String message = "the platform has no call 'x_svl_opne' that can be scripted; "
                + "docs/platform-functions.md lists all calls";
        assertEquals(message, messageOf(IllegalArgumentException.class, () -> Script.answer("x_svl_opne", 0)));
        assertEquals(message, messageOf(IllegalArgumentException.class, () -> Script.always("x_svl_opne", 0)));
        Script.answer("__android_log_print", 0);
    }

    @Test
    void missingArgumentsAreRefused() {
        assertEquals("call", messageOf(NullPointerException.class, () -> Script.answer(null, 0)));
        assertEquals("record", messageOf(NullPointerException.class, () -> Script.answer("x_svl_get_rec", null)));
        assertEquals("record", messageOf(NullPointerException.class, () -> Script.always("x_svl_get_rec", null)));
        assertEquals("name", messageOf(NullPointerException.class, () -> Script.setProperty(null, "")));
        assertEquals("value", messageOf(NullPointerException.class, () -> Script.setProperty("name", null)));
    }

    @Test
    void aRecordIsAskedForByItsPositionInTheJournal() {
        open(1);
        lists.nativeAdd(1, new VltTvChannelInfoBase());
        List<String> lines = List.of(Script.lines());
        assertEquals(0, Script.record(0).length);
        assertEquals(ServiceRecord.SIZE, Script.record(lines.indexOf("x_svl_add_rec(0x10001, record)")).length);
        assertArrayEquals(Script.record(lines.indexOf("x_svl_add_rec(0x10001, record)")), Script.lastRecord());
        assertThrows(IndexOutOfBoundsException.class, () -> Script.record(lines.size()));
        assertThrows(IndexOutOfBoundsException.class, () -> Script.record(-1));
    }

    @Test
    void queuedRepliesComeBeforeTheLastingOne() {
        open(1);
        Script.always("x_svl_del_rec", -104);
        Script.answer("x_svl_del_rec", 0);
        Script.answer("x_svl_del_rec", -106);
        assertEquals(List.of(0, -22, -22),
                List.of(lists.nativeRemove("1,1"), lists.nativeRemove("1,2"), lists.nativeRemove("1,3")));
        Script.reset();
        assertEquals(0, lists.nativeRemove("1,4"));
    }
}
