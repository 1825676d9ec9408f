// Runs in matlab and octave, and the places of their messages against the sources.
#include "tests/matlab_run.h"

#include "diagnose/messages.h"

namespace mtranslate {

namespace {

bool continues_character(char byte) { return (byte & 0xC0) == 0x80; }

/* Bytes of the well-formed character that begins with a byte beyond ASCII; 0 for none. */
size_t character_size(const std::string &source, size_t at) {
    const auto lead = static_cast<unsigned char>(source[at]);
    const size_t size = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC2 ? 2 : 0;
    for (size_t i = 1; i < size; i++)
        if (at + i >= source.size() || !continues_character(source[at + i])) return 0;
    return size;
}

bool is_inside_character(const std::string &source, size_t at) {
    size_t start = at;
    while (start > 0 && start < source.size() && continues_character(source[start])) start--;
    return start < at && start + character_size(source, start) > at;
}

/* The line and column of an offset, by counting. */
std::pair<uint32_t, uint32_t> counted_place(const std::string &source, size_t offset) {
    uint32_t line = 1;
    size_t start = 0;
    for (size_t at = 0; at < offset; at++) {
        const bool is_first_of_two = source[at] == '\r' && source[at + 1] == '\n';
        if ((source[at] != '\n' && source[at] != '\r') || is_first_of_two) continue;
        line++;
        start = at + 1;
    }
    return {line, offset - start + 1};
}

std::string place_error(const Message *message) {
    const std::string source(message->source->text, message->source->length);
    const size_t end = message->offset + message->length;
    if (end > source.size()) return "after the end";
    const auto [line, column] = counted_place(source, message->offset);
    const Position place = place_of(message);
    if (line != place.line || column != place.column)
        return "not at " + std::to_string(line) + ":" + std::to_string(column);
    if (is_inside_character(source, message->offset) || is_inside_character(source, end))
        return "inside a character";
    return "";
}

void note(void *context, const Message *message) {
    auto &run = *static_cast<MatlabRun *>(context);
    const Position place = place_of(message);
    run.messages.push_back(
        {message->id, place.line, place.column, message->offset, message->length, message->text});
    const std::string error = place_error(message);
    if (!error.empty())
        run.misplaced = std::string(message->text) + " at " + std::to_string(place.line) + ":" +
                        std::to_string(place.column) + " is " + error;
}

}  // namespace

MatlabRun run_matlab(StandInHost &host, const std::string &source, const RunOptions &options) {
    ValueStore &values = host.values();
    const HostValue equations[] = {
        values.equation(values.name("Language"), values.string(options.language)),
        values.equation(values.name("KeepGoing"), values.boolean(options.keep_going))};
    MatlabRun run;
    Observers observers = options.observers;
    observers.context = &run;
    observers.message = note;
    observe_next_run(observers);
    try {
        run.text = host.translate(options.mode, source, equations);
    } catch (const HostError &error) {
        run.errors = {error.what()};
    }
    const Texts others = host.take_errors();
    run.errors.insert(run.errors.end(), others.begin(), others.end());
    return run;
}

MatlabRun run_matlab(const std::string &source, const RunOptions &options) {
    StandInHost host;
    return run_matlab(host, source, options);
}

}  // namespace mtranslate
