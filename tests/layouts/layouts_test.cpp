#include "layouts/codes.h"
#include "layouts/keys.h"
#include "layouts/writers.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <set>
#include <sstream>
#include <stdexcept>

namespace {

using tavro::layouts::all_records;
using tavro::layouts::Key;
using tavro::layouts::keys_of;
using tavro::layouts::Record;
using tavro::layouts::RecordField;
using tavro::layouts::View;
using tavro::layouts::wrong_bytes;

Record record_of(const std::string& kind) {
    for (const Record& record : all_records()) {
        if (record.kind == kind) {
            return record;
        }
    }
    throw std::invalid_argument(kind);
}

RecordField& field_of(Record& record, const std::string& path) {
    return *std::find_if(record.fields.begin(), record.fields.end(),
                         [&](const RecordField& field) { return field.path == path; });
}

void remove(Record& record, const std::string& path) {
    record.fields.erase(record.fields.begin() + (&field_of(record, path) - record.fields.data()));
}

std::string why_not(const Record& record) {
    try {
        keys_of(record);
        return "";
    } catch (const std::runtime_error& error) {
        return error.what();
    }
}

TEST(RecordBytes, EachBelongsToOneFieldOrReservedRange) {
    std::vector<unsigned> sizes;
    for (const Record& record : all_records()) {
        sizes.push_back(record.size);
        EXPECT_EQ(wrong_bytes(record), std::vector<std::string>());
    }
    EXPECT_EQ(sizes, (std::vector<unsigned>{552, 724, 304, 412}));
}

TEST(RecordBytes, SharedOnesAreThoseOfTheSpecificAndTunerParts) {
    for (const Record& record : all_records()) {
        std::set<unsigned> shared;
        for (const RecordField& field : record.fields) {
            for (unsigned byte = field.offset; !field.views.empty() && byte < field.end(); ++byte) {
                shared.insert(byte);
            }
        }
        const bool service = record.kind == "service";
        ASSERT_EQ(shared.empty(), record.views.empty()) << record.kind;
        if (!shared.empty()) {
            EXPECT_EQ(*shared.begin(), service ? 152 : 48);
            EXPECT_EQ(*shared.rbegin(), service ? 551 : 175);
            EXPECT_EQ(shared.size(), service ? 400 : 128);
        }
    }
}

TEST(RecordBytes, OneWithoutAFieldIsNamed) {
    Record record = record_of("network");
    remove(record, "ui1_nw_version");
    EXPECT_EQ(wrong_bytes(record), std::vector<std::string>{"network: byte 12 belongs to no field or reserved range"});
}

TEST(RecordBytes, OneThatIsOnlyMissingInAViewIsNamed) {
    Record record = record_of("transport stream");
    remove(record, "u_tuner.t_sat.ui1_pilot_insert");
    EXPECT_EQ(wrong_bytes(record),
              std::vector<std::string>{"transport stream, satellite: byte 112 belongs to no field or reserved range"});
}

TEST(RecordBytes, OneWithTwoFieldsIsNamed) {
    Record record = record_of("network");
    field_of(record, "aui1_reserved_8").width = 3;
    EXPECT_EQ(wrong_bytes(record),
              std::vector<std::string>{"network: byte 10 belongs to aui1_reserved_8 and to ui2_nw_id"});
}

TEST(RecordBytes, AFieldThatEndsAfterTheRecordIsNamed) {
    Record record = record_of("satellite");
    field_of(record, "aui1_reserved_347").width = 66;
    EXPECT_EQ(wrong_bytes(record), std::vector<std::string>{"satellite: aui1_reserved_347 ends after the record"});
}

TEST(RecordFields, HaveAJavaConstantOfTheirOwnAndALabel) {
    for (const Record& record : all_records()) {
        std::set<std::string> constants;
        for (const RecordField& field : record.fields) {
            EXPECT_NE(field.reserved(), constants.insert(field.java).second) << record.kind << ' ' << field.path;
            EXPECT_EQ(field.reserved(), field.label.empty()) << record.kind << ' ' << field.path;
            constants.insert("");
        }
    }
}

TEST(RecordFields, OfACommonStructureBelongToAllItsViews) {
    Record record = record_of("service");
    const RecordField& name = field_of(record, "u_specific.t_dvb.t_common.s_svc_name");
    ASSERT_EQ(name.views.size(), 2U);
    EXPECT_EQ(name.views[0].label, "DVB");
    EXPECT_EQ(name.views[1].label, "DTMB");
    EXPECT_EQ(name.member, "t_common.s_svc_name");
}

TEST(RecordFields, OfAnArrayOfStructuresAreNumbered) {
    Record record = record_of("transport stream");
    const RecordField& last = field_of(record, "at_alt_freq[4].e_bandwidth");
    EXPECT_EQ(last.java, "ALT_BANDWIDTH_5");
    EXPECT_EQ(last.label, "alternate bandwidth code 5");
    EXPECT_EQ(last.offset, 612U);
}

TEST(RecordKeys, GoToTheFieldsThatTheirRowsName) {
    for (const Record& record : all_records()) {
        for (const Key& key : keys_of(record)) {
            EXPECT_FALSE(key.targets.empty()) << key.name;
            for (const tavro::layouts::Target& target : key.targets) {
                EXPECT_FALSE(target.field->reserved()) << key.name;
            }
        }
    }
    const Record service = record_of("service");
    const std::vector<Key> keys = keys_of(service);
    EXPECT_EQ(keys.size(), 69U);
    const auto free_ca =
        std::find_if(keys.begin(), keys.end(), [](const Key& key) { return key.name == "FreeCaMode"; });
    ASSERT_NE(free_ca, keys.end());
    ASSERT_EQ(free_ca->targets.size(), 2U);
    EXPECT_EQ(free_ca->targets[0].field->offset, 216U);
    EXPECT_EQ(free_ca->targets[1].field->offset, 214U);
}

TEST(RecordKeys, ARowWithoutAFieldInItsPlaceIsRefused) {
    Record record = record_of("service");
    remove(record, "t_header.ui2_svc_id");
    EXPECT_EQ(
        why_not(record),
        "service key ServiceId: no field takes up the 2 bytes at 24; correct the row or the table of the structure");
}

TEST(RecordKeys, ARowOfAnotherWidthIsRefused) {
    Record record = record_of("network");
    field_of(record, "ac_nw_name").width = 31;
    EXPECT_EQ(
        why_not(record),
        "network key NetworkName: no field takes up the 32 bytes at 13; correct the row or the table of the structure");
}

TEST(RecordKeys, ARowOfOneViewDoesNotFindFieldsOfAnother) {
    Record record = record_of("service");
    remove(record, "u_specific.t_dtmb.ui1_sdt_service_type");
    EXPECT_EQ(
        why_not(record),
        "service key SdtServiceType: no field takes up the byte at 217; correct the row or the table of the structure");
}

TEST(RecordKeys, ARowWithTwoPossibleFieldsMustSayWhichItMeans) {
    Record record = record_of("transport stream");
    RecordField& reserved = field_of(record, "u_tuner.t_cab.aui1_reserved_16");
    RecordField hierarchy = reserved;
    hierarchy.width = 4;
    hierarchy.path = "u_tuner.t_cab.e_other";
    hierarchy.use = tavro::FieldUse::kValue;
    record.fields.push_back(hierarchy);
    EXPECT_EQ(why_not(record), "transport stream key Hierarchy: the 4 bytes at 64 can be u_tuner.t_ter.e_hierarchy or "
                               "u_tuner.t_cab.e_other; name the one meant in kMeant");
}

std::vector<std::pair<std::uint32_t, std::string>> codes_of(const std::string& kind, const std::string& java) {
    const Record record = record_of(kind);
    const std::vector<Key> keys = keys_of(record);
    for (const RecordField& field : record.fields) {
        if (field.java == java) {
            std::vector<std::pair<std::uint32_t, std::string>> codes;
            const tavro::layouts::CodeNames* names = tavro::layouts::codes_of(record, keys, field);
            for (const tavro::NamedCode* code = names == nullptr ? nullptr : names->first;
                 code != nullptr && code != names->last; ++code) {
                codes.emplace_back(code->code, code->name);
            }
            return codes;
        }
    }
    throw std::invalid_argument(java);
}

using NamedNumbers = std::vector<std::pair<std::uint32_t, std::string>>;

TEST(FieldCodes, AreThoseOfTheTableThatConvertsItsKey) {
    EXPECT_EQ(codes_of("transport stream", "ALT_BANDWIDTH_5"), codes_of("transport stream", "TER_BANDWIDTH"));
    EXPECT_EQ(codes_of("transport stream", "CAB_MODE"), (NamedNumbers{{1, "DVB-C"}, {2, "DVB-C2"}}));
    EXPECT_EQ(codes_of("transport stream", "FREQUENCY"), NamedNumbers{});
}

TEST(FieldCodes, OfSelectingFieldsAreTheViews) {
    for (const std::string kind : {"service", "transport stream"}) {
        NamedNumbers views;
        for (const View& view : record_of(kind).views) {
            views.emplace_back(view.value, view.label);
        }
        EXPECT_EQ(codes_of(kind, kind == "service" ? "BROADCAST_TYPE" : "MEDIUM"), views);
    }
    EXPECT_EQ(codes_of("transport stream", "BROADCAST_TYPE"), codes_of("service", "BROADCAST_TYPE"));
}

TEST(FieldCodes, OfEachTableBelongToAField) {
    std::set<std::string> used;
    for (const Record& record : all_records()) {
        const std::vector<Key> keys = keys_of(record);
        for (const RecordField& field : record.fields) {
            if (const tavro::layouts::CodeNames* names = tavro::layouts::codes_of(record, keys, field)) {
                used.insert(names->name);
            }
        }
    }
    for (const tavro::layouts::CodeNames& names : tavro::layouts::all_codes()) {
        EXPECT_EQ(used.count(names.name), 1U) << names.name;
    }
}

TEST(ToolTables, HaveOneLinePerFieldFlagCodeAndReservedRange) {
    std::ostringstream out;
    tavro::layouts::write_tables(out, {record_of("network")});
    EXPECT_EQ(out.str(),
              "package com.velotra.tv.tavro.tool.records;\n"
              "\n"
              "/** The layouts of the records, for LayoutReader. Made by the program record_layouts. */\n"
              "final class LayoutTables {\n"
              "    static final String NWL = \"\"\"\n"
              "record|_NWL_REC_T|304|-1\n"
              "field|flags|flags|0|4|HEX|0||ui4_nwl_flags|||favorite network, and candidate for it\n"
              "flag|2|NwlFavNetworkCandidate\n"
              "flag|4|NwlFavNetwork\n"
              "field|record_id|record id|4|2|NUMBER|0||ui2_nwl_rec_id||NwlIdNwlRecId=record id|unique within "
              "its list\n"
              "field|nwl_id|list|6|2|NUMBER|0||ui2_nwl_id|||the list that holds the record\n"
              "reserved|8|2||aui1_reserved_8\n"
              "field|network_id|network id|10|2|NUMBER|0||ui2_nw_id||NwlNetworkId=number|network_id (5.2.1)\n"
              "field|version|version|12|1|NUMBER|0||ui1_nw_version||NetworkVersion=number|version_number of "
              "the NIT (5.2.1)\n"
              "field|name|name|13|32|TEXT|31||ac_nw_name||NetworkName=text|at most 31 bytes of modified UTF-8 "
              "and a NUL\n"
              "reserved|45|259||aui1_reserved_45\n"
              "\"\"\";\n"
              "\n"
              "    private LayoutTables() {}\n"
              "}\n");
}

std::string tables() {
    std::ostringstream out;
    tavro::layouts::write_tables(out, all_records());
    return out.str();
}

TEST(ToolTables, NumberTheElementsOfAnArray) {
    EXPECT_NE(tables().find("\nfield|region_code_3|target region code 3|366|2|NUMBER|0|2|aui2_code[2]||"
                            "TargetRegionCode=rule|\n"),
              std::string::npos);
}

TEST(ToolTables, LeaveNoRoomForATerminatorThatHasAFieldOfItsOwn) {
    EXPECT_NE(tables().find("\nfield|name|name|282|64|TEXT|64||ac_sat_name||Name=text|"), std::string::npos);
}

TEST(ToolTables, NameTheViewsOfAField) {
    EXPECT_NE(tables().find("\nview|7|DTMB|u_specific.t_dtmb\n"), std::string::npos);
    EXPECT_NE(tables().find("\nfield|short_name|short name|156|17|TEXT|16|2,7|t_common.s_svc_name||"),
              std::string::npos);
    EXPECT_NE(tables().find("\nfield|sat_symbol_rate|symbol rate|56|4|NUMBER|0|3|ui4_sym_rate|Bd|SymbolRate=rule|\n"),
              std::string::npos);
    EXPECT_NE(tables().find("\nreserved|64|16|2|aui1_reserved_16\n"), std::string::npos);
}

TEST(ToolTables, HaveNoSeparatorInAText) {
    for (const Record& record : all_records()) {
        for (const RecordField& field : record.fields) {
            EXPECT_EQ((field.label + field.meaning + field.unit).find_first_of("|\"\\"), std::string::npos)
                << field.path;
        }
    }
}

TEST(JavaFields, AreOnlyThoseThatAreNamed) {
    std::ostringstream out;
    tavro::layouts::write_java(out, record_of("network"));
    const std::string source = out.str();
    EXPECT_NE(source.find("public enum NetworkField implements RecordField {"), std::string::npos);
    EXPECT_NE(source.find("    VERSION(\"version\", 12, 1, Style.NUMBER),"), std::string::npos);
    EXPECT_NE(source.find("    NAME(\"name\", 13, 32, Style.TEXT);"), std::string::npos);
    EXPECT_EQ(source.find("reserved"), std::string::npos);
    EXPECT_EQ(source.find("belongsTo"), std::string::npos);
}

TEST(JavaFields, OfViewsNameTheirSelectingValues) {
    std::ostringstream out;
    tavro::layouts::write_java(out, record_of("service"));
    const std::string source = out.str();
    EXPECT_NE(source.find("SHORT_NAME(\"short name\", 156, 17, Style.TEXT, 2, 7)"), std::string::npos);
    EXPECT_NE(source.find("REGION_CODE_3(\"target region code 3\", 366, 2, Style.NUMBER, 2)"), std::string::npos);
    EXPECT_NE(source.find("public boolean belongsTo(int broadcastType)"), std::string::npos);
}

} // namespace
