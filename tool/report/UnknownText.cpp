#include "report/UnknownText.h"

#include <fmt/format.h>

#include <cctype>

#include "terminal/Terminal.h"

namespace tool {

std::string ProblemOf(const standalone::UnknownUpgrades& unknown) {
  const std::vector<std::string> newer = unknown.Newer();
  const bool isOfProgram = unknown.Libraries().size() == 1 && unknown.Libraries().front().IsNewerProgram();
  if (!isOfProgram) return fmt::format("it was upgraded by {}", unknown.Words());
  return fmt::format("it has been through {} that this program does not know, such as {}",
                     Count(newer.size(), "upgrade"), Quoted(newer.front()));
}

std::string NoteOf(const standalone::UnknownUpgrades& unknown) {
  std::string text = Printable(fmt::format("{}. {}.", ProblemOf(unknown), unknown.NextStep()));
  text.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(text.front())));
  return text;
}

}  // namespace tool
