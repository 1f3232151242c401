// Detects, with one cheap system call, that a path may name another file or that the file may have changed.
#pragma once

#include <string>
#include <vector>

struct inotify_event;

namespace tavro::host {

// The kernel queues the inotify event within the system call that makes the change, so there is no delay. The file
// and every directory on the path are watched, because renaming or removing any of them changes which file the path
// names. Polling /proc/self/mountinfo reports new mounts.
//
// Changes through a shared mapping are detected when the writer closes the file. Not thread-safe.
class PathWatch {
public:
    PathWatch() = default;
    ~PathWatch();
    PathWatch(const PathWatch&) = delete;
    PathWatch& operator=(const PathWatch&) = delete;

    // Watches `path`; changes before the call are not reported. The file need not exist. Returns false when the kernel
    // cannot report every change: the path is relative, contains a symbolic link, names something other than a regular
    // file or lies on a network or overlay file system, or inotify is not available.
    bool watch(const std::string& path);

    // True if the last `watch` returned true.
    bool works() const { return works_; }

    // True if something may have changed since the last `watch`. Stays true until the next `watch`.
    bool changed();

    // Ends the watch. A forked child must call it, because it would take events out of its parent's queue.
    void stop();

private:
    struct Place {
        int watch;
        std::string name; // next path component in this directory; empty for the file itself
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
