/* Where messages go. */
#pragma once

#include <cstddef>
#include <memory>
#include <sstream>

#include "cli/messages/diagnostic.h"
#include "cli/messages/message_writer.h"
#include "cli/request/options.h"

namespace mtranslate {

/* People read messages on standard error; other programs on standard output, unless a translation
 * or a difference goes there. */
/* Whether what goes to the stream, a descriptor, has colours. */
bool has_colours(ColourUse use, int stream);

class MessageOutput {
public:
    explicit MessageOutput(const Options &options);
    /* Writes what there is to tell about one run, up to the most errors that the options allow.
     * Throws FileError where standard output takes no more. */
    void write(const Diagnostics &diagnostics);
    /* Ends the output; to be called once. Throws FileError. */
    void finish();
    /* Whether nothing else should be written to standard error, as programs read messages there. */
    bool owns_standard_error() const { return !is_for_people_ && !is_standard_output_; }

private:
    Diagnostics up_to_most_errors(const Diagnostics &diagnostics);
    void flush();

    const bool is_for_people_;
    const bool is_standard_output_;
    const std::size_t most_errors_; /* 0: no limit */
    std::size_t errors_ = 0;        /* and gaps, written or not */
    std::ostringstream text_;
    std::unique_ptr<MessageWriter> writer_;
};

}  // namespace mtranslate
