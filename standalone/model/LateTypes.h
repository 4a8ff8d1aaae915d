#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <memory>
#include <span>
#include <string_view>
#include <utility>

#include "base/VLMMetaClass.h"
#include "model/NameTable.h"

namespace standalone {

/// A late type as features hold it: its interned name and its meta-object. One that nobody but documents ever
/// named is there as long as one of them holds it.
class LateType {
 public:
  LateType(NameId name, const VLMMetaClass& metaClass, bool isOfHost);
  ~LateType();
  LateType(const LateType&) = delete;
  LateType& operator=(const LateType&) = delete;

  /// The late type of that name, which from then on is never given back. One that the host does not know
  /// derives from the plain feature. For names that stand in a program; those from documents go through
  /// `Document::LateTypeFor`.
  static const LateType& Of(std::string_view name);
  /// The names of the late types that the host knows.
  static std::span<const std::string_view> NamesOfHost();

  [[nodiscard]] NameId Id() const { return name_; }
  [[nodiscard]] std::string_view Name() const { return text_.View(); }
  /// The name as the host's string; copies share it.
  [[nodiscard]] const VLMUnicodeString& Text() const { return text_; }
  [[nodiscard]] const VLMMetaClass& MetaClass() const { return metaClass_; }
  /// Whether it stays until the process ends, whatever documents hold it.
  [[nodiscard]] bool IsForEver() const { return isForEver_.load(std::memory_order_relaxed); }
  /// Whether the host knows the late type; others are those of a library, or unknown to everybody.
  [[nodiscard]] bool IsOfHost() const { return isOfHost_; }
  [[nodiscard]] bool IsAnalysisModel() const { return isAnalysisModel_; }
  [[nodiscard]] bool IsAnalysisSet() const { return isAnalysisSet_; }

  /// Of what a part of the host takes notes.
  enum class Subject { kStoredValues, kMissingValues };
  /// What follows from the late type alone: made by `make(*this)` when it is asked for first, and kept as
  /// long as the late type is. A subject has one `T`.
  template <class T, class Make>
  const T& Noted(Subject subject, Make make) const;

  // For `HeldNames`.
  struct Held {
    const LateType& type;
    bool isCounted;  ///< Else it stays for ever.
  };
  /// The late type of that name, which is there until it is released as often as it was counted.
  static Held Hold(std::string_view name);
  static void Release(const LateType& type) noexcept;

 private:
  friend class LateTypeTable;
  struct Note {
    Note() = default;
    Note(const Note&) = delete;
    Note& operator=(const Note&) = delete;
    virtual ~Note() = default;
  };
  template <class T>
  struct NoteOf final : Note {
    explicit NoteOf(T what) : known(std::move(what)) {}
    const T known;
  };
  static constexpr std::size_t kSubjects = 2;

  std::atomic<bool> isForEver_ = false;
  NameId name_;
  bool isOfHost_;
  bool isAnalysisModel_;
  bool isAnalysisSet_;
  const VLMMetaClass& metaClass_;
  VLMUnicodeString text_;
  mutable std::array<std::atomic<const Note*>, kSubjects> notes_{};
};

template <class T, class Make>
const T& LateType::Noted(Subject subject, Make make) const {
  std::atomic<const Note*>& place = notes_[static_cast<std::size_t>(subject)];
  const Note* note = place.load(std::memory_order_acquire);
  if (note == nullptr) {
    auto made = std::make_unique<NoteOf<T>>(make(*this));
    // Another thread may have been faster.
    if (place.compare_exchange_strong(note, made.get(), std::memory_order_acq_rel)) note = made.release();
  }
  return static_cast<const NoteOf<T>*>(note)->known;
}

/// The kinds that late types derive from. General interfaces are bound to kinds, so that every late type of a
/// kind offers them.
namespace kind {
inline constexpr std::string_view kFeature = "VLMSpecObject";
inline constexpr std::string_view kAnalysisModel = "VLMSamAnalysisModel";
inline constexpr std::string_view kAnalysisCase = "VLMSamAnalysisCase";
inline constexpr std::string_view kAnalysisSet = "VLMSamAnalysisSet";
inline constexpr std::string_view kAnalysisEntity = "VLMSamAnalysisEntity";
inline constexpr std::string_view kStep = "HVXStep";
inline constexpr std::string_view kConnector = "VLMSamAnalysisConnector";
inline constexpr std::string_view kBasicComponent = "VLMSamBasicComponent";
inline constexpr std::string_view kParameter = "VLMKpeParm";
inline constexpr std::string_view kMeshPart = "VLMMSHMeshPart";
inline constexpr std::string_view kGroup = "VLMSamGroup";
inline constexpr std::string_view kContainer = "VLMContainer";
inline constexpr std::string_view kPart = "VLMPrtPart";
inline constexpr std::string_view kGeometry = "VLMGeometry";
inline constexpr std::string_view kProduct = "VLMProduct";
}  // namespace kind

}  // namespace standalone
