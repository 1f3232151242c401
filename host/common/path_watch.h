// Notices that a path may lead to another file, or its file to other content, with one cheap system call.
#pragma once

#include <string>
#include <vector>

struct inotify_event;

namespace tavro::host {

// The kernel queues an inotify event within the system call that makes the change, and epoll sees the queue at
// once, so nothing depends on time. Watched are the file and every directory that leads to it: a rename or
// removal of any of them changes what the path means. /proc/self/mountinfo shows new mounts.
//
// Changes made through a shared mapping of the file are noticed when its writer closes it. Used by one thread at a
// time.
class PathWatch {
public:
    PathWatch() = default;
    ~PathWatch();
    PathWatch(const PathWatch&) = delete;
    PathWatch& operator=(const PathWatch&) = delete;

    // Watches `path` from now on; changes before the call are not reported. Returns false when the kernel cannot
    // report every change: the path is relative, leads over a symbolic link, names something other than a regular
    // file, or lies on a file system that another machine or an overlay may change, or inotify is not available. A
    // missing file can be watched.
    bool watch(const std::string& path);

    // Whether the last `watch` returned true.
    bool works() const { return works_; }

    // Whether something may have changed since the last `watch`. Stays true until the next `watch`.
    bool changed();

    // Gives everything up. After a fork the child calls it: it must not take events out of its parent's queue.
    void stop();

private:
    struct Place {
        int watch;
        std::string name; // of the next place in this directory; empty for the file itself
    };

    bool start();
    bool has_relevant_events() const;
    bool is_relevant(const inotify_event& event, const char* name) const;
    bool watch_places(const std::string& path, std::vector<Place>& places) const;

    int events_ = -1; // inotify
    int mounts_ = -1; // /proc/self/mountinfo
    int poll_ = -1;   // epoll of both
    bool works_ = false;
    bool changed_ = false;
    std::vector<Place> places_;
};

} // namespace tavro::host
