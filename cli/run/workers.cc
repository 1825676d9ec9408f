/* Processes, and the sockets over which they get jobs and give results: a number there, a length
 * and as many bytes back. */
#include "cli/run/workers.h"

#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/signalfd.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <new>
#include <optional>
#include <sstream>
#include <utility>
#include <vector>

#include "cli/files/files.h"
#include "cli/support/processors.h"
#include "cli/support/signals.h"

namespace mtranslate {

namespace {

using Clock = std::chrono::steady_clock;

/* All bytes, or false where the other side is gone. */
bool receive(int socket, void *to, std::size_t size) {
    for (auto *at = static_cast<char *>(to); size > 0;) {
        const ssize_t count = read(socket, at, size);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        at += count;
        size -= static_cast<std::size_t>(count);
    }
    return true;
}

bool send_all(int socket, const void *from, std::size_t size) {
    for (const auto *at = static_cast<const char *>(from); size > 0;) {
        const ssize_t count = write(socket, at, size);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        at += count;
        size -= static_cast<std::size_t>(count);
    }
    return true;
}

constexpr int OUT_OF_MEMORY = 12;  // how a worker ends

[[noreturn]] void work(int socket, const Workers::Job &job) try {
    std::uint64_t number;
    while (receive(socket, &number, sizeof number)) {
        const std::string result = job(static_cast<std::size_t>(number));
        const std::uint64_t size = result.size();
        if (!send_all(socket, &size, sizeof size) || !send_all(socket, result.data(), size)) break;
    }
    _exit(0);
} catch (const std::bad_alloc &) {
    _exit(OUT_OF_MEMORY);
}

/* Bytes of address space that this process has; 0 where that is not known. */
std::size_t address_space() {
    std::size_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    return pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

void limit_memory(std::size_t megabytes) {
    const std::size_t most = address_space() + (megabytes << 20);
    const rlimit limit{most, most};
    setrlimit(RLIMIT_AS, &limit);
}

/* "1 second", "0.5 seconds". */
std::string describe(std::chrono::milliseconds time) {
    std::ostringstream text;
    text << static_cast<double>(time.count()) / 1000
         << (time.count() == 1000 ? " second" : " seconds");
    return text.str();
}

std::string describe_end(int status, const Limits &limits) {
    if (WIFEXITED(status) && WEXITSTATUS(status) == OUT_OF_MEMORY)
        return limits.megabytes == 0
                   ? "system memory exhausted"
                   : "it needed more than " + std::to_string(limits.megabytes) + " MB of memory";
    if (WIFEXITED(status)) return "its process ended with " + std::to_string(WEXITSTATUS(status));
    const int signal = WTERMSIG(status);
    return "its process was ended by signal " + std::to_string(signal) + " (" + strsignal(signal) +
           ")";
}

/* For a worker that is told to end, to remove what it has not finished. */
constexpr std::chrono::seconds GRACE(1);

struct Worker {
    pid_t process = 0;
    Descriptor socket;
    std::optional<std::size_t> job;
    Clock::time_point deadline;
    bool is_late = false;
};

/* One run of all jobs. */
class Round {
public:
    Round(std::size_t jobs, const Workers::Job &job, const Workers::Report &report, Limits limits)
        : ends_(jobs), job_(job), report_(report), limits_(limits) {
        const sigset_t ending = ending_signals();
        signals_ = Descriptor(signalfd(-1, &ending, SFD_CLOEXEC));
    }
    ~Round() { end_workers(); }
    Round(const Round &) = delete;
    Round &operator=(const Round &) = delete;

    int run(std::size_t count) {
        while (workers_.size() < std::min(count, ends_.size())) add_worker();
        while (reported_ < ends_.size())
            if (const int signal = wait()) return stop(signal);
        return 0;
    }

private:
    void add_worker() {
        int pair[2];
        if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, pair) != 0)
            fail("cannot make a worker");
        Descriptor here(pair[0]);
        const Descriptor there(pair[1]);
        const pid_t process = fork();
        if (process < 0) fail("cannot make a worker");
        if (process == 0) begin_work(there.get());
        workers_.push_back({process, std::move(here), std::nullopt, {}, false});
        give_job(workers_.back());
    }

    /* In the new process. */
    [[noreturn]] void begin_work(int socket) {
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        // A terminal tells all processes; the one that gives out the jobs ends the others.
        for (const int told : {SIGINT, SIGHUP}) std::signal(told, SIG_IGN);
        for (Worker &other : workers_) other.socket = Descriptor();
        release_signals();
        if (limits_.megabytes > 0) limit_memory(limits_.megabytes);
        work(socket, job_);
    }

