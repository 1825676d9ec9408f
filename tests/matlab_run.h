/* Runs in matlab and octave with what they say. */
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "diagnose/message_table.h"
#include "support/observers.h"
#include "tests/translation.h"

namespace mtranslate {

/* A message, copied. */
struct NotedMessage {
    MessageId id;
    uint32_t line, column, offset, length;
    std::string text;
};

struct MatlabRun {
    std::optional<std::string> text;
    Texts errors; /* raised, however they left */
    std::vector<NotedMessage> messages;
    std::string misplaced; /* what is wrong with the place of a message; empty when nothing is */
};

struct RunOptions {
    const char *language = "matlab";
    const char *mode = "command";
    bool keep_going = true;
    Observers observers{}; /* more of them; the context is the MatlabRun */
};

MatlabRun run_matlab(StandInHost &host, const std::string &source, const RunOptions &options = {});
MatlabRun run_matlab(const std::string &source, const RunOptions &options = {});

}  // namespace mtranslate
