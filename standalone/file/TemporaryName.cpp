#include "file/TemporaryName.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <limits.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iterator>

namespace standalone {
namespace {

constexpr std::string_view kMark = "hvxtmp-";
constexpr std::string_view kRandom = "XXXXXX";

bool IsPlain(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

std::string HostName() {
  std::array<char, HOST_NAME_MAX + 1> buffer{};
  if (gethostname(buffer.data(), buffer.size() - 1) != 0) return "unknown";
  std::string name = buffer.data();
  std::ranges::replace_if(
      name, [](char c) { return !IsPlain(c); }, '-');
  return name.empty() ? "unknown" : name;
}

std::uint64_t ProcessSpace() {
  struct stat status {};
  return stat("/proc/self/ns/pid", &status) == 0 ? status.st_ino : 0;
}

template <class Number>
bool TakeNumber(std::string_view text, Number& number, int base) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
  return error == std::errc() && end == text.data() + text.size();
}

struct ProcessFacts {
  bool hasEnded = false;  // but its parent has not asked for the end yet
  std::uint64_t start = 0;
};

// None when the system does not tell.
std::optional<ProcessFacts> FactsOf(pid_t process) {
  std::ifstream stream(fmt::format("/proc/{}/stat", process));
  const std::string line{std::istreambuf_iterator<char>(stream), {}};
  // The name of the program, in parentheses, may hold anything. Behind it stand the state and, as the
  // twentieth of the fields from there, the start.
  constexpr int kFieldsUpToStart = 20;
  const std::size_t name = line.rfind(')');
  if (name == std::string::npos) return std::nullopt;
  std::string_view rest = std::string_view(line).substr(name + 1);
  ProcessFacts facts;
  for (int field = 1; field <= kFieldsUpToStart; ++field) {
    if (rest.empty()) return std::nullopt;
    rest.remove_prefix(1);
    const std::string_view text = rest.substr(0, rest.find(' '));
    if (field == 1) facts.hasEnded = text == "Z" || text == "X";
    if (field == kFieldsUpToStart && !TakeNumber(text, facts.start, 10)) return std::nullopt;
    rest.remove_prefix(text.size());
  }
  return facts;
}

// The part of a file name that is left of `name` when `room` bytes are there, without a torn character.
std::string_view Shortened(std::string_view name, std::size_t room) {
  if (name.size() <= room) return name;
  const auto continues = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; };
  while (room > 0 && continues(name[room])) --room;
  return name.substr(0, room);
}

}  // namespace

std::optional<TemporaryName> TemporaryName::Parse(std::string_view name) {
  if (!name.starts_with('.')) return std::nullopt;
  const auto takeLast = [&name] {
    const std::size_t dot = name.rfind('.');
    const std::string_view last = dot == std::string_view::npos ? "" : name.substr(dot + 1);
    name = name.substr(0, dot == std::string_view::npos ? 0 : dot);
    return last;
  };
  const std::string_view random = takeLast();
  if (!random.starts_with(kMark) || random.size() != kMark.size() + kRandom.size()) return std::nullopt;
  TemporaryName parsed;
  if (!TakeNumber(takeLast(), parsed.start, 16) || !TakeNumber(takeLast(), parsed.process, 10) ||
      !TakeNumber(takeLast(), parsed.space, 16) || parsed.process <= 0)
    return std::nullopt;
  parsed.host = takeLast();
  if (parsed.host.empty()) return std::nullopt;
  return parsed;
}

Maker TemporaryName::State() const {
  if (host != HostName() || space != ProcessSpace()) return Maker::kElsewhere;
  if (kill(process, 0) != 0 && errno == ESRCH) return Maker::kGone;
  const std::optional<ProcessFacts> facts = FactsOf(process);
  if (!facts) return Maker::kRuns;
  const bool isAnother = start != 0 && facts->start != start;
  return isAnother || facts->hasEnded ? Maker::kGone : Maker::kRuns;
}

int MakeTemporary(const std::filesystem::path& target, std::string& temporary) {
  const std::filesystem::path folder = target.has_parent_path() ? target.parent_path() : ".";
  const std::optional<ProcessFacts> self = FactsOf(getpid());
  const std::string maker = fmt::format(".{}.{:x}.{}.{:x}.{}{}", HostName(), ProcessSpace(), getpid(),
                                        self ? self->start : 0, kMark, kRandom);
  const long longest = pathconf(folder.c_str(), _PC_NAME_MAX);
  const std::size_t room = static_cast<std::size_t>(longest > 0 ? longest : NAME_MAX);
  const std::string file = target.filename().string();
  temporary = folder / fmt::format(".{}{}", Shortened(file, room - std::min(room, maker.size() + 1)), maker);
  const int descriptor = mkostemp(temporary.data(), O_CLOEXEC);
  if (descriptor < 0) temporary.clear();
  return descriptor;
}

}  // namespace standalone
