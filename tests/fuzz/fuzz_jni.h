// The fake JNI environment and the scripted platform of one run of a fuzz target.
#pragma once

#include "fake_jni.h"
#include "fuzz.h"
#include "script.h"

#include <gtest/gtest.h>

namespace tavro::fuzz {

struct Platform {
    // Opens the log gate for all lines if `logs`.
    explicit Platform(bool logs) {
        testing::GTEST_FLAG(break_on_failure) = true; // the fake environment checks references with EXPECT_EQ
        if (logs) {
            script::set_property("vendor.vlt.broadcast.log.level", "d");
        }
    }
    ~Platform() { script::reset(); }
    Platform(const Platform&) = delete;
    Platform& operator=(const Platform&) = delete;

    void require_allowed_calls() const {
        require(jni.forbidden_calls().empty(), "no JNI call is made while an exception is pending");
    }

    test::FakeJni jni;
};

} // namespace tavro::fuzz
