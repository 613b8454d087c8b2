// Reads corvis.json as arguments, which the command line's own parser checks.
#include "cli/configuration.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <optional>
#include <sstream>
#include <utility>

#include "app/json_text.h"
#include "cli/command_line.h"
#include "cli/json_places.h"
#include "language/suggestions.h"

namespace corvis::kit {

namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kSchemaKey = "$schema";
constexpr const char* kApplicationKey = "application";
constexpr const char* kScriptsKey = "scripts";
constexpr const char* kConfigOption = "--config";

// Options of the command line itself.
bool IsConfigurable(const CLI::Option& option) {
  const std::string& group = option.get_group();
  return !option.get_lnames().empty() && group != "Other" && !group.empty();
}

std::string NameOf(const CLI::Option& option) {
  return option.get_lnames().front();
}

bool IsList(const CLI::Option& option) {
  return option.get_multi_option_policy() != CLI::MultiOptionPolicy::TakeLast;
}
bool IsFlag(const CLI::Option& option) {
  return option.get_type_name().empty();
}
// --inspect[=PORT]
bool HasOptionalValue(const CLI::Option& option) {
  return option.get_type_name().compare(0, 1, "[") == 0;
}
bool IsPath(const CLI::Option& option) {
  return option.get_type_name() == "FILE" || option.get_type_name() == "DIR";
}
bool IsNumber(const CLI::Option& option) {
  const std::string name = option.get_type_name();
  return name == "N" || name == "MS" || name == "S";
}

const CLI::Option* FindOption(const CLI::App& app, const std::string& key) {
  const CLI::Option* option = app.get_option_no_throw("--" + key);
  return option != nullptr && IsConfigurable(*option) ? option : nullptr;
}

template <typename Visit>
void ForEachOption(const std::function<void(CLI::App&)>& declare, Visit visit) {
  CLI::App app;
  app.set_help_flag();
  declare(app);
  for (const CLI::Option* option : std::as_const(app).get_options()) {
    if (IsConfigurable(*option)) visit(*option);
  }
}

// The text of a scalar; nothing for other values.
std::optional<std::string> TextOf(const Json& value) {
  if (value.is_string()) return value.get<std::string>();
  if (value.is_number()) return value.dump();
  return {};
}

// The texts of a scalar or of a list of them.
std::optional<std::vector<std::string>> TextsOf(const Json& value) {
  std::vector<std::string> texts;
  for (const Json& one : value.is_array() ? value : Json::array({value})) {
    auto text = TextOf(one);
    if (!text) return {};
    texts.push_back(std::move(*text));
  }
  return texts;
}

}  // namespace

// Reads one file and collects the mistakes.
class ConfigurationReader {
 public:
  ConfigurationReader(const std::string& file, const ConfiguredCommands& commands)
      : folder_(std::filesystem::path(file).parent_path()), file_(file), commands_(commands) {}

  Result<Configuration> Read() {
    std::ifstream opened(file_, std::ios::binary);
    std::ostringstream text;
    if (!opened || !(text << opened.rdbuf()))
      return Fail("The configuration " + file_ + " can't be read or is empty.", ErrorKind::kUsage);
    auto places = JsonPlaces::Read(file_, text.str());
    if (!places) return Fail(places.error().message, ErrorKind::kUsage);
    places_ = std::move(*places);
    if (const auto shallow = ParseJson(text.str()); !shallow)
      return Fail(file_ + ": " + shallow.error().message, ErrorKind::kUsage);
    const Json read = Json::parse(text.str());
    if (read.is_object()) {
      ReadMembers(read);
    } else {
      NoteAt({}, "Expected a JSON object such as {\"application\": \".\"}.");
    }
    if (!mistakes_.empty()) return Fail(mistakes_, ErrorKind::kUsage);
    return std::move(configuration_);
  }

 private:
  void ReadMembers(const Json& object) {
    for (const auto& [key, value] : object.items()) {
      const auto command = commands_.find(key);
      if (key == kSchemaKey) continue;
      if (key == kApplicationKey) {
        ReadApplication(value);
      } else if (key == kScriptsKey) {
        ReadScripts(value);
      } else if (command != commands_.end()) {
        ReadSection(command->first, value);
      } else {
        ReadSetting("", key, value);
      }
    }
  }

