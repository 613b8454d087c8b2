// Decodes a bundle from text. The text is untrusted: every length is checked before use. Only the canonical
// encoding of a bundle is accepted.
#include <algorithm>
#include <charconv>
#include <cstring>
#include <memory>
#include <utility>

#include "bundle/bundle_data.h"
#include "bundle/bundle_format.h"
#include "nurvo_desktop/bundle_extras.h"
#include "support/c_interface.h"

namespace nurvo {

namespace {

// Reads a text from its front. Every Take... function returns whether it succeeded; after a failure the
// reader must not be used.
class Reader {
 public:
  explicit Reader(std::string_view rest) : rest_(rest) {}
  bool isAtEnd() const { return rest_.empty(); }

  bool TakeLetter(char& letter) {
    if (rest_.empty()) return false;
    letter = rest_.front();
    rest_.remove_prefix(1);
    return true;
  }

  // A count of what follows, so it is at most the number of remaining bytes.
  bool TakeNumber(size_t& number) {
    const char* const first = rest_.data();
    const auto [end, error] = std::from_chars(first, first + rest_.size(), number);
    const auto digits = static_cast<size_t>(end - first);
    if (error != std::errc() || digits == rest_.size() || *end != kFieldMark) return false;
    if (digits > 1 && *first == '0') return false;
    rest_.remove_prefix(digits + 1);
    return number <= rest_.size();
  }

  bool TakeField(std::string_view& field) {
    size_t size = 0;
    if (!TakeNumber(size)) return false;
    field = rest_.substr(0, size);
    rest_.remove_prefix(size);
    return true;
  }

 private:
  std::string_view rest_;
};

bool TakeString(Reader& reader, std::string& value) {
  std::string_view field;
  if (!reader.TakeField(field)) return false;
  value = field;
  return true;
}

bool TakeBytes(Reader& reader, std::string& value) {
  std::string_view digits;
  if (!reader.TakeField(digits) || digits.size() % 2 != 0) return false;
  value.reserve(digits.size() / 2);
  for (; !digits.empty(); digits.remove_prefix(2)) {
    const size_t high = kHexDigits.find(digits[0]);
    const size_t low = kHexDigits.find(digits[1]);
    if (high == std::string_view::npos || low == std::string_view::npos) return false;
    value.push_back(static_cast<char>(high * kHexDigits.size() + low));
  }
  return true;
}

bool TakeArray(Reader& reader, std::vector<std::string>& items) {
  size_t count = 0;
  if (!reader.TakeNumber(count)) return false;
  for (; count > 0; --count) {
    std::string item;
    if (!TakeString(reader, item)) return false;
    items.push_back(std::move(item));
  }
  return true;
}

bool TakeEntry(Reader& reader, bundle_keyval_t& entry) {
  char letter = 0;
  if (!reader.TakeLetter(letter) || !TakeString(reader, entry.key)) return false;
  switch (letter) {
    case kStringLetter:
      entry.type = BUNDLE_ENTRY_STRING;
      return TakeString(reader, entry.value);
    case kBytesLetter:
      entry.type = BUNDLE_ENTRY_BYTES;
      return TakeBytes(reader, entry.value);
    case kArrayLetter:
      entry.type = BUNDLE_ENTRY_STRING_ARRAY;
      return TakeArray(reader, entry.items);
    default:
      return false;
  }
}

// Extracts the encoded entries. Returns false if the header or checksum is wrong.
bool TakeBody(std::string_view text, std::string_view& body) {
  if (text.size() < kBundleHeaderSize || text.substr(0, kBundleMagic.size()) != kBundleMagic) return false;
  body = text.substr(kBundleHeaderSize);
  const ChecksumText sum = ChecksumOf(body);
  return text.substr(kBundleMagic.size(), kChecksumDigits) == std::string_view(sum.data(), sum.size()) &&
         std::memchr(body.data(), '\0', body.size()) == nullptr;
}

std::unique_ptr<bundle> Decode(std::string_view text) {
  std::string_view body;
  if (!TakeBody(text, body)) return nullptr;
  auto result = std::make_unique<bundle>();
  for (Reader reader(body); !reader.isAtEnd();) {
    bundle_keyval_t entry{};
    if (!TakeEntry(reader, entry) || !result->Add(std::move(entry))) return nullptr;
  }
  return result;
}

}  // namespace

}  // namespace nurvo

NURVO_EXPORT bundle* bundle_decode(const bundle_raw* text, int length) {
  if (text == nullptr || length <= 0) return nullptr;
  const std::string_view whole(reinterpret_cast<const char*>(text), static_cast<size_t>(length));
  return nurvo::Guarded<bundle*>(nullptr, [&] { return nurvo::Decode(whole).release(); });
}
