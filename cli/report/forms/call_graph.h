/* Who calls whom, over the files of a report. */
#pragma once

#include <map>
#include <string>
#include <vector>

#include "cli/report/report.h"

namespace mtranslate {

/* A function of a file; function -1: the statements of a script. */
struct FunctionPlace {
    int file = -1; /* in the report; -1: none of it */
    int function = -1;
};

/* A call that the translator has no form of its own for. */
struct GraphCall {
    FunctionPlace from;
    FunctionPlace to; /* of no file: the name is all that is known */
    const CallFact *call;
};

/* The calls of all files, in their order. The report lives as long as they do. */
std::vector<GraphCall> calls_of(const Report &report);

/* The graph in the language of Graphviz: files as clusters of their functions, and names without a
 * file, which the host answers or which are unresolved. */
std::string graph_text(const Report &report);

}  // namespace mtranslate
