// What a page or a user says is data wherever it goes: one function for each form in which texts leave the
// program. All take any bytes; what a form can't hold, or what would act on the reader instead of being read,
// is shown as an escape.
#ifndef CORVIS_KIT_OUTPUT_TEXT_FORMS_H_
#define CORVIS_KIT_OUTPUT_TEXT_FORMS_H_

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

namespace corvis::kit {

// One line for people: line ends, control characters, bidirectional controls and bytes that are not UTF-8
// become escapes (\n, \x1b, \u202e, \xff). A backslash stays, so this can't be read back.
std::string ForTerminal(std::string_view text);

// The description of a TAP test point, or a comment's line: ForTerminal, and nothing begins a directive.
std::string ForTap(std::string_view text);

// The character data of XML 1.0, before its mark-up is escaped: line feeds and tabs stay.
std::string ForXml(std::string_view text);

// A JSON string, which is also a YAML scalar and a JavaScript literal: ASCII only. Bytes that are not UTF-8
// become U+FFFD.
std::string JsonText(std::string_view text);

// A JSON value on one line. Letters stay readable; what ForTerminal would show as an escape is one in its
// strings.
std::string JsonLine(const nlohmann::ordered_json& value);

// A text in quotation marks, as voice scripts have it: reading it gives the same bytes.
std::string Quoted(std::string_view text);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_OUTPUT_TEXT_FORMS_H_
