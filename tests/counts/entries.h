#pragma once

#include <string>

extern "C" {
unsigned int tavro_log_gate();
bool tavro_parse_record_id(const std::string& identifier, int& list_id, int& record_id);
}
