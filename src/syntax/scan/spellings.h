/* Spellings of names: each is kept once in a run, so that equal names are the same pointer. */
#pragma once

#include <stdint.h>
#include <string.h>

#include "support/row_index.h"
#include "syntax/library/library_table.h"
#include "syntax/scan/tokens.h"

struct Symbol;

/* What is known of a spelling. Its text, with a NUL, stands after the record. */
struct Spelling {
    uint64_t head; /* the first and the last bytes: all of them up to 16 */
    uint64_t tail;
    uint32_t length;
    uint32_t function; /* number of the function in which it has become a variable last, or 0 */
    TokenKind keyword; /* the keyword's token, or TOKEN_NAME */
    uint8_t soft;      /* of SoftKeyword: a word that is a keyword at some places only */
    uint16_t chain;    /* of tables of names (support/row_index.h) */
    uint32_t traits;   /* of MATLAB's function of that name (library/library_table.h) */
    const LibraryFunction *library; /* its row, or null */
    Symbol *bound; /* what the name stands for where names are being settled, or null */
};

enum SoftKeyword : uint8_t {
    NOT_SOFT,
    SOFT_DO,
    SOFT_UNTIL,
    SOFT_ARGUMENTS,
    SOFT_EVAL /* no keyword, but the text after it may be read */
};

/* Forgets the spellings of the run before, at the start of a run. */
void begin_spellings();
/* The spelling of length bytes. A host may answer an empty text for a name. */
Spelling *spelling_of_bytes(const char *text, uint32_t length);

/* The same, or null: nothing has been spelled so. */
const Spelling *find_spelling(const char *text, uint32_t length);

inline const char *text_of(const Spelling *spelling) {
    return reinterpret_cast<const char *>(spelling + 1);
}
/* The interned text of a name. */
inline const char *intern(const char *name) {
    return text_of(spelling_of_bytes(name, static_cast<uint32_t>(strlen(name))));
}
/* The interned text of a name that something has; null for others. */
inline const char *interned(const char *name) {
    const Spelling *spelling = find_spelling(name, static_cast<uint32_t>(strlen(name)));
    return spelling ? text_of(spelling) : nullptr;
}
/* The record of an interned text. */
inline Spelling *spelling_of(const char *interned) {
    return reinterpret_cast<Spelling *>(const_cast<char *>(interned)) - 1;
}
/* An interned text as a name that is looked for in tables. */
inline RowName row_name(const char *interned) { return {interned, spelling_of(interned)->chain}; }
/* What MATLAB's function of an interned name gives, where that is known; null for others. */
inline const LibraryFunction *library_result_of(const char *interned) {
    const LibraryFunction *function = spelling_of(interned)->library;
    return function && function->shape != SHAPE_UNKNOWN ? function : nullptr;
}
/* Whether MATLAB's function of an interned name has one of the traits. */
inline bool is_known_to(const char *interned, uint32_t traits) {
    return (spelling_of(interned)->traits & traits) != 0;
}
