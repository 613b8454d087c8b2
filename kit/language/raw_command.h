// Raw commands: an action's name and its data, as they go over the wire.
#ifndef CORVIS_KIT_LANGUAGE_RAW_COMMAND_H_
#define CORVIS_KIT_LANGUAGE_RAW_COMMAND_H_

#include <string>
#include <string_view>

#include "base/result.h"
#include "language/actions.h"

namespace corvis::kit {

// Whether a line is meant as a raw command: it begins with "ACTION_".
bool IsRawCommand(std::string_view line);

// Reads "ACTION_NAME data". After the name and one space, everything is the data as it stands. For the
// actions whose data is a bundle, data that consists of key=value and key="two words" pairs (with \" and
// \\ in quotes) becomes the bundle; data that is one text in quotation marks is sent as that text, whatever
// it holds; other data is sent as text. An action that is not in the table is no error: its data is sent as
// text. Pairs or a quoted text that can't be read are an error.
Result<Command> ParseRawCommand(std::string_view line);

// A warning, with a suggestion, when the command's action is not in the table; empty otherwise.
std::string UnknownActionWarning(const Command& command);

// " Did you mean …?" for the name of an action that is not in the table, or nothing.
std::string DidYouMeanAction(const std::string& action);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_LANGUAGE_RAW_COMMAND_H_
