/* How reports put things, whatever their form. */
#pragma once

#include <array>
#include <cstddef>
#include <string>

#include "cli/messages/excerpt.h"
#include "cli/report/report.h"

namespace mtranslate {

inline constexpr std::array FILE_STATES{FileState::Translated, FileState::Gaps, FileState::Errors,
                                        FileState::Failed};

inline constexpr std::array CALL_ENDS{CallEnd::Found, CallEnd::Answered, CallEnd::BuiltIn,
                                      CallEnd::ClassOnly, CallEnd::Unresolved};

/* As in "calls answered by the host". */
const char *words_of(CallEnd end);
/* As in "files with gaps". */
const char *words_of(FileState state);
/* "MT204 eval"; for what has no code, "other". */
std::string name_of_message(const std::string &code);
/* Digits in groups of three: "1,234". */
std::string grouped(std::size_t number);
/* The number and what is counted, one or several. */
std::string counted(std::size_t number, const std::string &one, const std::string &several);

}  // namespace mtranslate
