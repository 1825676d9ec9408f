/* Whole runs over arbitrary sources. The first byte of the input chooses between command and file
 * and how errors leave; each run must leave the next one as in a fresh process. */
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "host/stand_in_host.h"

namespace {

/* The name of a file in memory that holds the text. */
std::string file_of(std::string_view text) {
    static const int file = memfd_create("source", 0);
    if (ftruncate(file, 0) != 0 || pwrite(file, text.data(), text.size(), 0) < 0) std::abort();
    return "/proc/self/fd/" + std::to_string(file);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size) {
    using namespace mtranslate;
    if (size == 0) return 0;
    const std::string_view source(reinterpret_cast<const char *>(data) + 1, size - 1);
    const bool from_file = (data[0] & 1) != 0;
    static StandInHost host;
    static const ErrorExit exits[] = {ErrorExit::Throw, ErrorExit::Return, ErrorExit::Jump};
    host.leave_errors_by(exits[data[0] / 2 % 3]);
    try {
        host.translate(from_file ? "file" : "command", from_file ? file_of(source) : source);
    } catch (const HostError &) {
    }
    if (host.translate("command", "x=1") != "x := 1;\n") std::abort();
    host.take_errors();
    host.values().clear();
    return 0;
}
