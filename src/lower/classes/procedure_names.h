/* What the host calls the functions of files: the same whether a file is the run's own, is called,
 * or is only named, as where each file of a tree is translated for itself. A method has its class
 * in its name. */
#pragma once

/* The host name of the first function of the file with that path, interned: its name, that of the
 * class for a constructor, "CLASS_NAME" for a method, "CLASS_private_NAME" for a function that the
 * methods keep to themselves. Where a file or method of another class has this name, a second "_"
 * is in front of NAME. */
const char *procedure_name(const char *path);
/* The same of a function after the first in a file of a class. */
const char *inner_procedure_name(const char *path, const char *name);
/* The name, changed where it is a word of the host. */
const char *free_of_host_words(const char *name);
