// Hostile texts through every form in which texts leave the program.
#include "output/text_forms.h"

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>
#include <pugixml.hpp>

#include "output/columns.h"
#include "script/line_reader.h"

namespace corvis::kit {
namespace {

using Json = nlohmann::ordered_json;

struct FormRow {
  std::string text;
  std::string terminal = text;
  std::string xml = text;
};

const std::vector<FormRow>& Rows() {
  static const std::vector<FormRow> kRows = {
      {""},
      {"Ελληνικά 日本語 👨‍👩‍👧 e\u0301"},
      {"a\nnot ok 1 - b\r\tc", R"(a\nnot ok 1 - b\r\tc)", "a\nnot ok 1 - b\\r\tc"},
      {"\x1b[31mred\x07\x7f", R"(\x1b[31mred\x07\x7f)", "\\x1b[31mred\\x07\x7f"},
      {std::string("nul\0end", 7), R"(nul\x00end)", R"(nul\x00end)"},
      {"\u009b2J\u0085", R"(\u009b2J\u0085)", "\u009b2J\u0085"},
      {"\u202egpj.exe\u2066\u200f\u2069\u202c", R"(\u202egpj.exe\u2066\u200f\u2069\u202c)"},
      {"line\u2028paragraph\u2029", R"(line\u2028paragraph\u2029)", "line\u2028paragraph\u2029"},
      {"\xff\xc3(\xe2\x82", R"(\xff\xc3(\xe2\x82)", R"(\xff\xc3(\xe2\x82)"},
      {"surrogates \xed\xa0\x80\xed\xb0\x80", R"(surrogates \xed\xa0\x80\xed\xb0\x80)",
       R"(surrogates \xed\xa0\x80\xed\xb0\x80)"},
      {"\uFFFE\uFFFF", "\uFFFE\uFFFF", R"(\ufffe\uffff)"},
      {"# SKIP \\ <![CDATA[ ]]> &amp; <x a=\"'\">"},
  };
  return kRows;
}

TEST(TextForms, Terminal) {
  for (const FormRow& row : Rows()) {
    EXPECT_EQ(ForTerminal(row.text), row.terminal);
    EXPECT_EQ(ForTerminal(TextForTerminal(row.text)), row.terminal);
  }
}

TEST(TextForms, TerminalLines) {
  EXPECT_EQ(TextForTerminal("a\n\x1b[2J\r\nb"), "a\n\\x1b[2J\\r\nb");
}

TEST(TextForms, LinesOfATerminalStayTogether) {
  EXPECT_EQ(LinesForTerminal("a\x1b\n[page] log: b\n"), "a\\x1b\n    [page] log: b\n    ");
}

TEST(TextForms, TapHasNoDirectiveAndNoSecondLine) {
  EXPECT_EQ(ForTap("a # SKIP \\\nok 2"), R"(a \# SKIP \\\\nok 2)");
  for (const FormRow& row : Rows()) {
    const std::string tap = ForTap(row.text);
    std::string read;
    for (size_t i = 0; i < tap.size(); ++i) read += tap[i] == '\\' ? tap[++i] : tap[i];
    EXPECT_EQ(read, row.terminal) << tap;
  }
}

TEST(TextForms, XmlIsReadBack) {
  for (const FormRow& row : Rows()) {
    pugi::xml_document written;
    written.append_child("a").append_attribute("b") = ForXml(row.text).c_str();
    written.child("a").text() = ForXml(row.text).c_str();
    std::ostringstream text;
    written.save(text);
    pugi::xml_document read;
    ASSERT_TRUE(read.load_string(text.str().c_str(), pugi::parse_default | pugi::parse_ws_pcdata))
        << text.str();
    EXPECT_EQ(read.child("a").text().get(), row.xml);
    EXPECT_EQ(std::string(ForXml(row.text)), row.xml);
  }
}

TEST(TextForms, JsonIsReadBack) {
  for (const FormRow& row : Rows()) {
    const Json read = Json::parse(JsonText(row.text));
    const std::string line = JsonLine({{"text", row.text}});
    // What is not UTF-8 has no form in JSON.
    const bool is_text =
        row.text.find('\xff') == std::string::npos && row.text.find('\xed') == std::string::npos;
    EXPECT_EQ(read.get<std::string>() == row.text, is_text) << read;
    EXPECT_EQ(Json::parse(line)["text"], read);
    EXPECT_EQ(ForTerminal(line), line) << "nothing acts on a terminal";
  }
  EXPECT_EQ(JsonText("</script>\"\n\u2028é\xff"), R"("</script>\"\n\u2028\u00e9\ufffd")");
  EXPECT_EQ(JsonLine("é\u202e\x7f\u202c"), R"("é\u202e\u007f\u202c")");
}

TEST(TextForms, QuotedIsReadBackByScripts) {
  EXPECT_EQ(Quoted("a\"\\\n\t\r\x1b[0m é"), R"("a\"\\\n\t\r\x1b[0m é")");
  for (const FormRow& row : Rows()) {
    const std::string quoted = Quoted(row.text);
    LineReader line(quoted);
    EXPECT_EQ(line.Text(), row.text);
    EXPECT_EQ(quoted.find('\n'), std::string::npos);
  }
}

TEST(Columns, CountAsATerminalDoes) {
  const std::tuple<const char*, int, const char*> rows[] = {
      {"play", 6, "play  "},
      {"playing", 6, "playi…"},
      {"日本語", 6, "日本語"},
      {"日本語の", 6, "日本… "},
      {"e\u0301te\u0301", 4, "e\u0301te\u0301 "},
      {"a\nb", 4, "a\\nb"},
      {"", 2, "  "},
  };
  for (const auto& [text, columns, padded] : rows) {
    EXPECT_EQ(Padded(text, columns), padded);
    EXPECT_EQ(ColumnsOf(Padded(text, columns)), columns) << text;
  }
}

}  // namespace
}  // namespace corvis::kit
