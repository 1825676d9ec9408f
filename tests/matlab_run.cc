// Runs in matlab and octave, and the places of their messages against the sources.
#include "tests/matlab_run.h"

#include "diagnose/messages.h"

namespace mtranslate {

namespace {

MatlabRun *UnderWay;

bool is_inside_character(const std::string &source, size_t at) {
    return at < source.size() && (source[at] & 0xC0) == 0x80;
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
    if (end > source.size()) return "behind the end";
    const auto [line, column] = counted_place(source, message->offset);
    if (line != message->line || column != message->column)
        return "not at " + std::to_string(line) + ":" + std::to_string(column);
    if (is_inside_character(source, message->offset) || is_inside_character(source, end))
        return "inside a character";
    return "";
}

void note(const Message *message) {
    UnderWay->messages.push_back({message->id, message->line, message->column, message->offset,
                                  message->length, message->text});
    const std::string error = place_error(message);
    if (!error.empty())
        UnderWay->misplaced = std::string(message->text) + " at " + std::to_string(message->line) +
                              ":" + std::to_string(message->column) + " is " + error;
}

}  // namespace

MatlabRun run_matlab(StandInHost &host, const std::string &source, const RunOptions &options) {
    ValueStore &values = host.values();
    const HostValue equations[] = {
        values.equation(values.name("Language"), values.string(options.language)),
        values.equation(values.name("KeepGoing"), values.boolean(options.keep_going))};
    MatlabRun run;
    UnderWay = &run;
    Listener = note;
    try {
        run.text = host.translate(options.mode, source, equations);
    } catch (const HostError &error) {
        run.errors = {error.what()};
    }
    Listener = nullptr;
    const Texts others = host.take_errors();
    run.errors.insert(run.errors.end(), others.begin(), others.end());
    return run;
}

MatlabRun run_matlab(const std::string &source, const RunOptions &options) {
    StandInHost host;
    return run_matlab(host, source, options);
}

}  // namespace mtranslate
