#include "jni/bridges/record_filter.h"

#include "channellist/NativeVltTvNetworkList.h"
#include "channellist/NativeVltTvTransportStreamList.h"
#include "jni/bridges/managers.h"

using namespace tavro;

namespace {

// Reads the record that a service refers to, through a manager made for this one read. The read is tried even when
// opening fails.
template <class Manager>
bool read_companion(int list_id, int record_id, typename Manager::Record& record) {
    Manager manager;
    const std::string path = chList->getPath();
    if (path.empty()) {
        manager.open(list_id);
    } else {
        manager.open(list_id, path);
    }
    return manager.getInfo(list_id, record_id, &record) == kDone;
}

} // namespace

bool IsMatchCondition(int kind, int wanted, const _SVL_REC_T& service) {
    const _SVL_REC_HEADER_T& header = service.t_header;
    switch (kind) {
    case kMatchEvery:
        return true;
    case kMatchTransportStream: {
        _TSL_REC_T stream = {};
        return read_companion<NativeVltTvTransportStreamList>(header.ui2_tsl_id, header.ui2_tsl_rec_id, stream) &&
               stream.ui2_ts_id == wanted;
    }
    case kMatchNetwork: {
        _NWL_REC_T network = {};
        return read_companion<NativeVltTvNetworkList>(header.ui2_nwl_id, header.ui2_nwl_rec_id, network) &&
               network.ui2_nw_id == wanted;
    }
    default:
        return false;
    }
}
