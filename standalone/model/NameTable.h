#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace standalone {

/// The number of an interned name; comparing two names is comparing two integers. 0 stands for no name.
using NameId = std::uint32_t;
inline constexpr NameId kNoName = 0;

/// The process's names: attribute keys, late types, physical types. Those that the program asks for stay for
/// ever. Those that came from documents are there as long as a document holds them (`HeldNames`), so that a
/// process which opens many does not grow; their numbers are then given to other names. Any thread may ask at
/// any time.
class NameTable {
 public:
  NameTable() = delete;

  /// The number of `name`, which from then on is never given back. For names that stand in a program; those
  /// from documents, of which there is no end, go through `Document::NameFor`. The empty name is `kNoName`.
  static NameId Intern(std::string_view name);
  /// The number of `name` as long as it has one, else `kNoName`.
  static NameId Find(std::string_view name);
  /// The text of a name that is there; it stays where it is for as long.
  static std::string_view Text(NameId id);
  /// How many names there are.
  static std::size_t Count();

  // For `HeldNames`.
  struct Held {
    NameId id;
    bool isCounted;  ///< Else the name stays for ever.
  };
  /// The number of `name`, which is there until it is released as often as it was counted.
  static Held Hold(std::string_view name);
  /// The same for a name that somebody holds.
  static Held Hold(NameId id);
  static void Release(NameId id) noexcept;
};

}  // namespace standalone
