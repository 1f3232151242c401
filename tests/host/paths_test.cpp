// The storage directory, and the mapping of TV paths into it.
#include "common/paths.h"
#include "workspace.h"

using tavro::host::home_directory;
using tavro::host::is_platform_path;
using tavro::host::resolve_path;

namespace {

class Paths : public Workspace {};

} // namespace

TEST_F(Paths, OfThePlatformAreMovedBelowTheStorageDirectory) {
    environment.set("TAVRO_HOME", "/somewhere/home/");
    EXPECT_EQ(home_directory(), "/somewhere/home");
    EXPECT_EQ(resolve_path("/cache/a"), "/somewhere/home/cache/a");
    EXPECT_EQ(resolve_path("/data//b/../c"), "/somewhere/home/data/c");
    EXPECT_EQ(resolve_path("/mnt/vendor/d"), "/somewhere/home/mnt/vendor/d");
    EXPECT_EQ(resolve_path("/3rd"), "/somewhere/home/3rd");
}

TEST_F(Paths, OfTheUserStayAsTheyAre) {
    for (const char* path : {"/cachet/a", "/mnt/a", "cache/a", "/data/../tmp/a", "/somewhere/home/cache/a", "a"}) {
        EXPECT_EQ(resolve_path(path), path);
        EXPECT_FALSE(is_platform_path(path));
    }
}

TEST_F(Paths, BelowAStorageDirectoryOnAPlatformPathAreNotMovedAgain) {
    environment.set("TAVRO_HOME", "/data/home");
    EXPECT_EQ(resolve_path("/data/home/cache/a"), "/data/home/cache/a");
    EXPECT_EQ(resolve_path("/data/a"), "/data/home/data/a");
}
