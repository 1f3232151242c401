// The scripted file functions.
#include "middleware/files.h"
#include "recorder.h"

using namespace tavro;

using tavro::script::Answer;
using tavro::script::ask;

extern "C" {

MwStatus fs_raw_init(std::uint32_t drive, const char* path) {
    return ask(__func__, drive, path).value_or(Answer{}).status;
}

MwStatus fs_raw_qry_fpath(std::uint32_t drive, const char* path, std::uint32_t* word1, std::uint32_t* word2,
                          std::uint32_t* word3) {
    const Answer answer = ask(__func__, drive, path).value_or(Answer{});
    std::uint32_t* const out[] = {word1, word2, word3};
    for (std::size_t i = 0; i < answer.words.size(); ++i) {
        if (out[i] != nullptr && answer.status == kMwOk) {
            *out[i] = answer.words[i];
        }
    }
    return answer.status;
}

MwStatus fs_raw_copy(std::uint32_t from_drive, const char* from, std::uint32_t to_drive, const char* to) {
    return ask(__func__, from_drive, from, to_drive, to).value_or(Answer{}).status;
}

MwStatus x_fm_delete_file(std::uint32_t drive, const char* path) {
    return ask(__func__, drive, path).value_or(Answer{}).status;
}
}
