// The raw form of a command: `ACTION_NAME data…` or `ACTION_NAME key=value key="two words"…`.
#ifndef CORVIS_VOICE_SERVICE_PHRASES_RAW_FORM_H_
#define CORVIS_VOICE_SERVICE_PHRASES_RAW_FORM_H_

#include <string_view>
#include <variant>

#include "phrases/command.h"
#include "support/quoted_text.h"

namespace corvis::voice {

// Whether the line begins as a raw form does, with "ACTION_".
bool isRawForm(std::string_view line);

// Reads a raw form.
//
// What follows the name is the data:
// - For the five actions whose data is a bundle (the three searches, ACTION_CUSTOM, ACTION_ITEM_SELECTION),
//   words that all have the form key=value are the bundle's entries. A key is made of letters, digits, "_",
//   "." and "-"; a value goes up to the next blank or stands in double quotes. If one word has another form,
//   or everything stands in quotes, the data is that text, sent as it is: ACTION_CUSTOM "a=b" sends a=b.
// - For every other action the data is the rest of the line without the blanks around it; "=" means nothing
//   there. A rest that is one quoted text stands for its value.
std::variant<Command, TextError> ParseRawForm(std::string_view line);

}  // namespace corvis::voice

#endif  // CORVIS_VOICE_SERVICE_PHRASES_RAW_FORM_H_
