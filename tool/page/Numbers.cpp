#include "page/Numbers.h"

#include <fmt/format.h>

namespace tool::page {

std::string Grouped(std::size_t number) {
  std::string text = std::to_string(number);
  for (auto place = static_cast<std::ptrdiff_t>(text.size()) - 3; place > 0; place -= 3)
    text.insert(static_cast<std::size_t>(place), 1, ',');
  return text;
}

std::string CountOf(std::size_t count, std::string_view noun) {
  return fmt::format("{} {}{}", Grouped(count), noun, count == 1 ? "" : "s");
}

}  // namespace tool::page
