#include "path_watch.h"

#include "open_file.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <sys/epoll.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>
#include <utility>

namespace tavro::host {
namespace {

constexpr std::uint32_t kDirectoryEvents =
    IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF | IN_ATTRIB;
constexpr std::uint32_t kFileEvents = IN_MODIFY | IN_CLOSE_WRITE | IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF;

// Local file systems, which only this kernel changes: ext2 to ext4, tmpfs, XFS, Btrfs, F2FS.
constexpr std::uint32_t kWatchableSystems[] = {0xEF53, 0x01021994, 0x58465342, 0x9123683E, 0xF2F52010};

bool is_watchable(const std::string& path) {
    struct statfs found {};
    return ::statfs(path.c_str(), &found) == 0 &&
           std::find(std::begin(kWatchableSystems), std::end(kWatchableSystems),
                     static_cast<std::uint32_t>(found.f_type)) != std::end(kWatchableSystems);
}

bool is_regular_file(const std::string& path) {
    struct stat found {};
    return ::lstat(path.c_str(), &found) == 0 && S_ISREG(found.st_mode);
}

void close_file(int& file) {
    if (file >= 0) {
        ::close(file);
        file = -1;
    }
}

} // namespace

PathWatch::~PathWatch() { stop(); }

void PathWatch::stop() {
    close_file(events_);
    close_file(mounts_);
    close_file(poll_);
    places_.clear();
    works_ = false;
}

bool PathWatch::start() {
    if (poll_ >= 0) {
        return true;
    }
    fill_standard_descriptors();
    events_ = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    mounts_ = open_file("/proc/self/mountinfo", O_RDONLY);
    poll_ = ::epoll_create1(EPOLL_CLOEXEC);
    epoll_event queued{};
    queued.events = EPOLLIN;
    epoll_event mounted{};
    mounted.events = EPOLLPRI;
    if (events_ < 0 || mounts_ < 0 || poll_ < 0 || ::epoll_ctl(poll_, EPOLL_CTL_ADD, events_, &queued) != 0 ||
        ::epoll_ctl(poll_, EPOLL_CTL_ADD, mounts_, &mounted) != 0) {
        stop();
        return false;
    }
    return true;
}

bool PathWatch::is_relevant(const inotify_event& event, const char* name) const {
    if ((event.mask & IN_Q_OVERFLOW) != 0) {
        return true;
    }
    return std::any_of(places_.begin(), places_.end(), [&](const Place& place) {
        return place.watch == event.wd && (event.len == 0 || place.name == name);
    });
}

// Empties the queue. Returns true if any event concerns the path.
bool PathWatch::has_relevant_events() const {
    alignas(inotify_event) std::array<char, 4096> buffer;
    bool relevant = false;
    for (ssize_t size = 0; (size = ::read(events_, buffer.data(), buffer.size())) > 0;) {
        for (ssize_t at = 0; at < size;) {
            inotify_event event{};
            std::memcpy(&event, buffer.data() + at, sizeof event);
            at += static_cast<ssize_t>(sizeof event);
            relevant = relevant || is_relevant(event, buffer.data() + at);
            at += event.len;
        }
    }
    return relevant || errno != EAGAIN;
}

bool PathWatch::changed() {
    if (changed_) {
        return true;
    }
    std::array<epoll_event, 2> ready{};
    const int count = ::epoll_wait(poll_, ready.data(), static_cast<int>(ready.size()), 0);
    if (count == 0) {
        return false;
    }
    const bool only_queued = count == 1 && (ready[0].events & EPOLLIN) != 0;
    changed_ = !only_queued || has_relevant_events();
    return changed_;
}

// Adds the watch on a directory before looking up the next name in it, so that no change in between is missed.
bool PathWatch::watch_places(const std::string& path, std::vector<Place>& places) const {
    std::size_t end = 0; // of the directory part
    while (end < path.size()) {
        const std::size_t start = path.find_first_not_of('/', end);
        if (start == std::string::npos) {
            return false; // the path ends with a slash
        }
        const std::string directory = path.substr(0, start);
        const std::size_t next = std::min(path.find('/', start), path.size());
        const int watch = ::inotify_add_watch(events_, directory.c_str(), kDirectoryEvents | IN_ONLYDIR);
        if (watch < 0) {
            return errno == ENOENT;
        }
        places.push_back({watch, path.substr(start, next - start)});
        if (!is_watchable(directory)) {
            return false;
        }
        struct stat found {};
        if (::lstat(path.substr(0, next).c_str(), &found) != 0) {
            return errno == ENOENT;
        }
        if (S_ISLNK(found.st_mode)) {
            return false;
        }
        end = next;
    }
    const int watch = ::inotify_add_watch(events_, path.c_str(), kFileEvents);
    if (watch < 0) {
        return errno == ENOENT;
    }
    places.push_back({watch, ""});
    return is_regular_file(path) && is_watchable(path);
}

bool PathWatch::watch(const std::string& path) {
    works_ = false;
    changed_ = false;
    if (path.empty() || path[0] != '/' || !start()) {
        return false;
    }
    std::array<epoll_event, 2> ready{};
    ::epoll_wait(poll_, ready.data(), static_cast<int>(ready.size()), 0); // consumes mount changes up to now
    has_relevant_events();
    std::vector<Place> places;
    works_ = watch_places(path, places);
    std::swap(places, places_);
    if (!works_) {
        places.insert(places.end(), places_.begin(), places_.end());
        places_.clear();
    }
    for (const Place& old : places) {
        const bool kept =
            std::any_of(places_.begin(), places_.end(), [&](const Place& place) { return place.watch == old.watch; });
        if (!kept) {
            ::inotify_rm_watch(events_, old.watch); // fails harmlessly if the file was deleted
        }
    }
    return works_;
}

} // namespace tavro::host
