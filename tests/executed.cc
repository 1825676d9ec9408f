// Translations, executed under both readings of what the host shares.
#include "tests/executed.h"

#include "tests/execution/machine.h"
#include "tests/matlab_run.h"

namespace mtranslate {

namespace {

std::string left_by(const execution::HostProgram &program, execution::Sharing sharing) {
    std::string text;
    for (const auto &[name, value] : execution::variables_left_by(program, sharing))
        text.append(text.empty() ? "" : "; ").append(name).append(" = ").append(value);
    return text;
}

}  // namespace

std::string executed(const std::string &source) {
    const MatlabRun run = run_matlab(source);
    for (const NotedMessage &message : run.messages)
        if (message.id != UNKNOWN_FUNCTION) return "error: " + message.text;
    if (!run.text) return "error: no translation";
    try {
        const execution::HostProgram program = execution::read_host_text(*run.text);
        const std::string variables = left_by(program, execution::Sharing::VALUES);
        const std::string shared = left_by(program, execution::Sharing::REFERENCES);
        return variables == shared ? variables : "error: shared values differ: " + shared;
    } catch (const execution::ExecutionError &error) {
        return std::string("error: ") + error.what() + " in\n" + *run.text;
    }
}

std::string value_of(const std::string &variables, const std::string &name) {
    const std::string all = "; " + variables + "; ";
    const std::string start = "; " + name + " = ";
    const size_t at = all.find(start);
    if (at == std::string::npos) return "";
    return all.substr(at + start.size(), all.find("; ", at + 2) - at - start.size());
}

}  // namespace mtranslate
