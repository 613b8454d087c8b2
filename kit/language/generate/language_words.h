// The words for numbers, places in a row and months in a language, by ICU's rules.
#ifndef CORVIS_KIT_LANGUAGE_GENERATE_LANGUAGE_WORDS_H_
#define CORVIS_KIT_LANGUAGE_GENERATE_LANGUAGE_WORDS_H_

#include <string>
#include <vector>

// Lines of a phrase file: the sections [numbers] (0 to 999), [places] (1 to 99) and [months].
std::vector<std::string> LanguageWords(const std::string& language);

#endif  // CORVIS_KIT_LANGUAGE_GENERATE_LANGUAGE_WORDS_H_
