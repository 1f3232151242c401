// The path that a scan list's cache is copied to is a fresh copy, not the memory that the calls before it were given.
// The scripted middleware records texts only, so this program defines three of its functions itself. They note the
// address of the path and pass the call on.
#include "channellist/NativeVltTvChannelList.h"
#include "middleware/files.h"
#include "scripted_test.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace tavro;

namespace {

struct SeenPath {
    std::string call;
    std::string text;
    const char* address;
};
std::vector<SeenPath> seen;

template <class Function>
Function* scripted(Function* /*same type*/, const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" {

MwStatus fs_raw_init(std::uint32_t drive, const char* path) {
    seen.push_back({__func__, path, path});
    return scripted(&fs_raw_init, __func__)(drive, path);
}

MwStatus fs_raw_copy(std::uint32_t from_drive, const char* from, std::uint32_t to_drive, const char* to) {
    seen.push_back({__func__, to, to});
    return scripted(&fs_raw_copy, __func__)(from_drive, from, to_drive, to);
}

MwStatus x_svl_fs_sync(MwdbHandle handle, std::uint32_t drive, const char* path, std::uint16_t list_id) {
    seen.push_back({__func__, path, path});
    return scripted(&x_svl_fs_sync, __func__)(handle, drive, path, list_id);
}

} // extern "C"

namespace {

namespace script = tavro::script;

class ScanCacheCopy : public tavro::test::ScriptedTest {
protected:
    ScanCacheCopy() { seen.clear(); }
};

TEST_F(ScanCacheCopy, PassesAFreshCopyOfThePath) {
    for (const std::string& path :
         {std::string("/scan_cable"), std::string("/data/") + std::string(200, 'x') + "/scan_cable.bin"}) {
        seen.clear();
        start_again();
        script::answer("x_svl_fs_sync", script::Answer{-12}); // not a list file: prepared, then seeded
        NativeVltTvChannelList manager;
        ASSERT_EQ(manager.open(5, path), 0);
        std::vector<const char*> earlier;
        const char* copied = nullptr;
        for (const SeenPath& one : seen) {
            if (one.text != path) {
                continue; // the cache's own path
            }
            if (one.call == "fs_raw_copy") {
                copied = one.address;
            } else {
                earlier.push_back(one.address);
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
