/* In the place of a fuzzer's engine: runs the files, and the files of the folders, that are given.
 */
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

// The engine's name for what a fuzzer does with an input.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace {

void replay(const std::filesystem::path &path) {
    std::ifstream file(path, std::ios::binary);
    const std::string input{std::istreambuf_iterator<char>(file), {}};
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(input.data()), input.size());
}

}  // namespace

int main(int count, char **arguments) {
    for (int i = 1; i < count; ++i) {
        if (!std::filesystem::is_directory(arguments[i])) {
            replay(arguments[i]);
            continue;
        }
        for (const auto &entry : std::filesystem::recursive_directory_iterator(arguments[i]))
            if (entry.is_regular_file()) replay(entry.path());
    }
}
