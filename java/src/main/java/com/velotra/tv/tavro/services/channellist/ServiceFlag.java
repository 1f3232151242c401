package com.velotra.tv.tavro.services.channellist;

import java.util.function.BiConsumer;

/** The flags of a service: bits of the three flag words of its record, each with the key that sets it. */
public enum ServiceFlag {
    /** The service is active. */
    ACTIVE(ServiceField.NETWORK_MASK, 0x2, "VnetActive", VltTvChannelInfoBase::setVnetActive),
    /** The service is shown in the program guide. */
    EPG(ServiceField.NETWORK_MASK, 0x4, "VnetEpg", VltTvChannelInfoBase::setVnetEpg),
    /** The service is visible. */
    VISIBLE(ServiceField.NETWORK_MASK, 0x8, "VnetVisible", VltTvChannelInfoBase::setVnetVisible),
    /** The channel is blocked. */
    CHANNEL_BLOCK(ServiceField.NETWORK_MASK, 0x100, "ventChannelBlock", VltTvChannelInfoBase::setVentChannelBlock),
    /** The service can be chosen by number. */
    NUMERIC_SELECTABLE(ServiceField.NETWORK_MASK, 0x200, "VnetNumericSelectable",
            VltTvChannelInfoBase::setVnetNumericSelectable),
    /** The service is in the INB list. */
    INB_LIST(ServiceField.NETWORK_MASK, 0x400, "VnetInbList", VltTvChannelInfoBase::setVnetInbList),
    /** The service is scrambled. */
    SCRAMBLED(ServiceField.NETWORK_MASK, 0x800, "VnetScrambled", VltTvChannelInfoBase::setVnetScrambled),
    /** First backup flag. */
    BACKUP_1(ServiceField.NETWORK_MASK, 0x1000, "VnetBackup1", VltTvChannelInfoBase::setVnetBackup1),
    /** The service was found by background monitoring. */
    NEW_BY_BGM(ServiceField.NETWORK_MASK, 0x40000, "ventNewServiceByBGM", VltTvChannelInfoBase::setVentNewServiceByBGM),
    /** The service is a broadcast service. */
    BROADCAST_SERVICE(ServiceField.NETWORK_MASK, 0x100000, "VnetBrdcstSvc", VltTvChannelInfoBase::setVnetBrdcstSvc),

    /** Unlocked by the user temporarily. */
    USER_TMP_UNLOCK(ServiceField.OPTION_MASK, 0x4, "VoptUserTmpUnlock", VltTvChannelInfoBase::setVoptUserTmpUnlock),
    /** The name was edited. */
    NAME_EDITED(ServiceField.OPTION_MASK, 0x8, "VoptChNameEdited", VltTvChannelInfoBase::setVoptChNameEdited),
    /** The logical channel number is applied. */
    LCN_APPLIED(ServiceField.OPTION_MASK, 0x20, "VoptLcnApplied", VltTvChannelInfoBase::setVoptLcnApplied),
    /** The service is an HD simulcast. */
    HD_SIMULCAST(ServiceField.OPTION_MASK, 0x80, "VoptHdSimulcast", VltTvChannelInfoBase::setVoptHdSimulcast),
    /** The service is in the SDT. */
    SDT_AVAILABLE(ServiceField.OPTION_MASK, 0x200, "VoptSdtAvailable", VltTvChannelInfoBase::setVoptSdtAvailable),
    /** The channel number was edited. */
    NUMBER_EDITED(ServiceField.OPTION_MASK, 0x400, "VoptChNumEdited", VltTvChannelInfoBase::setVoptChNumEdited),
    /** The service is an HD simulcast by the Portuguese rules. */
    PORTUGAL_HD_SIMULCAST(ServiceField.OPTION_MASK, 0x800, "VoptPortugalHdSiMulcast",
            VltTvChannelInfoBase::setVoptPortugalHdSiMulcast),
    /** The user deleted the service. */
    DELETED_BY_USER(ServiceField.OPTION_MASK, 0x2000, "VoptDeletedByUser", VltTvChannelInfoBase::setVoptDeletedByUser),
    /** The stream requests blocking. */
    STREAM_REQUESTS_BLOCK(ServiceField.OPTION_MASK, 0x400000, "VoptStreamReqBlock",
            VltTvChannelInfoBase::setVoptStreamReqBlock),
    /** Interaction is restricted. */
    INTERACTION_RESTRICTED(ServiceField.OPTION_MASK, 0x800000, "VoptInteractRestrict",
            VltTvChannelInfoBase::setVoptInteractRestrict),

    /** The service is in the SDT of the actual transport stream. */
    SDT_ACTUAL_AVAILABLE(ServiceField.OPTION_MASK_2, 0x40, "Vopt2SdtActualAvailable",
            VltTvChannelInfoBase::setVopt2SdtActualAvailable),
    /** The service was found by monitoring. */
    NEW_BY_MONITOR(ServiceField.OPTION_MASK_2, 0x100, "vopt2NewServiceByMonitor",
            VltTvChannelInfoBase::setVopt2NewServiceByMonitor),
    /** The service has an EIT schedule. */
    EIT_SCHEDULE(ServiceField.OPTION_MASK_2, 0x200, "Vopt2SvcEitSchedule",
            VltTvChannelInfoBase::setVopt2SvcEitSchedule),
    /** The service is new by the operator's rules. */
    NEW_BY_OPT(ServiceField.OPTION_MASK_2, 0x400, "vopt2NewServiceBasedOnOPT",
            VltTvChannelInfoBase::setVopt2NewServiceBasedOnOPT);

    final ServiceField word;
    final long bit;
    final BiConsumer<VltTvChannelInfoBase, Boolean> put;
    private final String key;

    ServiceFlag(ServiceField word, long bit, String key, BiConsumer<VltTvChannelInfoBase, Boolean> put) {
        this.word = word;
        this.bit = bit;
        this.key = key;
        this.put = put;
    }

    /** Returns the key that sets the flag, under which it is also printed. */
    public String key() {
        return key;
    }
}
