// The data structures of bundles and their entries.
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

  // Appends an entry. Returns false for an empty or existing key, and beyond BUNDLE_MAX_ENTRIES. Throws
  // std::bad_alloc.
  bool Add(bundle_keyval_t entry);
  // Returns null if there is no such entry. The pointer stays valid as long as the bundle exists.
  bundle_keyval_t* Find(std::string_view key);
  const std::deque<bundle_keyval_t>& entries() const { return entries_; }

 private:
  void Index(bundle_keyval_t& entry) { index_.emplace(entry.key, &entry); }

  // A deque, because callers keep pointers to values while entries are added.
  std::deque<bundle_keyval_t> entries_;
  // Only filled for many entries; most bundles have four.
  std::unordered_map<std::string_view, bundle_keyval_t*> index_;
};

#endif  // NURVO_PLATFORM_BUNDLE_BUNDLE_DATA_H_
