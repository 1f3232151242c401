// What docs/java-contract.md says of each native: parameter names, meaning, result and failure value.
#pragma once

namespace natives {

// List classes, as a set.
enum Kinds : unsigned {
    kService = 1,
    kStream = 2,
    kNetwork = 4,
    kSatellite = 8,
    kCompanions = kStream | kNetwork | kSatellite,
    kBytes = kService | kStream,      // records are read as bytes
    kObjects = kNetwork | kSatellite, // records are read as objects
    kAll = kService | kCompanions,
};

struct Parameter {
    const char* name;
    const char* meaning;
};

constexpr Parameter kParameters[] = {
    {"mwdbId", "List id, 1 to 65535. The natives keep the low 16 bits."},
    {"sourceId", "List id of the list to copy from."},
    {"destinationId", "List id of the list to copy to."},
    {"identifier", "Names a record: the text `list,record`."},
    {"path", "Name of a file, as the middleware understands it."},
    {"transportStreamId", "`transport_stream_id` to select by."},
    {"transportStreamRecordId", "Record id in the transport stream list with the id `mwdbId`."},
    {"networkId", "`network_id` to select by."},
    {"satelliteRecordId", "Record id in the satellite list with the id `mwdbId`."},
    {"keys", "Names of the values to read, as `String`; null for all."},
    {"channel, stream, network, satellite", "The values of one record. Only values whose key is present are used; the "
                                            "object's own identifier names the record "
                                            "to update."},
    {"channels, streams, networks, satellites", "A list of such objects."},
};

// One native, for the classes in `kinds`. `declaration` is Java's, without type arguments. The satellite list spells
// `native_x` as `nativeX`, and takes object types of its own.
struct Native {
    unsigned kinds;
    const char* declaration;
    const char* effect;
    const char* result;
    const char* failure;
};

constexpr char kNoRecordBytes[] = "`null`: the identifier is refused, or the record does not exist";
constexpr char kNoRecordObject[] =
    "`null`: the identifier is refused, the record does not exist, or a class is missing";
constexpr char kNoList[] = "`-22`: the list does not exist, or the middleware fails";
constexpr char kNotUpdated[] = "`-22`: the object is null, its identifier is refused, or the record does not exist";
constexpr char kNotAllUpdated[] =
    "`-22`: the list is null, or an element is null or cannot be updated; elements before it stay updated";
constexpr char kNotStored[] = "`-22`: the identifier is refused, or the record is missing from one of the two lists";
constexpr char kNotAdded[] = "`\"\"`: the object is null, the list does not exist, or no record id is free";
constexpr char kNotCopied[] = "`\"\"`: the identifier is refused, or the record or the list does not exist";
constexpr char kNoneRead[] = "`null`: the list is empty or does not exist, or a record cannot be read";
constexpr char kOneNotRead[] = "`null`: a record cannot be read, or a class is missing";

constexpr Native kNatives[] = {
    {kAll, "int nativeSetup()", "Creates the manager of the class. Call it once, before any other native of the class.",
     "The address of a pointer, cut to an int: not a status, and never 0", "none"},

    {kService, "int native_open(int mwdbId)", "Opens a list, or creates it when it does not exist.", "`0`",
     "`-22`: the list can be neither opened nor created"},
    {kCompanions, "int native_open(int mwdbId)", "Opens a list, or creates it when it does not exist.",
     "`0`, also when the list can be neither opened nor created",
     "`-22`: the middleware opens it without a handle, or as list 0"},
    {kService, "int native_open(int mwdbId, String path)",
     "Opens or creates a list and loads it from a file. A list that is open is loaded only when it is empty.",
     "`0`, also when the load fails", "`-22`: the path is null or empty, or the list cannot be recorded as open"},
    {kStream | kNetwork, "int native_open(int mwdbId, String path)",
     "Opens or creates a list and loads it from a file. A list that is open is not loaded.",
     "`0`, also when the load fails", "`-22`: the path is null or empty, or the list cannot be recorded as open"},
    {kSatellite, "int native_open(int mwdbId, String path)",
     "Opens or creates a list and loads it from a file. A list that is open is not loaded.",
     "`0`, also when the load fails, and for a list that is open with any path",
     "`-22`: the path is null or empty, or the list cannot be recorded as open"},
    {kAll, "int native_close(int mwdbId)", "Closes a list; its records stay.", "`0`", kNoList},
    {kAll, "int native_clean(int mwdbId)", "Removes all records of a list.", "`0`", kNoList},
    {kAll, "int native_delete(int mwdbId)", "Removes a list and its records.", "`0`", kNoList},
    {kAll, "int native_copy(int sourceId, int destinationId)",
     "Replaces the records of one list by the records of another.", "`0`",
     "`-22`: one of the lists does not exist, or the middleware fails"},
    {kAll, "int native_store(int mwdbId, String path)", "Writes a list to a file.", "`0`",
     "`-22`: the path is null or empty, the list does not exist, or the middleware fails"},

    {kService, "byte[] native_getSvlInfo(String identifier)", "Reads one service.", "The 552 bytes of the record",
     kNoRecordBytes},
    {kService, "byte[] native_getSvlInfoList(int mwdbId)", "Reads all services of a list, in list order.",
     "The records, one after the other", kNoneRead},
    {kService, "byte[] native_getInfoListByTransportStream(int mwdbId, int transportStreamId)",
     "Reads the services whose transport stream has that id. Closes all transport stream lists.",
     "The records, one after the other; an empty array when none matches", kNoneRead},
    {kService, "byte[] native_getInfoListByTransportStreamRecord(int mwdbId, int transportStreamRecordId)",
     "Reads the services that refer to that transport stream record.", "The records, one after the other",
     "`null`: none matches, the list does not exist, or a record cannot be read"},
    {kService, "byte[] native_getInfoListByNetwork(int mwdbId, int networkId)",
     "Reads the services whose network has that id. Closes all network lists.",
     "The records, one after the other; an empty array when none matches", kNoneRead},
    {kStream, "byte[] native_getInfo(String identifier)", "Reads one transport stream.", "The 724 bytes of the record",
     kNoRecordBytes},
    {kStream, "byte[] native_getInfoList(int mwdbId)", "Reads all transport streams of a list, in list order.",
     "The records, one after the other", kNoneRead},
    {kStream, "byte[] native_getInfoListBySatellite(int mwdbId, int satelliteRecordId)",
     "Reads the transport streams that refer to that satellite record.", "The records, one after the other",
     "`null`: none matches, the list does not exist, or a record cannot be read"},
    {kNetwork, "VltTvNetworkInfo native_getInfo(String identifier, List keys)", "Reads one network.",
     "An object with the wanted values", kNoRecordObject},
    {kNetwork, "List native_getInfoList(int mwdbId, List keys)", "Reads all networks of a list, in list order.",
     "An `ArrayList` of objects with the wanted values; empty when the list is empty or does not exist", kOneNotRead},
    {kSatellite, "VltTvSatelliteInfo native_getInfo(String identifier, List keys)", "Reads one satellite.",
     "An object with the wanted values", kNoRecordObject},
    {kSatellite, "List native_getInfoList(int mwdbId, List keys)",
     "Reads all satellites of a list, in list order. A value that a satellite lacks is the one of the satellite "
     "before.",
     "An `ArrayList` of objects with the wanted values; empty when the list is empty or does not exist", kOneNotRead},

    {kService, "int native_updateInfo(int mwdbId, VltTvChannelInfoBase channel)",
     "Writes the present values into a service.", "`0`", kNotUpdated},
    {kStream, "int native_updateInfo(int mwdbId, VltTvTransportStreamInfoBase stream)",
     "Writes the present values into a transport stream.", "`0`", kNotUpdated},
    {kNetwork, "int native_updateInfo(int mwdbId, VltTvNetworkInfoBase network)",
     "Writes the present values into a network.", "`0`", kNotUpdated},
    {kSatellite, "int native_updateInfo(VltTvSatelliteInfoBase satellite)",
     "Writes the present values, without the polarization, into a satellite of the list that its identifier names.",
     "`0`", kNotUpdated},
    {kService, "int native_updateInfo(int mwdbId, String identifier)",
     "Replaces the record with the same record id in list `mwdbId` by the named one, which then refers to the "
     "transport "
     "stream, network and satellite lists with that id.",
     "`0`", kNotStored},
    {kStream, "int native_updateInfo(int mwdbId, String identifier)",
     "Replaces the record with the same record id in list `mwdbId` by the named one, which then names that list and "
     "the "
     "network and satellite lists with its id.",
     "`0`", kNotStored},
    {kNetwork, "int native_updateInfo(int mwdbId, String identifier)",
     "Replaces the record with the same record id in list `mwdbId` by the named one, which then names that list.",
     "`0`", kNotStored},
    {kSatellite, "int native_updateInfo(int mwdbId, String identifier)",
     "Replaces the record with the same record id in list `mwdbId` by the named one.", "`0`", kNotStored},
    {kService, "int native_updateInfoList(int mwdbId, List channels)",
     "Updates many services under one lock. A refused identifier ends it and leaves the list locked.",
     "`0`, also when the identifier of an element after the first is refused", kNotAllUpdated},
    {kStream, "int native_updateInfoList(int mwdbId, List streams)",
     "Updates many transport streams under one lock. Elements with a refused identifier are skipped.", "`0`",
     kNotAllUpdated},
    {kNetwork, "int native_updateInfoList(int mwdbId, List networks)",
     "Updates many networks under one lock. A refused identifier ends it and leaves the list locked.",
     "`0`, also when the identifier of an element after the first is refused", kNotAllUpdated},
    {kSatellite, "int native_updateInfoList(List satellites)",
     "Updates many satellites, each under the lock of its list. A refused identifier ends it.",
     "`0`, also when the identifier of an element after the first is refused", kNotAllUpdated},

    {kService, "String nativeAdd(int mwdbId, VltTvChannelInfoBase channel)",
     "Adds a service under the next free record id.", "The identifier of the new record", kNotAdded},
    {kStream, "String nativeAdd(int mwdbId, VltTvTransportStreamInfoBase stream)",
     "Adds a transport stream under the highest record id plus one.", "The identifier of the new record", kNotAdded},
    {kNetwork, "String nativeAdd(int mwdbId, VltTvNetworkInfoBase network)",
     "Adds a network under the highest record id plus one.", "The identifier of the new record", kNotAdded},
    {kSatellite, "String nativeAdd(int mwdbId, VltTvSatelliteInfoBase satellite)",
     "Adds a satellite under the highest record id plus one.", "The identifier of the new record", kNotAdded},
    {kService, "String nativeAdd(int mwdbId, String identifier)",
     "Adds a copy of the named record to list `mwdbId`, under the same record id.", "The identifier of the new record",
     "`\"\"`: the identifier is refused, the record or the list does not exist, or the list has a record with the id"},
    {kStream, "String nativeAdd(int mwdbId, String identifier)",
     "Adds a copy of the named record to list `mwdbId` under the same record id, or replaces the record that has it. "
     "The "
     "copy names that list and the network and satellite lists with its id.",
     "The identifier of the new record", kNotCopied},
    {kNetwork, "String nativeAdd(int mwdbId, String identifier)",
     "Adds a copy of the named record to list `mwdbId` under the same record id, or replaces the record that has it. "
     "The "
     "copy names that list.",
     "The identifier of the new record", kNotCopied},
    {kSatellite, "String nativeAdd(int mwdbId, String identifier)",
     "Adds a copy of the named record to list `mwdbId` under the same record id, or replaces the record that has it.",
     "The identifier of the new record", kNotCopied},

    {kService | kObjects, "int nativeRemove(String identifier)", "Removes a record.", "`0`",
     "`-1`: the identifier has no comma; `-22`: the record does not exist"},
    {kStream, "int nativeRemove(String identifier)", "Removes a record from a list that is open.", "`0`",
     "`-1`: the identifier has no comma; `-22`: the list is not open, or the record does not exist"},
    {kService | kObjects, "int nativeRemoveByRecId(int mwdbId, String identifier)",
     "Removes the record with that record id from list `mwdbId`; the list id in the identifier is ignored.", "`0`",
     "`-1`: the identifier has no comma; `-22`: the record does not exist"},
    {kStream, "int nativeRemoveByRecId(int mwdbId, String identifier)",
     "Removes the record with that record id from list `mwdbId`, if open; the list id in the identifier is ignored.",
     "`0`", "`-1`: the identifier has no comma; `-22`: the list is not open, or the record does not exist"},
};

} // namespace natives
