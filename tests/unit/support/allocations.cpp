#include "allocations.h"

#include "in_platform.h"

#include <cstdlib>
#include <new>

namespace {

thread_local int made = 0;
thread_local int until_failure = 0; // 0: none fails
thread_local bool has_failed = false;

} // namespace

// The other forms of operator new call this one, as do the array forms below.
void* operator new(std::size_t size) {
    ++made;
    if (until_failure > 0 && !tavro::test::InPlatform::now() && --until_failure == 0) {
        has_failed = true;
        throw std::bad_alloc();
    }
    if (void* memory = std::malloc(size == 0 ? 1 : size)) {
        return memory;
    }
    throw std::bad_alloc();
}
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    try {
        return operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }

namespace tavro::test {

int allocations() { return made; }

FailingAllocation::FailingAllocation(int number) {
    until_failure = number;
    has_failed = false;
}
FailingAllocation::~FailingAllocation() { until_failure = 0; }

bool FailingAllocation::failed() { return has_failed; }

} // namespace tavro::test
