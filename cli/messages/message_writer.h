/* Diagnostics, written as they come in one of several forms. */
#pragma once

#include <cstddef>
#include <iosfwd>
#include <memory>

#include "cli/messages/diagnostic.h"

namespace mtranslate {

enum class MessageFormat {
    Text,   /* as a compiler's, for people */
    Json,   /* JSON Lines, an object for each: docs/messages.schema.json */
    Sarif,  /* a SARIF 2.1.0 log */
    Github, /* workflow commands, which become annotations */
};

class MessageWriter {
public:
    virtual ~MessageWriter() = default;
    /* Writes what there is to tell about one run. */
    virtual void write(const Diagnostics &diagnostics) = 0;
    /* Ends the output; to be called once. */
    virtual void finish() {}
};

/* What a terminal shows besides text. */
struct TextStyle {
    bool has_colours = false;
    bool has_links = false; /* from codes to their explanations */
};

/* A writer to the stream, which lives as long as it; the style is for the text alone. */
std::unique_ptr<MessageWriter> make_message_writer(MessageFormat format, std::ostream &to,
                                                   TextStyle style);

/* The parts: one for each format. */
std::unique_ptr<MessageWriter> make_text_writer(std::ostream &to, TextStyle style);
std::unique_ptr<MessageWriter> make_json_writer(std::ostream &to);
std::unique_ptr<MessageWriter> make_sarif_writer(std::ostream &to);
std::unique_ptr<MessageWriter> make_github_writer(std::ostream &to);

}  // namespace mtranslate
