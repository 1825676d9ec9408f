/* Which messages the user wants, and as what. */
#pragma once

#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "cli/messages/message_table.h"

namespace mtranslate {

/* A pattern that has no meaning; what() says why. */
class PolicyError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class MessagePolicy {
public:
    /* pattern: "no-CODE" leaves a message out, "CODE" takes it back in, "error=CODE" makes it an
     * error, "error" all warnings; a code or a short name. The last one about a message holds.
     * Throws PolicyError. */
    void add(std::string_view pattern);
    /* None for a message that is left out. */
    std::optional<MessageSeverity> severity_of(const MessageRow &row) const;

private:
    struct Treatment {
        bool is_out;
        MessageSeverity severity;
    };
    Treatment treatment_of(const MessageRow &row) const;

    std::map<const MessageRow *, Treatment> treatments_; /* that are not as the rows say */
};

/* What users may give as a pattern, by short names. */
std::vector<std::string> all_patterns();

}  // namespace mtranslate
