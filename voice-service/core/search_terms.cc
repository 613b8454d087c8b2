// Marks such as "with" and "from", and words for genres and kinds of content.
#include "core/search_terms.h"

#include <map>
#include <sstream>
#include <vector>

namespace corvis::voice {

namespace {

const std::map<std::string, std::string>& Genres() {
  static const std::map<std::string, std::string> kGenres = {{"comedy", "comedy"},
                                                             {"comedies", "comedy"},
                                                             {"drama", "drama"},
                                                             {"dramas", "drama"},
                                                             {"thriller", "thriller"},
                                                             {"thrillers", "thriller"},
                                                             {"western", "western"},
                                                             {"westerns", "western"},
                                                             {"horror", "horror"},
                                                             {"romance", "romance"},
                                                             {"action", "action"},
                                                             {"animation", "animation"},
                                                             {"crime", "crime"},
                                                             {"fantasy", "fantasy"},
                                                             {"documentary", "documentary"},
                                                             {"documentaries", "documentary"}};
  return kGenres;
}

const std::map<std::string, std::string>& ContentTypes() {
  static const std::map<std::string, std::string> kTypes = {
      {"movie", "movie"}, {"movies", "movie"}, {"film", "movie"},    {"films", "movie"},
      {"show", "show"},   {"shows", "show"},   {"series", "series"}, {"song", "music"},
      {"songs", "music"}, {"music", "music"},  {"clips", "video"},   {"videos", "video"}};
  return kTypes;
}

// The key of the words that follow a mark; null for a word that is none.
const char* KeyOfMark(const std::string& word) {
  static const std::map<std::string, const char*> kMarks = {
      {"with", "cast"}, {"starring", "cast"}, {"called", "title"}, {"titled", "title"},
      {"from", "from"}, {"since", "from"},    {"to", "to"},        {"until", "to"}};
  const auto found = kMarks.find(word);
  return found == kMarks.end() ? nullptr : found->second;
}

void Append(std::string& text, const std::string& word) {
  text += (text.empty() ? "" : " ") + word;
}

}  // namespace

Entries SearchTerms(const std::string& phrase, const std::string& words) {
  std::map<std::string, std::string> found;
  std::string key;
  std::istringstream stream(words);
  for (std::string word; stream >> word;) {
    const auto genre = Genres().find(word);
    const auto type = ContentTypes().find(word);
    // "to" marks the end of a range only: "how to fly" is a title.
    const char* mark = KeyOfMark(word);
    if (mark != nullptr && (std::string(mark) != "to" || found.count("from") == 1)) {
      key = mark;
    } else if (!key.empty()) {
      Append(found[key], word);
    } else if (genre != Genres().end()) {
      found["genre"] = genre->second;
    } else if (type != ContentTypes().end()) {
      found["content_type"] = type->second;
    } else {
      Append(found["title"], word);
    }
  }
  Entries entries = {{"utterance", phrase}};
  for (const char* name : {"title", "genre", "cast", "content_type", "from", "to"}) {
    if (!found[name].empty()) entries.emplace_back(name, found[name]);
  }
  entries.emplace_back("raw", words);
  return entries;
}

}  // namespace corvis::voice
