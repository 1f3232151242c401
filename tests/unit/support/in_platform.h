// Distinguishes the library's work from the platform's.
#pragma once

namespace tavro::test {

// While one exists, the thread is in the platform: memory allocations are not the library's.
class InPlatform {
public:
    InPlatform() { ++depth; }
    ~InPlatform() { --depth; }
    InPlatform(const InPlatform&) = delete;
    InPlatform& operator=(const InPlatform&) = delete;

    static bool now() { return depth != 0; }

private:
    inline static thread_local int depth = 0;
};

} // namespace tavro::test
