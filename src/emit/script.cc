// Writing whole scripts.
#include "driver/resolution.h"
#include "driver/run_state.h"
#include "emit/comments.h"
#include "emit/globals.h"
#include "emit/output.h"
#include "emit/procedures.h"
#include "emit/statement_writer.h"

void script(mStat *first) {
    drop_globals();  // a script has no global line
    // The resolution clears the flags for every file that it translates.
    int32_t uses_array_tools = UsesArrayTools;
    int32_t uses_linear_algebra = UsesLinearAlgebra;
    resolve_within_parse();
    if (FileMode && uses_array_tools) write_output("with(ArrayTools):\n");
    if (FileMode && uses_linear_algebra) write_output("with(LinearAlgebra):\n");
    display_statement(first, 0);
    write_comments(LastComment, 0);
}
