package com.velotra.tv.tavro.services.channellist;

/** The flags of a service record, each a bit of one of its three flag words, under the key that sets it. */
public enum ServiceFlag {
    ACTIVE(ServiceField.NETWORK_MASK, 0x2, "VnetActive"),
    EPG(ServiceField.NETWORK_MASK, 0x4, "VnetEpg"),
    VISIBLE(ServiceField.NETWORK_MASK, 0x8, "VnetVisible"),
    CHANNEL_BLOCK(ServiceField.NETWORK_MASK, 0x100, "ventChannelBlock"),
    NUMERIC_SELECTABLE(ServiceField.NETWORK_MASK, 0x200, "VnetNumericSelectable"),
    INB_LIST(ServiceField.NETWORK_MASK, 0x400, "VnetInbList"),
    SCRAMBLED(ServiceField.NETWORK_MASK, 0x800, "VnetScrambled"),
    BACKUP_1(ServiceField.NETWORK_MASK, 0x1000, "VnetBackup1"),
    NEW_BY_BGM(ServiceField.NETWORK_MASK, 0x40000, "ventNewServiceByBGM"),
    BROADCAST_SERVICE(ServiceField.NETWORK_MASK, 0x100000, "VnetBrdcstSvc"),

    USER_TMP_UNLOCK(ServiceField.OPTION_MASK, 0x4, "VoptUserTmpUnlock"),
    NAME_EDITED(ServiceField.OPTION_MASK, 0x8, "VoptChNameEdited"),
    LCN_APPLIED(ServiceField.OPTION_MASK, 0x20, "VoptLcnApplied"),
    HD_SIMULCAST(ServiceField.OPTION_MASK, 0x80, "VoptHdSimulcast"),
    SDT_AVAILABLE(ServiceField.OPTION_MASK, 0x200, "VoptSdtAvailable"),
    NUMBER_EDITED(ServiceField.OPTION_MASK, 0x400, "VoptChNumEdited"),
    PORTUGAL_HD_SIMULCAST(ServiceField.OPTION_MASK, 0x800, "VoptPortugalHdSiMulcast"),
    DELETED_BY_USER(ServiceField.OPTION_MASK, 0x2000, "VoptDeletedByUser"),
    STREAM_REQUESTS_BLOCK(ServiceField.OPTION_MASK, 0x400000, "VoptStreamReqBlock"),
    INTERACTION_RESTRICTED(ServiceField.OPTION_MASK, 0x800000, "VoptInteractRestrict"),

    SDT_ACTUAL_AVAILABLE(ServiceField.OPTION_MASK_2, 0x40, "Vopt2SdtActualAvailable"),
    NEW_BY_MONITOR(ServiceField.OPTION_MASK_2, 0x100, "vopt2NewServiceByMonitor"),
    EIT_SCHEDULE(ServiceField.OPTION_MASK_2, 0x200, "Vopt2SvcEitSchedule"),
    NEW_BY_OPT(ServiceField.OPTION_MASK_2, 0x400, "vopt2NewServiceBasedOnOPT");

    final ServiceField word;
    final long bit;
    final String key;

    ServiceFlag(ServiceField word, long bit, String key) {
        this.word = word;
        this.bit = bit;
        this.key = key;
    }
}
