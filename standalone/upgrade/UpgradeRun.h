#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "model/Document.h"
#include "workbench/HVXUpgradeTable.h"

namespace standalone {

/// One upgrade identifier and all that answers it.
struct KnownUpgrade {
  struct Binding {
    const HVXUpgradeLibrary* library;
    const HVXUpgradeClass* upgradeClass;
    const HVXUpgradeBinding* binding;
  };

  std::string identifier;
  const HVXUpgradeLibrary* library = nullptr;  ///< The first one that knows it: it is that one's.
  std::vector<Binding> bindings;               ///< In the order of the libraries and their tables.
  const HVXDocumentUpgrade* documentUpgrade =
      nullptr;  ///< The conversion of whole documents, where it is one,
  const HVXUpgradeLibrary* documentLibrary = nullptr;  ///< and whose that is.
  /// For late types that several libraries extend: the classes whose extensions are handed this identifier,
  /// in the order of the libraries. What a cast gives is the first library's extension alone.
  std::map<std::string, std::vector<const HVXUpgradeClass*>, std::less<>> shared;
};

/// A piece of a run: what was done for one identifier to one feature, or to the whole document.
struct UpgradeWork {
  enum class Kind {
    kVisit,        ///< The feature's upgrade extension was handed the identifier.
    kConversion,   ///< The identifier's conversion of the whole document; without a feature.
    kPropagation,  ///< The feature, handed over while the identifier was at work, was propagated.
    kDeadLinks,    ///< What the identifier removed was taken out of the features that linked to it.
  };

  Kind kind = Kind::kVisit;
  const KnownUpgrade* upgrade = nullptr;
  const Feature* feature = nullptr;
  const LateType* type = nullptr;  ///< The feature's late type when its turn came.
};

/// Who answers for what an upgrade does somewhere.
struct Answerable {
  /// Null for a conversion of the whole document, for propagation, and where nobody can tell.
  const HVXUpgradeClass* upgradeClass = nullptr;
  const HVXUpgradeLibrary* library = nullptr;  ///< Not null.
};

/// A piece of a run that failed.
struct UpgradeFailure {
  UpgradeWork work;
  HRESULT code = E_FAIL;
  /// The routine that failed; null when no routine told, such as where a feature does not offer its
  /// extension.
  const HVXUpgradeBinding* row = nullptr;
  Answerable answerable = {};

  /// Whether the routine's class ignores the result, so that the extension reported success.
  [[nodiscard]] bool IsIgnored() const {
    return row != nullptr &&
           (row->onFailure == HVXOnFailure::kIgnore || row->onFailure == HVXOnFailure::kSkip);
  }
};

/// What a run did.
struct UpgradeRun {
  std::vector<std::string> identifiers;  ///< What was run, in the order of the libraries.
  /// The features, as the document came, that some identifier concerned: how many of each late type.
  std::vector<std::pair<const LateType*, std::size_t>> concerned;
  /// The pieces that changed features, in the order of the work; the document's journal refers to them.
  std::vector<UpgradeWork> works;
  /// In the order of the work, those included whose results are ignored.
  std::vector<UpgradeFailure> failures;
  /// Failures that mean that there was nothing to do: how many of each row.
  std::vector<std::pair<const HVXUpgradeBinding*, std::size_t>> harmless;
};

/// Where a run is.
struct UpgradePlace {
  UpgradeWork::Kind kind = UpgradeWork::Kind::kVisit;
  const KnownUpgrade* upgrade = nullptr;
  const HVXUpgradeClass* upgradeClass = nullptr;  ///< Null where the late type alone says which it is.
  FeatureId feature = 0;                          ///< 0 for the whole document.
  std::string_view lateType = {};
  std::string_view name = {};  ///< The external one, where the feature has it.
};

/// Why a run could not be carried through. The document is to be thrown away. `what()` holds both.
class UpgradeAborted : public std::runtime_error {
 public:
  UpgradeAborted(const std::string& problem, const std::string& advice)
      : std::runtime_error(problem + ". " + advice), problem_(problem), advice_(advice) {}

  /// With the place where the run was, and without a full stop.
  [[nodiscard]] const std::string& Problem() const noexcept { return problem_; }
  /// What to do, as a sentence without its full stop.
  [[nodiscard]] const std::string& Advice() const noexcept { return advice_; }

 private:
  std::string problem_;
  std::string advice_;
};

/// Who wants to know what a run is doing; what is empty is not told. What one of these throws ends the run,
/// and comes out as it is.
struct UpgradeWatch {
  /// How to allow more than the limit of created features, as a sentence without its full stop.
  std::string_view limitAdvice = "Raise it with --limit-features";
  /// Now and then: how many visits are done, and about how many there are.
  std::function<void(std::size_t done, std::size_t total)> onProgress;
  /// The run comes to a piece of work; null: it has left the last one. The texts last for the call.
  std::function<void(const UpgradePlace* place)> onPlace;
  /// A routine is about to run on the feature.
  std::function<void(const Feature& feature, const HVXUpgradeBinding& row)> onRoutine;
  /// It gave `result`.
  std::function<void(const Feature& feature, const HVXUpgradeBinding& row, HRESULT result)> onRoutineDone;
};

}  // namespace standalone
