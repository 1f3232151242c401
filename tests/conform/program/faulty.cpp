// Preloaded before the platform's libraries: makes one of them misbehave in the way that TAVRO_FAULT names.
//
//   crash, abort, exit, hang   what the query of a network's record id does; before it hangs, it opens the FIFO that
//                              TAVRO_FAULT_FIFO names, if any
//   status                     that query returns -5
//   kept                       deleting a network list does nothing and returns 0
#include "middleware/nwl.h"

#include <csignal>
#include <cstdlib>
#include <dlfcn.h>
#include <fcntl.h>
#include <string>
#include <unistd.h>

using namespace tavro;

namespace {

std::string variable(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
}

// The middleware is loaded after this library, so RTLD_NEXT does not find it.
template <class Function>
Function* in_middleware(const char* name, Function*) {
    static void* const middleware = dlopen("libvelotra_tv_services.so", RTLD_NOW | RTLD_NOLOAD);
    return reinterpret_cast<Function*>(dlsym(middleware, name));
}

} // namespace

extern "C" {

MwStatus x_nwl_qry_rec_id(MwdbHandle handle, std::uint32_t query, std::uint16_t* record_id) {
    const std::string fault = variable("TAVRO_FAULT");
    if (fault == "crash") {
        raise(SIGSEGV);
    } else if (fault == "abort") {
        std::abort();
    } else if (fault == "exit") {
        std::exit(7);
    } else if (fault == "hang") {
        if (!variable("TAVRO_FAULT_FIFO").empty()) {
            close(open(variable("TAVRO_FAULT_FIFO").c_str(), O_WRONLY | O_CLOEXEC));
        }
        for (;;) {
            pause();
        }
    } else if (fault == "status") {
        return -5;
    }
    return in_middleware("x_nwl_qry_rec_id", &x_nwl_qry_rec_id)(handle, query, record_id);
}

MwStatus x_nwl_delete(MwdbHandle handle) {
    return variable("TAVRO_FAULT") == "kept" ? kMwOk : in_middleware("x_nwl_delete", &x_nwl_delete)(handle);
}
}
