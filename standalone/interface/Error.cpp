#include "hvxupgrade/Error.h"

#include <fmt/format.h>

namespace hvxupgrade {
namespace {

// `what()` is a text that ends at the first null character, which a name or an identifier may hold.
std::string Shown(const std::string& text) {
  std::string shown;
  for (const char letter : text) {
    if (letter == '\0') {
      shown += "\\0";
    } else {
      shown += letter;
    }
  }
  return shown;
}

std::string Told(const std::string& file, std::size_t line, const std::string& problem,
                 const std::string& advice) {
  std::string text = file;
  if (line != 0) text += fmt::format(":{}", line);
  if (!text.empty()) text += ": ";
  text += problem;
  if (!advice.empty()) text += ". " + advice;
  return Shown(text);
}

}  // namespace

Error::Error(Kind kind, std::string file, std::size_t line, std::string problem, std::string advice)
    : std::runtime_error(Told(file, line, problem, advice)),
      kind_(kind),
      file_(std::move(file)),
      line_(line),
      problem_(std::move(problem)),
      advice_(std::move(advice)) {}

// Here, so that there is one type information for programs and the library.
Error::~Error() = default;

}  // namespace hvxupgrade
