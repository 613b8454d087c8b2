// Bundles and their text form: what goes in comes out, and nothing else is taken for a bundle.
#include "nurvo/bundle.h"

#include <gtest/gtest.h>

#include "nurvo_desktop/bundle_extras.h"
#include "testing/bundles.h"
#include "testing/signed_bundle.h"
#include "testing/split.h"

namespace {

BundlePtr Decode(const std::string& text) {
  return BundlePtr(
      bundle_decode(reinterpret_cast<const bundle_raw*>(text.data()), static_cast<int>(text.size())));
}

// The entries as bundle_foreach shows them: the bytes of basic values, "(array)" for arrays.
Entries Read(bundle* b) {
  Entries entries;
  bundle_foreach(
      b,
      [](const char* key, int type, const bundle_keyval_t* keyval, void* user_data) {
        bundle_keyval_t* const copy = bundle_keyval_dup(keyval);
        void* value = nullptr;
        size_t size = 0;
        std::string text = "(array)";
        if (bundle_keyval_get_basic_val(copy, &value, &size) == 0) {
          text.assign(static_cast<char*>(value), type == BUNDLE_ENTRY_STRING ? size - 1 : size);
          EXPECT_EQ(static_cast<char*>(value)[text.size()], '\0') << key;
        }
        static_cast<Entries*>(user_data)->emplace_back(key, text);
        bundle_keyval_free(copy);
      },
      &entries);
  return entries;
}

TEST(BundleTest, ComesBackAsItWas) {
  Entries many;
  for (int i = 0; i < 1024; ++i) many.emplace_back("key" + std::to_string(i), std::to_string(i));
  const std::string nested = Encode(MakeBundle({{"title", "\"quoted\", \\ and \n"}}));
  const Entries rows[] = {
      {},
      {{"z", "1"}, {"a", "2"}, {"m", ""}},
      {{"utf-8", "gr\xC3\xBC\xC3\x9F \xF0\x9F\x98\x80"}, {"cut", "\xF0\x9F"}, {"\xFF", "\x01\x7F"}},
      {{"looks like the format", "s1:a3:xyz"}, {"3:", ":"}},
      {{"strData", nested}, {"twice", Encode(MakeBundle({{"inner", nested}}))}},
      {{"big", std::string(size_t{16} << 20, 'x')}},
      many,
  };
  for (const Entries& row : rows) {
    const BundlePtr decoded = Decode(Encode(MakeBundle(row)));
    ASSERT_TRUE(decoded);
    EXPECT_EQ(Read(decoded.get()), row);
    for (const auto& [key, text] : row) {
      char* value = nullptr;
      ASSERT_EQ(bundle_get_str(decoded.get(), key.c_str(), &value), 0) << key;
      EXPECT_EQ(value, text);
    }
  }
}

TEST(BundleTest, HoldsArraysAndBytesBesideStrings) {
  const BundlePtr b = MakeBundle({{"s", "text"}});
  const char* const items[] = {"one", "", "three"};
  ASSERT_EQ(bundle_add_str_array(b.get(), "a", items, 3), 0);
  ASSERT_EQ(bundle_add_byte(b.get(), "b", "\0\xFF\n", 3), 0);
  const BundlePtr decoded = Decode(Encode(b));
  ASSERT_TRUE(decoded);
  EXPECT_EQ(Read(decoded.get()),
            (Entries{{"s", "text"}, {"a", "(array)"}, {"b", std::string("\0\xFF\n", 3)}}));
  EXPECT_EQ(Encode(decoded), Encode(b));
  char* value = nullptr;
  EXPECT_LT(bundle_get_str(decoded.get(), "a", &value), 0);
  EXPECT_LT(bundle_get_str(decoded.get(), "b", &value), 0);
}

TEST(BundleTest, RefusesBadEntries) {
  const BundlePtr b = MakeBundle({{"key", "kept"}});
  EXPECT_LT(bundle_add(b.get(), "key", "second"), 0);
  EXPECT_LT(bundle_add(b.get(), "", "x"), 0);
  EXPECT_LT(bundle_add(b.get(), nullptr, "x"), 0);
  EXPECT_LT(bundle_add(b.get(), "x", nullptr), 0);
  EXPECT_LT(bundle_add(nullptr, "x", "x"), 0);
  EXPECT_LT(bundle_free(nullptr), 0);
  EXPECT_EQ(Read(b.get()), (Entries{{"key", "kept"}}));
}

// Callers keep a value while more is added.
TEST(BundleTest, ValuesStayWhereTheyAre) {
  const BundlePtr b = MakeBundle({{"first", "short"}});
  char* before = nullptr;
  char* after = nullptr;
  ASSERT_EQ(bundle_get_str(b.get(), "first", &before), 0);
  for (int i = 0; i < 1000; ++i) bundle_add(b.get(), std::to_string(i).c_str(), "x");
  ASSERT_EQ(bundle_get_str(b.get(), "first", &after), 0);
  EXPECT_EQ(before, after);
}

TEST(BundleTest, EveryTruncationAndEveryChangedByteIsFound) {
  const BundlePtr b = MakeBundle({{"command", "ACTION_PLAY"}, {"strData", "data"}, {"n", "0"}});
  bundle_add_byte(b.get(), "b", "\1\2", 2);
  const std::string sample = Encode(b);
  ASSERT_TRUE(Decode(sample));
  for (size_t length = 0; length < sample.size(); ++length) {
    EXPECT_FALSE(Decode(sample.substr(0, length))) << length;
    EXPECT_FALSE(Decode(sample.substr(sample.size() - length))) << length;
  }
  for (size_t at = 0; at < sample.size(); ++at) {
    for (int change = 1; change < 256; ++change) {
      std::string damaged = sample;
      damaged[at] = static_cast<char>(damaged[at] ^ change);
      EXPECT_FALSE(Decode(damaged)) << at << " ^ " << change;
    }
  }
  EXPECT_FALSE(Decode(sample + 'x'));
}

// Texts that carry a right checksum and are no bundles all the same.
TEST(BundleTest, RefusesIntactNonsense) {
  ASSERT_TRUE(Decode(SignedBundle("s1:a1:b")));
  ASSERT_TRUE(Decode(SignedBundle("a1:a0:")));
  auto rows = Split(
      "s|s1|s1:|s1:a|s1:a1:|s1:a2:b|s0:1:b|x1:a1:b|s01:a1:b|s1:a01:b|s+1:a1:b|s-1:a1:b|"
      "s1:a18446744073709551615:b|s1:a99999999999999999999:b|s1:a1:bs1:a1:c|s1:a1:b |b1:a1:f|"
      "b1:a2:FF|b1:a2:0g|a1:a1:|a1:a4000000000:1:x|a1:a2:1:x|a1:a1:1:x1:y");
  rows.emplace_back("s1:a1:\0", 7);
  for (const std::string& row : rows) EXPECT_FALSE(Decode(SignedBundle(row))) << row;
  std::string too_many;
  for (int i = 0; i <= BUNDLE_MAX_ENTRIES; ++i)
    too_many += "s5:" + std::to_string(10000 + i).substr(0, 5) + "0:";
  EXPECT_FALSE(Decode(SignedBundle(too_many)));
}

}  // namespace
