// What the host calls the functions of files.
#include "lower/classes/procedure_names.h"

#include <string.h>

#include "lower/classes/class_folders.h"
#include "lower/classes/class_names.h"
#include "lower/program/host_words.h"
#include "lower/program/program_files.h"
#include "support/allocation.h"
#include "syntax/scan/spellings.h"
#include "translate/text_forms.h"

namespace {

const char *without_dots(const char *name) {
    if (!strchr(name, '.')) return name;
    char *copy = KeepText(name, strlen(name));
    for (char *dot = copy; (dot = strchr(dot, '.'));) *dot = '_';
    return copy;
}

bool is_plain_function(const char *path, const char *name) {
    const char *found;
    if (!knows_files()) return is_on_path(name);
    return find_known_file(path, name, &found) != NOT_FOUND;
}

// a_b_c is the method c of a_b, and b_c of a.
bool is_method_of_another(const char *class_name, const char *name) {
    for (const char *at = name + 1; (at = strchr(at, '_')) && at[1]; at++) {
        const char *other = intern(KeepText(name, static_cast<size_t>(at - name)));
        if (other != class_name && find_method(other, intern(at + 1))) return true;
    }
    return false;
}

const char *method_name(const char *path, const char *class_name, const char *method) {
    const char *prefix = without_dots(class_name);
    const char *name = intern(form_text("%s_%s", {prefix, method}));
    bool is_anothers = is_plain_function(path, name) || is_method_of_another(class_name, name);
    return is_anothers ? form_text("%s__%s", {prefix, method}) : name;
}

const char *name_in_class(const char *path, const ClassPlace *place) {
    const char *stem = stem_of(path);
    if (place->is_private) return form_text("%s_private_%s", {without_dots(place->name), stem});
    if (stem == name_in_package(place->name)) return without_dots(place->name);
    return method_name(path, place->name, stem);
}

}  // namespace

const char *free_of_host_words(const char *name) {
    return intern(is_host_word(name) ? form_text("m_%s", {name}) : name);
}

const char *procedure_name(const char *path) {
    ClassPlace place = class_place_of(path);
    return free_of_host_words(place.name ? name_in_class(path, &place) : stem_of(path));
}

const char *inner_procedure_name(const char *path, const char *name) {
    return intern(form_text("%s_%s", {procedure_name(path), name}));
}
