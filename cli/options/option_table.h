/* The table of all arguments, read by CLI11. */
#pragma once

#include <memory>
#include <string>

#include "cli/report/report_output.h"
#include "cli/request/options.h"

namespace CLI {
class App;
}

namespace mtranslate {

/* The arguments of "mtranslate explain". */
struct Explain {
    std::string code; /* empty: all codes */
    bool whole_page = false;
};

/* All that can be asked for. */
struct Request {
    Options options;
    std::optional<Explain> explain; /* where that is asked for */
    std::optional<ReportMerge> report;
    bool library = false;
};

/* A parser whose parse fills the request, which must live as long. */
std::unique_ptr<CLI::App> make_option_table(Request &request);

}  // namespace mtranslate
