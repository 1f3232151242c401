#include "counting.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <valgrind/callgrind.h>

namespace {

bool library_runs = false;
int allocations = 0;

alignas(std::max_align_t) std::byte arena[std::size_t{32} << 20];
std::size_t used = 0;

} // namespace

namespace tavro::counts {

Running::Running(What what) : before_(library_runs) { library_runs = what == What::kLibrary; }
Running::~Running() { library_runs = before_; }

void count(const std::string& name, const std::function<void()>& operation) {
    operation();
    allocations = 0;
    CALLGRIND_ZERO_STATS;
    operation();
    CALLGRIND_DUMP_STATS_AT(name.c_str());
    std::printf("%s allocations %d\n", name.c_str(), allocations);
}

} // namespace tavro::counts

// The library's allocations come from an arena, so that their cost does not depend on earlier allocations.
void* operator new(std::size_t size) {
    constexpr std::size_t kAlignment = alignof(std::max_align_t);
    void* memory = nullptr;
    if (library_runs) {
        ++allocations;
        const std::size_t rounded = (size + kAlignment - 1) / kAlignment * kAlignment;
        memory = rounded <= sizeof(arena) - used ? arena + used : nullptr;
        used += rounded;
    } else {
        memory = std::malloc(size == 0 ? 1 : size);
    }
    if (memory == nullptr) {
        std::abort();
    }
    return memory;
}
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return operator new(size); }

void operator delete(void* memory) noexcept {
    if (memory < arena || memory >= arena + sizeof(arena)) {
        std::free(memory);
    }
}
void operator delete(void* memory, std::size_t) noexcept { operator delete(memory); }
void operator delete[](void* memory) noexcept { operator delete(memory); }
void operator delete[](void* memory, std::size_t) noexcept { operator delete(memory); }

// The library calls these instead of malloc and free, because it is linked with --wrap.
extern "C" {
void* __wrap_malloc(std::size_t size) { return operator new(size); }
void __wrap_free(void* memory) { operator delete(memory); }
}
