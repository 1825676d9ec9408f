/* make_pages FOLDER VERSION: writes the manual page and the completions of shells into the folder,
 * when the tool is built. */
#include <CLI/CLI.hpp>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "cli/options/argument_list.h"
#include "cli/options/completions.h"
#include "cli/options/man_page.h"
#include "cli/options/option_table.h"

namespace {

void write(const std::filesystem::path &path, const std::string &text) {
    std::ofstream file(path);
    file.exceptions(std::ios::failbit | std::ios::badbit);
    file << text << std::flush;
}

void make_pages(const std::filesystem::path &folder, const std::string &version) {
    mtranslate::Request request;
    const auto table = mtranslate::make_option_table(request);
    const mtranslate::CommandInfo tool = mtranslate::list_arguments(*table);
    write(folder / "mtranslate.1", man_page(tool, "mtranslate " + version));
    write(folder / "mtranslate.bash", bash_completion(tool));
    write(folder / "_mtranslate", zsh_completion(tool));
    write(folder / "mtranslate.fish", fish_completion(tool));
}

}  // namespace

int main(int argc, char **argv) {
    try {
        if (argc != 3) throw std::invalid_argument("usage: make_pages FOLDER VERSION");
        make_pages(argv[1], argv[2]);
        return 0;
    } catch (const std::exception &error) {
        std::cerr << "make_pages: " << error.what() << '\n';
        return 1;
    }
}
