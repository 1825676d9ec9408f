/* What there is to count in a source, and what has become of it in a run. */
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "cli/messages/run_files.h"

namespace mtranslate {

class FileIndex;

enum class CallEnd {
    Found,      /* a function or script of the same file or of another one */
    Answered,   /* the host has a form of it */
    BuiltIn,    /* the translator has one */
    Unresolved, /* the host gets the call as it is */
    ClassOnly   /* the same, where only classes have the function */
};

inline bool is_left_to_host(CallEnd end) {
    return end == CallEnd::Unresolved || end == CallEnd::ClassOnly;
}

/* A function of the source. */
struct FunctionFact {
    std::string name;
    std::size_t line = 0;
};

/* The calls of one name from one function that ended in the same way. */
struct CallFact {
    int in = -1; /* place of the function among those of the file; -1: the statements of a script */
    std::string name;
    CallEnd end = CallEnd::Unresolved;
    std::string target; /* where it is found: path of the file */
    std::size_t count = 0;
    std::size_t line = 0; /* of the first one */
    std::size_t column = 0;
};

/* Statements in which nothing is wrong but that the same functions are unresolved, or that only
 * classes have them. */
struct WaitingFact {
    std::vector<std::string> names; /* sorted */
    std::size_t statements = 0;
};

/* Of a run's own source; what it calls has facts of its own. */
struct FileFacts {
    std::size_t lines = 0;
    std::size_t bytes = 0;
    std::size_t statements = 0;
    /* Those with no error, gap or warning, in which no call is left to the host. */
    std::size_t without_message = 0;
    std::vector<WaitingFact> waiting;
    std::size_t comments = 0; /* each line of a block comment is one */
    std::size_t comments_kept = 0;
    std::vector<FunctionFact> functions; /* in source order, nested ones too */
    std::vector<CallFact> calls;         /* in the order of their first places */
};

/* Of a run that is done. index: of the run, or null for none. */
FileFacts facts_of(const mTranslateProgramResult &result, const RunFiles &files,
                   const FileIndex *index);

}  // namespace mtranslate
