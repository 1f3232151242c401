package com.velotra.tv.tavro.services.channellist;

/**
 * The values of one network: a bag of optional values, each under its key, on the way in and on the way out.
 *
 * <p>A value that is set marks its key; see {@link VltTvChannelInfoBase} for the rules. Fields are called as their keys: the
 * native side reads them so.
 */
public class VltTvNetworkInfoBase extends KeyedValues {
    // Identity.
    protected String NwlIdNwlRecId;
    protected int NwlNetworkId;
    protected int NetworkVersion;
    protected String NetworkName;

    // Flags.
    protected int NwlFavNetworkCandidate;
    protected int NwlFavNetwork;

    /** Whether {@code info} carries a value under {@code key}. Called by the native side. */
    public boolean isContainsKey(VltTvNetworkInfoBase info, String key) {
        return info.hasKey(key);
    }

    /** The text form of the record identifier that was set, or null. */
    String identifier() {
        return NwlIdNwlRecId;
    }

    // Identity.

    /** The record to update; its list part does not count. */
    public void setNwlIdNwlRecId(String id) {
        NwlIdNwlRecId = id;
        mark("NwlIdNwlRecId");
    }

    /** The value under "NwlIdNwlRecId". */
    public String getNwlIdNwlRecId() {
        return NwlIdNwlRecId;
    }

    /** network_id, 16 bits (ETSI EN 300 468). */
    public void setNwlNetworkId(int value) {
        NwlNetworkId = value;
        mark("NwlNetworkId");
    }

    /** The value under "NwlNetworkId". */
    public int getNwlNetworkId() {
        return NwlNetworkId;
    }

    /** version_number of the NIT, 8 bits. */
    public void setNetworkVersion(int value) {
        NetworkVersion = value;
        mark("NetworkVersion");
    }

    /** The value under "NetworkVersion". */
    public int getNetworkVersion() {
        return NetworkVersion;
    }

    /** Network name; stored when it has at most 31 bytes of modified UTF-8. */
    public void setNetworkName(String text) {
        NetworkName = text;
        mark("NetworkName");
    }

    /** The value under "NetworkName". */
    public String getNetworkName() {
        return NetworkName;
    }

    // Flags.

    /** 1 when the network may become the favorite one, else 0. */
    public void setNwlFavNetworkCandidate(int value) {
        NwlFavNetworkCandidate = value;
        mark("NwlFavNetworkCandidate");
    }

    /** The value under "NwlFavNetworkCandidate". */
    public int getNwlFavNetworkCandidate() {
        return NwlFavNetworkCandidate;
    }

    /** 1 when the network is the favorite one, else 0. */
    public void setNwlFavNetwork(int value) {
        NwlFavNetwork = value;
        mark("NwlFavNetwork");
    }

    /** The value under "NwlFavNetwork". */
    public int getNwlFavNetwork() {
        return NwlFavNetwork;
    }
}
