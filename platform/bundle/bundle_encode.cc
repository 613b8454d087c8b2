// Encodes a bundle as text. Two passes over the entries, to measure and to write, so that the text is
// allocated once and every value is copied once.
#include <charconv>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "bundle/bundle_data.h"
#include "bundle/bundle_format.h"
#include "nurvo_desktop/bundle_extras.h"
#include "support/c_interface.h"

namespace nurvo {

namespace {

class Measure {
 public:
  void Put(std::string_view text) { size_ += text.size(); }
  size_t size() const { return size_; }

 private:
  size_t size_ = 0;
};

class Writer {
 public:
  explicit Writer(char* at) : at_(at) {}
  void Put(std::string_view text) {
    std::memcpy(at_, text.data(), text.size());
    at_ += text.size();
  }

 private:
  char* at_;
};

template <typename Sink>
void PutNumber(Sink& sink, size_t number) {
  char digits[24];
  char* const end = std::to_chars(digits, digits + sizeof(digits) - 1, number).ptr;
  *end = kFieldMark;
  sink.Put({digits, static_cast<size_t>(end + 1 - digits)});
}

template <typename Sink>
void PutField(Sink& sink, std::string_view text) {
  PutNumber(sink, text.size());
  sink.Put(text);
}

template <typename Sink>
void PutBytes(Sink& sink, std::string_view bytes) {
  PutNumber(sink, bytes.size() * 2);
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    const char digits[] = {kHexDigits[byte / kHexDigits.size()], kHexDigits[byte % kHexDigits.size()]};
    sink.Put({digits, sizeof(digits)});
  }
}

template <typename Sink>
void PutEntry(Sink& sink, const bundle_keyval_t& entry) {
  const auto begin = [&](char letter) {
    sink.Put({&letter, 1});
    PutField(sink, entry.key);
  };
  switch (entry.type) {
    case BUNDLE_ENTRY_STRING_ARRAY:
      begin(kArrayLetter);
      PutNumber(sink, entry.items.size());
      for (const std::string& item : entry.items) PutField(sink, item);
      break;
    case BUNDLE_ENTRY_BYTES:
      begin(kBytesLetter);
      PutBytes(sink, entry.value);
      break;
    default:
      begin(kStringLetter);
      PutField(sink, entry.value);
  }
}

size_t BodySize(const bundle& b) {
  Measure measure;
  for (const bundle_keyval_t& entry : b.entries()) PutEntry(measure, entry);
  return measure.size();
}

void WriteText(const bundle& b, char* text, size_t body_size) {
  char* const body = text + kBundleHeaderSize;
  Writer writer(body);
  for (const bundle_keyval_t& entry : b.entries()) PutEntry(writer, entry);
  body[body_size] = '\0';
  const ChecksumText sum = ChecksumOf({body, body_size});
  Writer header(text);
  header.Put(kBundleMagic);
  header.Put({sum.data(), sum.size()});
}

}  // namespace

}  // namespace nurvo

NURVO_EXPORT int bundle_encode(bundle* b, bundle_raw** text, int* length) {
  if (b == nullptr || text == nullptr || length == nullptr) return -1;
  const size_t body_size = nurvo::BodySize(*b);
  const size_t size = nurvo::kBundleHeaderSize + body_size;
  if (size >= INT_MAX) return -1;
  auto* const encoded = static_cast<char*>(std::malloc(size + 1));
  if (encoded == nullptr) return -1;
  nurvo::WriteText(*b, encoded, body_size);
  *text = reinterpret_cast<bundle_raw*>(encoded);
  *length = static_cast<int>(size);
  return 0;
}
