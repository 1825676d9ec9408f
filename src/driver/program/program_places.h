/* Places of a program's sources as lines and columns, found all at once: a line may be the whole
 * file. */
#pragma once

#include <mtranslate_program.h>

#include <vector>

#include "driver/program/program_memory.h"

/* A text that places are in; it stays as it is until they have been found. */
struct PlacedText {
    const char *name; /* null for a command */
    const char *text;
    uint32_t length;
};

/* A range whose begin, or whose end, is asked for in lines and columns. */
struct AskedPlace {
    PlacedText in;
    uint32_t offset;
    bool is_end;
    mTranslateProgramRange *range;
};

/* What is collected; at first {}. */
struct ProgramPlaces {
    std::vector<AskedPlace> asked;
    const char *last_name; /* as the text has it */
    const char *last_copy;
};

/* A range of the text whose lines and columns find_places will fill in. Throws std::bad_alloc. */
mTranslateProgramRange *ask_range(ProgramPlaces *places, ResultMemory *memory, const PlacedText *in,
                                  uint32_t begin, uint32_t end);
void find_places(ProgramPlaces *places);
