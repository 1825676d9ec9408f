// Reading the arguments of mTranslate.
#include "driver/options.h"

#include <stdlib.h>
#include <string.h>

#include "driver/front_end.h"
#include "run/host_kernel.h"
#include "run/last_error.h"
#include "run/run_state.h"
#include "support/allocation.h"
#include "support/budget.h"

namespace {

HostValue element(HostValue object, int index) {
    return reinterpret_cast<const HostValue *>(object)[index];
}

bool has_type(HostValue value, unsigned int type) {
    bool is_object = value != 0 && (value & 1) == 0;
    return is_object && *reinterpret_cast<const uint32_t *>(value) >> HOST_TYPE_SHIFT == type;
}

// The text of a required argument; null after raising message.
const char *required_text(HostValue argument, const char *message) {
    if (HostKernel->IsString(argument)) return HostKernel->ToText(argument);
    raise_error(message, argument);
    return nullptr;
}

void read_path(HostValue list) {
    int count = HostKernel->ElementCount(list);
    for (int j = 1; j <= count; j++) {
        HostValue directory = HostKernel->ListElement(list, j);
        if (HostKernel->IsString(directory)) {
            const char *text = HostKernel->ToText(directory);
            add_search_directory(text, strlen(text));
        } else {
            raise_error("invalid input: path must be a list of strings", 0);
        }
    }
}

// The name on the left of an equation; else an empty text.
const char *option_name(HostValue argument) {
    bool is_named =
        has_type(argument, HOST_TYPE_EQUATION) && has_type(element(argument, 1), HOST_TYPE_NAME);
    return is_named ? HostKernel->ToText(element(argument, 1)) : "";
}

// The right side of an equation that is a string or a name; else an empty text.
const char *option_text(HostValue argument) {
    HostValue value = element(argument, 2);
    bool is_text = HostKernel->IsString(value) || has_type(value, HOST_TYPE_NAME);
    return is_text ? HostKernel->ToText(value) : "";
}

bool is_true(HostValue argument) { return HostKernel->ToBoolean(element(argument, 2)) != 0; }

bool read_language(HostValue argument) {
    UsedFrontEnd = find_front_end(option_text(argument));
    if (UsedFrontEnd) return true;
    UsedFrontEnd = &ClassicFrontEnd;
    raise_error("invalid input: Language must be classic, matlab or octave", 0);
    return false;
}

bool read_budget(HostValue argument) {
    const char *text = option_text(argument);
    size_t length = strlen(text);
    bool is_number = length > 0 && length < 8 && strspn(text, "0123456789") == length;
    long megabytes = is_number ? strtol(text, nullptr, 10) : 0;
    if (megabytes >= 1 && megabytes <= LARGEST_BUDGET) {
        set_budget(megabytes);
        return true;
    }
    raise_error("invalid input: MaxMemory must be a number of megabytes", 0);
    return false;
}

// False when the run cannot go on.
bool read_option(HostValue argument, RunRequest *request) {
    if (HostKernel->IsList(argument)) {
        request->has_path = true;
        read_path(argument);
        return true;
    }
    const char *name = option_name(argument);
    if (strcmp(name, "Language") == 0) return read_language(argument);
    if (strcmp(name, "MaxMemory") == 0) return read_budget(argument);
    if (strcmp(name, "AddTranslator") == 0) {
        if (!is_true(argument)) AddTranslator = 0;  // it can only be switched off
    } else if (strcmp(name, "KeepGoing") == 0) {
        KeepGoing = is_true(argument);
    } else if (strcmp(name, "Display") == 0) {
        Displays = is_true(argument);
    } else if (*name >= 'A' && *name <= 'Z' && !request->unknown_option) {
        request->unknown_option = element(argument, 1);
    }
    return true;
}

// Classic takes no notice of what it does not know.
bool check_options(const RunRequest *request) {
    if (!request->unknown_option || UsedFrontEnd == &ClassicFrontEnd) return true;
    raise_error("invalid input: unknown option %1", request->unknown_option);
    return false;
}

}  // namespace

void add_search_directory(const char *text, size_t length) {
    SearchDirectory *node = AllocRecord<SearchDirectory>();
    *node = {KeepText(text, length), SearchPath};
    SearchPath = node;
}

bool read_arguments(HostValue args, RunRequest *request) {
    int count = HostKernel->ElementCount(args);
    if (count < 2) {
        raise_error("invalid input: at least two arguments expected", 0);
        return false;
    }
    request->mode = required_text(element(args, 1),
                                  "invalid input: string expected for first argument, but got %1");
    if (!request->mode) return false;
    request->source = required_text(
        element(args, 2), "invalid input: string expected for second argument, but got %1");
    if (!request->source) return false;
    request->source_value = element(args, 2);
    request->has_path = false;
    request->unknown_option = 0;
    AddTranslator = 1;
    KeepGoing = 0;
    Displays = 0;
    UsedFrontEnd = &ClassicFrontEnd;
    for (int i = 3; i <= count; i++)
        if (!read_option(element(args, i), request)) return false;
    return check_options(request);
}
