#include "commands/StatusCommand.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <memory>
#include <optional>

#include "archive/DocumentSearch.h"
#include "document/Reading.h"
#include "file/DocumentReader.h"
#include "record/UnknownState.h"
#include "report/JsonOutput.h"
#include "terminal/Interruption.h"
#include "terminal/Table.h"
#include "terminal/Terminal.h"

namespace tool {
namespace {

using standalone::DocumentError;
using standalone::KnownUpgrade;
using standalone::VersionManager;

// What a document's first line tells of it.
enum class State { kPending, kCurrent, kNewer, kNotLoaded, kBroken };
constexpr std::size_t kStates = 5;

struct StateWords {
  std::string_view name;   // for programs: the verdict, and what --list is given
  std::string_view words;  // for people
  Colour colour;
};
constexpr std::array<StateWords, kStates> kWords{
    {{"pending", "upgrade needed", Colour::kYellow},
     {"current", "current", Colour::kGreen},
     {"newer", "newer or with unknown upgrades", Colour::kRed},
     {"notLoaded", "upgraded by a library that is not loaded", Colour::kRed},
     {"broken", "broken", Colour::kRed}}};

const StateWords& WordsOf(State state) {
  return kWords[static_cast<std::size_t>(state)];
}

struct Status {
  std::string file;
  State state = State::kBroken;
  std::uint64_t features = 0;
  std::vector<std::string> pending;
  std::vector<std::string> done;
  standalone::UnknownUpgrades unknown;
  std::optional<DocumentError> error;  // why nothing else is known

