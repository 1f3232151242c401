#include "failing_memory.h"

#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr int kEnough = std::numeric_limits<int>::max();

thread_local int left = kEnough;
thread_local bool all_later = false;
thread_local bool failed = false;

} // namespace

// The form for arrays calls this one.
void* operator new(std::size_t size) {
    void* const memory = FailingMemory::next_fails() ? nullptr : std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

FailingMemory::FailingMemory(int allocations_left, bool later_too) {
    left = allocations_left;
    all_later = later_too;
    failed = false;
}

FailingMemory::~FailingMemory() { left = kEnough; }

bool FailingMemory::has_failed() const { return failed; }

bool FailingMemory::next_fails() {
    if (left == kEnough) {
        return false;
    }
    if (left > 0) {
        --left;
        return false;
    }
    left = all_later ? 0 : kEnough;
    failed = true;
    return true;
}
