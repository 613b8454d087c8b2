// A parse context for picojson that limits the nesting and reads runs of plain string characters at once.
#include "binding/call_parser.h"

#include <cstring>
#include <string>

namespace nurvo {

namespace {

// An iterator whose copies share one position, so that strings can be read without picojson, which reads
// character by character and takes several times as long for a text of 16 MiB.
class SharedCursor {
 public:
  explicit SharedCursor(const char** position) : position_(position) {}
  char operator*() const { return **position_; }
  SharedCursor& operator++() {
    ++*position_;
    return *this;
  }
  bool operator==(const SharedCursor& other) const { return *position_ == *other.position_; }
  const char*& position() const { return *position_; }

 private:
  const char** position_;
};

using Input = picojson::input<SharedCursor>;

constexpr unsigned char kFirstPrintable = 0x20;
constexpr int kReplacement = 0xFFFD;

bool isHighSurrogate(int unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}
bool isLowSurrogate(int unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

bool isPlain(char c) {
  return c != '"' && c != '\\' && static_cast<unsigned char>(c) >= kFirstPrintable;
}

void AppendUtf8(std::string& out, int code) {
  const auto continuation = [&](int shift) {
    out.push_back(static_cast<char>(0x80 | (code >> shift & 0x3F)));
  };
  if (code < 0x80) {
    out.push_back(static_cast<char>(code));
  } else if (code < 0x800) {
    out.push_back(static_cast<char>(0xC0 | code >> 6));
    continuation(0);
  } else if (code < 0x10000) {
    out.push_back(static_cast<char>(0xE0 | code >> 12));
    continuation(6);
    continuation(0);
  } else {
    out.push_back(static_cast<char>(0xF0 | code >> 18));
    continuation(12);
    continuation(6);
    continuation(0);
  }
}

// Reads the four digits of an escape and leaves the cursor after them. Returns -1 if they are invalid.
int ReadUnit(Input& in) {
  const int unit = picojson::_parse_quadhex(in);
  in.cur();  // picojson consumes the last digit only when asked for more
  return unit;
}

// Reads the code point after "\u".
bool ReadCodePoint(Input& in, const char*& at, std::string& out) {
  int code = ReadUnit(in);
  if (code < 0) return false;
  if (isHighSurrogate(code)) {
    const char* const after_first = at;
    int second = -1;
    if (at[0] == '\\' && at[1] == 'u') {
      at += 2;
      second = ReadUnit(in);
      if (second < 0) return false;
    }
    if (isLowSurrogate(second)) {
      code = 0x10000 + ((code - 0xD800) << 10) + (second - 0xDC00);
    } else {
      at = after_first;
      code = kReplacement;
    }
  } else if (isLowSurrogate(code)) {
    code = kReplacement;
  }
  AppendUtf8(out, code);
  return true;
}

// Reads the escape after a backslash.
bool ReadEscape(Input& in, const char*& at, std::string& out) {
  constexpr const char* kNames = "\"\\/bfnrt";
  constexpr const char* kMeanings = "\"\\/\b\f\n\r\t";
  const char name = *at;
  if (name == '\0') return false;
  ++at;
  if (name == 'u') return ReadCodePoint(in, at, out);
  const char* const found = std::strchr(kNames, name);
  if (found == nullptr) return false;
  out.push_back(kMeanings[found - kNames]);
  return true;
}

// Reads a string after its opening quotation mark, including the closing one. The NUL at the end of the text
// ends every run, so positions need not be compared with the end.
bool ReadString(Input& in, std::string& out) {
  const char*& at = in.cur().position();
  while (true) {
    const char* const run = at;
    while (isPlain(*at)) ++at;
    out.append(run, static_cast<size_t>(at - run));
    if (*at == '"') {
      ++at;
      return true;
    }
    if (*at != '\\') return false;
    ++at;
    if (!ReadEscape(in, at, out)) return false;
  }
}

// The interface that picojson's parser calls, for one value.
class BoundedContext {
 public:
  BoundedContext(picojson::value& out, size_t depth_left) : out_(out), depth_left_(depth_left) {}

  bool set_null() {
    out_ = picojson::value();
    return true;
  }
  bool set_bool(bool b) {
    out_ = picojson::value(b);
    return true;
  }
  bool set_number(double number) {
    out_ = picojson::value(number);
    return true;
  }
  bool parse_string(Input& in) {
    out_ = picojson::value(picojson::string_type, false);
    return ReadString(in, out_.get<std::string>());
  }
  bool parse_array_start() {
    out_ = picojson::value(picojson::array_type, false);
    return depth_left_ > 0;
  }
  bool parse_array_item(Input& in, size_t) {
    auto& items = out_.get<picojson::array>();
    items.emplace_back();
    return ParseInner(in, items.back());
  }
  bool parse_array_stop(size_t) { return true; }
  bool parse_object_start() {
    out_ = picojson::value(picojson::object_type, false);
    return depth_left_ > 0;
  }
  bool parse_object_item(Input& in, const std::string& key) {
    return ParseInner(in, out_.get<picojson::object>()[key]);
  }
  bool parse_object_stop() { return true; }

 private:
  bool ParseInner(Input& in, picojson::value& inner) const {
    BoundedContext context(inner, depth_left_ - 1);
    return picojson::_parse(context, in);
  }

  picojson::value& out_;
  size_t depth_left_;
};

}  // namespace

bool ParseJson(const char* text, picojson::value& value) {
  const char* position = text;
  const char* end = text + std::strlen(text);
  Input in{SharedCursor(&position), SharedCursor(&end)};
  BoundedContext context(value, kMaxJsonDepth);
  if (!picojson::_parse(context, in)) return false;
  in.skip_ws();
  return in.cur() == SharedCursor(&end);
}

}  // namespace nurvo
