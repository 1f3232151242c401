package com.velotra.tv.tavro.services.channellist;

import java.util.function.ObjIntConsumer;
import java.util.function.ToIntFunction;

/** The flags of a satellite. */
public enum SatelliteFlag {
    /** The satellite is enabled; key "MaskStatusOn". */
    ENABLED(VltTvSatelliteInfoBase::getMaskStatusOn, VltTvSatelliteInfoBase::setMaskStatusOn),
    /** The signal of the LNB was detected; key "LnbSignalDetected". */
    LNB_SIGNAL_DETECTED(VltTvSatelliteInfoBase::getLnbSignalDetected, VltTvSatelliteInfoBase::setLnbSignalDetected),
    /** The LNB is universal; key "MaskLnbUniver". */
    LNB_UNIVERSAL(VltTvSatelliteInfoBase::getMaskLnbUniver, VltTvSatelliteInfoBase::setMaskLnbUniver),
    /** The LNB is a single-cable one; key "MaskLnbSingcab". */
    LNB_SINGLE_CABLE(VltTvSatelliteInfoBase::getMaskLnbSingcab, VltTvSatelliteInfoBase::setMaskLnbSingcab),
    /** The LNB is a single-cable one of the second generation; key "MaskLnbSingcabJess". */
    LNB_SINGLE_CABLE_2(VltTvSatelliteInfoBase::getMaskLnbSingcabJess, VltTvSatelliteInfoBase::setMaskLnbSingcabJess);

    final ToIntFunction<VltTvSatelliteInfoBase> get;
    final ObjIntConsumer<VltTvSatelliteInfoBase> put;

    SatelliteFlag(ToIntFunction<VltTvSatelliteInfoBase> get, ObjIntConsumer<VltTvSatelliteInfoBase> put) {
        this.get = get;
        this.put = put;
    }
}
