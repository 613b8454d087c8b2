// Makes the data of kit/language, which needs neither files nor ICU at run time, from the phrase files and
// from what ICU knows of each language.
//   language_data [--typed-letters] OUTPUT.cc LANGUAGE.phrases...
//   language_data OUTPUT.phrases LANGUAGE.phrases
// The second form makes a phrase file that brings its language whole.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fold_table.h"
#include "language_words.h"

namespace {

// Comments go; their lines stay, so that the lines keep their numbers.
std::string WithoutComment(const std::string& line) {
  const size_t first = line.find_first_not_of(' ');
  return first != std::string::npos && line[first] == '#' ? "" : line;
}

std::string Literal(const std::string& line) {
  std::string literal = "\"";
  for (const char c : line) {
    if (c == '"' || c == '\\') literal += '\\';
    literal += c;
  }
  return literal + "\\n\"\n";
}

std::vector<std::string> LanguageLines(const std::filesystem::path& path) {
  std::ifstream file(path);
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) lines.push_back(WithoutComment(line));
  const std::vector<std::string> words = LanguageWords(path.stem().string());
  lines.insert(lines.end(), words.begin(), words.end());
  return lines;
}

void WriteLanguage(std::ostream& out, const std::filesystem::path& path) {
  out << "{\"" << path.stem().string() << "\",\n";
  for (const std::string& line : LanguageLines(path)) out << Literal(line);
  out << "},\n";
}

void WriteBytes(std::ostream& out, const char* name, const std::string& bytes) {
  out << "const unsigned char " << name << "[] = {";
  for (size_t i = 0; i < bytes.size(); ++i) {
    out << (i % 32 == 0 ? "\n" : "") << +static_cast<unsigned char>(bytes[i]) << ",";
  }
  out << "};\nconst size_t " << name << "Size = " << bytes.size() << ";\n";
}

void WriteData(std::ostream& out, FoldedRange letters, const std::vector<std::string>& files) {
  out << "// Made by language_data from phrase files and ICU; change those.\n#include \"language/data.h\"\n\n"
      << "namespace corvis::kit {\n\n";
  WriteBytes(out, "kFoldedLetters", FoldedLetters(letters));
  WriteBytes(out, "kMarkClasses", MarkClasses());
  out << "\nconst LanguageText kLanguages[] = {\n";
  for (const std::string& file : files) WriteLanguage(out, file);
  out << "};\nconst size_t kLanguageCount = " << files.size() << ";\n\n}  // namespace corvis::kit\n";
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> operands(argv + 1, argv + argc);
  const bool is_small = !operands.empty() && operands[0] == "--typed-letters";
  if (is_small) operands.erase(operands.begin());
  if (operands.size() < 2) return 2;
  const std::vector<std::string> files(operands.begin() + 1, operands.end());
  // A half-written file must not look like a whole one to the build.
  const std::string unfinished = operands[0] + ".unfinished";
  std::ofstream out(unfinished);
  if (std::filesystem::path(operands[0]).extension() == ".phrases") {
    for (const std::string& line : LanguageLines(files[0])) out << line << "\n";
  } else {
    WriteData(out, is_small ? FoldedRange::kTyped : FoldedRange::kAll, files);
  }
  out.close();
  return out && std::rename(unfinished.c_str(), operands[0].c_str()) == 0 ? 0 : 1;
}
