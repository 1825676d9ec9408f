/* Classes by the names of folders: the files of @name belong to the class name, those of +a/@name
 * to the class a.name. */
#pragma once

struct ClassPlace {
    const char *name; /* of the class, interned, with the dots of its packages; null for none */
    bool is_private;  /* the file is in the folder private of the class folder: no method */
};

/* Forgets the run before. */
void begin_class_names();
/* The class of the file with that path. */
ClassPlace class_place_of(const char *path);
/* The folder itself, or if it is one of a class the one around it, and around its packages. */
const char *around_class_folder(const char *folder);
/* The interned name after the packages. */
const char *name_in_package(const char *class_name);
/* The folder of the file, a kept text: "." where the path has none. */
const char *folder_of(const char *path);
/* What stands after the last slash. */
const char *base_name(const char *path);
/* Its name without folder and ending, interned. */
const char *stem_of(const char *path);
