#pragma once

#include <vector>

#include "base/VLMBaseUnknown.h"
#include "base/VLMString.h"
#include "modeler/VLMISpecObject.h"

/// The key of an attribute that a feature has. Null when the feature has no attribute of the name asked for.
class VLMSpecAttrKey {
 public:
  VLMSpecAttrKey() noexcept = default;
  explicit VLMSpecAttrKey(std::uint32_t name) noexcept : name_(name) {}

  [[nodiscard]] bool IsNull() const noexcept { return name_ == 0; }
  /// The host's number of the attribute's name; 0 for the null key.
  [[nodiscard]] std::uint32_t Name() const noexcept { return name_; }

 private:
  std::uint32_t name_ = 0;
};

/// The kinds of value that an attribute holds.
enum class VLMAttributeType { kString, kInteger, kReal, kBoolean, kLink, kList };

/// Describes one attribute of a feature.
class VLMISpecAttribute : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"VLMISpecAttribute"};

  virtual VLMUnicodeString GetName() = 0;
  virtual VLMAttributeType GetType() = 0;
};
using VLMISpecAttribute_var = VLMHandle<VLMISpecAttribute>;

/// The attributes of a feature, by key.
///
/// Reading through a null key, or a value of another type than the attribute holds, gives E_FAIL and leaves
/// the out argument as it is. An integer attribute can be read as a real; nothing else is converted. Writing
/// keeps the type that the attribute has: E_FAIL, and the value stays, for a value of another type.
class VLMISpecAttrAccess : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"VLMISpecAttrAccess"};

  /// The key of attribute `name`; null when the feature has no such attribute or the call fails.
  virtual VLMSpecAttrKey GetAttrKey(const VLMString& name) = 0;

  /// Gives the key of attribute `name` and, where the feature lacks it, adds it first: without a value until
  /// one is stored.
  virtual HRESULT AddAttribute(const VLMString& name, VLMAttributeType type, VLMSpecAttrKey& key) = 0;

  /// The description of the attribute; null for a null key or when the call fails.
  virtual VLMISpecAttribute_var GetAttribute(VLMSpecAttrKey key) = 0;

  /// Takes the attribute out of the feature. E_FAIL for a null key or an attribute that is gone.
  virtual HRESULT RemoveAttribute(VLMSpecAttrKey key) = 0;

  virtual HRESULT GetString(VLMSpecAttrKey key, VLMUnicodeString& value) = 0;
  virtual HRESULT SetString(VLMSpecAttrKey key, const VLMUnicodeString& value) = 0;
  virtual HRESULT GetInteger(VLMSpecAttrKey key, std::int64_t& value) = 0;
  virtual HRESULT SetInteger(VLMSpecAttrKey key, std::int64_t value) = 0;
  virtual HRESULT GetReal(VLMSpecAttrKey key, double& value) = 0;
  virtual HRESULT SetReal(VLMSpecAttrKey key, double value) = 0;
  virtual HRESULT GetBoolean(VLMSpecAttrKey key, bool& value) = 0;
  virtual HRESULT SetBoolean(VLMSpecAttrKey key, bool value) = 0;

  /// Gives a list of reals, in order; E_FAIL when the attribute is not a list or holds anything but numbers.
  /// Only such a list is replaced.
  virtual HRESULT GetRealList(VLMSpecAttrKey key, std::vector<double>& values) = 0;
  virtual HRESULT SetRealList(VLMSpecAttrKey key, const std::vector<double>& values) = 0;

  /// The number of entries of a list attribute; 0 for anything else or when the call fails.
  virtual int GetListSize(VLMSpecAttrKey key) = 0;

  /// The feature that a single link holds (`position` 0), or that stands at `position` (from 1) of a list.
  /// Null when there is none or the call fails.
  virtual VLMISpecObject_var GetObject(VLMSpecAttrKey key, int position = 0) = 0;

  /// Stores a link to `object`: index 0 appends to a list attribute and sets a single one; an index from 1 to
  /// the size replaces that entry of a list. E_FAIL for a null key, a null object, an object of another
  /// document, or an index beyond the list.
  virtual HRESULT StoreObject(VLMSpecAttrKey key, const VLMBaseUnknown_var& object, int index) = 0;

  /// The integer that the host keeps beside each attribute and that tells how its link is treated: 0 unless
  /// it was set.
  virtual int GetMode(VLMSpecAttrKey key) = 0;
  virtual HRESULT SetMode(VLMSpecAttrKey key, int mode) = 0;
};
using VLMISpecAttrAccess_var = VLMHandle<VLMISpecAttrAccess>;
