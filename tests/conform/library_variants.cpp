// Platforms without a library or a function.
#include "hooks.h"

#include <cstring>

namespace tavro::broken {

void add_library_variants(Variants& variants) {
    constexpr const char* kLast[][2] = {{"libvelotra_tv_basic", "x_fm_delete_file"},
                                        {"libvelotra_tv_services", "x_satl_get_num_recs"},
                                        {"libvelotra_tv_svl_builder", "x_sb_get_channel_index"},
                                        {"libcutils", "property_get"},
                                        {"liblog", "__android_log_print"}};
    for (const auto& [library, function] : kLast) {
        const std::string file = std::string(library) + ".so";
        variants.push_back({std::string(library) + ".load",
                            [file] { Loader::hides_library = [file](const char* name) { return file == name; }; }});
        variants.push_back({std::string(library) + ".functions", [hidden = function] {
                                Loader::hides_function = [hidden](const char* name) {
                                    return std::strcmp(hidden, name) == 0;
                                };
                            }});
    }
}

} // namespace tavro::broken
