/* Which messages the user wants, and as what. */
#pragma once

#include <array>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "cli/support/library.h"

namespace mtranslate {

/* A wish that cannot be met; what() says why. */
class PolicyError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class MessagePolicy {
public:
    MessagePolicy();
    /* wish: "no-CODE" leaves a message out, "CODE" takes it back in, "error=CODE" makes it an
     * error, "error" all warnings; a code or a short name. The last wish about a message holds.
     * Throws PolicyError. */
    void add(std::string_view wish);
    /* None for a message that is left out. */
    std::optional<MessageSeverity> severity_of(MessageId id) const;

private:
    struct Wish {
        bool is_out;
        MessageSeverity severity;
    };
    std::array<Wish, MESSAGE_COUNT> wishes_;
};

}  // namespace mtranslate
