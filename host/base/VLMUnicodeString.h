#pragma once

#include <cstddef>
#include <new>
#include <string_view>
#include <utility>

#if __has_include(<ext/atomicity.h>)
#include <ext/atomicity.h>
#endif

/// Where a substring search starts and which way it runs.
enum class VLMSearchMode : int {
  kForward = 1,   ///< From the front; the start is counted from the first character.
  kBackward = 2,  ///< From the end; the start is counted from the last character.
};

/// The host's Unicode string: a value, cheap to copy (copies share one text until one of them is changed).
/// Each copy belongs to one thread at a time; copies of one string may belong to several.
///
/// Lengths and positions count characters (code points), not bytes, and start at 0. Every operation is total:
/// an argument outside the string has the harmless answer that its comment states. The text is held as UTF-8.
class VLMUnicodeString {
 public:
  VLMUnicodeString() noexcept = default;
  // A literal stands wherever the host takes a string, so the conversions are implicit.
  // NOLINTNEXTLINE(google-explicit-constructor)
  VLMUnicodeString(const char* utf8);
  // NOLINTNEXTLINE(google-explicit-constructor)
  VLMUnicodeString(std::string_view utf8);
  VLMUnicodeString(const VLMUnicodeString& other) noexcept : text_(other.text_) {
    if (text_ != nullptr) text_->Count(1);
  }
  VLMUnicodeString(VLMUnicodeString&& other) noexcept : text_(std::exchange(other.text_, nullptr)) {}
  VLMUnicodeString& operator=(VLMUnicodeString other) noexcept {
    std::swap(text_, other.text_);
    return *this;
  }
  ~VLMUnicodeString() {
    if (text_ != nullptr && text_->Count(-1) == 1) ::operator delete(text_);
  }

  /// 2 when both strings are identical; 0 when this one sorts before `other`, 1 when it sorts after (by code
  /// point).
  [[nodiscard]] int Compare(const VLMUnicodeString& other) const noexcept {
    if (*this == other) return 2;
    return View() < other.View() ? 0 : 1;  // the byte order of UTF-8 is that of the code points
  }

  /// The index, from the front, of an occurrence of `text`; -1 when there is none. Forward: the first
  /// occurrence that begins at `start` or later. Backward: the last occurrence that ends at least `start`
  /// characters before the end. A negative start counts as 0; a start beyond the string finds nothing; so
  /// does an empty `text`.
  [[nodiscard]] int SearchSubString(const VLMUnicodeString& text, int start = 0,
                                    VLMSearchMode mode = VLMSearchMode::kForward) const;

  /// Replaces the first occurrence of `oldText`; without one, or with an empty `oldText`, nothing changes.
  void ReplaceSubString(const VLMUnicodeString& oldText, const VLMUnicodeString& newText);

  /// Replaces the `length` characters from `position` on (fewer where the string ends earlier). A position
  /// outside the string, -1 included, or a length below 0 changes nothing.
  void ReplaceSubString(int position, int length, const VLMUnicodeString& newText);

  /// Replaces every occurrence of `oldText` in one pass from left to right (a replacement is not searched
  /// again). An empty `oldText` changes nothing.
  void ReplaceAll(const VLMUnicodeString& oldText, const VLMUnicodeString& newText);

  [[nodiscard]] int GetLengthInChar() const noexcept;

  /// Cuts the string to its first `length` characters. A length below 0 counts as 0; one beyond the string
  /// changes nothing (a string is never padded).
  void Resize(int length);

  void Append(const VLMUnicodeString& text);

  /// True when the string holds no characters.
  [[nodiscard]] bool IsNull() const noexcept { return text_ == nullptr; }

  /// The text as UTF-8, ended by a zero byte; lives until this string is changed or destroyed. Never null.
  [[nodiscard]] const char* ConvertToChar() const noexcept {
    return text_ == nullptr ? "" : text_->Characters();
  }

  /// The text as UTF-8 with its length; lives as long as `ConvertToChar`'s.
  [[nodiscard]] std::string_view View() const noexcept {
    return text_ == nullptr ? std::string_view() : std::string_view(text_->Characters(), text_->size);
  }

  friend bool operator==(const VLMUnicodeString& left, const VLMUnicodeString& right) noexcept {
    return left.text_ == right.text_ || left.View() == right.View();
  }

 private:
  // Shared by copies; null stands for the empty string. The characters, and a zero byte, stand directly
  // behind it.
  struct Text {
    int references;
    std::size_t size;

    /// Gives how many references there were before. Threads may share a text, but most processes have one
    /// thread only, and locked instructions cost several times a plain one.
    int Count(int change) noexcept {
#if __has_include(<ext/atomicity.h>)
      return __gnu_cxx::__exchange_and_add_dispatch(&references, change);
#else
      return __atomic_fetch_add(&references, change, __ATOMIC_ACQ_REL);
#endif
    }
    [[nodiscard]] char* Characters() noexcept {
      return reinterpret_cast<char*>(this + 1);
    }
  };

  void Assign(std::string_view utf8);

  Text* text_ = nullptr;
};
