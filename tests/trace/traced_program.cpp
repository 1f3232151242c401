// A program without a virtual machine that the tests run with the tracer: traced_program SCENARIO.
#include "middleware/calls.h"

#include <android/log.h>
#include <cutils/properties.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

constexpr int kErrno = 77;

tavro::MwdbHandle opened(std::uint16_t list) {
    tavro::MwdbHandle handle = 0;
    if (x_svl_open(list, 0, 0, &handle) != 0) {
        x_svl_create("some list", list, tavro::kMwCreateMode, tavro::kMwCreateGrowth, 0, 0, &handle);
    }
    return handle;
}

_SVL_REC_T service() {
    _SVL_REC_T record{};
    record.ui2_svl_rec_id = 5;
    record.t_header.ui4_nw_mask = 0x20F;
    record.t_header.e_brdcst_type = tavro::kBroadcastDvb;
    std::strcpy(record.t_header.ac_name, "Arte \"HD\" \xC3\xBC");
    record.u_specific.t_dvb.ui2_lcn = 7;
    record.u_specific.t_dvb.aui2_code[1] = 9;
    record.u_specific.t_dvb.t_common.t_hd_simulcast.ui2_ts_id = 1051;
    return record;
}

// One record through its life.
void records() {
    const tavro::MwdbHandle handle = opened(3);
    _SVL_REC_T record = service();
    std::int32_t version = 0;
    x_svl_add_rec(handle, &record);
    x_svl_add_rec(handle, &record);
    x_svl_get_rec(handle, 5, &record, &version);
    record.u_specific.t_dvb.ui2_lcn = 8;
    record.t_header.ac_name[4] = '\0';
    record.t_header.ac_name[60] = 'x';
    record.t_header.aui1_reserved_101[0] = 1;
    record.t_header.aui1_reserved_101[1] = 1;
    record.t_header.aui1_reserved_101[9] = 1;
    x_svl_update_rec(handle, &record, 0);
    record.t_header.ac_name[60] = 'y'; // only what follows the NUL changes
    x_svl_update_rec(handle, &record, 0);
    record.t_header.e_brdcst_type = tavro::kBroadcastType3; // no view: its bytes have no names
    record.u_specific.t_dvb.ui2_lcn = 9;
    x_svl_update_rec(handle, &record, 0);
    x_svl_get_rec(opened(3), 5, &record, &version); // through another handle
    x_svl_get_rec(handle, 6, &record, &version);
    x_svl_get_rec(handle, 5, &record, nullptr);
    x_svl_del_rec(handle, 5);
    record = service();
    x_svl_add_rec(handle, &record);
    x_svl_clean(handle);
    x_svl_update_rec(handle, &record, 0);
    x_svl_close(handle);
}

// The other kinds, and calls without a list.
void others() {
    tavro::MwdbHandle handle = 0;
    std::uint16_t number = 0;
    std::int32_t version = 0;
    x_tsl_create("streams", 1, 1, 16, 0, 0, &handle);
    _TSL_REC_T stream{};
    stream.ui2_tsl_rec_id = 1;
    stream.e_bcst_medium = tavro::kMediumCable;
    stream.u_tuner.t_cab.ui4_sym_rate = 6900000;
    stream.at_alt_freq[1].ui4_freq = 474000;
    x_tsl_add_rec(handle, &stream);
    x_tsl_get_num_recs(handle, &number, &version);
    x_satl_create("satellites", 1, 1, 16, 0, 0, &handle);
    _SATL_REC_T satellite{};
    satellite.ui2_satl_rec_id = 1;
    satellite.i2_orb_pos = -50;
    satellite.t_diseqc_info.ui1_port = 255;
    x_satl_add_rec(handle, &satellite);
    x_nwl_open(9, 0, 0, nullptr);
    x_sb_gen_channel_id(1, 2, 3);
    x_sb_get_channel_index(0x40081);
    x_fm_delete_file(0, nullptr);
    fs_raw_copy(0, "/no\nfile", 0, "/none");
}

void logs() {
    __android_log_print(3, "Tag", "text %d\n\x1B[31m \xC2\x9B \xFF", 5);
    __android_log_print(6, nullptr, "no tag \\ \"quoted\"");
    tavro::MwdbHandle handle = 0;
    x_svl_open(1, 0, 0, &handle);
    if (::fork() == 0) {
        x_svl_open(1, 0, 0, &handle); // writes a log line: it may not be used in a fork
        ::_exit(0);
    }
    ::wait(nullptr);
    char value[PROPERTY_VALUE_MAX] = {};
    property_get("vendor.vlt.broadcast.log.level", value, "none");
}

void threads() {
    std::array<std::thread, 2> all;
    for (std::thread& thread : all) {
        thread = std::thread([] {
            for (int i = 0; i < 200; ++i) {
                x_sb_get_channel_index(0);
            }
        });
    }
    for (std::thread& thread : all) {
        thread.join();
    }
}

// The middleware crashes at an address that is none.
void crashes() {
    opened(1);
    x_svl_open(1, 0, 0, reinterpret_cast<tavro::MwdbHandle*>(1));
}

void is_killed() {
    x_sb_get_channel_index(1);
    std::raise(SIGKILL);
}

} // namespace

int main(int, char** arguments) {
    const std::string scenario = arguments[1];
    errno = kErrno;
    if (scenario == "errno") {
        x_sb_get_channel_index(0);
        x_sb_gen_channel_id(1, 2, 3);
        __android_log_print(3, "Tag", "text");
        std::printf("errno %d\n", errno);
    } else if (scenario == "records") {
        records();
    } else if (scenario == "others") {
        others();
    } else if (scenario == "logs") {
        logs();
    } else if (scenario == "threads") {
        threads();
    } else if (scenario == "crashes") {
        crashes();
    } else if (scenario == "is_killed") {
        is_killed();
    }
    return 0;
}
