#include "control.h"

char tavro_memory_log_level = 0;
std::uint64_t tavro_memory_lines = 0;
void (*tavro_memory_journal)(const char* text) = nullptr;
