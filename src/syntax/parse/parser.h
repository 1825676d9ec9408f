/* The parser: the text of a source in, its tree and messages out. It knows neither host nor files,
 * and keeps nothing but what one run may share: the spellings of names. */
#pragma once

#include "diagnose/source.h"
#include "syntax/scan/source_language.h"
#include "syntax/tree/tree.h"

/* Forgets trees and names of the run before, at the start of a run. */
void begin_syntax();
/* The tree of the source, a NODE_FILE, with its errors reported; never null. Exhausted memory ends
 * the run. */
Node *parse_source(Source *source, SourceLanguage language);
/* The tree alone, and whether the source has errors; texts of eval stay texts. No other source is
 * being read. */
Node *parse_unreported(Source *source, SourceLanguage language, bool *has_errors);
/* The tree of a text that is kept until the run ends; null, and nothing is reported, where it has
 * an error or a comment. No other source is being read. */
Node *parse_text(const char *text, SourceLanguage language);
