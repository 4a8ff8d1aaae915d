#pragma once

#include <string>
#include <string_view>

namespace tool::page {

/// "20,000".
[[nodiscard]] std::string Grouped(std::size_t number);
/// "1 document", "20,000 documents".
[[nodiscard]] std::string CountOf(std::size_t count, std::string_view noun);

}  // namespace tool::page
