// Loading the library: the four method tables, their order, and what each failure logs and returns.
#include "fake_jni.h"
#include "jni/bridges/channel_list_bridge.h"
#include "jni/bridges/managers.h"
#include "jni/bridges/network_list_bridge.h"
#include "jni/bridges/satellite_list_bridge.h"
#include "jni/bridges/transport_stream_list_bridge.h"
#include "jni/env/native_method.h"
#include "jni/jni_VltTvList_Init.h"
#include "script.h"
#include "scripted_test.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace script = tavro::script;
using tavro::test::FakeJni;

namespace {

const std::string kPackage = "com/velotra/tv/tavro/services/channellist/";
constexpr jint kVersion = 0x10004;

class Load : public tavro::test::ScriptedTest {
protected:
    Load() {
        log_level("E");
        javaVM = nullptr;
    }
    ~Load() override { javaVM = nullptr; }
};

std::string find(const char* name) { return "FindClass(" + kPackage + name + ")"; }
std::string registers(const char* name, int count) {
    return "RegisterNatives(" + kPackage + name + ", " + std::to_string(count) + ")";
}

TEST_F(Load, RegistersTheFourClassesInOrderAndKeepsTheVirtualMachine) {
    FakeJni jni;
    EXPECT_EQ(JNI_OnLoad(jni.vm(), nullptr), kVersion);
    EXPECT_EQ(javaVM, jni.vm());
    EXPECT_EQ(jni.journal(), (std::vector<std::string>{
                                 "GetEnv(65540)",
                                 "log 6 Tavro_onLoad_channellist: channellist JNI_OnLoad OK.",
                                 find("VltTvChannelList"),
                                 registers("VltTvChannelList", 20),
                                 find("VltTvTransportStreamList"),
                                 registers("VltTvTransportStreamList", 18),
                                 find("VltTvNetworkList"),
                                 registers("VltTvNetworkList", 17),
                                 find("VltTvSatelliteList"),
                                 registers("VltTvSatelliteList", 17),
                             }));
}

TEST_F(Load, WithoutAnEnvironmentFailsWithOneErrorLine) {
    FakeJni jni;
    jni.get_env_result = JNI_EVERSION;
    EXPECT_EQ(JNI_OnLoad(jni.vm(), nullptr), -1);
    EXPECT_EQ(javaVM, nullptr);
    EXPECT_EQ(jni.journal(),
              (std::vector<std::string>{"GetEnv(65540)", "log 6 Tavro_onLoad_channellist: ERROR: GetEnv failed\n"}));
}

TEST_F(Load, WithTheGateClosedGivesTheSameResultsWithoutALine) {
    log_level("S");
    FakeJni jni;
    jni.fail(find("VltTvChannelList"));
    EXPECT_EQ(JNI_OnLoad(jni.vm(), nullptr), -1);
    EXPECT_EQ(jni.journal(), (std::vector<std::string>{"GetEnv(65540)", find("VltTvChannelList")}));

    FakeJni other;
    other.get_env_result = JNI_ERR;
    EXPECT_EQ(JNI_OnLoad(other.vm(), nullptr), -1);
    EXPECT_EQ(other.journal(), std::vector<std::string>{"GetEnv(65540)"});

    FakeJni refusing;
    refusing.register_result = JNI_ERR;
    EXPECT_EQ(JNI_OnLoad(refusing.vm(), nullptr), -1);
    EXPECT_EQ(refusing.journal(),
              (std::vector<std::string>{"GetEnv(65540)", find("VltTvChannelList"), registers("VltTvChannelList", 20)}));
}

TEST_F(Load, AsksTheGateOnceBeforeRegistrationAndThenOncePerLine) {
    script::journal_properties(true);
    FakeJni jni;
    jni.fail(find("VltTvChannelList"));
    JNI_OnLoad(jni.vm(), nullptr);
    const std::string gate = "property_get(\"vendor.vlt.broadcast.log.level\", \"\")";
    EXPECT_EQ(jni.journal(), (std::vector<std::string>{
                                 "GetEnv(65540)", gate, "log 6 Tavro_onLoad_channellist: channellist JNI_OnLoad OK.",
                                 find("VltTvChannelList"), gate,
                                 "log 6 Tavro_onLoad_channellist: registerNativeMethods cannot find class return false",
                                 gate, "log 6 -: Failed to register Channel List native methods", gate,
                                 "log 6 Tavro_onLoad_channellist: ERROR: VltTvList native registration failed"}));
}

TEST_F(Load, AFailingThirdTableLeavesTwoRegisteredAndTheFourthUntried) {
    FakeJni jni;
    jni.fail(find("VltTvNetworkList"));
    EXPECT_EQ(JNI_OnLoad(jni.vm(), nullptr), -1);
    EXPECT_EQ(javaVM, nullptr);
    ASSERT_EQ(jni.registered.size(), 2U);
    EXPECT_EQ(jni.registered[0].cls, kPackage + "VltTvChannelList");
    EXPECT_EQ(jni.registered[1].cls, kPackage + "VltTvTransportStreamList");
    EXPECT_EQ(jni.journal_with("Satellite"), std::vector<std::string>{});
    EXPECT_EQ(jni.journal_with("log "),
              (std::vector<std::string>{
                  "log 6 Tavro_onLoad_channellist: channellist JNI_OnLoad OK.",
                  "log 6 Tavro_onLoad_channellist: registerNativeMethods cannot find class return false",
                  "log 6 -: Failed to register Network List native methods",
                  "log 6 Tavro_onLoad_channellist: ERROR: VltTvList native registration failed"}));
}

TEST_F(Load, EveryTableHasItsOwnFailureLine) {
    const struct {
        const char* name;
        const char* line;
    } cases[] = {
        {"VltTvChannelList", "log 6 -: Failed to register Channel List native methods"},
        {"VltTvTransportStreamList", "log 6 -: Failed to register TS List native methods"},
        {"VltTvNetworkList", "log 6 -: Failed to register Network List native methods"},
        {"VltTvSatelliteList", "log 6 -: Failed to register Satellite List native methods"},
    };
    for (const auto& c : cases) {
        FakeJni jni;
        jni.fail(find(c.name));
        EXPECT_EQ(register_com_velotra_tv_tavro_channellist_VltTvList(jni.env()), 0);
        EXPECT_EQ(jni.journal_with("log 6 -:"), std::vector<std::string>{c.line});
        EXPECT_EQ(jni.forbidden_calls(), std::vector<std::string>{});
    }
}

TEST_F(Load, AClassThatLacksAMethodFailsWithItsOwnLine) {
    FakeJni jni;
    jni.register_result = -1;
    EXPECT_EQ(JNI_OnLoad(jni.vm(), nullptr), -1);
    EXPECT_EQ(jni.journal_with("log "),
              (std::vector<std::string>{
                  "log 6 Tavro_onLoad_channellist: channellist JNI_OnLoad OK.",
                  "log 6 Tavro_onLoad_channellist: registerNativeMethods cannot register methods return false",
                  "log 6 -: Failed to register Channel List native methods",
                  "log 6 Tavro_onLoad_channellist: ERROR: VltTvList native registration failed"}));
}

TEST_F(Load, RegisteringOneTableReturnsZeroOrMinusOne) {
    const JNINativeMethod method = {const_cast<char*>("native_open"), const_cast<char*>("(I)I"),
                                    reinterpret_cast<void*>(com_velotra_tv_tavro_channellist_open)};
    FakeJni good;
    EXPECT_EQ(registerNativeMethods(good.env(), "a/Class", &method, 1), 0);

    FakeJni without_class;
    without_class.fail("FindClass(a/Class)");
    EXPECT_EQ(registerNativeMethods(without_class.env(), "a/Class", &method, 1), -1);

    for (const jint refused : {-1, -7}) {
        FakeJni without_method;
        without_method.register_result = refused;
        EXPECT_EQ(registerNativeMethods(without_method.env(), "a/Class", &method, 1), -1) << refused;
    }
}

struct ExpectedRow {
    std::string name;
    std::string signature;
    void* function;
};

void expect_table(const std::vector<JNINativeMethod>& table, const std::vector<ExpectedRow>& rows) {
    ASSERT_EQ(table.size(), rows.size());
    for (std::size_t i = 0; i < table.size(); ++i) {
        EXPECT_EQ(table[i].name, rows[i].name) << i;
        EXPECT_EQ(table[i].signature, rows[i].signature) << i;
        EXPECT_EQ(table[i].fnPtr, rows[i].function) << rows[i].name << rows[i].signature;
    }
}

#define ROW(NAME, SIGNATURE, FUNCTION)                                                                                 \
    ExpectedRow { NAME, SIGNATURE, reinterpret_cast<void*>(FUNCTION) }

TEST_F(Load, TheChannelListTableHasItsTwentyRowsInOrder) {
    FakeJni jni;
    ASSERT_EQ(register_com_velotra_tv_tavro_channellist_VltTvList(jni.env()), 1);
    const std::string channel = "L" + kPackage + "VltTvChannelInfoBase;";
    expect_table(
        jni.registered.at(0).methods,
        {
            ROW("nativeSetup", "()I", com_velotra_tv_tavro_ch_list_native_setup),
            ROW("native_clean", "(I)I", com_velotra_tv_tavro_channellist_clean),
            ROW("native_close", "(I)I", com_velotra_tv_tavro_channellist_close),
            ROW("native_delete", "(I)I", com_velotra_tv_tavro_channellist_delete),
            ROW("native_copy", "(II)I", com_velotra_tv_tavro_channellist_copy),
            ROW("native_getSvlInfo", "(Ljava/lang/String;)[B", com_velotra_tv_tavro_channellist_getSVLInfo),
            ROW("native_getSvlInfoList", "(I)[B", com_velotra_tv_tavro_channellist_getSVLInfoList),
            ROW("native_getInfoListByTransportStream", "(II)[B",
                com_velotra_tv_tavro_channellist_getInfoListByTransportStream),
            ROW("native_getInfoListByTransportStreamRecord", "(II)[B",
                com_velotra_tv_tavro_channellist_getInfoListByTransportStreamRecord),
            ROW("native_getInfoListByNetwork", "(II)[B", com_velotra_tv_tavro_channellist_getInfoListByNetwork),
            ROW("native_open", "(I)I", com_velotra_tv_tavro_channellist_open),
            ROW("native_open", "(ILjava/lang/String;)I", com_velotra_tv_tavro_channellist_open_path),
            ROW("native_store", "(ILjava/lang/String;)I", com_velotra_tv_tavro_channellist_store),
            ROW("native_updateInfo", "(I" + channel + ")I", com_velotra_tv_tavro_channellist_updateInfo),
            ROW("native_updateInfo", "(ILjava/lang/String;)I", com_velotra_tv_tavro_channellist_updateInfo_by_recId),
            ROW("native_updateInfoList", "(ILjava/util/List;)I", com_velotra_tv_tavro_channellist_updateInfoList),
            ROW("nativeAdd", "(I" + channel + ")Ljava/lang/String;", com_velotra_tv_tavro_channellist_add_Info),
            ROW("nativeAdd", "(ILjava/lang/String;)Ljava/lang/String;",
                com_velotra_tv_tavro_channellist_add_Info_by_recId),
            ROW("nativeRemove", "(Ljava/lang/String;)I", com_velotra_tv_tavro_channellist_remove_info),
            ROW("nativeRemoveByRecId", "(ILjava/lang/String;)I", com_velotra_tv_tavro_channellist_remove_Info_by_recId),
        });
}

TEST_F(Load, TheTransportStreamListTableHasItsEighteenRowsInOrder) {
    FakeJni jni;
    ASSERT_EQ(register_com_velotra_tv_tavro_channellist_VltTvList(jni.env()), 1);
    const std::string stream = "L" + kPackage + "VltTvTransportStreamInfoBase;";
    expect_table(
        jni.registered.at(1).methods,
        {
            ROW("nativeSetup", "()I", com_velotra_tv_tavro_ts_list_native_setup),
            ROW("native_clean", "(I)I", com_velotra_tv_tavro_transportstreamlist_clean),
            ROW("native_close", "(I)I", com_velotra_tv_tavro_transportstreamlist_close),
            ROW("native_delete", "(I)I", com_velotra_tv_tavro_transportstreamlist_delete),
            ROW("native_copy", "(II)I", com_velotra_tv_tavro_transportstreamlist_copy),
            ROW("native_getInfo", "(Ljava/lang/String;)[B", com_velotra_tv_tavro_transportstreamlist_getInfo),
            ROW("native_getInfoList", "(I)[B", com_velotra_tv_tavro_transportstreamlist_getInfoList),
            ROW("native_getInfoListBySatellite", "(II)[B",
                com_velotra_tv_tavro_transportstreamlist_getInfoListBySatellite),
            ROW("native_open", "(I)I", com_velotra_tv_tavro_transportstreamlist_open),
            ROW("native_open", "(ILjava/lang/String;)I", com_velotra_tv_tavro_transportstreamlist_open_path),
            ROW("native_store", "(ILjava/lang/String;)I", com_velotra_tv_tavro_transportstreamlist_store),
            ROW("native_updateInfo", "(I" + stream + ")I", com_velotra_tv_tavro_transportstreamlist_updateInfo),
            ROW("native_updateInfo", "(ILjava/lang/String;)I",
                com_velotra_tv_tavro_transportstreamlist_updateInfo_by_recId),
            ROW("native_updateInfoList", "(ILjava/util/List;)I",
                com_velotra_tv_tavro_transportstreamlist_updateInfoList),
            ROW("nativeAdd", "(I" + stream + ")Ljava/lang/String;", com_velotra_tv_tavro_transportstreamlist_add_Info),
            ROW("nativeAdd", "(ILjava/lang/String;)Ljava/lang/String;",
                com_velotra_tv_tavro_transportstreamlist_add_Info_by_recId),
            ROW("nativeRemove", "(Ljava/lang/String;)I", com_velotra_tv_tavro_transportstreamlist_remove_info),
            ROW("nativeRemoveByRecId", "(ILjava/lang/String;)I",
                com_velotra_tv_tavro_transportstreamlist_remove_info_by_recId),
        });
}

TEST_F(Load, TheNetworkListTableHasItsSeventeenRowsInOrder) {
    FakeJni jni;
    ASSERT_EQ(register_com_velotra_tv_tavro_channellist_VltTvList(jni.env()), 1);
    const std::string network = "L" + kPackage + "VltTvNetworkInfoBase;";
    expect_table(
        jni.registered.at(2).methods,
        {
            ROW("nativeSetup", "()I", com_velotra_tv_tavro_nw_list_native_setup),
            ROW("native_clean", "(I)I", com_velotra_tv_tavro_networklist_clean),
            ROW("native_close", "(I)I", com_velotra_tv_tavro_networklist_close),
            ROW("native_delete", "(I)I", com_velotra_tv_tavro_networklist_delete),
            ROW("native_copy", "(II)I", com_velotra_tv_tavro_networklist_copy),
            ROW("native_getInfo", "(Ljava/lang/String;Ljava/util/List;)L" + kPackage + "VltTvNetworkInfo;",
                com_velotra_tv_tavro_networklist_getInfo),
            ROW("native_getInfoList", "(ILjava/util/List;)Ljava/util/List;",
                com_velotra_tv_tavro_networklist_getInfoList),
            ROW("native_open", "(I)I", com_velotra_tv_tavro_networklist_open),
            ROW("native_open", "(ILjava/lang/String;)I", com_velotra_tv_tavro_networklist_open_path),
            ROW("native_store", "(ILjava/lang/String;)I", com_velotra_tv_tavro_networklist_store),
            ROW("native_updateInfo", "(I" + network + ")I", com_velotra_tv_tavro_networklist_updateInfo),
            ROW("native_updateInfo", "(ILjava/lang/String;)I", com_velotra_tv_tavro_networklist_updateInfo_by_recId),
            ROW("native_updateInfoList", "(ILjava/util/List;)I", com_velotra_tv_tavro_networklist_updateInfoList),
            ROW("nativeAdd", "(I" + network + ")Ljava/lang/String;", com_velotra_tv_tavro_networklist_add_Info),
            ROW("nativeAdd", "(ILjava/lang/String;)Ljava/lang/String;",
                com_velotra_tv_tavro_networklist_add_Info_by_recId),
            ROW("nativeRemove", "(Ljava/lang/String;)I", com_velotra_tv_tavro_networklist_remove_info),
            ROW("nativeRemoveByRecId", "(ILjava/lang/String;)I", com_velotra_tv_tavro_networklist_remove_info_by_recId),
        });
}

TEST_F(Load, TheSatelliteListTableHasItsSeventeenRowsInOrder) {
    FakeJni jni;
    ASSERT_EQ(register_com_velotra_tv_tavro_channellist_VltTvList(jni.env()), 1);
    const std::string satellite = "L" + kPackage + "VltTvSatelliteInfoBase;";
    expect_table(
        jni.registered.at(3).methods,
        {
            ROW("nativeSetup", "()I", com_velotra_tv_tavro_satellitelist_native_setup),
            ROW("nativeOpen", "(I)I", com_velotra_tv_tavro_satellitelist_open),
            ROW("nativeOpen", "(ILjava/lang/String;)I", com_velotra_tv_tavro_satellitelist_open_path),
            ROW("nativeClean", "(I)I", com_velotra_tv_tavro_satellitelist_clean),
            ROW("nativeClose", "(I)I", com_velotra_tv_tavro_satellitelist_close),
            ROW("nativeDelete", "(I)I", com_velotra_tv_tavro_satellitelist_delete),
            ROW("nativeCopy", "(II)I", com_velotra_tv_tavro_satellitelist_copy),
            ROW("nativeStore", "(ILjava/lang/String;)I", com_velotra_tv_tavro_satellitelist_store),
            ROW("nativeGetInfo", "(Ljava/lang/String;Ljava/util/List;)L" + kPackage + "VltTvSatelliteInfo;",
                com_velotra_tv_tavro_satellitelist_getInfo),
            ROW("nativeGetInfoList", "(ILjava/util/List;)Ljava/util/List;",
                com_velotra_tv_tavro_satellitelist_getInfoList),
            ROW("nativeUpdateInfo", "(" + satellite + ")I", com_velotra_tv_tavro_satellitelist_updateInfo),
            ROW("nativeUpdateInfo", "(ILjava/lang/String;)I", com_velotra_tv_tavro_satellitelist_updateInfo_by_recId),
            ROW("nativeUpdateInfoList", "(Ljava/util/List;)I", com_velotra_tv_tavro_satellitelist_updateInfoList),
            ROW("nativeAdd", "(I" + satellite + ")Ljava/lang/String;", com_velotra_tv_tavro_satellitelist_add_Info),
            ROW("nativeAdd", "(ILjava/lang/String;)Ljava/lang/String;",
                com_velotra_tv_tavro_satellitelist_add_Info_by_recId),
            ROW("nativeRemove", "(Ljava/lang/String;)I", com_velotra_tv_tavro_satellitelist_remove_info),
            ROW("nativeRemoveByRecId", "(ILjava/lang/String;)I",
                com_velotra_tv_tavro_satellitelist_remove_info_by_recId),
        });
}

#undef ROW

TEST_F(Load, SetUpTwiceReplacesTheManagerAndKeepsOpenLists) {
    FakeJni jni;
    const jint first = com_velotra_tv_tavro_ch_list_native_setup(jni.env(), nullptr);
    NativeVltTvChannelList* leaked = chList;
    ASSERT_NE(leaked, nullptr);
    ASSERT_EQ(chList->open(1), 0);
    const jint second = com_velotra_tv_tavro_ch_list_native_setup(jni.env(), nullptr);
    EXPECT_NE(chList, leaked);
    jni.clear_journal();
    EXPECT_EQ(chList->lockSvl(1), 0);
    EXPECT_EQ(jni.journal(), std::vector<std::string>{"x_svl_lock(0x10001)"});

    EXPECT_NE(first, 0);
    EXPECT_EQ(first, second);
    EXPECT_EQ(first, static_cast<jint>(reinterpret_cast<std::uintptr_t>(&chList)));

    delete leaked;
    delete chList;
    chList = nullptr;
}

TEST_F(Load, ASignatureThatDoesNotFitItsFunctionDoesNotCompile) {
    using Add = jint (*)(JNIEnv*, jobject, jint, jstring);
    constexpr Add add = nullptr;
    static_assert(tavro::fits(add, "(ILjava/lang/String;)I"));
    static_assert(!tavro::fits(add, "(I)I"), "arity");
    static_assert(!tavro::fits(add, "(ILjava/lang/String;I)I"), "arity");
    static_assert(!tavro::fits(add, "(Ljava/lang/String;I)I"), "order");
    static_assert(!tavro::fits(add, "(ILjava/util/List;)I"), "class");
    static_assert(!tavro::fits(add, "(ILjava/lang/String;)[B"), "result");
    static_assert(!tavro::fits(add, "(ILjava/lang/String;)II"), "trailing text");
    static_assert(!tavro::fits(add, "(ILjava/lang/String)I"), "unterminated class");
    using Get = jobject (*)(JNIEnv*, jobject, jstring, jobject);
    constexpr Get get = nullptr;
    static_assert(tavro::fits(get, "(Ljava/lang/String;Ljava/util/List;)Lcom/velotra/Info;"));
    static_assert(!tavro::fits(get, "(Ljava/lang/String;Ljava/lang/String;)Lcom/velotra/Info;"), "string is jstring");
    SUCCEED();
}

} // namespace
