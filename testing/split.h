// Lists of short texts, written as one.
#ifndef CORVIS_TESTING_SPLIT_H_
#define CORVIS_TESTING_SPLIT_H_

#include <sstream>
#include <string>
#include <vector>

inline std::vector<std::string> Split(const std::string& text, char separator = '|') {
  std::vector<std::string> parts;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, separator);) parts.push_back(part);
  return parts;
}

inline std::string Repeated(const std::string& text, size_t times) {
  std::string repeated;
  while (times-- > 0) repeated += text;
  return repeated;
}

#endif  // CORVIS_TESTING_SPLIT_H_
