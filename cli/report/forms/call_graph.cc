/* From the calls of files to a graph. */
#include "cli/report/forms/call_graph.h"

#include <set>
#include <sstream>

#include "cli/messages/excerpt.h"

namespace mtranslate {

namespace {

class Targets {
public:
    explicit Targets(const Report &report) : report_(report) {
        for (std::size_t i = 0; i < report.files.size(); ++i)
            files_[report.files[i].path] = static_cast<int>(i);
    }

    FunctionPlace target_of(const CallFact &call, int from) const {
        if (call.end != CallEnd::Found) return {};
        const auto found = files_.find(call.target);
        if (found == files_.end()) return {};
        return {found->second, function_in(found->second, from, call.name)};
    }

private:
    /* Of another file the first one, whatever it is called there. */
    int function_in(int file, int from, const std::string &name) const {
        const std::vector<FunctionFact> &functions = report_.files[file].facts.functions;
        if (file != from) return functions.empty() ? -1 : 0;
        for (std::size_t i = 0; i < functions.size(); ++i)
            if (functions[i].name == name) return static_cast<int>(i);
        return functions.empty() ? -1 : 0;
    }

    const Report &report_;
    std::map<std::string, int> files_;
};

/* The text in quotes. */
std::string quoted(const std::string &text) {
    std::string quoted = "\"";
    for (const char c : printable(text)) {
        if (c == '"' || c == '\\') quoted += '\\';
        quoted += c;
    }
    return quoted + '"';
}

class GraphWriter {
public:
    explicit GraphWriter(const Report &report) : report_(report), calls_(calls_of(report)) {
        for (const GraphCall &call : calls_)
            for (const FunctionPlace &place : {call.from, call.to})
                if (place.function < 0) scripts_.insert(place.file);
    }

    std::string text() {
        text_ << "digraph calls {\n"
                 "    rankdir=LR;\n"
                 "    node [shape=box, style=\"rounded,filled\", fillcolor=white];\n";
        for (std::size_t i = 0; i < report_.files.size(); ++i) write_file(static_cast<int>(i));
        write_names();
        write_calls();
        text_ << "}\n";
        return text_.str();
    }

private:
    static std::string id(const FunctionPlace &place) {
        const std::string file = std::string("f").append(std::to_string(place.file));
        return place.function < 0 ? file : file + '_' + std::to_string(place.function);
    }

    std::string id_of_target(const GraphCall &call) {
        if (call.to.file >= 0) return id(call.to);
        const auto key = std::pair(call.call->end, call.call->name);
        return 'n' + std::to_string(names_.try_emplace(key, names_.size()).first->second);
    }

    bool has_statements(int file) const {
        return report_.files[file].facts.functions.empty() || scripts_.contains(file);
    }

    void write_file(int file) {
        const ReportFile &of = report_.files[file];
        text_ << "    subgraph cluster_" << file << " {\n        label=" << quoted(of.path)
              << ";\n        style=rounded;\n";
        if (has_statements(file))
            text_ << "        f" << file << " [label=\"(statements)\", shape=plaintext];\n";
        for (std::size_t i = 0; i < of.facts.functions.size(); ++i)
            text_ << "        " << id({file, static_cast<int>(i)})
                  << " [label=" << quoted(of.facts.functions[i].name) << "];\n";
        text_ << "    }\n";
    }

    void write_names() {
        for (const GraphCall &call : calls_) id_of_target(call);
        for (const auto &[key, number] : names_) {
            const auto &[end, name] = key;
            text_ << "    n" << number << " [label=" << quoted(name) << look_of(end) << "];\n";
        }
    }

    static const char *look_of(CallEnd end) {
        switch (end) {
            case CallEnd::Unresolved:
                return ", style=\"filled,dashed\", fillcolor=mistyrose, color=firebrick";
            case CallEnd::ClassOnly:
                return ", style=\"filled,dashed\", fillcolor=lightcyan, color=steelblue";
            case CallEnd::Answered: return ", shape=ellipse, style=filled, fillcolor=honeydew";
            default: return ", style=\"filled\", fillcolor=lightgrey";
        }
    }

    void write_calls() {
        std::map<std::pair<std::string, std::string>, std::size_t> edges;
        for (const GraphCall &call : calls_)
            edges[{id(call.from), id_of_target(call)}] += call.call->count;
        for (const auto &[edge, count] : edges) {
            text_ << "    " << edge.first << " -> " << edge.second;
            if (count > 1) text_ << " [label=\"" << count << "\"]";
            text_ << ";\n";
        }
    }

    const Report &report_;
    std::vector<GraphCall> calls_;
    std::set<int> scripts_; /* files whose statements call or are called */
    std::map<std::pair<CallEnd, std::string>, std::size_t> names_;
    std::ostringstream text_;
};

}  // namespace

std::vector<GraphCall> calls_of(const Report &report) {
    const Targets targets(report);
    std::vector<GraphCall> calls;
    for (std::size_t i = 0; i < report.files.size(); ++i) {
        const int file = static_cast<int>(i);
        for (const CallFact &call : report.files[i].facts.calls)
            if (call.end != CallEnd::BuiltIn)
                calls.push_back({{file, call.in}, targets.target_of(call, file), &call});
    }
    return calls;
}

std::string graph_text(const Report &report) { return GraphWriter(report).text(); }

}  // namespace mtranslate
