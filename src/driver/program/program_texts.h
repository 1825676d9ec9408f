/* The files that a tool gives: its sources, and what its read function answers. */
#pragma once

#include <mtranslate_program.h>

#include <map>
#include <string>
#include <vector>

#include "lexer/given_files.h"

struct GivenText {
    GivenAnswer answer;
    std::string text;
};

/* By their paths in the shortest form; a file that read was asked for stays, also where there is
 * none. */
using GivenTexts = std::map<std::string, GivenText, std::less<>>;
/* What is in folders that have been asked for. */
using GivenFolders = std::map<std::string, std::vector<std::string>, std::less<>>;

/* The path without what leads nowhere: "a/b.m" for "./a/../a/b.m". Throws std::bad_alloc, as all
 * of these. */
std::string shortest_path(const char *path);
/* Enters the request's sources. Answers what is wrong with them, a constant, or null. */
const char *enter_sources(const mTranslateProgramRequest *request, GivenTexts *texts);
/* The file of a path; read is asked where it is not known yet. Never null. */
const GivenText *find_given(const mTranslateProgramRequest *request, GivenTexts *texts,
                            const char *path);
/* As described at Observers::given_in_folder. */
const char *next_given(const GivenTexts *texts, GivenFolders *folders, const char *folder,
                       size_t *cursor);
