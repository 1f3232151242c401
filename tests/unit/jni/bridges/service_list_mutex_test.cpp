// Which of the service list's natives wait for one another.

#include "every_native_test.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <gtest/gtest.h>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

using namespace tavro;

namespace script = tavro::script;
using tavro::test::FakeJni;

namespace {

// A native called on a list.
struct Call {
    const char* name;
    std::function<void(FakeJni&, jint list)> run;
};

jstring path(FakeJni& jni) { return FakeJni::string_ref(jni.string("/data/list")); }

const Call kSerialized[] = {
    {"open", [](FakeJni& jni, jint list) { com_velotra_tv_tavro_channellist_open(jni.env(), nullptr, list); }},
    {"open with a path",
     [](FakeJni& jni, jint list) { com_velotra_tv_tavro_channellist_open_path(jni.env(), nullptr, list, path(jni)); }},
    {"delete", [](FakeJni& jni, jint list) { com_velotra_tv_tavro_channellist_delete(jni.env(), nullptr, list); }},
};

const Call kFree[] = {
    {"close", [](FakeJni& jni, jint list) { com_velotra_tv_tavro_channellist_close(jni.env(), nullptr, list); }},
    {"clean", [](FakeJni& jni, jint list) { com_velotra_tv_tavro_channellist_clean(jni.env(), nullptr, list); }},
    {"copy", [](FakeJni& jni, jint list) { com_velotra_tv_tavro_channellist_copy(jni.env(), nullptr, list, list); }},
    {"store",
     [](FakeJni& jni, jint list) { com_velotra_tv_tavro_channellist_store(jni.env(), nullptr, list, path(jni)); }},
};

class ServiceListMutex : public tavro::test::EveryNativeTest {
protected:
    ServiceListMutex() { SvlKind::handles().insert(2, 0x10002); }

    // Runs `other` on list 3 while `holder` is held up inside its opening of list 1. Returns whether `other`
    // reached the middleware meanwhile; when it has to wait, that takes the whole grace.
    bool reaches_the_middleware(const Call& holder, const Call& other, std::chrono::milliseconds grace) {
        std::mutex mutex;
        std::condition_variable changed;
        bool held = false;
        bool released = false;
        bool reached = false;
        FakeJni holder_jni;
        FakeJni other_jni;
        script::observe([&](const std::string& text) {
            std::unique_lock<std::mutex> lock(mutex);
            if (text == "x_svl_open(1, 0, 0)") {
                held = true;
                changed.notify_all();
                changed.wait(lock, [&] { return released; });
            } else if (text == "x_svl_open(3, 0, 0)") {
                reached = true;
                changed.notify_all();
            }
        });
        std::thread first([&] { holder.run(holder_jni, 1); });
        std::unique_lock<std::mutex> lock(mutex);
        changed.wait(lock, [&] { return held; });
        std::thread second([&] { other.run(other_jni, 3); });
        const bool meanwhile = changed.wait_for(lock, grace, [&] { return reached; });
        if (meanwhile) {
            // The handle map is not guarded: `other` has to be through before `holder` goes on.
            lock.unlock();
            second.join();
            lock.lock();
        }
        released = true;
        changed.notify_all();
        lock.unlock();
        first.join();
        if (!meanwhile) {
            second.join();
        }
        script::observe({});
        EXPECT_TRUE(reached) << other.name << " behind " << holder.name;
        SvlKind::handles().clear();
        return meanwhile;
    }
};

TEST_F(ServiceListMutex, OpenOpenWithAPathAndDeleteWaitForOneAnother) {
    for (const Call& holder : kSerialized) {
        for (const Call& other : kSerialized) {
            EXPECT_FALSE(reaches_the_middleware(holder, other, std::chrono::milliseconds(50)))
                << other.name << " behind " << holder.name;
        }
    }
}

TEST_F(ServiceListMutex, CloseCleanCopyAndStoreWaitForNobody) {
    for (const Call& other : kFree) {
        EXPECT_TRUE(reaches_the_middleware(kSerialized[0], other, std::chrono::seconds(30))) << other.name;
    }
}

} // namespace
