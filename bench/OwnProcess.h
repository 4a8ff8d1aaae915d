#pragma once

#include <functional>
#include <type_traits>

namespace bench {

/// Has `work` done by a copy of this process, so that neither the memory that it takes nor what it leaves in
/// tables adds to what is measured later; `result` has `size` bytes and becomes what the copy made of it.
/// Throws `std::runtime_error` when the copy does not come to the end.
void InOwnProcess(const std::function<void()>& work, void* result, std::size_t size);

/// The same for work that gives a result.
template <class Work>
auto InOwnProcess(const Work& work) {
  using Result = std::invoke_result_t<Work>;
  static_assert(std::is_trivially_copyable_v<Result>, "it travels through a pipe");
  Result result{};
  InOwnProcess([&] { result = work(); }, &result, sizeof result);
  return result;
}

}  // namespace bench
