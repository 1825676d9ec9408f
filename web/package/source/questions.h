/* What a run asks of the page or program around the module. */
#pragma once

#include <mtranslate_program.h>

#include <optional>
#include <string>

#include "cli/files/file_index.h"
#include "cli/rules/rules_host.h"
#include "cli/run/known_results.h"

namespace mtranslate::web {

/* Which of the caller's functions there are. */
struct Asked {
    bool read = false;
    bool answer = false;
    bool find = false;
    bool result_kind = false;
};

/* The files of a tree, which are translated one after the other with the same rules. */
struct Tree {
    FileIndex index;
    KnownResults known{};
};

/* The functions of a request, and their context: they ask the caller first, then the rules and the
 * tree. */
class Questions {
public:
    /* All of it lives as long as this. tree: null for none. */
    Questions(Asked asked, RuleAnswers &rules, Tree *tree)
        : asked_(asked), rules_(rules), tree_(tree) {}
    Questions(const Questions &) = delete;
    Questions &operator=(const Questions &) = delete;

    void enter(mTranslateProgramRequest &request);

private:
    std::int32_t read(const char *name, const char **text, std::size_t *length);
    const char *answer(const mTranslateProgramQuestion &question);
    const char *find(const mTranslateProgramSearch &search);
    std::int32_t result_kind(const char *name);
    const char *recall(const char *path) const;
    void enter_tree(mTranslateProgramRequest &request) const;

    const Asked asked_;
    RuleAnswers &rules_;
    Tree *tree_;
    std::optional<std::string> text_; /* the last answer, until the library has copied it */
};

}  // namespace mtranslate::web
