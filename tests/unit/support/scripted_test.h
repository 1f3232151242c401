// A test over the scripted platform, which starts and ends without a script.
#pragma once

#include "script.h"

#include <gtest/gtest.h>

namespace tavro::test {

class ScriptedTest : public testing::Test {
protected:
    ScriptedTest() { script::reset(); }
    ~ScriptedTest() override { script::reset(); }

    // Opens the log gate from a level on ("d"), or closes it ("").
    static void log_level(const char* level) { script::set_property("vendor.vlt.broadcast.log.level", level); }
};

} // namespace tavro::test
