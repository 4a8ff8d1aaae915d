#include "report/UnknownText.h"

#include <fmt/format.h>

#include <cctype>

#include "terminal/Terminal.h"

namespace tool {

std::string NoteOf(const standalone::UnknownUpgrades& unknown) {
  std::string text = Printable(fmt::format("{}. {}.", unknown.Problem(), unknown.NextStep()));
  text.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(text.front())));
  return text;
}

}  // namespace tool