  void ReadApplication(const Json& value) {
    if (!value.is_string())
      return NoteAt({kApplicationKey}, "Expected a URL, an HTML file or a folder as a text.");
    const auto text = value.get<std::string>();
    std::error_code ignored;
    const bool is_url =
        text.find(':') != std::string::npos && !std::filesystem::exists(PathOf(text), ignored);
    configuration_.application_ = is_url ? text : PathOf(text);
  }

  void ReadScripts(const Json& value) {
    const auto texts = TextsOf(value);
    if (!texts) return NoteAt({kScriptsKey}, "Expected a list of files and folders.");
    for (const std::string& text : *texts) configuration_.scripts_.push_back(PathOf(text));
  }

  void ReadSection(const std::string& command, const Json& section) {
    if (!section.is_object())
      return NoteAt({command}, "Expected an object with options of corvis " + command + ".");
    for (const auto& [key, value] : section.items()) ReadSetting(command, key, value);
  }

  // An option of this command, or of any if it is empty.
  void ReadSetting(const std::string& command, const std::string& key, const Json& value) {
    for (const auto& [name, declare] : commands_) {
      if (!command.empty() && name != command) continue;
      CLI::App app;
      app.set_help_flag();
      declare(app);
      if (const CLI::Option* option = FindOption(app, key); option != nullptr)
        return TakeSetting(command, *option, app, value);
    }
    NoteAt(PathTo(command, key), "Unknown key \"" + key + "\"." + DidYouMean(key, KeysOf(command)));
  }

  void TakeSetting(const std::string& command, const CLI::Option& option, CLI::App& app, const Json& value) {
    const std::string key = NameOf(option);
    const auto arguments = ArgumentsOf(option, value);
    if (!arguments) return NoteAt(PathTo(command, key), Expected(option));
    const Result<Arguments> checked = ParseArguments(app, *arguments);
    if (checked) {
      configuration_.settings_.push_back({command, key, *arguments});
      return;
    }
    const std::string prefix = "--" + key + ": ";
    const std::string& message = checked.error().message;
    NoteAt(PathTo(command, key), message.compare(0, prefix.size(), prefix) == 0
                                     ? "\"" + key + "\": " + message.substr(prefix.size())
                                     : message);
  }

  // Nothing if the value is not of the option's type.
  std::optional<std::vector<std::string>> ArgumentsOf(const CLI::Option& option, const Json& value) const {
    const std::string name = "--" + NameOf(option);
    const bool is_flag = IsFlag(option);
    if (value.is_boolean() && (is_flag || HasOptionalValue(option)))
      return value.get<bool>() ? std::vector{name} : std::vector<std::string>();
    if (is_flag || (value.is_array() && !IsList(option))) return {};
    const auto texts = TextsOf(value);
    if (!texts) return {};
    std::vector<std::string> arguments;
    for (const std::string& text : *texts)
      arguments.push_back(name + "=" + (IsPath(option) ? PathOf(text) : text));
    // The command's paths are relative to the file, too.
    if (name == "--serve" && !folder_.empty()) arguments.push_back("--serve-in=" + folder_.string());
    return arguments;
  }

  static std::string Expected(const CLI::Option& option) {
    const std::string what = IsFlag(option)             ? "true or false"
                             : HasOptionalValue(option) ? "true, false or a number"
                             : IsList(option)           ? "a text or a list of texts"
                             : IsNumber(option)         ? "a number"
                                                        : "a text";
    return "\"" + NameOf(option) + "\": Expected " + what + ".";
  }

  std::vector<std::string> KeysOf(const std::string& command) const {
    std::vector<std::string> keys;
    if (command.empty()) keys = {kSchemaKey, kApplicationKey, kScriptsKey};
    for (const auto& [name, declare] : commands_) {
      if (command.empty()) keys.push_back(name);
      if (command.empty() || command == name)
        ForEachOption(declare, [&keys](const CLI::Option& option) { keys.push_back(NameOf(option)); });
    }
    return keys;
  }

  static std::vector<std::string> PathTo(const std::string& command, const std::string& key) {
    return command.empty() ? std::vector{key} : std::vector{command, key};
  }
  std::string PathOf(const std::string& text) const {
    return text.empty() || folder_.empty() ? text : (folder_ / text).string();
  }
  void NoteAt(const std::vector<std::string>& path, const std::string& sentence) {
    mistakes_ += (mistakes_.empty() ? "" : "\n") + places_.Of(path) + ": " + sentence;
  }

  const std::filesystem::path folder_;
  const std::string file_;
  const ConfiguredCommands& commands_;
  JsonPlaces places_;
  std::string mistakes_;
  Configuration configuration_;
};