  [[nodiscard]] ExitCode Code(bool check) const {
    if (error) return ExitCodeOf(*error);
    if (state == State::kNewer || state == State::kNotLoaded) return ExitCode::kNewer;
    return check && state == State::kPending ? ExitCode::kUpgradeNeeded : ExitCode::kDone;
  }
};

Status StatusOf(const std::string& file, const VersionManager& manager) {
  Status status;
  status.file = file;
  try {
    const standalone::DocumentHeader header = standalone::ReadHeader(file);
    const standalone::Document& document = *header.document.Get();
    status.features = header.features;
    status.pending = manager.Pending(document);
    status.unknown = manager.Unknown(document);
    for (const KnownUpgrade& known : manager.Known()) {
      if (document.HasRecorded(known.identifier)) status.done.push_back(known.identifier);
    }
    if (manager.Refuses(document)) {
      status.state = status.unknown.AreOnlyNotLoaded() ? State::kNotLoaded : State::kNewer;
    } else {
      status.state = status.pending.empty() ? State::kCurrent : State::kPending;
    }
  } catch (const DocumentError& error) {
    status.error = error;
    if (error.GetKind() == DocumentError::Kind::kNewer) status.state = State::kNewer;
  }
  return status;
}

// A few names are told at once, many only by the first and the last.
std::string Folded(const std::vector<std::string>& upgrades) {
  constexpr std::size_t kFew = 5;
  if (upgrades.size() > kFew)
    return fmt::format("from {} to {}; -v lists them", Word(upgrades.front()), Word(upgrades.back()));
  std::string text;
  for (const std::string& upgrade : upgrades) text += (text.empty() ? "" : ", ") + Word(upgrade);
  return text;
}

void AppendUpgrades(fmt::memory_buffer& out, std::string_view title, const std::vector<std::string>& upgrades,
                    bool all) {
  if (upgrades.empty()) return;
  if (!all) {
    AppendParagraph(out, EachWord(fmt::format("{}: {}", title, Folded(upgrades))), 2);
    return;
  }
  fmt::format_to(std::back_inserter(out), "  {}:\n", title);
  for (const std::string& upgrade : upgrades)
    fmt::format_to(std::back_inserter(out), "    {}\n", Word(upgrade));
}

std::size_t CountOf(const standalone::UnknownUpgrades& unknown) {
  std::size_t count = 0;
  for (const standalone::MissingLibrary& each : unknown.Libraries()) count += each.upgrades.size();
  return count;
}

// Of this document, which a state's words may tell less of.
std::string_view WordsOf(const Status& status) {
  const bool isRefused = status.state == State::kNewer || status.state == State::kNotLoaded;
  return isRefused ? StateOf(status.unknown) : WordsOf(status.state).words;
}

void AppendText(fmt::memory_buffer& out, const Status& status, bool all) {
  auto to = std::back_inserter(out);
  const Colour colour = WordsOf(status.state).colour;
  fmt::format_to(to, "{}: {}, ", Printable(status.file), Paint(stdout, colour, WordsOf(status)));
  if (status.pending.empty()) {
    fmt::format_to(to, "{} done", Count(status.done.size(), "upgrade"));
  } else {
    fmt::format_to(to, "{} pending, {} done", Count(status.pending.size(), "upgrade"), status.done.size());
  }
  if (!status.unknown.IsEmpty()) fmt::format_to(to, ", {} unknown here", CountOf(status.unknown));
  fmt::format_to(to, " ({})\n", Count(status.features, "feature"));
  AppendUpgrades(out, "Pending", status.pending, all);
  if (all) AppendUpgrades(out, "Done", status.done, all);
  for (const standalone::MissingLibrary& each : status.unknown.Libraries())
    AppendUpgrades(out, fmt::format("Unknown here, of {}", Printable(each.Words())), each.upgrades, all);
  if (!status.unknown.IsEmpty())
    AppendParagraph(out, EachWord(Printable(fmt::format("Next: {}", status.unknown.NextStep()))), 2);
}

void AppendJson(fmt::memory_buffer& out, const Status& status) {
  JsonObject entry(out);
  entry.Name("file", status.file);
  entry.Text("verdict", WordsOf(status.state).name);
  entry.Text("words", WordsOf(status));
  entry.Number("features", status.features);
  entry.Texts("pendingUpgrades", status.pending);
  entry.Texts("doneUpgrades", status.done);
  AppendUnknown(entry, status.unknown);
  entry.Close();
}

// What is told of all documents, one at a time.
class View {
 public:
  virtual ~View() = default;
  virtual void Add(const Status& status) = 0;
  // `left`: how many documents were not looked at, since the user interrupted the run.
  virtual void Finish(std::size_t /*left*/) {}
};

class JsonView final : public View {
 public:
  JsonView() {
    top_.Text("status", "hvxupgrade");
    top_.Number("version", kJsonVersion);
    documents_.emplace(top_.Key("documents"));
  }
  void Add(const Status& status) override {
    if (status.error) {
      Complain(status.error->what());
      AppendUnreadable(documents_->Entry(), status.file, VerdictOf(*status.error), status.error->what());
    } else {
      AppendJson(documents_->Entry(), status);
    }
    Flush();
  }
  void Finish(std::size_t left) override {
    documents_->Close();
    top_.Number("left", left);
    top_.Flag("interrupted", left != 0);
    top_.Close();
    out_.push_back('\n');
    Flush();
  }

 private:
  void Flush() {
    Say({out_.data(), out_.size()});
    out_.clear();
  }

  fmt::memory_buffer out_;
  JsonObject top_{out_};
  std::optional<JsonList> documents_;
};

class EachView final : public View {
 public:
  explicit EachView(bool all) : all_(all) {}
  void Add(const Status& status) override {
    if (status.error) {
      Complain(status.error->what());
      return;
    }
    fmt::memory_buffer out;
    AppendText(out, status, all_);
    Say({out.data(), out.size()});
    FlushOutput();
  }

 private:
  bool all_;
};

// Of several documents: how many there are in each state, and which of them need something.
class TotalsView final : public View {
 public:
  // What is wrong with documents that somebody named is a complaint, told at once.
  explicit TotalsView(bool areNamed) : areNamed_(areNamed) {}
  void Add(const Status& status) override {
    if (areNamed_ && status.error) Complain(status.error->what());
    Group& group = groups_[static_cast<std::size_t>(status.state)];
    ++group.documents;
    features_ += status.features;
    const bool isTold = status.state == State::kCurrent || (areNamed_ && status.error);
    if (!isTold && group.first.size() < kListed) group.first.push_back(LineOf(status));
  }
  void Finish(std::size_t /*left*/) override {
    std::size_t all = 0;
    for (const Group& group : groups_) all += group.documents;
    Say(fmt::format("{}, {}\n", Count(all, "document"), Count(features_, "feature")));
    std::size_t width = 24;  // the columns stand apart
    for (std::size_t i = 0; i < kStates; ++i) {
      if (groups_[i].documents != 0) width = std::max(width, kWords[i].words.size() + 1);
    }
    for (std::size_t i = 0; i < kStates; ++i) {
      if (groups_[i].documents == 0) continue;
      const std::string verdict = fmt::format("{:<{}}", kWords[i].words, width);
      Say(fmt::format("  {}{:>9}   --list {}\n", Paint(stdout, kWords[i].colour, verdict),
                      groups_[i].documents, kWords[i].name));
    }
    for (const State state : {State::kBroken, State::kNewer, State::kNotLoaded, State::kPending}) Tell(state);
  }

