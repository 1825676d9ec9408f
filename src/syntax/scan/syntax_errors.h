/* Errors of the source as the scanner and the parser find them.
 *
 * The first error of a statement makes the current token a bad one, and it stays bad until the
 * parser recovers: no rule goes on at a bad token, so all of them return to the statement without
 * a word. Errors are kept until the source is read, and reported in the order of their places. */
#pragma once

#include <stdint.h>

#include <initializer_list>

#include "diagnose/messages.h"
#include "syntax/scan/tokens.h"

/* Whether the statement under way has an error. */
extern bool Failed;
/* The token at which it was found. */
extern Token FailedToken;
/* While tokens are skipped, errors in them are not noted. */
extern bool Skipping;
/* Where the statement under way begins. */
extern uint32_t StatementStart;

/* Forgets all errors, at the start of a source. */
void begin_errors(Source *source);
/* Notes an error at the bytes from start to end, and fails the statement. Nothing when it has
 * failed already. The operands are kept texts or constants. */
void syntax_error(MessageId id, uint32_t start, uint32_t end,
                  std::initializer_list<const char *> operands = {});
/* Whether no more errors are noted: there are MOST_ERRORS, or tokens are skipped. */
bool is_silent();
/* Notes an error and goes on. */
void note_error(MessageId id, uint32_t start, uint32_t end,
                std::initializer_list<const char *> operands = {});
/* "expected ..., found ...", at the current token. */
void unexpected_token(const char *expected);
/* The same for a value, with what stands before it. */
void expected_value();
/* The bracket that was opened at an offset is not closed by the current token. */
void unclosed_bracket(const char *closer, uint32_t opener);
/* Moves the error noted last, which is of open brackets, to the end of the line at an offset, where
 * the bracket should have been closed. */
void move_error_to_line_end(uint32_t line_end, const char *closer, uint32_t opener);
/* Reports what has been noted, and forgets it. */
void report_errors();
/* Forgets it without a report; whether there was something. */
bool forget_errors();

/* The following are kept texts, or constants. How people read a piece of the source: its bytes, in
 * quotes and cut where they are many. */
const char *describe_bytes(const char *start, const char *end);
/* The current token: "'+'", "name 'x'", "end of line". */
const char *describe_token();
/* The character at a byte that has no meaning; *end moves after it. */
const char *describe_character(const char *at, const char **end);
/* The texts one after the other. */
const char *join(std::initializer_list<const char *> parts);
/* The number of the line of an offset, as a kept text. */
const char *line_number_text(uint32_t offset);
