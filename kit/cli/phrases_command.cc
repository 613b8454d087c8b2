// corvis phrases: what can be said in a language, how a text is understood, and what is wrong in phrase
// files.
#include <algorithm>

#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/language.h"
#include "output/columns.h"
#include "output/output_file.h"
#include "output/text_forms.h"

namespace corvis::kit {

namespace {

std::string PlaceOf(const Phrase& phrase) {
  return phrase.place.file + ":" + std::to_string(phrase.place.line);
}

std::string PhraseLine(const std::string& left, const std::string& right) {
  constexpr int kWidth = 60;
  return (ColumnsOf(left) > kWidth ? left : Padded(left, kWidth)) + "  " + right + "\n";
}

// Whether the mistake is in this file, and not in another that is read with it.
bool IsIn(const PhraseMistake& mistake, const std::string& file) {
  return mistake.place.file == file;
}

class PhrasesCommand : public Subcommand {
 public:
  void Declare(CLI::App& app) override {
    Describe(
        app,
        "Prints what can be said, and what it becomes. docs/phrases.md describes the notation of phrases.");
    BeginGroup(app, "Output");
    AddText(app, "--explain", "TEXT", "how this text is understood, and what comes close to it", text_);
    AddText(app, "--check", "FILE", "what is wrong in a phrase file", file_);
    AddLanguageOptions(app, language_);
    DescribeStatuses(app, {{kExitOk, "printed; the text is understood; nothing is wrong in the file"},
                           {kExitFailed, "the text is not understood; something is wrong in the file"}});
  }

  Result<int> Execute(Supervisor& /*supervisor*/, const std::vector<std::string>& /*operands*/) override {
    if (!file_.empty()) return Check();
    const Result<SpokenLanguage> language = OpenLanguage(language_);
    if (!language) return Fail(language.error());
    if (text_.empty()) return Print(TableOf(language->phrases()), kExitOk);
    const Explanation explanation = language->phrases().Explain(text_);
    return Print(TextOf(explanation, language->phrases()), explanation.understood ? kExitOk : kExitFailed);
  }

 private:
  static Result<int> Print(const std::string& text, int status) {
    const Status printed = WriteStandardOutput(text);
    if (!printed) return Fail(printed.error());
    return status;
  }

  static std::string TableOf(const Phrasebook& phrases) {
    std::string text = phrases.name() + " (" + phrases.tag() + ")\n\n";
    for (const Phrase& phrase : phrases.phrases()) text += PhraseLine(phrase.pattern, phrase.becomes);
    text += "\nPieces\n";
    for (const auto& [name, pattern] : phrases.pieces()) text += PhraseLine(name, pattern);
    return text;
  }

  std::string TextOf(const Explanation& explanation, const Phrasebook& book) const {
    const std::vector<Phrase> phrases = book.phrases();
    std::string text;
    if (explanation.understood) {
      const Phrase& phrase = phrases[explanation.understood->phrase];
      text = phrase.pattern + "   " + PlaceOf(phrase) + "\n";
      for (const FilledSlot& slot : explanation.understood->slots) {
        text += "  {" + slot.name + "}  " + Quoted(slot.said) +
                (slot.said == slot.value ? "" : "  =  " + slot.value) + "\n";
      }
      const std::string data = DescribeData(explanation.understood->command);
      text += explanation.understood->command.action + (data.empty() ? "" : " " + data) + "\n";
    } else {
      text = book.UnknownPhrase(text_) + "\n";
    }
    if (!explanation.others.empty()) text += "\nClose to it:\n";
    for (const auto& [index, reason] : explanation.others) {
      text += phrases[index].pattern + "   " + PlaceOf(phrases[index]) + "\n  " + reason + "\n";
    }
    return text;
  }

  // The file by itself first; then with the language that it is for, whose other phrases may be in its way.
  Result<int> Check() {
    const Result<PhraseFile> file = ReadPhraseFile(file_);
    if (!file) return Fail(file.error());
    std::vector<PhraseMistake> mistakes;
    Phrasebook::Read({*file}, mistakes);
    if (mistakes.empty()) {
      if (language_.tag.empty()) language_.tag = LanguageOf(file->text);
      language_.phrase_files.push_back(file_);
      const Result<SpokenLanguage> language = OpenLanguage(language_);
      if (!language) return Fail(language.error());
      mistakes = language->phrases().Check();
    }
    std::string text;
    for (const PhraseMistake& mistake : mistakes)
      text += IsIn(mistake, file_) ? Describe(mistake) + "\n" : "";
    return text.empty() ? Print("Nothing is wrong in " + file_ + ".\n", kExitOk) : Print(text, kExitFailed);
  }

  LanguageOptions language_;
  std::string text_;
  std::string file_;
};

}  // namespace

std::unique_ptr<Subcommand> MakePhrasesCommand() {
  return std::make_unique<PhrasesCommand>();
}

}  // namespace corvis::kit
