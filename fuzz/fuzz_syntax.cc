/* The parser of MATLAB alone, over any bytes; the first one chooses the language. Every node and
 * every message lies in the source, every comment is in the tree once, and the tree can be printed.
 */
#include <cassert>
#include <cstring>
#include <set>
#include <string_view>

#include "diagnose/messages.h"
#include "driver/run.h"
#include "syntax/parse/parser.h"
#include "syntax/print_tree.h"
#include "syntax/scan/scanner.h"

namespace {

struct Seen {
    std::string_view source;
    std::set<uint32_t> comments;
};

void check_tree(Seen *seen, const Node *node) {
    assert(end_of(node) <= seen->source.size() && node->offset <= end_of(node));
    if (node->kind == NODE_COMMENT) {
        const bool is_new = seen->comments.insert(node->offset).second;
        assert(is_new);
    }
    for (const Node *child = first_child(node); child; child = child->next) {
        assert(child->kind != NODE_BAD || FirstFailure);
        check_tree(seen, child);
    }
}

void check_messages(std::string_view source) {
    int errors = 0;
    for (const Message *message = FirstMessage; message; message = message->next) {
        errors += is_failure(message->id);
        assert(message->offset + message->length <= source.size());
        assert(place_of(message).line >= 1 && place_of(message).column >= 1 && *message->text);
    }
    assert(errors <= MOST_ERRORS);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size) {
    if (size == 0) return 0;
    const std::string_view source(reinterpret_cast<const char *>(data) + 1, size - 1);
    char *text = new char[size];  // with nothing after its NUL
    std::memcpy(text, source.data(), source.size());
    text[source.size()] = '\0';
    begin_run();
    begin_messages();
    begin_syntax();
    const Node *file = parse_source(new_source(nullptr, text, static_cast<uint32_t>(source.size())),
                                    (data[0] & 1) != 0 ? LANGUAGE_OCTAVE : LANGUAGE_MATLAB);
    Seen seen = {source, {}};
    check_tree(&seen, file);
    assert(static_cast<int32_t>(seen.comments.size()) == Scan.comments_made);
    check_messages(source);
    assert(LengthString(print_tree(NewLongString(), file)) > 0);
    release_run();
    delete[] text;
    return 0;
}
