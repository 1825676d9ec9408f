/* The library's kinds of messages. */
#pragma once

#include <mtranslate_program.h>

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace mtranslate {

enum MessageSeverity : std::uint8_t {
    SEVERITY_ERROR = MTRANSLATE_SEVERITY_ERROR,
    SEVERITY_GAP = MTRANSLATE_SEVERITY_GAP,
    SEVERITY_WARNING = MTRANSLATE_SEVERITY_WARNING,
    SEVERITY_NOTE = MTRANSLATE_SEVERITY_NOTE
};

using MessageRow = mTranslateMessageKind;

/* All of them, by their codes. */
std::span<const MessageRow *const> message_rows();
/* The row with the code or the name; null when there is none. */
inline const MessageRow *find_message(const std::string &code_or_name) {
    return mTranslateFindMessageKind(code_or_name.c_str());
}

inline MessageSeverity severity_of(const MessageRow &row) {
    return static_cast<MessageSeverity>(row.severity);
}
/* "error", "gap", "warning", "note". */
const char *severity_name(MessageSeverity severity);

/* The code of the message about a function that is found nowhere, or only in classes. */
inline constexpr std::string_view UNKNOWN_FUNCTION = "MT401";

}  // namespace mtranslate
