package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertNotNull;
import static org.junit.jupiter.api.Assertions.assertNull;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.lang.reflect.Field;
import java.lang.reflect.Method;
import java.lang.reflect.Modifier;
import java.util.Arrays;
import java.util.List;
import java.util.Set;
import java.util.TreeSet;
import org.junit.jupiter.api.Test;

class VltTvChannelInfoBaseTest {
    private static List<Method> setters() {
        return Arrays.stream(VltTvChannelInfoBase.class.getMethods())
                .filter(method -> method.getName().startsWith("set"))
                .toList();
    }

    private static Object sample(Class<?> type) {
        if (type == int.class) {
            return 42;
        }
        if (type == boolean.class) {
            return true;
        }
        if (type == int[].class) {
            return new int[] {1, 2};
        }
        return type == String.class ? "text" : new RecordId(5, 9);
    }

    @Test
    void everyKeyHasOneSetterThatMarksItAlone() throws Exception {
        Set<String> marked = new TreeSet<>();
        for (Method setter : setters()) {
            VltTvChannelInfoBase info = new VltTvChannelInfoBase();
            assertEquals(info, setter.invoke(info, sample(setter.getParameterTypes()[0])), setter.getName());
            assertEquals(1, info.keys().size(), setter.getName());
            String key = info.keys().iterator().next();
            assertEquals(setter.getName().substring(3).toLowerCase(), key.toLowerCase());
            assertTrue(info.isContainsKey(info, key));
            assertTrue(marked.add(key), key);
        }
        assertEquals(VltTvChannelInfoBase.class.getDeclaredFields().length, marked.size());
    }

    @Test
    void everySetterStoresInTheFieldNamedAfterTheKeyWithASmallLetter() throws Exception {
        for (Method setter : setters()) {
            VltTvChannelInfoBase info = new VltTvChannelInfoBase();
            setter.invoke(info, sample(setter.getParameterTypes()[0]));
            String key = info.keys().iterator().next();
            Field field = VltTvChannelInfoBase.class.getDeclaredField(Character.toLowerCase(key.charAt(0))
                    + key.substring(1));
            assertTrue(Modifier.isProtected(field.getModifiers()), key);
            Object value = field.get(info);
            switch (setter.getParameterTypes()[0].getSimpleName()) {
                case "boolean" -> assertEquals(1, value, key);
                case "RecordId" -> assertEquals("5,9", value, key);
                case "int" -> assertEquals(42, value, key);
                default -> assertNotNull(value, key);
            }
        }
    }

    @Test
    void nothingIsMarkedAtFirstAndAnotherObjectsKeysAreItsOwn() {
        VltTvChannelInfoBase empty = new VltTvChannelInfoBase();
        VltTvChannelInfoBase one = new VltTvChannelInfoBase().setServiceId(1);
        assertTrue(empty.keys().isEmpty());
        assertFalse(one.isContainsKey(empty, "ServiceId"));
        assertTrue(empty.isContainsKey(one, "ServiceId"));
        assertFalse(one.isContainsKey(one, "serviceId"));
    }

    @Test
    void aNullTextOrIdentifierMarksItsKeyToo() {
        VltTvChannelInfoBase info = new VltTvChannelInfoBase().setServiceName(null).setTslRecId(null);
        assertEquals(List.of("ServiceName", "TslRecId"), List.copyOf(info.keys()));
        assertNull(info.serviceName);
        assertNull(info.tslRecId);
    }

    @Test
    void aFlagSwitchedOffIsZero() {
        VltTvChannelInfoBase info = new VltTvChannelInfoBase().setVnetVisible(true).setVnetVisible(false);
        assertEquals(0, info.vnetVisible);
    }
}
