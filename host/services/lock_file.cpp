#include "lock_file.h"

#include "common/open_file.h"
#include "lock_wait.h"
#include "status.h"
#include "storage_error.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
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

// The file has one entry per list number. The header takes the place of entries that no list uses. The file grows in
// blocks; one write per kPiece bytes, the smallest file system block, allocates the space.
constexpr std::size_t kFirstEntry = std::size_t{1} << 16;
constexpr std::size_t kEntries = std::size_t{5} << 16;
constexpr std::size_t kBlock = 4096;
constexpr std::size_t kPiece = 512;

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

} // namespace

// The first block.
struct LockFile::Header {
    std::uint64_t magic;
    std::uint64_t opener;                                     // process and thread that last opened the storage
    std::array<std::atomic<std::uint64_t>, kSlots> processes; // by slot
};

LockFile::LockFile(const std::string& path)
    : path_(path), file_(open_file(path.c_str(), O_RDWR | O_CREAT, kFileMode)),
      prepared_(kEntries * sizeof(Entry) / kBlock) {
    static_assert(sizeof(Entry) == 32 && offsetof(Entry, unused) == 24, "the file format is fixed");
    static_assert(sizeof(Header) <= kBlock, "the header must fit into the first block");
    static_assert(std::atomic<std::uint64_t>::is_always_lock_free, "a mutex would not work between processes");
    if (file_ < 0) {
        throw storage_failure("use", path, errno);
    }
    void* const memory = ::mmap(nullptr, kEntries * sizeof(Entry), PROT_READ | PROT_WRITE, MAP_SHARED, file_, 0);
    if (memory == MAP_FAILED) {
        const int error = errno;
        ::close(file_);
        throw storage_failure("use", path, error);
    }
    memory_ = memory;
}

LockFile::~LockFile() {
    ::munmap(memory_, kEntries * sizeof(Entry));
    ::close(file_); // releases the slot
}

LockFile::Header& LockFile::header() const { return *static_cast<Header*>(memory_); }

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
        std::this_thread::sleep_for(std::min<Clock::duration>(kProcessRetry, end - Clock::now()));
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

// A file without the magic number is new or of another version. It can be rewritten: no process is using it, because
// each one passes here first.
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
        const std::uint64_t nothing = 0;
        write(&nothing, sizeof nothing, end - sizeof nothing);
    }
    prepared_[block_of(list)] = true;
}

// Clears the bits of slots in an entry. The slots belong to this process or to dead ones.
void LockFile::clear_slots(Entry& entry, std::uint64_t slots) {
    std::uint64_t holders = entry.holders;
    while (!entry.holders.compare_exchange_weak(holders, without(holders, slots))) {
    }
    entry.waiting_writers &= ~slots;
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
            if (((entries()[i].holders | entries()[i].waiting_writers) & bit_of(slot)) != 0) {
                clear_slots(entries()[i], bit_of(slot));
            }
        }
        start = std::max(end, start + 1);
    }
}

// Takes a slot unless this process has one. Returns false if all are taken.
bool LockFile::take_slot() {
    for (int slot = 0; slot_ < 0 && slot < kSlots; ++slot) {
        if (try_byte(slot_byte(slot))) {
            clean_slot(slot);
            header().processes[static_cast<std::size_t>(slot)] = static_cast<std::uint64_t>(this_process());
            slot_ = slot;
        }
    }
    return slot_ >= 0;
}

bool LockFile::set(const ListKey& list, LockLevel level) {
    if (level == LockLevel::kNone) {
        if (is_prepared(list)) {
            clear_slots(entry_of(list), own_bit());
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

void LockFile::set_writer_waits(const ListKey& list, bool waits) {
    if (!is_prepared(list)) {
        return; // without a prepared block this process cannot get the lock
    }
    if (waits) {
        entry_of(list).waiting_writers |= own_bit();
    } else {
        entry_of(list).waiting_writers &= ~own_bit();
    }
}

bool LockFile::writer_waits_elsewhere(const ListKey& list) {
    if (!take_slot()) {
        return false;
    }
    prepare_block(list);
    Entry& entry = entry_of(list);
    std::uint64_t others = 0;
    do {
        others = entry.waiting_writers & ~own_bit();
    } while (others != 0 && clear_dead_slots(entry, others));
    return others != 0;
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
