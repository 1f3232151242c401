package com.velotra.tv.tavro.services.channellist;

import java.util.EnumSet;
import java.util.Set;

/** The values of one network, to be written or as read. See {@link KeyedValues} for the rules. */
public class VltTvNetworkInfoBase extends KeyedValues {
    // Identity.
    protected String NwlIdNwlRecId;
    protected int NwlNetworkId;
    protected int NetworkVersion;
    protected String NetworkName;

    // Flags.
    protected int NwlFavNetworkCandidate;
    protected int NwlFavNetwork;

    /** Creates an object without values. */
    public VltTvNetworkInfoBase() {}

    /** Returns a new object for an update of the record {@code id}, of which only the record id counts. */
    public static VltTvNetworkInfoBase forRecord(RecordId id) {
        VltTvNetworkInfoBase info = new VltTvNetworkInfoBase();
        info.setNwlIdNwlRecId(id.toString());
        return info;
    }

    /** Returns the flags that are set. */
    public Set<NetworkFlag> flags() {
        Set<NetworkFlag> flags = EnumSet.allOf(NetworkFlag.class);
        flags.removeIf(flag -> !has(flag));
        return flags;
    }

    /** Returns whether a flag is set. */
    public boolean has(NetworkFlag flag) {
        return flag.get.applyAsInt(this) == 1;
    }

    /** Sets or clears a flag, like the setter that is named after its key. */
    public void put(NetworkFlag flag, boolean on) {
        flag.put.accept(this, on ? 1 : 0);
    }

    /** Makes this equal to another object, keys and values. */
    void copyFrom(VltTvNetworkInfoBase from) {
        copyKeys(from);
        NwlIdNwlRecId = from.NwlIdNwlRecId;
        NwlNetworkId = from.NwlNetworkId;
        NetworkVersion = from.NetworkVersion;
        NetworkName = from.NetworkName;
        NwlFavNetworkCandidate = from.NwlFavNetworkCandidate;
        NwlFavNetwork = from.NwlFavNetwork;
    }

    /** Returns whether {@code info} carries a value under {@code key}. Called by the natives. */
    public boolean isContainsKey(VltTvNetworkInfoBase info, String key) {
        return info.hasKey(key);
    }

    @Override
    String identifier() {
        return NwlIdNwlRecId;
    }

    // Identity.

    /** The record to update, in text form; its list part is ignored. See {@link #forRecord}. */
    public void setNwlIdNwlRecId(String id) {
        NwlIdNwlRecId = id;
        mark("NwlIdNwlRecId");
    }

    /** Returns the identifier in text form; see {@link #id}. */
    public String getNwlIdNwlRecId() {
        return NwlIdNwlRecId;
    }

    /** network_id, 16 bits (ETSI EN 300 468). */
    public void setNwlNetworkId(int value) {
        NwlNetworkId = value;
        mark("NwlNetworkId");
    }

    /** Returns the value of "NwlNetworkId". */
    public int getNwlNetworkId() {
        return NwlNetworkId;
    }

    /** version_number of the NIT, 8 bits. */
    public void setNetworkVersion(int value) {
        NetworkVersion = value;
        mark("NetworkVersion");
    }

    /** Returns the value of "NetworkVersion". */
    public int getNetworkVersion() {
        return NetworkVersion;
    }

    /** Network name; stored when it has at most 31 bytes of modified UTF-8. */
    public void setNetworkName(String text) {
        NetworkName = text;
        mark("NetworkName");
    }

    /** Returns the value of "NetworkName". */
    public String getNetworkName() {
        return NetworkName;
    }

    // Flags.

    /** 1 when the network may become the favorite one, else 0. */
    public void setNwlFavNetworkCandidate(int value) {
        NwlFavNetworkCandidate = value;
        mark("NwlFavNetworkCandidate");
    }

    /** Returns the value of "NwlFavNetworkCandidate". */
    public int getNwlFavNetworkCandidate() {
        return NwlFavNetworkCandidate;
    }

    /** 1 when the network is the favorite one, else 0. */
    public void setNwlFavNetwork(int value) {
        NwlFavNetwork = value;
        mark("NwlFavNetwork");
    }

    /** Returns the value of "NwlFavNetwork". */
    public int getNwlFavNetwork() {
        return NwlFavNetwork;
    }
}
