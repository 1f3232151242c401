package com.velotra.tv.tavro.services.channellist;

/**
 * The values of one service that are to be written; {@link ServiceRecord} is what is read. See {@link KeyedValues} for
 * the rules.
 */
public class VltTvChannelInfoBase extends KeyedValues {
    // Identity: where the service is and what carries it.
    protected String svlIdSvlRecId;
    protected int serviceId;
    protected String tslRecId;
    protected String satlRecId;
    protected int broadcastType;
    protected int serviceType;
    protected String serviceName;

    // Channel number: rebuilds the 32-bit channel id.
    protected int majorChannelNumber;
    protected int minorChannelNumber;

    // Network flags.
    protected int vnetActive;
    protected int vnetEpg;
    protected int vnetVisible;
    protected int ventChannelBlock;
    protected int vnetNumericSelectable;
    protected int vnetInbList;
    protected int vnetScrambled;
    protected int vnetBackup1;
    protected int ventNewServiceByBGM;
    protected int vnetBrdcstSvc;

    // Option flags.
    protected int voptUserTmpUnlock;
    protected int voptChNameEdited;
    protected int voptLcnApplied;
    protected int voptHdSimulcast;
    protected int voptSdtAvailable;
    protected int voptChNumEdited;
    protected int voptPortugalHdSiMulcast;
    protected int voptDeletedByUser;
    protected int voptStreamReqBlock;
    protected int voptInteractRestrict;
    protected int vopt2SdtActualAvailable;
    protected int vopt2NewServiceByMonitor;
    protected int vopt2SvcEitSchedule;
    protected int vopt2NewServiceBasedOnOPT;

    // DVB and DTMB.
    protected String serviceShortName;
    protected int caSystemId;
    protected int serviceRunningStatus;
    protected int linkageDescrMask;
    protected int caReplacementOnId;
    protected int caReplacementTsId;
    protected int caRepalacementSvcId;
    protected int svcReplacementOnId;
    protected int svcReplacementTsId;
    protected int svcReplacementSvcId;
    protected int completeEitSchOnId;
    protected int completeEitSchTsId;
    protected int completeEitSchSvcId;
    protected int hdSimulCastOnId;
    protected int hdSimulcastTsId;
    protected int hdSimulcastSvcId;
    protected int freeCaMode;
    protected int sdtServiceType;

    // DVB alone.
    protected int ciHostShunningMode;
    protected int ciTuneService;
    protected int eitPfFlag;
    protected int logicalChannelNumber;
    protected int originalLcn;
    protected int lcnIndex;
    protected int displayingIdFlag;
    protected int displayingTsId;
    protected int displayingServiceId;
    protected int compDescInfo;
    protected String dadInfo;
    protected int categoryMask;
    protected String serviceProfileName;
    protected int targetRegionLevel;
    protected int[] targetRegionCode;
    protected int sdtStreamContent;
    protected int sdtStreamContentExt;
    protected int sdtStreamComponentType;

    /** Creates an object without values. */
    public VltTvChannelInfoBase() {}

    /** Returns a new object for an update of the record {@code id}, of which only the record id counts. */
    public static VltTvChannelInfoBase forRecord(RecordId id) {
        return new VltTvChannelInfoBase().setSvlIdSvlRecId(id);
    }

    /** Sets or clears a flag, like the setter that is named after its key. */
    public VltTvChannelInfoBase put(ServiceFlag flag, boolean on) {
        flag.put.accept(this, on);
        return this;
    }

    @Override
    String identifier() {
        return svlIdSvlRecId;
    }

    /** Returns whether {@code info} carries a value under {@code key}. Called by the natives. */
    public boolean isContainsKey(VltTvChannelInfoBase info, String key) {
        return info.hasKey(key);
    }

    private VltTvChannelInfoBase marked(String key) {
        mark(key);
        return this;
    }

    private static String text(RecordId id) {
        return id == null ? null : id.toString();
    }

    // Identity: where the service is and what carries it.

    /** The record to update; its list part is ignored. */
    public VltTvChannelInfoBase setSvlIdSvlRecId(RecordId id) {
        svlIdSvlRecId = text(id);
        return marked("SvlIdSvlRecId");
    }

    /** service_id, 16 bits (ETSI EN 300 468). */
    public VltTvChannelInfoBase setServiceId(int value) {
        serviceId = value;
        return marked("ServiceId");
    }

    /** The transport stream record that carries the service. */
    public VltTvChannelInfoBase setTslRecId(RecordId id) {
        tslRecId = text(id);
        return marked("TslRecId");
    }

    /** The satellite record that the service is received from. */
    public VltTvChannelInfoBase setSatlRecId(RecordId id) {
        satlRecId = text(id);
        return marked("SatlRecId");
    }

