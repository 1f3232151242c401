// Control of the scripted platform: what its functions answer, and what was asked of them.
//
// The scripted libraries carry the platform's file names and stand in lib/scripted of the build
// folder; LD_LIBRARY_PATH=.../lib/scripted chooses them at load time. A test links script_control
// and drives them through these functions. All of them may be called from any thread.
//
// Journal texts hold the inputs in the prototype's order, out parameters left out: handles and masks
// in hexadecimal, other numbers in decimal, texts in double quotes, a record as `record` or `null`:
//
//     x_svl_add_rec(0x10001, record)
//     x_svl_get_rec_by_brdcst_type(0x10001, 0, 0xffffffff, 3)
//     log 3 TAG: TEXT              (`-` for a null tag; TEXT as it was written, newlines too)
//
// Without a script a call succeeds: open and create give the handle kind << 16 | list id (kind 1 svl,
// 2 tsl, 3 nwl, 4 satl), qry_rec_id gives 1, everything else gives 0, and records stay as they are.
#pragma once

#include "middleware/types.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tavro::script {

// What one call answers. Out values are written when the status is 0 or when `value` is named;
// the record is written whatever the status.
struct Answer {
    MwStatus status = 0;
    std::optional<std::uint32_t> value{}; // handle, record id, count, channel id or index, as the call has it
    std::vector<std::byte> record{};      // the out record's first bytes; empty leaves it alone
    std::int32_t version = 0;             // list version
    std::array<std::uint32_t, 3> words{}; // fs_raw_qry_fpath's description
};

// One call.
struct Entry {
    std::string text;
    std::vector<std::byte> record{}; // what add_rec or update_rec was given; empty otherwise
};

// Forgets journal, answers, properties and observer, and stops journalling properties.
void reset();

// Gives the next unanswered call of that name ("x_svl_open") this answer.
void answer(const std::string& call, Answer answer);

// Gives every call of that name this answer while none is queued for it.
void always(const std::string& call, Answer answer);

// The calls so far in their order, and their texts alone.
std::vector<Entry> journal();
std::vector<std::string> lines();

// Sets what property_get finds.
void set_property(const std::string& name, const std::string& value);

// Whether property_get is journalled: property_get("name", "default"). Off at first.
void journal_properties(bool on);

// Calls `observer` with each journal text, on the calling thread, after it was written and before the
// call answers. A test can hold a thread inside a call with it. An empty function ends it.
void observe(std::function<void(const std::string& text)> observer);

} // namespace tavro::script
