/* Stream sockets: a message may come in pieces. */
#include "cli/run/job_socket.h"

#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

namespace mtranslate {

namespace {

using Length = std::uint64_t;

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

}  // namespace

bool send_job(int socket, std::uint64_t number) {
    ssize_t count = 0;
    do count = send(socket, &number, sizeof number, MSG_DONTWAIT | MSG_NOSIGNAL);
    while (count < 0 && errno == EINTR);
    return count == sizeof number;
}

/* How much of the result is still to come; none before its length is known. */
std::optional<std::size_t> ResultInPieces::missing() const {
    Length length = 0;
    if (bytes_.size() < sizeof length) return std::nullopt;
    std::memcpy(&length, bytes_.data(), sizeof length);
    return length - (bytes_.size() - sizeof length);
}

ResultInPieces::State ResultInPieces::take(int socket) {
    std::array<char, 65536> block;
    while (missing() != 0) {
        const ssize_t count = recv(socket, block.data(), block.size(), MSG_DONTWAIT);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) return State::Awaited;
        if (count == 0) errno = ECONNRESET;
        if (count <= 0) return State::Broken;
        bytes_.append(block.data(), static_cast<std::size_t>(count));
    }
    return State::Whole;
}

std::string ResultInPieces::release() {
    std::string result = bytes_.substr(sizeof(Length));
    bytes_.clear();
    return result;
}

std::optional<std::uint64_t> receive_job(int socket) {
    std::uint64_t number = 0;
    std::size_t size = 0;
    while (size < sizeof number) {
        const ssize_t count =
            read(socket, reinterpret_cast<char *>(&number) + size, sizeof number - size);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return std::nullopt;
        size += static_cast<std::size_t>(count);
    }
    return number;
}

bool send_result(int socket, const std::string &result) {
    const Length length = result.size();
    return send_all(socket, &length, sizeof length) &&
           send_all(socket, result.data(), result.size());
}

}  // namespace mtranslate