    /** Broadcast system, 8 bits; see {@link BroadcastType}. */
    public VltTvChannelInfoBase setBroadcastType(int value) {
        broadcastType = value;
        return marked("BroadcastType");
    }

    /** Service type, 8 bits: 1, 4, 7 audio and video; 2, 5, 8 audio. */
    public VltTvChannelInfoBase setServiceType(int value) {
        serviceType = value;
        return marked("ServiceType");
    }

    /** Service name; its first 64 bytes of modified UTF-8 are kept. */
    public VltTvChannelInfoBase setServiceName(String text) {
        serviceName = text;
        return marked("ServiceName");
    }

    // Channel number: rebuilds the 32-bit channel id.

    /** Major channel number. */
    public VltTvChannelInfoBase setMajorChannelNumber(int value) {
        majorChannelNumber = value;
        return marked("MajorChannelNumber");
    }

    /** Minor channel number. */
    public VltTvChannelInfoBase setMinorChannelNumber(int value) {
        minorChannelNumber = value;
        return marked("MinorChannelNumber");
    }

    // Network flags.

    /** The service is active. */
    public VltTvChannelInfoBase setVnetActive(boolean on) {
        vnetActive = on ? 1 : 0;
        return marked("VnetActive");
    }

    /** The service is shown in the program guide. */
    public VltTvChannelInfoBase setVnetEpg(boolean on) {
        vnetEpg = on ? 1 : 0;
        return marked("VnetEpg");
    }

    /** The service is visible. */
    public VltTvChannelInfoBase setVnetVisible(boolean on) {
        vnetVisible = on ? 1 : 0;
        return marked("VnetVisible");
    }

    /** The channel is blocked. */
    public VltTvChannelInfoBase setVentChannelBlock(boolean on) {
        ventChannelBlock = on ? 1 : 0;
        return marked("ventChannelBlock");
    }

    /** The service can be chosen by number. */
    public VltTvChannelInfoBase setVnetNumericSelectable(boolean on) {
        vnetNumericSelectable = on ? 1 : 0;
        return marked("VnetNumericSelectable");
    }

    /** The service is in the INB list. */
    public VltTvChannelInfoBase setVnetInbList(boolean on) {
        vnetInbList = on ? 1 : 0;
        return marked("VnetInbList");
    }

    /** The service is scrambled. */
    public VltTvChannelInfoBase setVnetScrambled(boolean on) {
        vnetScrambled = on ? 1 : 0;
        return marked("VnetScrambled");
    }

    /** First backup flag. */
    public VltTvChannelInfoBase setVnetBackup1(boolean on) {
        vnetBackup1 = on ? 1 : 0;
        return marked("VnetBackup1");
    }

    /** The service was found by background monitoring. */
    public VltTvChannelInfoBase setVentNewServiceByBGM(boolean on) {
        ventNewServiceByBGM = on ? 1 : 0;
        return marked("ventNewServiceByBGM");
    }

    /** The service is a broadcast service. */
    public VltTvChannelInfoBase setVnetBrdcstSvc(boolean on) {
        vnetBrdcstSvc = on ? 1 : 0;
        return marked("VnetBrdcstSvc");
    }

    // Option flags.

    /** Unlocked by the user temporarily. */
    public VltTvChannelInfoBase setVoptUserTmpUnlock(boolean on) {
        voptUserTmpUnlock = on ? 1 : 0;
        return marked("VoptUserTmpUnlock");
    }

    /** The name was edited. */
    public VltTvChannelInfoBase setVoptChNameEdited(boolean on) {
        voptChNameEdited = on ? 1 : 0;
        return marked("VoptChNameEdited");
    }

    /** The logical channel number is applied. */
    public VltTvChannelInfoBase setVoptLcnApplied(boolean on) {
        voptLcnApplied = on ? 1 : 0;
        return marked("VoptLcnApplied");
    }

    /** The service is an HD simulcast. */
    public VltTvChannelInfoBase setVoptHdSimulcast(boolean on) {
        voptHdSimulcast = on ? 1 : 0;
        return marked("VoptHdSimulcast");
    }

    /** The service is in the SDT. */
    public VltTvChannelInfoBase setVoptSdtAvailable(boolean on) {
        voptSdtAvailable = on ? 1 : 0;
        return marked("VoptSdtAvailable");
    }

    /** The channel number was edited. */
    public VltTvChannelInfoBase setVoptChNumEdited(boolean on) {
        voptChNumEdited = on ? 1 : 0;
        return marked("VoptChNumEdited");
    }

    /** The service is an HD simulcast by the Portuguese rules. */
    public VltTvChannelInfoBase setVoptPortugalHdSiMulcast(boolean on) {
        voptPortugalHdSiMulcast = on ? 1 : 0;
        return marked("VoptPortugalHdSiMulcast");
    }

