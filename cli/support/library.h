/* All that the tool knows of the library's inside. Nothing else of cli includes a file of src. */
#pragma once

#include "diagnose/message_table.h"
#include "diagnose/messages.h"
#include "diagnose/source.h"
#include "lower/lines/origins.h"
#include "lower/lines/pieces.h"
#include "lower/program/program_files.h"
#include "run/last_error.h"
#include "run/run_end.h"
#include "support/long_string.h"
#include "support/observers.h"
#include "syntax/print_tree.h"
#include "syntax/tree/result_kinds.h"
