// Escapes untrusted text for output: one function for each output format. All accept any bytes and escape
// what the format can't represent and what a terminal or parser would interpret.
#ifndef CORVIS_KIT_OUTPUT_TEXT_FORMS_H_
#define CORVIS_KIT_OUTPUT_TEXT_FORMS_H_

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

namespace corvis::kit {

// One line for people: newlines, control characters, bidirectional controls and invalid UTF-8 become escapes
// (\n, \x1b, \u202e, \xff). Backslashes are kept, so the conversion is not reversible.
std::string ForTerminal(std::string_view text);

// Several lines for people: ForTerminal of each, all but the first indented, so that none passes for a line
// of another origin.
std::string LinesForTerminal(std::string_view text);

// Our own text of several lines: keeps newlines.
std::string TextForTerminal(std::string_view text);

// The description of a TAP test point, or a comment line: like ForTerminal, with "#" escaped so that it can't
// start a directive.
std::string ForTap(std::string_view text);

// XML 1.0 character data, before markup is escaped. Line feeds and tabs are kept.
std::string ForXml(std::string_view text);

// An ASCII-only JSON string, which is also a valid YAML scalar and JavaScript literal. Invalid UTF-8 becomes
// U+FFFD.
std::string JsonText(std::string_view text);

// A JSON value on one line. Its strings keep printable characters and escape those that ForTerminal escapes.
std::string JsonLine(const nlohmann::ordered_json& value);

// A quoted text in the syntax of voice scripts. Parsing it returns the same bytes.
std::string Quoted(std::string_view text);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_OUTPUT_TEXT_FORMS_H_
