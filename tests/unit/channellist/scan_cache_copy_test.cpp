// The path that a scan list's cache is copied to is a fresh copy, not the memory that the calls before it were given.
#include "channellist/NativeVltTvChannelList.h"
#include "platform_tap.h"
#include "scripted_test.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

namespace script = tavro::script;
using tavro::test::PlatformTap;
using tavro::test::TappedCall;

class ScanCacheCopy : public tavro::test::ScriptedTest {};

TEST_F(ScanCacheCopy, PassesAFreshCopyOfThePath) {
    for (const std::string& path :
         {std::string("/scan_cable"), std::string("/data/") + std::string(200, 'x') + "/scan_cable.bin"}) {
        start_again();
        script::answer("x_svl_fs_sync", script::Answer{-12}); // not a list file: prepared, then seeded
        NativeVltTvChannelList manager;
        PlatformTap tap;
        ASSERT_EQ(manager.open(5, path), 0);
        std::vector<const char*> earlier;
        const char* copied = nullptr;
        for (const TappedCall& call : tap.calls) {
            if (call.path_text != path) {
                continue; // no path, or the cache's own
            }
            if (call.name == "fs_raw_copy") {
                copied = call.path;
            } else {
                earlier.push_back(call.path);
            }
        }
        ASSERT_NE(copied, nullptr);
        ASSERT_EQ(earlier.size(), 2U); // loaded, prepared
        for (const char* address : earlier) {
            EXPECT_NE(copied, address);
        }
        EXPECT_NE(copied, path.c_str());
    }
}

} // namespace