Result<Configuration> Configuration::Read(const std::string& file, const ConfiguredCommands& commands) {
  return ConfigurationReader(file, commands).Read();
}

std::vector<std::string> Configuration::ArgumentsFor(const std::string& command, const CLI::App& app,
                                                     const std::vector<std::string>& given) const {
  const auto is_given = [&given](const std::string& key) {
    return std::any_of(given.begin(), std::find(given.begin(), given.end(), "--"), [&](const auto& argument) {
      return argument.substr(0, argument.find('=')) == "--" + key;
    });
  };
  const auto is_in_section = [&](const std::string& key) {
    return std::any_of(settings_.begin(), settings_.end(), [&](const Setting& setting) {
      return setting.command == command && setting.key == key;
    });
  };
  std::vector<std::string> arguments;
  for (const bool is_section : {false, true}) {
    for (const Setting& setting : settings_) {
      if (setting.command != (is_section ? command : "")) continue;
      const CLI::Option* option = FindOption(app, setting.key);
      const bool is_replaced = is_given(setting.key) || (!is_section && is_in_section(setting.key));
      if (option == nullptr || is_replaced) continue;
      arguments.insert(arguments.end(), setting.arguments.begin(), setting.arguments.end());
    }
  }
  return arguments;
}

std::vector<std::string> Configuration::Operands(std::vector<std::string> given, bool has_scripts) const {
  const auto is_script = [](const std::string& operand) {
    const std::string file = operand.substr(0, operand.find(".voice") + std::string(".voice").size());
    return operand.find(".voice") != std::string::npos &&
           (file.size() == operand.size() || operand[file.size()] == ':');
  };
  const bool has_application = !given.empty() && !(has_scripts && is_script(given[0]));
  if (!has_application && !application_.empty()) given.insert(given.begin(), application_);
  if (has_scripts && given.size() == 1) given.insert(given.end(), scripts_.begin(), scripts_.end());
  return given;
}

std::string ConfigurationFileOf(const std::vector<std::string>& arguments) {
  const std::string prefix = std::string(kConfigOption) + "=";
  std::string named;
  for (auto it = arguments.begin(); it != arguments.end() && *it != "--"; ++it) {
    if (*it == kConfigOption && it + 1 != arguments.end()) named = *(it + 1);
    if (it->compare(0, prefix.size(), prefix) == 0) named = it->substr(prefix.size());
  }
  std::error_code ignored;
  if (!named.empty()) return named;
  return std::filesystem::exists(kConfigurationFile, ignored) ? kConfigurationFile : "";
}

namespace {

Json SchemaOf(const CLI::Option& option) {
  const std::string fallback = option.get_default_str();
  Json schema = {
      {"description", option.get_description() + (fallback.empty() ? "" : " (default " + fallback + ")")}};
  if (IsFlag(option)) {
    schema["type"] = "boolean";
  } else if (HasOptionalValue(option)) {
    schema["type"] = {"boolean", "integer"};
  } else if (IsList(option)) {
    schema["type"] = {"string", "array"};
    schema["items"] = {{"type", "string"}};
  } else {
    schema["type"] = IsNumber(option) ? "integer" : "string";
  }
  return schema;
}

}  // namespace

std::string ConfigurationSchema(const ConfiguredCommands& commands) {
  Json properties = {
      {kSchemaKey, {{"type", "string"}}},
      {kApplicationKey, {{"description", "a URL, an HTML file or a folder"}, {"type", "string"}}},
      {kScriptsKey,
       {{"description", "the voice scripts of corvis test-app: files, and folders with *.voice files"},
        {"type", {"string", "array"}},
        {"items", {{"type", "string"}}}}}};
  Json sections = Json::object();
  for (const auto& [name, declare] : commands) {
    Json own = Json::object();
    ForEachOption(declare, [&](const CLI::Option& option) {
      own[NameOf(option)] = SchemaOf(option);
      if (!properties.contains(NameOf(option))) properties[NameOf(option)] = SchemaOf(option);
    });
    sections[name] = {{"description", "options of corvis " + name + " only"},
                      {"type", "object"},
                      {"properties", std::move(own)},
                      {"additionalProperties", false}};
  }
  properties.update(sections);
  const Json schema = {{"$schema", "http://json-schema.org/draft-07/schema#"},
                       {"title", "Configuration of corvis"},
                       {"type", "object"},
                       {"properties", std::move(properties)},
                       {"additionalProperties", false}};
  return schema.dump(2) + "\n";
}

}  // namespace corvis::kit
