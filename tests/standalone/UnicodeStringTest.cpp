#include <gtest/gtest.h>

#include "base/VLMUnicodeString.h"

namespace {

constexpr auto kBackward = VLMSearchMode::kBackward;

// Characters of one, two, three and four bytes: positions 0 to 3.
const VLMUnicodeString kMixed("aä€😀");

VLMUnicodeString Replaced(VLMUnicodeString text, const char* from, const char* to) {
  text.ReplaceAll(from, to);
  return text;
}
VLMUnicodeString Replaced(VLMUnicodeString text, int position, int length, const char* to) {
  text.ReplaceSubString(position, length, to);
  return text;
}
VLMUnicodeString ReplacedFirst(VLMUnicodeString text, const char* from, const char* to) {
  text.ReplaceSubString(VLMUnicodeString(from), VLMUnicodeString(to));
  return text;
}
VLMUnicodeString Resized(VLMUnicodeString text, int length) {
  text.Resize(length);
  return text;
}

TEST(UnicodeStringTest, CompareTellsIdenticalFromBeforeAndAfter) {
  EXPECT_EQ(VLMUnicodeString("abc").Compare("abc"), 2);
  EXPECT_EQ(VLMUnicodeString().Compare(""), 2);
  EXPECT_EQ(VLMUnicodeString("abc").Compare("ABC"), 1);
  EXPECT_EQ(VLMUnicodeString("ab").Compare("abc"), 0);
  EXPECT_EQ(VLMUnicodeString("z").Compare("ä"), 0);       // by code point
  EXPECT_EQ(VLMUnicodeString("\uFFFD").Compare("😀"), 0);  // also beyond 16 bits
}

TEST(UnicodeStringTest, SearchForward) {
  EXPECT_EQ(VLMUnicodeString("abcabc").SearchSubString("bc"), 1);
  EXPECT_EQ(VLMUnicodeString("abcabc").SearchSubString("bc", 2), 4);
  EXPECT_EQ(VLMUnicodeString("abcabc").SearchSubString("bc", 5), -1);
  EXPECT_EQ(VLMUnicodeString("abc").SearchSubString("a", -7), 0);
  EXPECT_EQ(VLMUnicodeString("abc").SearchSubString("a", 4), -1);
  EXPECT_EQ(VLMUnicodeString("abc").SearchSubString("", 0), -1);
  EXPECT_EQ(VLMUnicodeString("").SearchSubString("a"), -1);
  EXPECT_EQ(kMixed.SearchSubString("€"), 2);
  EXPECT_EQ(kMixed.SearchSubString("😀", 3), 3);
}

TEST(UnicodeStringTest, SearchBackwardCountsItsStartFromTheEnd) {
  EXPECT_EQ(VLMUnicodeString("abcabc").SearchSubString("bc", 0, kBackward), 4);
  EXPECT_EQ(VLMUnicodeString("abcabc").SearchSubString("bc", 1, kBackward), 1);
  EXPECT_EQ(VLMUnicodeString("abcabc").SearchSubString("bc", 4, kBackward), -1);
  EXPECT_EQ(VLMUnicodeString("abcabc").SearchSubString("bc", -1, kBackward), 4);
  EXPECT_EQ(VLMUnicodeString("abc").SearchSubString("a", 9, kBackward), -1);
  EXPECT_EQ(VLMUnicodeString("abc").SearchSubString("", 0, kBackward), -1);
  EXPECT_EQ(kMixed.SearchSubString("ä", 2, kBackward), 1);
  EXPECT_EQ(kMixed.SearchSubString("ä", 3, kBackward), -1);
}

TEST(UnicodeStringTest, ReplaceAllIsOnePassFromLeftToRight) {
  EXPECT_EQ(Replaced("aaa", "a", "aa"), "aaaaaa");
  EXPECT_EQ(Replaced("aaaa", "aaa", "b"), "ba");
  EXPECT_EQ(Replaced("abab", "ba", "ab"), "aabb");
  EXPECT_EQ(Replaced("abab", "ab", ""), "");
  EXPECT_TRUE(Replaced("abab", "ab", "").IsNull());
  EXPECT_EQ(Replaced("abc", "", "x"), "abc");
  EXPECT_EQ(Replaced("", "a", "x"), "");
  EXPECT_EQ(Replaced(kMixed, "ä", "ö"), "aö€😀");
}

TEST(UnicodeStringTest, ReplaceByValueReplacesTheFirstOnly) {
  EXPECT_EQ(ReplacedFirst("abab", "ab", "x"), "xab");
  EXPECT_EQ(ReplacedFirst("abab", "c", "x"), "abab");
  EXPECT_EQ(ReplacedFirst("abab", "", "x"), "abab");
}

TEST(UnicodeStringTest, ReplaceByPositionOutsideTheStringChangesNothing) {
  EXPECT_EQ(Replaced(kMixed, 1, 2, "x"), "ax😀");
  EXPECT_EQ(Replaced(kMixed, 3, 99, "x"), "aä€x");
  EXPECT_EQ(Replaced(kMixed, 0, 0, "x"), "xaä€😀");
  EXPECT_EQ(Replaced(kMixed, 1, 0x7fffffff, ""), "a");
  EXPECT_EQ(Replaced(kMixed, 4, 1, "x"), kMixed);
  EXPECT_EQ(Replaced(kMixed, -1, 1, "x"), kMixed);
  EXPECT_EQ(Replaced(kMixed, 1, -1, "x"), kMixed);
  EXPECT_EQ(Replaced("", 0, 1, "x"), "");
}

TEST(UnicodeStringTest, LengthsCountCharactersAndResizeOnlyCuts) {
  EXPECT_EQ(kMixed.GetLengthInChar(), 4);
  EXPECT_EQ(Resized(kMixed, 2), "aä");
  EXPECT_EQ(Resized(kMixed, 0), "");
  EXPECT_EQ(Resized(kMixed, -3), "");
  EXPECT_EQ(Resized(kMixed, 9), kMixed);
  EXPECT_STREQ(VLMUnicodeString().ConvertToChar(), "");
  EXPECT_EQ(VLMUnicodeString().GetLengthInChar(), 0);
}

TEST(UnicodeStringTest, ACopyKeepsItsTextWhenTheOtherChanges) {
  VLMUnicodeString text("old");
  const VLMUnicodeString copy = text;
  text.Append("er");
  EXPECT_EQ(copy, "old");
  EXPECT_EQ(text, "older");
  text.Append(text);
  EXPECT_EQ(text, "olderolder");
  text.ReplaceAll(text, text);
  VLMUnicodeString& itself = text;
  text = itself;
  EXPECT_EQ(text, "olderolder");
  const VLMUnicodeString moved = std::move(text);
  EXPECT_EQ(moved, "olderolder");
}

}  // namespace
