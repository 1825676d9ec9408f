/* What goes between the process that gives out jobs and its workers: a job's number there, a length
 * and as many bytes back. */
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace mtranslate {

/* In the process that gives them out, which must not wait for a worker: it may have been stopped.
 */

/* False, with errno, where the number cannot be sent. */
bool send_job(int socket, std::uint64_t number);

/* A result that comes in pieces. */
class ResultInPieces {
public:
    enum class State { Awaited, Whole, Broken };

    /* Takes what has come so far, and answers Broken where nothing more will come. */
    State take(int socket);
    /* Of a result that is whole; the next one begins. */
    std::string release();

private:
    std::optional<std::size_t> missing() const;

    std::string bytes_;
};

/* In a worker. */

/* The next job; none where there are no more. */
std::optional<std::uint64_t> receive_job(int socket);
/* False where nobody takes it any more. */
bool send_result(int socket, const std::string &result);

}  // namespace mtranslate
