// Control of the scripted platform: sets what its functions return, and tells which calls were made.
//
// The scripted libraries have the platform's file names and are in lib/scripted of the build folder;
// LD_LIBRARY_PATH=.../lib/scripted selects them at load time. Tests link script_control and use these functions, which
// are thread-safe.
//
// A journal text contains the input arguments in order, without output parameters. Handles and masks are hexadecimal,
// other numbers decimal; strings are in double quotes; a record is `record` or `null`:
//
//     x_svl_add_rec(0x10001, record)
//     x_svl_get_rec_by_brdcst_type(0x10001, 0, 0xffffffff, 3)
//     log 3 TAG: TEXT              (`-` for a null tag; TEXT as written, including newlines)
//
// Calls that are not scripted succeed: open and create return the handle kind << 16 | list id (kind 1 svl, 2 tsl, 3
// nwl, 4 satl), qry_rec_id returns 1, everything else returns 0, and output records are not written.
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

// The reply to one call. Output values are written if the status is 0 or `value` is set; the record is always written.
struct Answer {
    tavro::MwStatus status = 0;
    std::optional<std::uint32_t> value{}; // handle, record id, count, channel id or index, depending on the call
    std::vector<std::byte> record{};      // first bytes of the output record; if empty, it is not written
    std::int32_t version = 0;             // list version
    std::array<std::uint32_t, 3> words{}; // output of fs_raw_qry_fpath
};

// One recorded call.
struct Entry {
    std::string text;
    std::vector<std::byte> record{}; // input of add_rec or update_rec; empty for other calls
};

// Clears the journal, replies, properties and observers, and stops recording property_get.
void reset();

// Queues the reply to one call of that name, such as "x_svl_open".
void answer(const std::string& call, Answer answer);

// Sets the reply to every call of that name for which none is queued.
void always(const std::string& call, Answer answer);

// The recorded calls in order, and only their texts.
std::vector<Entry> journal();
std::vector<std::string> lines();

// The handles that are open: given out by open and create, and not given back by close and delete. A handle occurs as
// often as it is open, in ascending order. reset() does not change them; forget_handles() begins anew.
std::vector<std::uint32_t> open_handles();
void forget_handles();

// Sets a property.
void set_property(const std::string& name, const std::string& value);

// Turns recording of property_get calls on or off: property_get("name", "default"). Initially off.
void journal_properties(bool on);

// Calls `observer` with each journal text, on the calling thread, before the recorded call returns. A test can use it
// to block a thread inside a call. Pass an empty function to stop.
void observe(std::function<void(const std::string& text)> observer);

// Calls `observer` with the status of each middleware call that fails, after the observer of its journal text.
void observe_failures(std::function<void(MwStatus status)> observer);

} // namespace tavro::script
