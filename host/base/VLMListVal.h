#pragma once

#include <stdexcept>
#include <utility>
#include <vector>

#include "base/VLMUnicodeString.h"

/// The host's value list. Positions run from 1 to `Size()`.
template <class Element>
class VLMListVal {
 public:
  VLMListVal() = default;
  VLMListVal(std::initializer_list<Element> elements) : elements_(elements) {}

  [[nodiscard]] int Size() const noexcept { return static_cast<int>(elements_.size()); }

  /// The element at `position` (1 to `Size()`). Any other position is a programming error and throws
  /// `std::out_of_range`.
  [[nodiscard]] const Element& operator[](int position) const { return elements_.at(Index(position)); }
  [[nodiscard]] Element& operator[](int position) { return elements_.at(Index(position)); }

  /// Makes room for so many elements, so that appending them moves none.
  void Reserve(std::size_t size) { elements_.reserve(size); }
  void Append(Element element) { elements_.push_back(std::move(element)); }
  void RemoveAll() noexcept { elements_.clear(); }

  [[nodiscard]] auto begin() const noexcept { return elements_.begin(); }
  [[nodiscard]] auto end() const noexcept { return elements_.end(); }

 private:
  // Position 0 wraps to a huge index, which at() refuses like any other position outside the list.
  static std::size_t Index(int position) noexcept { return static_cast<std::size_t>(position) - 1; }

  std::vector<Element> elements_;
};

using VLMListValVLMUnicodeString = VLMListVal<VLMUnicodeString>;
