// What a bundle and its entries are made of.
#ifndef NURVO_PLATFORM_BUNDLE_BUNDLE_DATA_H_
#define NURVO_PLATFORM_BUNDLE_BUNDLE_DATA_H_

#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "nurvo/bundle.h"

struct bundle_keyval_t {
  std::string key;
  int type;                        // BUNDLE_ENTRY_...
  std::string value;               // the string or the bytes
  std::vector<std::string> items;  // the strings of an array
};

struct bundle {
 public:
  bundle() = default;
  bundle(const bundle&) = delete;
  bundle& operator=(const bundle&) = delete;

  // Adds an entry after the others. Returns false for an empty or a known key, and beyond
  // BUNDLE_MAX_ENTRIES. Throws std::bad_alloc.
  bool Add(bundle_keyval_t entry);
  // Null when there is no such entry. The entry keeps its place for the bundle's life.
  bundle_keyval_t* Find(std::string_view key);
  const std::deque<bundle_keyval_t>& entries() const { return entries_; }

 private:
  void Index(bundle_keyval_t& entry) { index_.emplace(entry.key, &entry); }

  // A deque, because callers hold on to values while entries are added.
  std::deque<bundle_keyval_t> entries_;
  // Filled only when there are many entries: most bundles have four.
  std::unordered_map<std::string_view, bundle_keyval_t*> index_;
};

#endif  // NURVO_PLATFORM_BUNDLE_BUNDLE_DATA_H_
