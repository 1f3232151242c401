#include "conform/clean_up.h"

#include "conform/kinds.h"
#include "conform/runner.h"
#include "conform/shared.h"

namespace tavro::conform {
namespace {

// Opens a list; false if there is none.
template <class Kind>
bool find(std::size_t number, MwdbHandle& handle) {
    handle = 0;
    return Kind::open(own_list_id(number), 0, 0, &handle) == kMwOk && handle != 0;
}

template <class Kind>
void add_existing(const std::vector<std::size_t>& numbers, std::vector<std::size_t>& existing) {
    for (const std::size_t number : numbers) {
        MwdbHandle handle = 0;
        if (find<Kind>(number, handle)) {
            Kind::close(handle);
            existing.push_back(number);
        }
    }
}

template <class Kind>
void delete_lists() {
    std::atomic<std::uint32_t>& bits = shared_memory()->lists[kind_number(Kind::kName)];
    for (std::size_t number = 0; number < kOwnLists; ++number) {
        const std::uint32_t bit = 1U << number;
        if ((bits & bit) == 0) {
            continue;
        }
        MwdbHandle handle = 0;
        if (find<Kind>(number, handle)) {
            Kind::remove(handle);
        }
        // A status alone proves nothing: the next check needs the list to be gone.
        if (find<Kind>(number, handle)) {
            Kind::close(handle);
        } else {
            bits &= ~bit;
        }
    }
}

} // namespace

std::vector<std::size_t> existing_lists(const std::string& kind, const std::vector<std::size_t>& numbers) {
    std::vector<std::size_t> existing;
    if (kind == Svl::kName) {
        add_existing<Svl>(numbers, existing);
    } else if (kind == Tsl::kName) {
        add_existing<Tsl>(numbers, existing);
    } else if (kind == Nwl::kName) {
        add_existing<Nwl>(numbers, existing);
    } else {
        add_existing<Satl>(numbers, existing);
    }
    return existing;
}

void delete_own_lists() {
    delete_lists<Svl>();
    delete_lists<Tsl>();
    delete_lists<Nwl>();
    delete_lists<Satl>();
}

} // namespace tavro::conform
