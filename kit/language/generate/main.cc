// Makes the data of kit/language, which needs neither files nor ICU at run time, from the phrase files and
// from what ICU knows of each language.
//   language_data [--typed-letters] OUTPUT.cc LANGUAGE.phrases...
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

void WriteLanguage(std::ostream& out, const std::filesystem::path& path) {
  std::ifstream file(path);
  const std::string tag = path.stem().string();
  out << "{\"" << tag << "\",\n";
  for (std::string line; std::getline(file, line);) out << Literal(WithoutComment(line));
  for (const std::string& line : LanguageWords(tag)) out << Literal(line);
  out << "},\n";
}

void WriteBytes(std::ostream& out, const char* name, const std::string& bytes) {
  out << "const unsigned char " << name << "[] = {";
  for (size_t i = 0; i < bytes.size(); ++i) {
    out << (i % 32 == 0 ? "\n" : "") << +static_cast<unsigned char>(bytes[i]) << ",";
  }
  out << "};\nconst size_t " << name << "Size = " << bytes.size() << ";\n";
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> operands(argv + 1, argv + argc);
  const bool is_small = !operands.empty() && operands[0] == "--typed-letters";
  if (is_small) operands.erase(operands.begin());
  if (operands.size() < 2) return 2;
  // A half-written file must not look like a whole one to the build.
  const std::string unfinished = operands[0] + ".unfinished";
  std::ofstream out(unfinished);
  out << "// Made by language_data from phrase files and ICU; change those.\n#include \"language/data.h\"\n\n"
      << "namespace corvis::kit {\n\n";
  WriteBytes(out, "kFoldedLetters", FoldedLetters(is_small ? FoldedRange::kTyped : FoldedRange::kAll));
  WriteBytes(out, "kMarkClasses", MarkClasses());
  out << "\nconst LanguageText kLanguages[] = {\n";
  for (size_t i = 1; i < operands.size(); ++i) WriteLanguage(out, operands[i]);
  out << "};\nconst size_t kLanguageCount = " << operands.size() - 1 << ";\n\n}  // namespace corvis::kit\n";
  out.close();
  return out && std::rename(unfinished.c_str(), operands[0].c_str()) == 0 ? 0 : 1;
}
