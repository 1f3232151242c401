// Locks of a list for the length of a scope.
#pragma once

namespace tavro {

// Takes a lock of the list `list_id` through its manager and gives it back at the end of the scope. The
// manager's answers count for nothing: what is done under the lock is done all the same.
template <class Manager, int (Manager::*Lock)(int), int (Manager::*Unlock)(int)>
class ListLock {
public:
    ListLock(Manager& manager, int list_id) : manager_(manager), list_id_(list_id) { (manager_.*Lock)(list_id_); }
    ~ListLock() {
        if (!left_locked_) {
            (manager_.*Unlock)(list_id_);
        }
    }
    ListLock(const ListLock&) = delete;
    ListLock& operator=(const ListLock&) = delete;

    // Leaves the list locked behind the scope.
    void leave_locked() { left_locked_ = true; }

private:
    Manager& manager_;
    int list_id_;
    bool left_locked_ = false;
};

} // namespace tavro
