// A test over the scripted platform. It starts and ends without a script and without open lists.
#pragma once

#include "channellist/NativeVltTvChannelList.h"
#include "channellist/NativeVltTvNetworkList.h"
#include "channellist/NativeVltTvSatelliteList.h"
#include "channellist/NativeVltTvTransportStreamList.h"
#include "script.h"

#include <gtest/gtest.h>

namespace tavro::test {

class ScriptedTest : public testing::Test {
protected:
    ScriptedTest() { start_again(); }
    ~ScriptedTest() override { start_again(); }

    // Forgets the script, the journal and every open list.
    static void start_again() {
        script::reset();
        forget_open_lists();
    }
    static void forget_open_lists() {
        for (tavro::HandleMap* map : {&tavro::SvlKind::handles(), &tavro::TslKind::handles(),
                                      &tavro::NwlKind::handles(), &tavro::SatlKind::handles()}) {
            map->clear();
        }
    }

    // Opens the log gate from a level on ("d"), or closes it ("").
    static void log_level(const char* level) { script::set_property("vendor.vlt.broadcast.log.level", level); }
};

} // namespace tavro::test