    void give_job(Worker &worker) {
        worker.job.reset();
        if (next_ == ends_.size()) return;
        const std::uint64_t number = next_;
        worker.job = next_++;
        worker.deadline = Clock::now() + limits_.time;
        send_all(worker.socket.get(), &number, sizeof number);  // its end shows when it is read
    }

    /* Milliseconds up to the first deadline; -1 for none. */
    int patience() const {
        if (limits_.time.count() == 0) return -1;
        auto first = Clock::time_point::max();
        for (const Worker &worker : workers_)
            if (worker.job) first = std::min(first, worker.deadline);
        const auto left = first - Clock::now();
        return static_cast<int>(std::max<std::int64_t>(
            0, std::chrono::duration_cast<std::chrono::milliseconds>(left).count() + 1));
    }

    /* Waits for what happens next; answers the number of a signal, or 0. */
    int wait() {
        std::vector<pollfd> watched{{signals_.get(), POLLIN, 0}};
        for (const Worker &worker : workers_)
            if (worker.job) watched.push_back({worker.socket.get(), POLLIN, 0});
        if (poll(watched.data(), watched.size(), patience()) < 0 && errno != EINTR)
            fail("cannot wait for a worker");
        if (watched[0].revents != 0) return take_signal();
        stop_late_ones();
        for (const pollfd &at : watched)
            if (at.revents != 0) hear(at.fd);
        return 0;
    }

    int take_signal() const {
        signalfd_siginfo signal;
        return receive(signals_.get(), &signal, sizeof signal) ? static_cast<int>(signal.ssi_signo)
                                                               : SIGTERM;
    }

    void stop_late_ones() {
        if (limits_.time.count() == 0) return;
        for (Worker &worker : workers_) {
            if (!worker.job || Clock::now() < worker.deadline) continue;
            kill(worker.process, worker.is_late ? SIGKILL : SIGTERM);
            worker.is_late = true;
            worker.deadline = Clock::now() + GRACE;
        }
    }

    /* Reports what is done, also after a job that is not. */
    int stop(int signal) {
        end_workers();
        report_ready();
        for (std::size_t i = reported_; i < ends_.size(); ++i)
            if (ends_[i]) report_(i, *ends_[i]);
        return signal;
    }

    /* Takes the results that are on their way. */
    void end_workers() {
        for (const Worker &worker : workers_) kill(worker.process, SIGTERM);
        for (const Worker &worker : workers_) {
            JobEnd end;
            if (worker.job && receive_result(worker, end)) ends_[*worker.job] = std::move(end);
            waitpid(worker.process, nullptr, 0);
        }
        workers_.clear();
    }

    static bool receive_result(const Worker &worker, JobEnd &end) {
        std::uint64_t size;
        if (!receive(worker.socket.get(), &size, sizeof size)) return false;
        end.result.resize(size);
        return end.is_done = receive(worker.socket.get(), end.result.data(), size);
    }

    void hear(int socket) {
        const auto worker = std::find_if(workers_.begin(), workers_.end(),
                                         [=](const Worker &w) { return w.socket.get() == socket; });
        const std::size_t job = worker->job.value();
        JobEnd end;
        if (!worker->is_late && receive_result(*worker, end))
            give_job(*worker);
        else
            end.trouble = bury(worker);
        ends_[job] = std::move(end);
        report_ready();
    }

    /* Takes a worker out that has ended, and lets another take its place; answers why. */
    std::string bury(std::vector<Worker>::iterator worker) {
        int status = 0;
        waitpid(worker->process, &status, 0);
        const bool is_late = worker->is_late;
        workers_.erase(worker);
        if (next_ < ends_.size()) add_worker();
        return is_late ? "it took longer than " + describe(limits_.time)
                       : describe_end(status, limits_);
    }

    void report_ready() {
        for (; reported_ < ends_.size() && ends_[reported_]; ++reported_) {
            report_(reported_, *ends_[reported_]);
            ends_[reported_] = JobEnd();
        }
    }

    std::vector<std::optional<JobEnd>> ends_;
    std::vector<Worker> workers_;
    const Workers::Job &job_;
    const Workers::Report &report_;
    Limits limits_;
    Descriptor signals_;
    std::size_t next_ = 0;
    std::size_t reported_ = 0;
};

}  // namespace

Workers::Workers(std::size_t count, Limits limits)
    : count_(count > 0 ? count : processors()), limits_(limits) {}

int Workers::run(std::size_t jobs, const Job &job, const Report &report) const {
    const HeldSignals held;
    return Round(jobs, job, report, limits_).run(count_);
}

}  // namespace mtranslate
