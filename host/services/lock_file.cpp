#include "lock_file.h"

#include "common/open_file.h"
#include "lock_wait.h"
#include "status.h"
#include "storage_error.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstring>
#include <fcntl.h>
#include <linux/futex.h>
#include <mutex>
#include <pthread.h>
#include <string_view>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

namespace tavro::host {
namespace {

constexpr mode_t kFileMode = 0644;

constexpr int kSlots = 63;
constexpr std::uint64_t kWriting = std::uint64_t{1} << kSlots;

// Bytes of the file that are locked with fcntl. Their content does not matter.
constexpr std::int64_t kOpeningByte = 0; // while a process opens the storage
constexpr std::int64_t slot_byte(int slot) { return 1 + slot; }

constexpr std::uint64_t kMagic = 0x0001'6B63'6F4C'7654; // "TvLock", version 1

// The file has one entry per list number. Header and queues take the place of entries that no list uses. The file grows
// in blocks; one write per kPiece bytes, the smallest file system block, allocates the space.
constexpr std::size_t kFirstEntry = std::size_t{1} << 16;
constexpr std::size_t kEntries = std::size_t{5} << 16;
constexpr std::size_t kBlock = 4096;
constexpr std::size_t kPiece = 512;
constexpr std::size_t kQueueBytes = kPiece;

// After this time without a sign of life, a process is examined whether it is suspended. In milliseconds.
constexpr std::uint64_t kLongestSilence = 100;

std::uint64_t milliseconds_now() {
    return static_cast<std::uint64_t>(
        std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now().time_since_epoch())
            .count());
}

constexpr std::uint64_t bit_of(int slot) { return std::uint64_t{1} << static_cast<unsigned>(slot); }

std::uint64_t pack(std::uint64_t process, std::uint64_t thread) { return process << 32 | thread; }
std::uint64_t process_of(std::uint64_t holder) { return holder >> 32; }

std::string describe(std::uint64_t holder) {
    return "thread " + std::to_string(holder & 0xFFFF'FFFF) + " of process " + std::to_string(process_of(holder));
}

pid_t this_process() {
    static const pid_t id = ::getpid();
    return id;
}

std::uint64_t this_holder() {
    return pack(static_cast<std::uint64_t>(this_process()), static_cast<std::uint64_t>(this_thread()));
}

// True if the process is stopped by a signal or by a debugger.
bool is_suspended(std::uint64_t process) {
    const int file = open_file(("/proc/" + std::to_string(process) + "/stat").c_str(), O_RDONLY);
    if (file < 0) {
        return false; // it may be in another process namespace
    }
    std::array<char, 128> text{}; // "PID (NAME) STATE ", where NAME has at most 64 bytes
    const ssize_t size = ::read(file, text.data(), text.size());
    ::close(file);
    const std::string_view stat(text.data(), static_cast<std::size_t>(std::max(size, ssize_t{0})));
    const std::size_t name_end = stat.rfind(')');
    return name_end != std::string_view::npos && name_end + 2 < stat.size() &&
           std::string_view("Tt").find(stat[name_end + 2]) != std::string_view::npos;
}

struct flock byte_range(short type, std::int64_t offset) {
    struct flock range {};
    range.l_type = type;
    range.l_whence = SEEK_SET;
    range.l_start = static_cast<off_t>(offset);
    range.l_len = 1;
    return range;
}

// Clears the bits of these slots in a holders word. The writing bit is cleared together with its holder.
std::uint64_t without(std::uint64_t holders, std::uint64_t slots) {
    return (holders & slots) == 0 ? holders : holders & ~slots & ~kWriting;
}

// The lock files of this process. A forked child would keep its parent's bytes locked, because it has a copy of the
// descriptor and of the mapping. So it gives up both, and has no locks.
class OpenFiles {
public:
    static OpenFiles& instance() {
        static OpenFiles& files = *new OpenFiles; // never destroyed: another thread may fork until exit
        return files;
    }
    // Opens and maps the file. Returns -1, with errno set, if either fails.
    int open(const std::string& path, std::size_t bytes, void*& memory) {
        std::lock_guard<std::mutex> guard(mutex_);
        files_.reserve(files_.size() + 1);
        const int file = open_file(path.c_str(), O_RDWR | O_CREAT, kFileMode);
        memory = file < 0 ? MAP_FAILED : ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
        if (memory != MAP_FAILED) {
            files_.push_back({file, memory, bytes});
            return file;
        }
        const int error = errno;
        if (file >= 0) {
            ::close(file);
        }
        errno = error;
        return -1;
    }
    void close(int file) {
        std::lock_guard<std::mutex> guard(mutex_);
        const auto found =
            std::find_if(files_.begin(), files_.end(), [&](const OpenFile& open) { return open.file == file; });
        if (found != files_.end()) { // not in a forked child
            ::munmap(found->memory, found->bytes);
            ::close(file);
            files_.erase(found);
        }
    }
    // True in a child of a process that has opened lock files.
    bool are_a_parents() const { return are_a_parents_; }

private:
    struct OpenFile {
        int file;
        void* memory;
        std::size_t bytes;
    };

    OpenFiles() { ::pthread_atfork(before_fork, after_fork, in_child); }
    static void before_fork() { instance().mutex_.lock(); }
    static void after_fork() { instance().mutex_.unlock(); }
    static void in_child() {
        for (const OpenFile& open : instance().files_) {
            ::close(open.file);
            static_cast<void>(::mmap(open.memory, open.bytes, PROT_READ | PROT_WRITE,
                                     MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0));
            instance().are_a_parents_ = true;
        }
        instance().files_.clear();
        instance().mutex_.unlock();
    }

    std::mutex mutex_;
    std::vector<OpenFile> files_;
    bool are_a_parents_ = false;
};

} // namespace

// The first block.
struct LockFile::Header {
    std::uint64_t magic;
    std::uint64_t opener;                                     // process and thread that last opened the storage
    std::array<std::atomic<std::uint64_t>, kSlots> processes; // by slot
    std::atomic<Ticket> last_ticket;
};

// What one process announces, in the blocks after the first one. Other processes may read it while it changes: then
// they queue in another order once.
struct LockFile::Queue {
    struct List {
        std::atomic<std::uint64_t> number; // 0 if the place is free
        std::atomic<Ticket> writer;
        std::atomic<Ticket> reader;
    };
    std::atomic<std::uint64_t> alive; // time of the last sign of life, in milliseconds
    std::array<List, 21> lists;       // in more lists, this process's threads wait without precedence
};

LockFile::LockFile(const std::string& path)
    : path_(path), prepared_(kEntries * sizeof(Entry) / kBlock),
      file_(OpenFiles::instance().open(path, kEntries * sizeof(Entry), memory_)) {
    static_assert(sizeof(Entry) == 32 && offsetof(Entry, unused) == 28, "the file format is fixed");
    static_assert(sizeof(Header) <= kBlock, "the header must fit into the first block");
    static_assert(sizeof(Queue) == kQueueBytes && kBlock + kSlots * kQueueBytes <= kFirstEntry * sizeof(Entry),
                  "the queues must fit in front of the entries");
    static_assert(sizeof(std::atomic<std::uint32_t>) == sizeof(std::uint32_t), "the kernel examines it");
    static_assert(std::atomic<std::uint64_t>::is_always_lock_free, "a mutex would not work between processes");
    if (file_ < 0) {
        throw storage_failure("use", path, errno);
    }
}

LockFile::~LockFile() { OpenFiles::instance().close(file_); } // releases the slot

LockFile::Header& LockFile::header() const { return *static_cast<Header*>(memory_); }

LockFile::Queue& LockFile::queue_of(int slot) const {
    return *reinterpret_cast<Queue*>(static_cast<char*>(memory_) + kBlock +
                                     static_cast<std::size_t>(slot) * kQueueBytes);
}

void LockFile::check_process() {
    if (OpenFiles::instance().are_a_parents()) {
        throw Failure(kHostStorageUnavailable, "process " + std::to_string(::getpid()) +
                                                   " is a fork of a process that uses lists, and cannot use them; "
                                                   "start a program in it (exec)");
    }
}

// Locks a byte for this process. Returns false if another process has locked it.
bool LockFile::try_byte(std::int64_t offset) {
    struct flock range = byte_range(F_WRLCK, offset);
    while (::fcntl(file_, F_OFD_SETLK, &range) != 0) {
        if (errno == EAGAIN || errno == EACCES) {
            return false;
        }
        if (errno != EINTR) {
            throw Failure(kHostStorageUnavailable, "cannot lock " + path_ + ": " + std::strerror(errno) +
                                                       "; set TAVRO_HOME to a directory on a local file system");
        }
    }
    return true;
}

void LockFile::free_byte(std::int64_t offset) {
    struct flock range = byte_range(F_UNLCK, offset);
    ::fcntl(file_, F_OFD_SETLK, &range);
}

void LockFile::begin_opening() {
    using Clock = std::chrono::steady_clock;
    const std::chrono::milliseconds timeout = lock_timeout();
    const Clock::time_point end = Clock::now() + timeout;
    while (!try_byte(kOpeningByte)) {
        if (Clock::now() >= end) {
            throw Failure(kHostLockTimeout, "timeout: thread " + std::to_string(this_thread()) + " waited " +
                                                std::to_string(timeout.count()) + " ms to open " + path_ + " while " +
                                                opener() +
                                                " was opening it; check whether that process is stopped, or raise "
                                                "TAVRO_LOCK_TIMEOUT_MS");
        }
        std::this_thread::sleep_for(std::min<Clock::duration>(kOpeningRetry, end - Clock::now()));
    }
    try {
        prepare_header();
    } catch (...) {
        end_opening();
        throw;
    }
}

void LockFile::end_opening() { free_byte(kOpeningByte); }

std::string LockFile::opener() const {
    std::array<std::uint64_t, 2> magic_and_opener{};
    const ssize_t size = ::pread(file_, magic_and_opener.data(), sizeof magic_and_opener, 0);
    return size == sizeof magic_and_opener && magic_and_opener[1] != 0 ? describe(magic_and_opener[1])
                                                                       : "another process";
}

// Writes to the file and throws if it cannot grow. Mapped memory is used only after such a write, because accessing a
// hole on a full file system raises SIGBUS.
void LockFile::write(const void* bytes, std::size_t count, std::size_t start) {
    const ssize_t size = ::pwrite(file_, bytes, count, static_cast<off_t>(start));
    if (size != static_cast<ssize_t>(count)) {
        throw storage_failure("use", path_, size < 0 ? errno : ENOSPC);
    }
}

// A file without the magic number is new or of another version. It can be rewritten: no process of this version is
// using it, because each one passes here first. Older versions must not be running.
//
// Older versions with this magic number left zeros where tickets, queues and `wakes` are now, so their files can be
// used.
void LockFile::prepare_header() {
    std::uint64_t magic = 0;
    std::array<std::uint64_t, kBlock / sizeof(std::uint64_t)> block{};
    const ssize_t size = ::pread(file_, &magic, sizeof magic, 0);
    if (size != sizeof magic || magic != kMagic) {
        if (::ftruncate(file_, 0) != 0) {
            throw storage_failure("use", path_, errno);
        }
        block[0] = kMagic;
        write(block.data(), kBlock, 0);
    }
    header().opener = this_holder();
}

std::uint64_t LockFile::own_bit() const { return slot_ < 0 ? 0 : bit_of(slot_); }

std::size_t LockFile::block_of(const ListKey& list) {
    return static_cast<std::size_t>(list.number()) * sizeof(Entry) / kBlock;
}

// Allocates the block of the list's entry. Other processes may be doing the same or using the block already: the write
// only touches `unused` members.
void LockFile::prepare_block(const ListKey& list) {
    if (is_prepared(list)) {
        return;
    }
    const std::size_t start = block_of(list) * kBlock;
    for (std::size_t end = start + kPiece; end <= start + kBlock; end += kPiece) {
        const std::uint32_t nothing = 0;
        write(&nothing, sizeof nothing, end - sizeof nothing);
    }
    prepared_[block_of(list)] = true;
}

// Ends the holds of slots in an entry. The slots belong to this process or to dead ones.
void LockFile::clear_holders(Entry& entry, std::uint64_t slots) {
    std::uint64_t holders = entry.holders;
    while (!entry.holders.compare_exchange_weak(holders, without(holders, slots))) {
    }
}

// Clears all bits of slots in an entry.
void LockFile::clear_slots(Entry& entry, std::uint64_t slots) {
    clear_holders(entry, slots);
    entry.waiting &= ~slots;
}

// Clears the bits of those `slots` whose processes are dead. Returns true if there were any. Keeps each slot locked
// meanwhile, so that no new process can take it and set the bits that are being cleared.
bool LockFile::clear_dead_slots(Entry& entry, std::uint64_t slots) {
    bool found = false;
    for (int slot = 0; slot < kSlots; ++slot) {
        if ((slots & bit_of(slot)) != 0 && try_byte(slot_byte(slot))) {
            clear_slots(entry, bit_of(slot));
            free_byte(slot_byte(slot));
            found = true;
        }
    }
    return found;
}

// Clears the bits that a dead process left for the slot that this process has just locked.
void LockFile::clean_slot(int slot) {
    off_t start = static_cast<off_t>(kFirstEntry * sizeof(Entry));
    while ((start = ::lseek(file_, start, SEEK_DATA)) >= 0) { // holes have never been used
        const off_t end = ::lseek(file_, start, SEEK_HOLE);
        const std::size_t end_entry =
            std::min(static_cast<std::size_t>(std::max(end, off_t{0})) / sizeof(Entry), kEntries);
        for (std::size_t i = static_cast<std::size_t>(start) / sizeof(Entry); i < end_entry; ++i) {
            if (((entries()[i].holders | entries()[i].waiting) & bit_of(slot)) != 0) {
                clear_slots(entries()[i], bit_of(slot));
            }
        }
        start = std::max(end, start + 1);
    }
}

// Takes a slot unless this process has one. Returns false if all are taken.
bool LockFile::take_slot() {
    for (int slot = 0; slot_ < 0 && slot < kSlots; ++slot) {
        if (!try_byte(slot_byte(slot))) {
            continue;
        }
        try {
            const std::array<std::byte, kQueueBytes> nobody{};
            write(nobody.data(), nobody.size(), kBlock + static_cast<std::size_t>(slot) * kQueueBytes);
        } catch (...) {
            free_byte(slot_byte(slot));
            throw;
        }
        clean_slot(slot);
        header().processes[static_cast<std::size_t>(slot)] = static_cast<std::uint64_t>(this_process());
        slot_ = slot;
    }
    return slot_ >= 0;
}

bool LockFile::set(const ListKey& list, LockLevel level) {
    if (level == LockLevel::kNone) {
        if (is_prepared(list)) {
            clear_holders(entry_of(list), own_bit());
        }
        return true;
    }
    if (!take_slot()) {
        return false;
    }
    prepare_block(list);
    Entry& entry = entry_of(list);
    for (std::uint64_t holders = entry.holders;;) {
        const std::uint64_t others = holders & ~own_bit() & ~kWriting;
        const bool writes = level == LockLevel::kWrite;
        if (others != 0 && (writes || (holders & kWriting) != 0)) {
            if (!clear_dead_slots(entry, others)) {
                return false;
            }
            holders = entry.holders;
        } else if (entry.holders.compare_exchange_weak(holders, writes ? own_bit() | kWriting
                                                                       : (holders & ~kWriting) | own_bit())) {
            entry.last_holder.store(this_holder(), std::memory_order_relaxed);
            return true;
        }
    }
}

LockFile::Ticket LockFile::draw_ticket() { return ++header().last_ticket; }

bool LockFile::announce(const ListKey& list, Ticket writer, Ticket reader) {
    if (!is_prepared(list)) {
        return false;
    }
    const bool nobody = writer == kNoTicket && reader == kNoTicket;
    if (nobody) {
        entry_of(list).waiting &= ~own_bit();
    }
    Queue& queue = queue_of(slot_);
    const auto place_of = [&](std::uint64_t number) {
        return std::find_if(queue.lists.begin(), queue.lists.end(),
                            [&](const Queue::List& place) { return place.number == number; });
    };
    const auto number = static_cast<std::uint64_t>(list.number());
    const auto taken = place_of(number);
    const auto place = taken != queue.lists.end() ? taken : place_of(0);
    if (place != queue.lists.end()) {
        place->writer = writer;
        place->reader = reader;
        place->number = nobody ? 0 : number;
    }
    if (!nobody) {
        show_life();
        entry_of(list).waiting |= own_bit();
    }
    return true;
}

void LockFile::show_life() {
    if (slot_ >= 0) {
        queue_of(slot_).alive = milliseconds_now();
    }
}

// True if that process announces a thread that must get the lock before the given ticket.
bool LockFile::announces_earlier(int slot, const ListKey& list, LockLevel level, Ticket ticket) const {
    const Queue& queue = queue_of(slot);
    const auto number = static_cast<std::uint64_t>(list.number());
    const bool earlier = std::any_of(queue.lists.begin(), queue.lists.end(), [&](const Queue::List& place) {
        return place.number == number &&
               (place.writer < ticket || (level == LockLevel::kWrite && place.reader < ticket));
    });
    const std::uint64_t alive = queue.alive; // read first, so that it is not later than now
    return earlier && !(milliseconds_now() - alive > kLongestSilence &&
                        is_suspended(header().processes[static_cast<std::size_t>(slot)]));
}

bool LockFile::is_preceded(const ListKey& list, LockLevel level, Ticket ticket) {
    if (!take_slot()) {
        return false;
    }
    prepare_block(list);
    Entry& entry = entry_of(list);
    const std::uint64_t others = entry.waiting & ~own_bit();
    for (int slot = 0; others >> static_cast<unsigned>(slot) != 0; ++slot) {
        if ((others & bit_of(slot)) != 0 && announces_earlier(slot, list, level, ticket) &&
            !clear_dead_slots(entry, bit_of(slot))) {
            return true;
        }
    }
    return false;
}

LockFile::Signal LockFile::signal(const ListKey& list) const {
    if (!is_prepared(list)) {
        return {nullptr, 0};
    }
    const std::atomic<std::uint32_t>& wakes = entry_of(list).wakes;
    return {&wakes, wakes};
}

void LockFile::await(const Signal& signal, std::chrono::milliseconds time) {
    if (signal.word == nullptr) {
        std::this_thread::sleep_for(time);
        return;
    }
    const struct { // the kernel's structure, in which both numbers have the width of a register
        long seconds;
        long nanoseconds;
    } timeout = {static_cast<long>(time.count() / 1000), static_cast<long>(time.count() % 1000 * 1'000'000)};
    ::syscall(SYS_futex, signal.word, FUTEX_WAIT, signal.seen, &timeout, nullptr, 0);
}

void LockFile::wake(const ListKey& list) {
    if (is_prepared(list) && entry_of(list).waiting != 0) {
        ++entry_of(list).wakes;
        ::syscall(SYS_futex, &entry_of(list).wakes, FUTEX_WAKE, INT_MAX, nullptr, nullptr, 0);
    }
}

std::string LockFile::describe_obstacle(const ListKey& list, LockLevel level) const {
    if (slot_ < 0) {
        return std::to_string(kSlots) + " other processes, the most that can use locks at once";
    }
    if (!is_prepared(list)) {
        return "another process";
    }
    const Entry& entry = entry_of(list);
    const std::uint64_t holders = entry.holders;
    const std::uint64_t others = holders & ~own_bit() & ~kWriting;
    const std::uint64_t last = entry.last_holder;
    if (level == LockLevel::kRead && (holders & kWriting) == 0) {
        return "a writer waiting in another process";
    }
    if (others == 0 && (entry.waiting & ~own_bit()) != 0) {
        return "a thread waiting in another process";
    }
    std::string text;
    for (int slot = 0; slot < kSlots; ++slot) {
        if ((others & bit_of(slot)) != 0) {
            const std::uint64_t process = header().processes[static_cast<std::size_t>(slot)];
            text += text.empty() ? "" : ", ";
            text += process == process_of(last) ? describe(last) : "process " + std::to_string(process);
        }
    }
    return text.empty() ? "another process" : text; // it has released the lock since
}

} // namespace tavro::host
