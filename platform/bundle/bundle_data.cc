// Adds and finds entries.
#include "bundle/bundle_data.h"

#include <algorithm>
#include <utility>

#include "nurvo_desktop/bundle_extras.h"

namespace {
// Up to this number, comparing with every key is as fast as an index, which would make decoding four entries
// 50 % slower. Above it, the index keeps decoding linear: 8,192 entries, the most that fit into a message,
// take 1.3 ms with it and 57 ms without.
constexpr size_t kMaxSearchedEntries = 16;
}  // namespace

bool bundle::Add(bundle_keyval_t entry) {
  if (entry.key.empty() || entries_.size() >= BUNDLE_MAX_ENTRIES || Find(entry.key) != nullptr) return false;
  entries_.push_back(std::move(entry));
  if (entries_.size() == kMaxSearchedEntries + 1) {
    for (bundle_keyval_t& each : entries_) Index(each);
  } else if (entries_.size() > kMaxSearchedEntries) {
    Index(entries_.back());
  }
  return true;
}

bundle_keyval_t* bundle::Find(std::string_view key) {
  if (entries_.size() > kMaxSearchedEntries) {
    const auto found = index_.find(key);
    return found == index_.end() ? nullptr : found->second;
  }
  const auto found = std::find_if(entries_.begin(), entries_.end(),
                                  [&](const bundle_keyval_t& entry) { return entry.key == key; });
  return found == entries_.end() ? nullptr : &*found;
}
