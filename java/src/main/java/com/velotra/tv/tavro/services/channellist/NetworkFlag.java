package com.velotra.tv.tavro.services.channellist;

import java.util.function.ObjIntConsumer;
import java.util.function.ToIntFunction;

/** The flags of a network. */
public enum NetworkFlag {
    /** The network may become the favorite one; key "NwlFavNetworkCandidate". */
    FAVORITE_CANDIDATE(VltTvNetworkInfoBase::getNwlFavNetworkCandidate,
            VltTvNetworkInfoBase::setNwlFavNetworkCandidate),
    /** The network is the favorite one; key "NwlFavNetwork". */
    FAVORITE(VltTvNetworkInfoBase::getNwlFavNetwork, VltTvNetworkInfoBase::setNwlFavNetwork);

    final ToIntFunction<VltTvNetworkInfoBase> get;
    final ObjIntConsumer<VltTvNetworkInfoBase> put;

    NetworkFlag(ToIntFunction<VltTvNetworkInfoBase> get, ObjIntConsumer<VltTvNetworkInfoBase> put) {
        this.get = get;
        this.put = put;
    }
}
