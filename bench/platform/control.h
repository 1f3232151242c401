// Control of the memory platform: the third set of the platform's libraries, with minimal cost per call.
//
// The libraries have the platform's file names and are in lib/memory of the build folder. A program that is linked to
// them runs the channel list library over them. Lists are plain arrays in memory. There are no locks and no files; log
// lines are only counted, and the only property is the log level below. Not thread-safe.
#pragma once

#include <cstdint>

extern "C" {
// First letter of the log level property's value; 0 if the property is not set.
extern char tavro_memory_log_level;

// Number of log lines so far.
extern std::uint64_t tavro_memory_lines;

// If not null, called with a text for every platform call: the arguments, the bytes of input records, and the text of
// log lines.
extern void (*tavro_memory_journal)(const char* text);

// Fills list `list_id` (below 256) of a kind (1 svl, 2 tsl, 3 nwl, 4 satl) with `count` copies of `record`, with record
// ids 1 to `count`.
void tavro_memory_fill(int kind, int list_id, int count, const void* record);

// The record at a position. The caller may change everything except its id.
void* tavro_memory_record(int kind, int list_id, int position);

// Removes all records after the first `count`.
void tavro_memory_truncate(int kind, int list_id, int count);

// Number of records in the list.
int tavro_memory_count(int kind, int list_id);
}