    /** The user deleted the service. */
    public VltTvChannelInfoBase setVoptDeletedByUser(boolean on) {
        voptDeletedByUser = on ? 1 : 0;
        return marked("VoptDeletedByUser");
    }

    /** The stream requests blocking. */
    public VltTvChannelInfoBase setVoptStreamReqBlock(boolean on) {
        voptStreamReqBlock = on ? 1 : 0;
        return marked("VoptStreamReqBlock");
    }

    /** Interaction is restricted. */
    public VltTvChannelInfoBase setVoptInteractRestrict(boolean on) {
        voptInteractRestrict = on ? 1 : 0;
        return marked("VoptInteractRestrict");
    }

    /** The service is in the SDT of the actual transport stream. */
    public VltTvChannelInfoBase setVopt2SdtActualAvailable(boolean on) {
        vopt2SdtActualAvailable = on ? 1 : 0;
        return marked("Vopt2SdtActualAvailable");
    }

    /** The service was found by monitoring. */
    public VltTvChannelInfoBase setVopt2NewServiceByMonitor(boolean on) {
        vopt2NewServiceByMonitor = on ? 1 : 0;
        return marked("vopt2NewServiceByMonitor");
    }

    /** The service has an EIT schedule. */
    public VltTvChannelInfoBase setVopt2SvcEitSchedule(boolean on) {
        vopt2SvcEitSchedule = on ? 1 : 0;
        return marked("Vopt2SvcEitSchedule");
    }

    /** The service is new by the operator's rules. */
    public VltTvChannelInfoBase setVopt2NewServiceBasedOnOPT(boolean on) {
        vopt2NewServiceBasedOnOPT = on ? 1 : 0;
        return marked("vopt2NewServiceBasedOnOPT");
    }

    // DVB and DTMB.

    /** Short name; its first 16 bytes of modified UTF-8 are kept. */
    public VltTvChannelInfoBase setServiceShortName(String text) {
        serviceShortName = text;
        return marked("ServiceShortName");
    }

    /** CA_system_id, 16 bits (ETSI TS 101 162). */
    public VltTvChannelInfoBase setCaSystemId(int value) {
        caSystemId = value;
        return marked("CaSystemId");
    }

    /** running_status (EN 300 468 table 6). */
    public VltTvChannelInfoBase setServiceRunningStatus(int value) {
        serviceRunningStatus = value;
        return marked("ServiceRunningStatus");
    }

    /** Mask of the linkage descriptors present. */
    public VltTvChannelInfoBase setLinkageDescrMask(int value) {
        linkageDescrMask = value;
        return marked("LinkageDescrMask");
    }

    /** original_network_id of the CA replacement service. */
    public VltTvChannelInfoBase setCaReplacementOnId(int value) {
        caReplacementOnId = value;
        return marked("CaReplacementOnId");
    }

    /** transport_stream_id of the CA replacement service. */
    public VltTvChannelInfoBase setCaReplacementTsId(int value) {
        caReplacementTsId = value;
        return marked("CaReplacementTsId");
    }

    /** service_id of the CA replacement service; the spelling is the key's own. */
    public VltTvChannelInfoBase setCaRepalacementSvcId(int value) {
        caRepalacementSvcId = value;
        return marked("CaRepalacementSvcId");
    }

    /** original_network_id of the replacement service. */
    public VltTvChannelInfoBase setSvcReplacementOnId(int value) {
        svcReplacementOnId = value;
        return marked("SvcReplacementOnId");
    }

    /** transport_stream_id of the replacement service. */
    public VltTvChannelInfoBase setSvcReplacementTsId(int value) {
        svcReplacementTsId = value;
        return marked("SvcReplacementTsId");
    }

    /** service_id of the replacement service. */
    public VltTvChannelInfoBase setSvcReplacementSvcId(int value) {
        svcReplacementSvcId = value;
        return marked("SvcReplacementSvcId");
    }

    /** original_network_id of the service with the complete EIT schedule. */
    public VltTvChannelInfoBase setCompleteEitSchOnId(int value) {
        completeEitSchOnId = value;
        return marked("CompleteEitSchOnId");
    }

    /** transport_stream_id of the service with the complete EIT schedule. */
    public VltTvChannelInfoBase setCompleteEitSchTsId(int value) {
        completeEitSchTsId = value;
        return marked("CompleteEitSchTsId");
    }

    /** service_id of the service with the complete EIT schedule. */
    public VltTvChannelInfoBase setCompleteEitSchSvcId(int value) {
        completeEitSchSvcId = value;
        return marked("CompleteEitSchSvcId");
    }

