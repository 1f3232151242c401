// Counts the memory allocations of a test program, and makes one of the library fail.
#pragma once

namespace tavro::test {

// How many allocations this thread has made.
int allocations();

// Makes one allocation of the library on this thread fail: the one with that number, from 1 on. Allocations of the
// platform and of the fake Java environment do not count.
class FailingAllocation {
public:
    explicit FailingAllocation(int number);
    ~FailingAllocation();
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;

    // Whether it has failed.
    static bool failed();
};

} // namespace tavro::test
