/* Details of a run's own source, for a tool: what has become of its pieces. */
#pragma once

#include "driver/program/program_run.h"

struct Node;
struct Origin;
struct Source;
struct SourceFile;
enum PieceEnd : uint8_t;

/* As described at Observers::piece and Observers::lines. Both throw std::bad_alloc, as all of
 * these.
 */
void note_program_piece(ProgramRun *run, const Node *node, PieceEnd end, const char *target);
void note_program_lines(ProgramRun *run, const Origin *origin, uint32_t first, uint32_t count);
/* When the file has been lowered, and its sources are there: enters them into the result. Places
 * are asked for. */
void finish_details(ProgramRun *run, const SourceFile *file);
/* The names, by the functions that the result has already. */
void finish_names(ProgramRun *run, const SourceFile *file);
/* The lines. */
void finish_pieces(ProgramRun *run);

/* When the run's own source has been read: finds what is to be known of its commands, tells of its
 * tokens, which may end the run, and enters them into the result. */
void find_commands(ProgramRun *run, const Node *tree);
void note_program_tokens(ProgramRun *run);
void finish_tokens(ProgramRun *run);

/* The file's text for places. */
PlacedText text_of_source(const Source *source);
/* The place of a node in it. */
const mTranslateProgramRange *range_of_node(ProgramRun *run, const SourceFile *file,
                                            const Node *node);