 private:
  static constexpr std::size_t kListed = 20;
  struct Group {
    std::size_t documents = 0;
    std::vector<std::string> first;  // there may be very many
  };

  static std::string LineOf(const Status& status) {
    if (status.error) return Printable(status.error->what());  // which names the file
    if (status.state == State::kNewer) {
      const std::vector<std::string> newer = status.unknown.Newer();
      return fmt::format("{}: {} unknown here, such as {}", Printable(status.file),
                         Count(newer.size(), "upgrade"), Word(newer.front()));
    }
    if (status.state == State::kNotLoaded)
      return Printable(fmt::format("{}: upgraded by {}", status.file, status.unknown.Words()));
    return fmt::format("{}: {} pending", Printable(status.file), Count(status.pending.size(), "upgrade"));
  }

  void Tell(State state) const {
    const Group& group = groups_[static_cast<std::size_t>(state)];
    if (group.first.empty()) return;
    std::string title(WordsOf(state).words);
    title.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(title.front())));
    Say(fmt::format("\n{}:\n", Paint(stdout, WordsOf(state).colour, title)));
    for (const std::string& line : group.first) Say(fmt::format("  {}\n", line));
    if (group.documents > group.first.size()) {
      Say(fmt::format("  and {} more; --list {} prints all\n", group.documents - group.first.size(),
                      WordsOf(state).name));
    }
  }

  bool areNamed_;
  std::array<Group, kStates> groups_;
  std::uint64_t features_ = 0;
};

// The names alone go to standard output, where a program can read them; why, to standard error.
class NamesView final : public View {
 public:
  // With `endsWithNul` names are printed as they are, for programs; else as people can see them.
  NamesView(std::string_view state, bool endsWithNul) : state_(state), endsWithNul_(endsWithNul) {}
  void Add(const Status& status) override {
    if (WordsOf(status.state).name != state_) return;
    Say(endsWithNul_ ? status.file + '\0' : Printable(status.file) + '\n');
    if (status.error) Complain(status.error->what());
  }

 private:
  std::string_view state_;
  bool endsWithNul_;
};

std::unique_ptr<View> ViewFor(const StatusArguments& arguments, const FoundDocuments& found) {
  if (arguments.json) return std::make_unique<JsonView>();
  if (!arguments.list.empty())
    return std::make_unique<NamesView>(arguments.list, arguments.sources.listHasNul);
  const bool areSeveral = found.areSearched || found.documents.size() > 1;
  if (areSeveral && !arguments.verbose) return std::make_unique<TotalsView>(!found.areSearched);
  return std::make_unique<EachView>(arguments.verbose);
}

}  // namespace

ExitCode RunStatus(const StatusArguments& arguments, const VersionManager& manager) {
  const FoundDocuments found = FindDocuments(arguments.sources);
  ExitCode code = TellProblems(found);
  const std::unique_ptr<View> view = ViewFor(arguments, found);
  // Half a JSON text would be of no use to anybody.
  if (arguments.json) {
    Interruption::HoldBack();
    Interruption::LetIn();
  }
  std::size_t left = found.documents.size();
  for (const GivenDocument& document : found.documents) {
    const Status status = StatusOf(document.file, manager);
    if (Interruption::Requested()) break;  // which may be why it could not be read
    view->Add(status);
    code = MoreSerious(code, status.Code(arguments.check));
    --left;
  }
  Interruption::GoOnToTheEnd();
  view->Finish(left);
  if (left == 0) return code;
  Complain(fmt::format("interrupted; {} not read", Count(left, "document")));
  return ExitCode::kInterrupted;
}

}  // namespace tool
