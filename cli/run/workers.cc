/* Processes that take jobs, and the one that gives them out and never waits for a single one. */
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
#include <map>
#include <new>
#include <optional>
#include <sstream>
#include <utility>
#include <vector>

#include "cli/files/files.h"
#include "cli/run/job_socket.h"
#include "cli/support/processors.h"
#include "cli/support/signals.h"

namespace mtranslate {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int OUT_OF_MEMORY = 12;  // how a worker ends

[[noreturn]] void work(int socket, const Workers::Job &job) try {
    while (const auto number = receive_job(socket))
        if (!send_result(socket, job(static_cast<std::size_t>(*number)))) break;
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
    std::string trouble; /* why it was ended, where it did not end by itself */
    ResultInPieces result;
};

/* Also one that has been stopped hears it. */
void tell_to_end(const Worker &worker) {
    kill(worker.process, SIGTERM);
    kill(worker.process, SIGCONT);
}

/* Milliseconds for poll; 0 where the moment is over. */
int milliseconds_to(Clock::time_point moment) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(moment - Clock::now());
    return static_cast<int>(std::max<std::int64_t>(0, left.count() + 1));
}

/* One run of all jobs. */
class Round {
public:
    Round(std::size_t jobs, const Workers::Job &job, const Workers::Report &report, Limits limits,
          Programs programs)
        : jobs_(jobs), job_(job), report_(report), limits_(limits), programs_(programs) {
        const sigset_t ending = ending_signals();
        signals_ = Descriptor(signalfd(-1, &ending, SFD_CLOEXEC));
    }
    ~Round() { end_workers(); }
    Round(const Round &) = delete;
    Round &operator=(const Round &) = delete;

    int run(std::size_t count) {
        count_ = std::min(count, jobs_);
        add_workers();
        while (reported_ < jobs_)
            if (const int signal = wait()) return stop(signal);
        return 0;
    }

private:
    /* As many as there shall be, or as can be made now. */
    void add_workers() {
        while (workers_.size() < count_ && next_ < jobs_) {
            if (add_worker()) continue;
            if (workers_.empty()) fail("cannot make a worker");
            return;
        }
    }

