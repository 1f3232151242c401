package com.velotra.tv.tavro.services.channellist;

import java.util.AbstractList;
import java.util.List;

/** Java values whose methods throw while a native calls them. */
final class Throwing {
    /** What the methods throw. */
    static final class Thrown extends RuntimeException {
        private static final long serialVersionUID = 1;

        Thrown(String message) {
            super(message);
        }
    }

    private Throwing() {}

    private static boolean asked(String key, String throwing, boolean present) {
        if (key.equals(throwing)) {
            throw new Thrown("isContainsKey of " + key);
        }
        return present;
    }

    /** A service whose isContainsKey throws for one key. */
    static VltTvChannelInfoBase service(String throwing) {
        return new VltTvChannelInfoBase() {
            @Override
            public boolean isContainsKey(VltTvChannelInfoBase info, String key) {
                return asked(key, throwing, super.isContainsKey(info, key));
            }
        };
    }

    /** The same for a transport stream. */
    static VltTvTransportStreamInfoBase stream(String throwing) {
        return new VltTvTransportStreamInfoBase() {
            @Override
            public boolean isContainsKey(VltTvTransportStreamInfoBase info, String key) {
                return asked(key, throwing, super.isContainsKey(info, key));
            }
        };
    }

    /** The same for a network. */
    static VltTvNetworkInfoBase network(String throwing) {
        return new VltTvNetworkInfoBase() {
            @Override
            public boolean isContainsKey(VltTvNetworkInfoBase info, String key) {
                return asked(key, throwing, super.isContainsKey(info, key));
            }
        };
    }

    /** The same for a satellite. */
    static VltTvSatelliteInfoBase satellite(String throwing) {
        return new VltTvSatelliteInfoBase() {
            @Override
            public boolean isContainsKey(VltTvSatelliteInfoBase info, String key) {
                return asked(key, throwing, super.isContainsKey(info, key));
            }
        };
    }

    /** A list whose {@code get} throws for one index. */
    static <T> List<T> listWithoutElement(int index, List<T> elements) {
        return new AbstractList<>() {
            @Override
            public int size() {
                return elements.size();
            }

            @Override
            public T get(int asked) {
                if (asked == index) {
                    throw new Thrown("get of " + index);
                }
                return elements.get(asked);
            }
        };
    }

    /** A list whose {@code size} throws. */
    static <T> List<T> listWithoutSize(List<T> elements) {
        return new AbstractList<>() {
            @Override
            public int size() {
                throw new Thrown("size");
            }

            @Override
            public T get(int index) {
                return elements.get(index);
            }
        };
    }
}
