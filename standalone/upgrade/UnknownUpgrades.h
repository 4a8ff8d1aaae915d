#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace standalone {

/// Upgrades of one library that a document has been through and that nobody here knows.
struct MissingLibrary {
  std::string name;                   ///< The built-in one's where the document tells none.
  std::string version;                ///< That the document went through; empty where it does not tell.
  std::string loaded;                 ///< The version that is loaded; empty for none.
  bool isLoaded = false;              ///< Then it is another version that knows them.
  std::vector<std::string> upgrades;  ///< In the order in which they were recorded.

  /// Whether the document says that it is this library that knows them. Else it may be any.
  [[nodiscard]] bool IsNamed() const;
  /// Such as "AcmeUpgrades 3.1, which is not loaded".
  [[nodiscard]] std::string Words() const;
};

/// All such upgrades of a document.
class UnknownUpgrades {
 public:
  [[nodiscard]] bool IsEmpty() const { return libraries_.empty(); }
  [[nodiscard]] const std::vector<MissingLibrary>& Libraries() const { return libraries_; }
  /// Those that are not of a library that is not loaded, by what the document tells: of a newer release of
  /// this program, of another version of a loaded library, or of a library that it does not name.
  [[nodiscard]] std::vector<std::string> Newer() const;
  /// Whether all of them belong to libraries that are not loaded: what is loaded knows the rest of the
  /// document.
  [[nodiscard]] bool AreOnlyNotLoaded() const;

  /// Whether one of them bears the name of an upgrade that a loaded library has, and is another: the document
  /// tells nothing of whether it needs that one.
  [[nodiscard]] bool HaveNamesake() const { return haveNamesake_; }

  /// For people, where it is not empty: whose upgrades they are, without a verb and a full stop.
  [[nodiscard]] std::string Words() const;
  /// Why a document with them is refused, as a clause about it: "it was upgraded by AcmeUpgrades 3.1, which
  /// is not loaded". Not empty either.
  [[nodiscard]] std::string Problem() const;
  /// What to do, as a sentence without its full stop. `howToLoad`: how the user has a library loaded.
  [[nodiscard]] std::string NextStep(
      std::string_view howToLoad = "with --library FILE or --plugins FOLDER") const;

  void NoteNamesake() { haveNamesake_ = true; }
  /// Adds an upgrade of `library`, which holds none itself.
  void Add(const MissingLibrary& library, const std::string& upgrade);

 private:
  std::vector<MissingLibrary> libraries_;
  bool haveNamesake_ = false;
  std::map<std::pair<std::string, std::string>, std::size_t> places_;  // by name and version
};

}  // namespace standalone
