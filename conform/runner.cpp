#include "conform/runner.h"

#include "conform/clean_up.h"
#include "conform/peer.h"
#include "conform/process.h"
#include "conform/starter.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <sys/mman.h>
#include <unistd.h>

namespace tavro::conform {
namespace {

constexpr int kDeleteAttempts = 3;

std::chrono::milliseconds timeout() { return std::chrono::milliseconds(settings().timeout_ms); }

Shared& map_shared_memory() {
    void* memory = mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) {
        throw std::bad_alloc();
    }
    return *new (memory) Shared();
}

// Body of a check's process.
void run_check(const Check& check) {
    PeerStarter starter;
    std::vector<std::unique_ptr<Peer>> peers;
    for (std::size_t i = 0; i < check.peers; ++i) {
        peers.push_back(starter.start());
    }
    load_platform();
    {
        Run run(std::move(peers));
        check.run(run);
    }
    shared_memory()->outcome = static_cast<std::int32_t>(Outcome::kPassed);
    delete_own_lists();
}

// How a process ended that should have gone on: "SIGSEGV in x_svl_open(1, 0, 0, out)".
std::string describe_end(const Ended& ended, const std::vector<std::string>& calls) {
    std::string text;
    switch (ended.how) {
    case Ended::How::kExited:
        text = "the process exited with code " + std::to_string(ended.number);
        break;
    case Ended::How::kSignal:
        text = signal_name(ended.number);
        break;
    case Ended::How::kTimeout:
        text = "no end within " + std::to_string(settings().timeout_ms / 1000) + " s";
        break;
    case Ended::How::kInterrupted:
        text = "interrupted";
        break;
    case Ended::How::kNotStarted:
        return std::string("the process could not be started: ") + std::strerror(ended.number);
    }
    constexpr char kUnreturned[] = " ...";
    if (!calls.empty()) {
        const std::string& last = calls.back();
        const std::size_t at = last.size() - std::strlen(kUnreturned);
        text += last.compare(at, std::string::npos, kUnreturned) == 0 ? " in " + last.substr(0, at) : " after " + last;
    }
    return text;
}

class Runner {
public:
    explicit Runner(const std::function<void(const Result&)>& report) : shared_(map_shared_memory()), report_(report) {
        shared_memory() = &shared_;
    }
    ~Runner() {
        shared_memory() = nullptr;
        munmap(&shared_, sizeof shared_);
    }
    Runner(const Runner&) = delete;
    Runner& operator=(const Runner&) = delete;

    // Finds out that none of the lists exists, or says why the checks cannot be run.
    Verdict look_for_lists(const std::vector<OwnLists>& lists) {
        for (const OwnLists& own : lists) {
            clear();
            const Ended ended = run_process(
                [&] {
                    load_platform();
                    const std::vector<std::size_t> existing = existing_lists(own.kind, own.numbers);
                    std::string ids;
                    for (const std::size_t number : existing) {
                        ids += (ids.empty() ? "" : ", ") + std::to_string(own_list_id(number));
                    }
                    end_check(existing.empty() ? Outcome::kPassed : Outcome::kFailed, "", ids);
                },
                timeout());
            if (ended.how == Ended::How::kInterrupted) {
                return {Verdict::How::kInterrupted, "", ended.number};
            }
            switch (outcome()) {
            case Outcome::kPassed:
            case Outcome::kSkipped: // a function is missing, so no check can use the lists
                break;
            case Outcome::kFailed:
                return {Verdict::How::kRefused,
                        std::string(own.kind) + " list " + shared_.found +
                            " exists already; choose ids that are free with --lists=FIRST, or delete it",
                        0};
            case Outcome::kUnfinished:
                return {Verdict::How::kRefused,
                        std::string("cannot find out which ") + own.kind +
                            " lists exist: " + describe_end(ended, noted_calls(shared_)),
                        0};
            }
        }
        return {};
    }

    Verdict run(const Check& check) {
        clear();
        const auto begin = std::chrono::steady_clock::now();
        const Ended ended = run_process([&] { run_check(check); }, timeout());
        const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
        Result result = {&check, outcome(), shared_.expected, shared_.found, noted_calls(shared_), seconds.count()};
        if (result.outcome == Outcome::kUnfinished) {
            result.outcome = Outcome::kFailed;
            result.expected = "the check runs to its end";
            result.found = describe_end(ended, result.calls);
        }
        for (const std::string& file : check.files) {
            unlink((settings().directory + "/" + file).c_str());
        }
        Verdict verdict = delete_lists();
        if (ended.how == Ended::How::kInterrupted) {
            return {Verdict::How::kInterrupted, "", ended.number};
        }
        report_(result);
        return verdict;
    }

private:
    Outcome outcome() const { return static_cast<Outcome>(shared_.outcome.load()); }

    void clear() { new (&shared_) Shared(); }

    // Deletes lists that the check has left, in a process that has not used them.
    Verdict delete_lists() {
        for (int attempt = 0; attempt < kDeleteAttempts && lists_left(); ++attempt) {
            run_process(
                [] {
                    load_platform();
                    delete_own_lists();
                },
                timeout());
        }
        if (!lists_left()) {
            return {};
        }
        std::string text;
        for (std::size_t kind = 0; kind < kKinds; ++kind) {
            for (std::size_t number = 0; number < kOwnLists; ++number) {
                if ((shared_.lists[kind] & (1U << number)) != 0) {
                    constexpr const char* kNames[kKinds] = {"svl", "tsl", "nwl", "satl"};
                    text += std::string(text.empty() ? "" : ", ") + kNames[kind] + " list " +
                            std::to_string(own_list_id(number));
                }
            }
        }
        return {Verdict::How::kStopped, "cannot delete what the check created: " + text, 0};
    }

    bool lists_left() const {
        for (const auto& bits : shared_.lists) {
            if (bits != 0) {
                return true;
            }
        }
        return false;
    }

    Shared& shared_;
    const std::function<void(const Result&)>& report_;
};

} // namespace

std::vector<OwnLists> own_lists(const std::vector<const Check*>& checks) {
    std::vector<OwnLists> lists;
    for (const char* kind : {"svl", "tsl", "nwl", "satl"}) {
        OwnLists own = {kind, {}};
        for (std::size_t number = 0; number < kOwnLists; ++number) {
            for (const Check* check : checks) {
                const bool uses = number == kHighestList ? check->uses_highest : number < check->lists;
                if (uses && (check->kind.empty() || check->kind == kind)) {
                    own.numbers.push_back(number);
                    break;
                }
            }
        }
        if (!own.numbers.empty()) {
            lists.push_back(own);
        }
    }
    return lists;
}

Verdict run_checks(const std::vector<const Check*>& checks, const std::string& directory,
                   const std::function<void(const Result&)>& report) {
    prepare_for_processes();
    Runner runner(report);
    Verdict verdict = runner.look_for_lists(own_lists(checks));
    if (verdict.how != Verdict::How::kComplete) {
        return verdict;
    }
    std::string own_directory = directory + "/tavro-conform.XXXXXX";
    if (mkdtemp(own_directory.data()) == nullptr) {
        return {Verdict::How::kRefused, "cannot make a directory below " + directory + ": " + std::strerror(errno), 0};
    }
    settings().directory = own_directory;
    for (std::size_t i = 0; i < checks.size() && verdict.how == Verdict::How::kComplete; ++i) {
        verdict = runner.run(*checks[i]);
    }
    rmdir(own_directory.c_str());
    return verdict;
}

} // namespace tavro::conform
