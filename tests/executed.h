/* Translations that are executed. */
#pragma once

#include <string>

namespace mtranslate {

/* Runs the translation of a program in matlab. Gives the variables that it leaves, "x = 1; y = 2"
 * in the order of their names, or "error: ..." where the translation says that something may mean
 * something else, or cannot be executed. That it means the same whether or not the host shares what
 * is stored is part of it. */
std::string executed(const std::string &source);

/* A variable's value among them, "" where there is none of the name. */
std::string value_of(const std::string &variables, const std::string &name);

}  // namespace mtranslate
