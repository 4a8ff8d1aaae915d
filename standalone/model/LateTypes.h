#pragma once

#include <span>
#include <string_view>

#include "base/VLMMetaClass.h"
#include "model/NameTable.h"

namespace standalone {

/// A late type as features hold it: its interned name and its meta-object.
class LateType {
 public:
  LateType(NameId name, const VLMMetaClass& metaClass, bool isOfHost);

  /// The late type of that name. One that the host does not know derives from the plain feature.
  static const LateType& Of(std::string_view name);
  /// The names of the late types that the host knows.
  static std::span<const std::string_view> NamesOfHost();

  [[nodiscard]] NameId Id() const { return name_; }
  [[nodiscard]] std::string_view Name() const { return text_.View(); }
  /// The name as the host's string; copies share it.
  [[nodiscard]] const VLMUnicodeString& Text() const { return text_; }
  [[nodiscard]] const VLMMetaClass& MetaClass() const { return metaClass_; }
  /// Whether the host knows the late type; others are those of a library, or unknown to everybody.
  [[nodiscard]] bool IsOfHost() const { return isOfHost_; }
  [[nodiscard]] bool IsAnalysisModel() const { return isAnalysisModel_; }
  [[nodiscard]] bool IsAnalysisSet() const { return isAnalysisSet_; }

 private:
  NameId name_;
  bool isOfHost_;
  bool isAnalysisModel_;
  bool isAnalysisSet_;
  const VLMMetaClass& metaClass_;
  VLMUnicodeString text_;
};

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