    /* False, with errno, where none can be made. */
    bool add_worker() {
        int pair[2];
        if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, pair) != 0) return false;
        Descriptor here(pair[0]);
        const Descriptor there(pair[1]);
        const pid_t parent = getpid();
        const pid_t process = fork();
        if (process < 0) return false;
        if (process == 0) {
            here = Descriptor();  // else it would never see the end of its own socket
            begin_work(there.get(), parent);
        }
        workers_.emplace_back();
        workers_.back().process = process;
        workers_.back().socket = std::move(here);
        give_job(workers_.back());
        return true;
    }

    /* In the new process. */
    [[noreturn]] void begin_work(int socket, pid_t parent) {
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        if (getppid() != parent) _exit(0);  // it ended before it could be watched
        // A terminal tells all processes; the one that gives out the jobs ends the others.
        for (const int told : {SIGINT, SIGHUP}) std::signal(told, SIG_IGN);
        for (Worker &other : workers_) other.socket = Descriptor();
        release_signals();
        confine(programs_);
        if (limits_.megabytes > 0) limit_memory(limits_.megabytes);
        work(socket, job_);
    }

    /* One that cannot be told of its job is ended; where it has ended already, that shows next. */
    void give_job(Worker &worker) {
        worker.job.reset();
        if (next_ == jobs_) return;
        worker.job = next_++;
        worker.deadline = Clock::now() + limits_.time;
        if (send_job(worker.socket.get(), *worker.job)) return;
        if (errno != EPIPE && errno != ECONNRESET)
            worker.trouble = std::string("its process cannot be told of it: ") + strerror(errno);
        kill(worker.process, SIGKILL);
    }

    /* Up to the first deadline; -1 for none. */
    int patience() const {
        if (limits_.time.count() == 0) return -1;
        auto first = Clock::time_point::max();
        for (const Worker &worker : workers_)
            if (worker.job) first = std::min(first, worker.deadline);
        return milliseconds_to(first);
    }

    std::vector<pollfd> watched_sockets() const {
        std::vector<pollfd> watched;
        for (const Worker &worker : workers_)
            if (worker.job) watched.push_back({worker.socket.get(), POLLIN, 0});
        return watched;
    }

    /* Waits for what happens next; answers the number of a signal, or 0. */
    int wait() {
        std::vector<pollfd> watched = watched_sockets();
        watched.push_back({signals_.get(), POLLIN, 0});
        if (poll(watched.data(), watched.size(), patience()) < 0 && errno != EINTR)
            fail("cannot wait for a worker");
        if (watched.back().revents != 0) return take_signal();
        watched.pop_back();
        stop_late_ones();
        for (const pollfd &at : watched)
            if (at.revents != 0) hear(at.fd);
        report_ready();
        add_workers();
        return 0;
    }

    int take_signal() const {
        signalfd_siginfo signal;
        const bool is_known = read(signals_.get(), &signal, sizeof signal) == sizeof signal;
        return is_known ? static_cast<int>(signal.ssi_signo) : SIGTERM;
    }

    void stop_late_ones() {
        if (limits_.time.count() == 0) return;
        for (Worker &worker : workers_) {
            if (!worker.job || Clock::now() < worker.deadline) continue;
            if (worker.is_late)
                kill(worker.process, SIGKILL);
            else
                tell_to_end(worker);
            worker.is_late = true;
            worker.trouble = "it took longer than " + describe(limits_.time);
            worker.deadline = Clock::now() + GRACE;
        }
    }

    /* Reports what is done, also after a job that is not. */
    int stop(int signal) {
        end_workers();
        report_ready();
        for (const auto &[job, end] : ends_) report_(job, end);
        return signal;
    }

    /* Takes the results that are on their way, as long as the workers may need to end; whoever is
     * there after that is ended. */
    void end_workers() {
        for (const Worker &worker : workers_) tell_to_end(worker);
        const auto deadline = Clock::now() + GRACE;
        for (auto watched = watched_sockets(); !watched.empty(); watched = watched_sockets()) {
            const int count = poll(watched.data(), watched.size(), milliseconds_to(deadline));
            if (count == 0 || (count < 0 && errno != EINTR)) break;
            for (const pollfd &at : watched)
                if (at.revents != 0) hear_last(*worker_at(at.fd));
        }
        while (!workers_.empty()) bury(workers_.begin());
    }

    void hear_last(Worker &worker) {
        const auto state = worker.result.take(worker.socket.get());
        if (state == ResultInPieces::State::Awaited) return;
        if (state == ResultInPieces::State::Whole) note_result(worker);
        worker.job.reset();
    }

    std::vector<Worker>::iterator worker_at(int socket) {
        return std::find_if(workers_.begin(), workers_.end(),
                            [=](const Worker &w) { return w.socket.get() == socket; });
    }

    void note_result(Worker &worker) {
        ends_[worker.job.value()] = JobEnd{true, worker.result.release(), ""};
    }

    void hear(int socket) {
        const auto worker = worker_at(socket);
        const auto state = worker->result.take(socket);
        if (state == ResultInPieces::State::Awaited) return;
        if (!worker->is_late && state == ResultInPieces::State::Whole) {
            note_result(*worker);
            give_job(*worker);
        } else {
            if (state == ResultInPieces::State::Broken && errno != ECONNRESET)
                worker->trouble = std::string("its result cannot be read: ") + strerror(errno);
            const std::size_t job = worker->job.value();
            ends_[job] = JobEnd{false, "", bury(worker)};
        }
    }

    /* Takes a worker out that has ended or has nothing left to remove; answers why it ended. One
     * that waits for a job ends by itself where its socket does, and a profiler in it can write. */
    std::string bury(std::vector<Worker>::iterator worker) {
        int status = 0;
        if (worker->job) kill(worker->process, SIGKILL);
        worker->socket = Descriptor();
        waitpid(worker->process, &status, 0);
        const std::string trouble = worker->trouble;
        workers_.erase(worker);
        return trouble.empty() ? describe_end(status, limits_) : trouble;
    }

    void report_ready() {
        for (auto next = ends_.begin(); next != ends_.end() && next->first == reported_;
             next = ends_.erase(next))
            report_(reported_++, next->second);
    }

    const std::size_t jobs_;
    std::map<std::size_t, JobEnd> ends_; /* that wait for an earlier one */
    std::vector<Worker> workers_;
    const Workers::Job &job_;
    const Workers::Report &report_;
    Limits limits_;
    Programs programs_;
    Descriptor signals_;
    std::size_t count_ = 0;
    std::size_t next_ = 0;
    std::size_t reported_ = 0;
};

}  // namespace

Workers::Workers(std::size_t count, Limits limits, Programs programs)
    : count_(count > 0 ? count : processors()), limits_(limits), programs_(programs) {}

int Workers::run(std::size_t jobs, const Job &job, const Report &report) const {
    const HeldSignals held;
    return Round(jobs, job, report, limits_, programs_).run(count_);
}

}  // namespace mtranslate
