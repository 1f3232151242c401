#include "failing_memory.h"

#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr int kEnough = std::numeric_limits<int>::max();

thread_local int left = kEnough;
thread_local bool failed = false;

} // namespace

void* operator new(std::size_t size) {
    if (left == 0) {
        failed = true;
        throw std::bad_alloc();
    }
    left -= left == kEnough ? 0 : 1;
    if (void* const memory = std::malloc(size == 0 ? 1 : size)) {
        return memory;
    }
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

FailingMemory::FailingMemory(int allocations_left) {
    left = allocations_left;
    failed = false;
}

FailingMemory::~FailingMemory() { left = kEnough; }

bool FailingMemory::has_failed() const { return failed; }
