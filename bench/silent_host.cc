#include "silent_host.h"

#include <cstring>
#include <stdexcept>

namespace bench {
namespace {

// The values: texts are told apart by their addresses, all else is one sequence.
constexpr size_t LONGEST_SEQUENCE = 1 << 16;
HostValue Mode[1];
HostValue Source[1];
HostValue LanguageName[] = {HostValue{HOST_TYPE_NAME} << HOST_TYPE_SHIFT};
HostValue Language[1];
HostValue LanguageOption[] = {HostValue{HOST_TYPE_EQUATION} << HOST_TYPE_SHIFT, 0, 0};
HostValue Arguments[4];
HostValue Scratch[LONGEST_SEQUENCE];
const char *ModeText;
const char *SourceText_;
const char *LanguageText;
int ArgumentCount;
size_t ResultLength;

HostValue address_of(HostValue *object) { return reinterpret_cast<HostValue>(object); }

const char *text_of(HostValue value) {
    if (value == address_of(Mode)) return ModeText;
    if (value == address_of(Source)) return SourceText_;
    return value == address_of(Language) ? LanguageText : "Language";
}

[[noreturn]] HostValue raise_error(const char *message, HostValue) {
    throw std::runtime_error(message);
}

HostValue new_sequence(int count) {
    if (static_cast<size_t>(count) >= LONGEST_SEQUENCE) throw std::runtime_error("too many");
    return address_of(Scratch);
}

HostValue to_host_string(const char *text) {
    ResultLength = std::strlen(text);
    return address_of(Scratch);
}

const HostKernelTable Kernel = {
    .RaiseError = raise_error,
    .CallHostFunction = [](HostValue, HostValue) -> HostValue { return 0; },
    .ResolveHostName = [](const char *) { return address_of(Scratch); },
    .IsString = [](HostValue) { return 1; },
    .ListElement = [](HostValue, int) -> HostValue { return 0; },
    .ToBoolean = [](HostValue) { return 1; },
    .ToText = text_of,
    .ElementCount = [](HostValue) { return ArgumentCount; },
    .NewSequence = new_sequence,
    .ToHostString = to_host_string,
    .IsList = [](HostValue) { return 0; },
};

}  // namespace

size_t SilentHost::translate(const std::string &mode, const std::string &source) {
    ModeText = mode.c_str();
    SourceText_ = source.c_str();
    Arguments[1] = address_of(Mode);
    Arguments[2] = address_of(Source);
    LanguageText = language_;
    LanguageOption[1] = address_of(LanguageName);
    LanguageOption[2] = address_of(Language);
    Arguments[3] = address_of(LanguageOption);
    ArgumentCount = language_ ? 3 : 2;
    mTranslate(&Kernel, address_of(Arguments));
    return ResultLength;
}

}  // namespace bench