    /** original_network_id of the HD simulcast service; the spelling is the key's own. */
    public VltTvChannelInfoBase setHdSimulCastOnId(int value) {
        hdSimulCastOnId = value;
        return marked("HdSimulCastOnId");
    }

    /** transport_stream_id of the HD simulcast service. */
    public VltTvChannelInfoBase setHdSimulcastTsId(int value) {
        hdSimulcastTsId = value;
        return marked("HdSimulcastTsId");
    }

    /** service_id of the HD simulcast service. */
    public VltTvChannelInfoBase setHdSimulcastSvcId(int value) {
        hdSimulcastSvcId = value;
        return marked("HdSimulcastSvcId");
    }

    /** free_CA_mode, 8 bits. */
    public VltTvChannelInfoBase setFreeCaMode(int value) {
        freeCaMode = value;
        return marked("FreeCaMode");
    }

    /** service_type of the service descriptor, 8 bits (EN 300 468 table 87). */
    public VltTvChannelInfoBase setSdtServiceType(int value) {
        sdtServiceType = value;
        return marked("SdtServiceType");
    }

    // DVB alone.

    /** CI host shunning mode, 8 bits. */
    public VltTvChannelInfoBase setCiHostShunningMode(int value) {
        ciHostShunningMode = value;
        return marked("CiHostShunningMode");
    }

    /** CI tune service, 8 bits. */
    public VltTvChannelInfoBase setCiTuneService(int value) {
        ciTuneService = value;
        return marked("CiTuneService");
    }

    /** EIT_present_following_flag, 8 bits. */
    public VltTvChannelInfoBase setEitPfFlag(int value) {
        eitPfFlag = value;
        return marked("EitPfFlag");
    }

    /** Logical channel number, 16 bits. */
    public VltTvChannelInfoBase setLogicalChannelNumber(int value) {
        logicalChannelNumber = value;
        return marked("LogicalChannelNumber");
    }

    /** Logical channel number before any edit, 16 bits. */
    public VltTvChannelInfoBase setOriginalLcn(int value) {
        originalLcn = value;
        return marked("OriginalLcn");
    }

    /** Index of the logical channel number, 16 bits. */
    public VltTvChannelInfoBase setLcnIndex(int value) {
        lcnIndex = value;
        return marked("LcnIndex");
    }

    /** Displaying-id flag, 8 bits. */
    public VltTvChannelInfoBase setDisplayingIdFlag(int value) {
        displayingIdFlag = value;
        return marked("DisplayingIdFlag");
    }

    /** Displaying transport stream id, 16 bits. */
    public VltTvChannelInfoBase setDisplayingTsId(int value) {
        displayingTsId = value;
        return marked("DisplayingTsId");
    }

    /** Displaying service id, 16 bits. */
    public VltTvChannelInfoBase setDisplayingServiceId(int value) {
        displayingServiceId = value;
        return marked("DisplayingServiceId");
    }

    /** Component descriptor information. */
    public VltTvChannelInfoBase setCompDescInfo(int value) {
        compDescInfo = value;
        return marked("CompDescInfo");
    }

    /** DAD information; its first 32 bytes of modified UTF-8 are kept. */
    public VltTvChannelInfoBase setDadInfo(String text) {
        dadInfo = text;
        return marked("DadInfo");
    }

    /** Category mask. */
    public VltTvChannelInfoBase setCategoryMask(int value) {
        categoryMask = value;
        return marked("CategoryMask");
    }

    /** Service profile name; its first 32 bytes of modified UTF-8 are kept. */
    public VltTvChannelInfoBase setServiceProfileName(String text) {
        serviceProfileName = text;
        return marked("ServiceProfileName");
    }

    /** Target region level, 8 bits. */
    public VltTvChannelInfoBase setTargetRegionLevel(int value) {
        targetRegionLevel = value;
        return marked("TargetRegionLevel");
    }

    /** Up to three target region codes of 16 bits; of a longer array nothing is stored. */
    public VltTvChannelInfoBase setTargetRegionCode(int... codes) {
        targetRegionCode = codes;
        return marked("TargetRegionCode");
    }

    /** stream_content of the component descriptor, 8 bits. */
    public VltTvChannelInfoBase setSdtStreamContent(int value) {
        sdtStreamContent = value;
        return marked("SdtStreamContent");
    }

    /** stream_content_ext of the component descriptor, 8 bits. */
    public VltTvChannelInfoBase setSdtStreamContentExt(int value) {
        sdtStreamContentExt = value;
        return marked("SdtStreamContentExt");
    }

    /** component_type of the component descriptor, 8 bits. */
    public VltTvChannelInfoBase setSdtStreamComponentType(int value) {
        sdtStreamComponentType = value;
        return marked("SdtStreamComponentType");
    }
}
