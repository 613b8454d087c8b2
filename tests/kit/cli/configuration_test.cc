// What corvis.json means for a command line, and its mistakes with their places.
#include "cli/configuration.h"

#include <gtest/gtest.h>
#include <CLI/CLI.hpp>

#include <filesystem>
#include <fstream>

#include "cli/commands.h"

namespace corvis::kit {

namespace {

namespace fs = std::filesystem;

class ConfigurationTest : public testing::Test {
 protected:
  ConfigurationTest() {
    fs::create_directories(folder_);
    fs::current_path(folder_);
  }
  ~ConfigurationTest() override {
    fs::current_path(before_);
    fs::remove_all(folder_);
  }

  Result<Configuration> Read(const std::string& text, const std::string& file = "corvis.json") const {
    std::ofstream(file) << text;
    return Configuration::Read(file, commands_);
  }

  // The operands and the arguments of a command line that this file completes.
  std::string Completed(const Configuration& configuration, const std::string& command,
                        const std::vector<std::string>& given, const std::vector<std::string>& operands) {
    CLI::App app;
    commands_.at(command)(app);
    std::string text;
    for (const std::string& operand : configuration.Operands(operands, command == "test-app"))
      text += operand + " ";
    for (const std::string& argument : configuration.ArgumentsFor(command, app, given))
      text += argument + " ";
    return text.empty() ? text : text.substr(0, text.size() - 1);
  }

  const fs::path before_ = fs::current_path();
  const fs::path folder_ = fs::path(testing::TempDir()) / "configuration test";
  const ConfiguredCommands commands_ = CommandsWithConfiguration();
};

TEST_F(ConfigurationTest, MistakesHaveTheirPlaces) {
  const struct {
    const char* text;
    const char* mistake;
  } rows[] = {
      {"", "The configuration corvis.json can't be read or is empty."},
      {"[]", "corvis.json:1:1: Expected a JSON object such as {\"application\": \".\"}."},
      {"{\"a\": tru}", "corvis.json:1:10: This is not JSON: invalid literal; last read: '\"a\": tru}'."},
      {"{\n  \"size\": \"1x1\",\n  \"sizes\": 1}",
       "corvis.json:2:3: \"size\": Expected a size such as 1920x1080, with sides from 16 to 8192 pixels, not "
       "\"1x1\".\n"
       "corvis.json:3:3: Unknown key \"sizes\". Did you mean \"size\"?"},
      {"{\"size\": \"640x480\", \"size\": \"640x480\"}",
       "corvis.json:1:21: The key \"size\" is there twice."},
      {"{\"application\": 1, \"scripts\": {}}",
       "corvis.json:1:2: Expected a URL, an HTML file or a folder as a text.\n"
       "corvis.json:1:20: Expected a list of files and folders."},
      {"{\"headless\": \"yes\"}", "corvis.json:1:2: \"headless\": Expected true or false."},
      {"{\"size\": [\"640x480\"]}", "corvis.json:1:2: \"size\": Expected a text."},
      {"{\"timeout\": {}}", "corvis.json:1:2: \"timeout\": Expected a number."},
      {"{\"timeout\": 1.5}",
       "corvis.json:1:2: \"timeout\": Expected a whole number from 1 to 86400000, not \"1.5\"."},
      {"{\"run\": {\"junit\": \"a.xml\"}}", "corvis.json:1:10: Unknown key \"junit\"."},
      {"{\"tset-app\": {}}", "corvis.json:1:2: Unknown key \"tset-app\". Did you mean \"test-app\"?"},
      {"{\"config\": \"a\"}", "corvis.json:1:2: Unknown key \"config\"."},
  };
  for (const auto& row : rows) {
    const auto read = Read(row.text);
    EXPECT_EQ(read ? "" : read.error().message, row.mistake) << row.text;
  }
}

TEST_F(ConfigurationTest, CompletesTheCommandLine) {
  const auto read = Read(R"({
    "$schema": "x", "application": "app", "scripts": ["a.voice", "more"], "size": "640x480", "timeout": 7,
    "phrases": "own.phrases", "headless": true, "coverage": false, "inspect": 0, "key": ["Back=8", "OK=9"],
    "test-app": {"size": "320x200", "junit": "r/v.xml", "key": "Up=1"}, "run": {"inspect": true}
  })");
  ASSERT_TRUE(read) << read.error().message;
  const struct {
    const char* command;
    std::vector<std::string> given;
    std::vector<std::string> operands;
    const char* completed;
  } rows[] = {
      {"lint",
       {},
       {},
       "app --size=640x480 --timeout=7 --phrases=own.phrases --headless --key=Back=8 --key=OK=9"},
      {"run",
       {"--key", "Left=3", "--size=1x1"},
       {"other"},
       "other --timeout=7 --phrases=own.phrases --headless --inspect"},
      {"test-app",
       {"--inspect"},
       {},
       "app a.voice more --timeout=7 --phrases=own.phrases --headless --size=320x200 --junit=r/v.xml "
       "--key=Up=1"},
      {"test-app",
       {"--", "--key", "--size"},
       {"b.voice:3", "c"},
       "app b.voice:3 c --timeout=7 --phrases=own.phrases --headless --inspect=0 --size=320x200 "
       "--junit=r/v.xml --key=Up=1"},
  };
  for (const auto& row : rows)
    EXPECT_EQ(Completed(*read, row.command, row.given, row.operands), row.completed) << row.command;
}

TEST_F(ConfigurationTest, PathsAreRelativeToTheFile) {
  fs::create_directories("sub/a:b");
  const auto read = Read(R"({"application": "a:b", "scripts": "x.voice", "phrases": ["p", "/q"], "grep": "g",
                             "profile": "d"})",
                         "sub/c.json");
  ASSERT_TRUE(read) << read.error().message;
  EXPECT_EQ(Completed(*read, "test-app", {}, {}),
            "sub/a:b sub/x.voice --phrases=sub/p --phrases=/q --grep=g --profile=sub/d");
  const auto url = Read(R"({"application": "http://localhost:1"})", "sub/c.json");
  EXPECT_EQ(Completed(*url, "run", {}, {}), "http://localhost:1");
}

TEST_F(ConfigurationTest, TheFileIsThatOfTheOptionOrThatOfTheFolder) {
  EXPECT_EQ(ConfigurationFileOf({}), "");
  std::ofstream("corvis.json") << "{}";
  EXPECT_EQ(ConfigurationFileOf({"--", "--config", "a"}), "corvis.json");
  EXPECT_EQ(ConfigurationFileOf({"--config", "a", "--config=b", "x"}), "b");
}

}  // namespace

}  // namespace corvis::kit
