// Writing whole scripts.
#include "emit/comments.h"
#include "emit/output.h"
#include "emit/procedures.h"
#include "emit/statement_writer.h"
#include "run/run_state.h"

void write_script(mStat *first, const vExpr *trailing) {
    if (FileMode && UsesArrayTools) write_output("with(ArrayTools):\n");
    if (FileMode && UsesLinearAlgebra) write_output("with(LinearAlgebra):\n");
    display_statement(first, 0);
    write_comments(trailing, 0);
}
