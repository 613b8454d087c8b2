// The prompt on a terminal: editing, history, completion, and output above the line being typed.
#ifndef CORVIS_KIT_CLI_EDITED_LINES_H_
#define CORVIS_KIT_CLI_EDITED_LINES_H_

#include <memory>

#include "cli/line_source.h"

namespace corvis::kit {

// Reads from the terminal of standard input. Ctrl-C clears the line being typed; on an empty line it
// interrupts the process.
std::unique_ptr<LineSource> MakeEditedLines();

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_EDITED_LINES_H_
