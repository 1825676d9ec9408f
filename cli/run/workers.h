/* Worker processes, which take jobs one after another: the library translates one source at a time
 * in a process, and what a source does to its worker does not reach the others. */
#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "cli/request/limits.h"
#include "cli/run/confinement.h"

namespace mtranslate {

/* What became of a job. */
struct JobEnd {
    bool is_done = false;
    std::string result;  /* of a job that is done */
    std::string trouble; /* why one is not: how its worker ended */
};

class Workers {
public:
    /* job runs in a worker and answers a result. It may throw std::bad_alloc, and nothing else. */
    using Job = std::function<std::string(std::size_t)>;
    /* Told in this process of every job, in the order of the jobs. */
    using Report = std::function<void(std::size_t, const JobEnd &)>;

    /* count: of processes; 0 for one for each processor. The limits are for each job. programs:
     * whether jobs run other programs, which they cannot otherwise (confinement.h). */
    Workers(std::size_t count, Limits limits, Programs programs = Programs::NotRun);

    /* Runs the jobs 0 to jobs - 1. Answers 0, or the number of the signal that asked this process
     * to end: all jobs that were done have been reported, and no worker is left. Throws FileError
     * where no process can be made. */
    int run(std::size_t jobs, const Job &job, const Report &report) const;

private:
    std::size_t count_;
    Limits limits_;
    Programs programs_;
};

}  // namespace mtranslate
