// The debug lines of the natives and conversions.
#pragma once

#include "jni/log/log_gate.h"

namespace tavro {

// These lines have no tag.
inline constexpr const char* kNoTag = nullptr;

} // namespace tavro

// Start of a debug line. A few lines differ by a blank; they spell their start out.
#define TAVRO_JNI_PREFIX "[jni_VltTvList_Init] "

// Writes a debug line without a tag: the prefix, then FORMAT (a literal) with its arguments.
#define TAVRO_LOG_JNI(...) TAVRO_LOG_DEBUG(tavro::kNoTag, TAVRO_JNI_PREFIX __VA_ARGS__)
