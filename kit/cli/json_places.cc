// Finds places with a reader of events that counts the bytes it has read.
#include "cli/json_places.h"

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>
#include <utility>

namespace corvis::kit {

namespace {

// "3:5" of a byte, counted from 1.
std::string LineAndColumn(const std::string& text, size_t at) {
  const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(at, text.size()));
  const auto line = std::count(text.begin(), end, '\n') + 1;
  const auto begin = std::find(std::make_reverse_iterator(end), text.rend(), '\n').base();
  return std::to_string(line) + ":" + std::to_string(std::distance(begin, end) + 1);
}

// Reads bytes and counts them in a variable of its creator.
class CountedBytes {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = const char&;

  CountedBytes(const char* at, size_t* count) : at_(at), count_(count) {}
  reference operator*() const { return *at_; }
  CountedBytes& operator++() {
    ++at_;
    ++*count_;
    return *this;
  }
  bool operator==(const CountedBytes& other) const { return at_ == other.at_; }
  bool operator!=(const CountedBytes& other) const { return at_ != other.at_; }

 private:
  const char* at_;
  size_t* count_;
};

// Notes the byte of each key. Stops at a mistake.
class KeyReader : public nlohmann::json_sax<nlohmann::json> {
 public:
  KeyReader(const std::string& text, const size_t& count) : text_(text), count_(count) {}

  bool null() override { return true; }
  bool boolean(bool /*value*/) override { return true; }
  bool number_integer(number_integer_t /*value*/) override { return true; }
  bool number_unsigned(number_unsigned_t /*value*/) override { return true; }
  bool number_float(number_float_t /*value*/, const string_t& /*text*/) override { return true; }
  bool string(string_t& /*value*/) override { return true; }
  bool binary(binary_t& /*value*/) override { return true; }
  bool start_object(std::size_t /*size*/) override { return Enter(); }
  bool end_object() override { return Leave(); }
  bool start_array(std::size_t /*size*/) override { return Enter(); }
  bool end_array() override { return Leave(); }
  bool key(string_t& name) override {
    path_.back() = name;
    if (keys.emplace(path_, BeginOfKey()).second) return true;
    problem_at = BeginOfKey();
    problem = "The key \"" + name + "\" is there twice.";
    return false;
  }
  bool parse_error(std::size_t position, const std::string& /*token*/,
                   const nlohmann::detail::exception& error) override {
    problem_at = position == 0 ? 0 : position - 1;
    const std::string text = error.what();
    // The library's message has its own place in front of this.
    const size_t dash = text.find(" - ");
    problem = "This is not JSON" + (dash == std::string::npos ? "." : ": " + text.substr(dash + 3) + ".");
    return false;
  }

  std::map<std::vector<std::string>, size_t> keys;
  std::string problem;
  size_t problem_at = 0;

 private:
  bool Enter() {
    path_.emplace_back();
    return true;
  }
  bool Leave() {
    path_.pop_back();
    return true;
  }
  // The closing quotation mark was read last.
  size_t BeginOfKey() const {
    const size_t end = count_ - 1;
    return end == 0 ? 0 : text_.rfind('"', end - 1);
  }

  const std::string& text_;
  const size_t& count_;
  std::vector<std::string> path_;
};

}  // namespace

Result<JsonPlaces> JsonPlaces::Read(const std::string& file, const std::string& text) {
  size_t count = 0;
  KeyReader reader(text, count);
  const char* const begin = text.data();
  const bool is_json = nlohmann::json::sax_parse(CountedBytes(begin, &count),
                                                 CountedBytes(begin + text.size(), &count), &reader);
  if (!is_json) return Fail(file + ":" + LineAndColumn(text, reader.problem_at) + ": " + reader.problem);
  JsonPlaces places;
  places.file_ = file;
  for (const auto& [path, at] : reader.keys) places.places_[path] = LineAndColumn(text, at);
  return places;
}

std::string JsonPlaces::Of(const std::vector<std::string>& path) const {
  const auto found = places_.find(path);
  return file_ + ":" + (found == places_.end() ? "1:1" : found->second);
}

}  // namespace corvis::kit
