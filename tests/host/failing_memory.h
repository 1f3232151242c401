// Lets memory run out in the calling thread.
#pragma once

// During its life, the allocations of this thread with `new` fail from the given one on: 0 is the first.
class FailingMemory {
public:
    explicit FailingMemory(int allocations_left);
    ~FailingMemory();
    FailingMemory(const FailingMemory&) = delete;
    FailingMemory& operator=(const FailingMemory&) = delete;

    // True if an allocation has failed.
    bool has_failed() const;
};
