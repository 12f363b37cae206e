// `marlith solve`: Popeye on each problem of a book, some at a time, one row
// of a results file per problem.
#pragma once

#include "cli/commands.h"

namespace marlith {

// The run; the status for the shell: 0 when every problem got a verdict.
int solveBook(const CliOptions& options, const CommandFolders& folders, const CommandOutput& out);

} // namespace marlith
