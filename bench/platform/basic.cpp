#include "journal.h"
#include "middleware/files.h"

using namespace tavro;

using tavro::memory::journal;

MwStatus fs_raw_init(std::uint32_t, const char*) {
    journal(__func__);
    return kMwOk;
}
MwStatus fs_raw_qry_fpath(std::uint32_t, const char*, std::uint32_t*, std::uint32_t*, std::uint32_t*) {
    journal(__func__);
    return kMwNoFile;
}
MwStatus fs_raw_copy(std::uint32_t, const char*, std::uint32_t, const char*) {
    journal(__func__);
    return kMwOk;
}
MwStatus x_fm_delete_file(std::uint32_t, const char*) {
    journal(__func__);
    return kMwOk;
}
