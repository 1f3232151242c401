// Starts the other processes of a check.
#pragma once

#include "conform/peer.h"

#include <memory>
#include <vector>

namespace tavro::conform {

class PeerStarter {
public:
    // Must be called before this process loads the platform.
    std::unique_ptr<Peer> start();

private:
    std::vector<int> files_; // pipes of earlier processes, which later ones close
};

} // namespace tavro::conform
