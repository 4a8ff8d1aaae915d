#include "settings/Duration.h"

#include <charconv>
#include <system_error>

namespace tool {
namespace {

constexpr double kMostSeconds = 1e9;
constexpr double kSecondsPerMinute = 60;
constexpr double kSecondsPerHour = 3600;

std::optional<double> UnitOf(std::string_view text) {
  if (text.empty() || text == "s") return 1;
  if (text == "m") return kSecondsPerMinute;
  if (text == "h") return kSecondsPerHour;
  return std::nullopt;
}

}  // namespace

std::optional<double> SecondsOf(std::string_view text) {
  double number = 0;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc()) return std::nullopt;
  const std::optional<double> unit = UnitOf({rest, static_cast<std::size_t>(end - rest)});
  if (!unit) return std::nullopt;
  const double seconds = number * *unit;
  if (!(seconds >= 0 && seconds <= kMostSeconds)) return std::nullopt;  // nor what is no number
  return seconds;
}

}  // namespace tool
