// Lets memory run out in the calling thread.
#pragma once

// During its life, an allocation of this thread with `new` fails: 0 is the first. With `later_too`, all later ones
// fail, too.
class FailingMemory {
public:
    explicit FailingMemory(int allocations_left, bool later_too = true);
    ~FailingMemory();
    FailingMemory(const FailingMemory&) = delete;
    FailingMemory& operator=(const FailingMemory&) = delete;

    // True if an allocation has failed.
    bool has_failed() const;

    // Counts an allocation. Returns true if it is to fail. For other functions that allocate.
    static bool next_fails();
};
