// A program may stop each piece of work at any moment. Files are then as they were, and nothing is left over.

#include <hvxupgrade/Difference.h>
#include <hvxupgrade/Findings.h>

#include <cstdint>
#include <stdexcept>

#include "interface/InterfaceTest.h"

namespace {

using namespace hvxupgrade;
using namespace testing_support;

class StoppingTest : public InterfaceTest {
 protected:
  static constexpr int kCalls = 1000;  // more than any of these works tells

  // What tells false at the call of that number, from 0.
  static auto StopAt(int number) {
    return [number, call = 0](std::uint64_t done, std::uint64_t total) mutable {
      EXPECT_TRUE(total == 0 || done <= total);
      return call++ != number;
    };
  }

  static bool IsStopped(const auto& action) {
    const auto error = ErrorOf(action);
    EXPECT_TRUE(!error || error->GetKind() == Kind::kStopped) << error->what();
    return error.has_value();
  }
};

TEST_F(StoppingTest, ReadingAnywhere) {
  std::string lines;
  for (int id = 1; id <= 20'000; ++id)
    lines += R"({"id":)" + std::to_string(id) + R"(,"type":"Part","alias":"The name of it"})" + "\n";
  const std::filesystem::path file = Put("in.hvxdoc", lines);
  int stops = 0;
  for (int at = 0; at < kCalls; ++at, ++stops) {
    if (!IsStopped([&] { static_cast<void>(Read(file, {.onProgress = StopAt(at)})); })) break;
  }
  EXPECT_GT(stops, 2);
  EXPECT_LT(stops, kCalls);
  EXPECT_TRUE(IsStopped([&] {
    LineReader reader(file, {.onProgress = StopAt(2)});
    for (FeatureLine line; reader.Next(line);) EXPECT_LT(line.id, 20'000);
  }));
}

// Whatever was done by then is no document: it cannot be written or upgraded any more.
TEST_F(StoppingTest, AnUpgradeAnywhere) {
  const Upgrader upgrader;
  const std::string before = BytesOf(Example("bolted_bracket"));
  const std::filesystem::path file = folder_.Put("in.hvxdoc", before);
  int untouched = 0;
  int spoilt = 0;
  for (int at = 0; at < kCalls; ++at) {
    Document document = Read(file);
    if (!IsStopped([&] { upgrader.Upgrade(document, {.onProgress = StopAt(at)}); })) break;
    EXPECT_TRUE(document.Upgrades().empty());
    const auto error = ErrorOf([&] { Write(document, file, {.overwrite = true}); });
    if (error) {
      ++spoilt;
      ExpectError(Kind::kUsage, "between two releases", [&] { upgrader.Upgrade(document); });
      EXPECT_EQ(error->GetKind(), Kind::kUsage);
    } else {
      ++untouched;
    }
    EXPECT_EQ(BytesOf(file), before);
  }
  EXPECT_GT(untouched, 0);
  EXPECT_GT(spoilt, 0);
  EXPECT_EQ(folder_.Names().size(), 1U);
  Document document = Read(file);
  EXPECT_EQ(upgrader.Upgrade(document).identifiers.size(), 66U);  // the next one goes its way
}

// A piece of work that goes on for ever ends by itself, but a program need not wait for that.
TEST_F(StoppingTest, AnUpgradeWithinOnePieceOfWork) {
  constexpr std::string_view kEndlessForce =
      R"({"id":1,"type":"AnalysisModel","attributes":{"FeatList":[]}}
{"id":4,"type":"HVXConcentratedForce","alias":"Force","father":{"ref":1},"attributes":{"SonsList":[{"ref":10},{"ref":11},{"ref":12}]}}
{"id":10,"type":"SAMBasicComponent","name":"AxisSystemType","father":{"ref":4}}
{"id":11,"type":"SAMBasicComponent","name":"Stray","father":{"ref":4}}
{"id":12,"type":"SAMBasicComponent","name":"Stray","father":{"ref":4}}
)";
  const Upgrader upgrader;
  Document document = Given(kEndlessForce);
  ExpectError(Kind::kStopped, "the upgrade was stopped", [&] {
    upgrader.Upgrade(document, {.onProgress = [last = std::uint64_t{0}, again = 0](std::uint64_t done,
                                                                                   std::uint64_t) mutable {
                       again = done == last ? again + 1 : 0;
                       last = done;
                       return again < 3;
                     }});
  });
  document = Given(kEndlessForce);
  ExpectError(Kind::kStopped, "changed nothing", [&] { upgrader.Upgrade(document); });
}

TEST_F(StoppingTest, WritingAnywhere) {
  const std::string before = BytesOf(Example("bolted_bracket"));
  const std::filesystem::path file = folder_.Put("in.hvxdoc", before);
  Document document = Read(file);
  document.Find(1)->SetAlias("changed");
  int stops = 0;
  for (int at = 0; at < kCalls; ++at, ++stops) {
    const WriteOptions options{.overwrite = true, .backupSuffix = ".old", .onProgress = StopAt(at)};
    if (!IsStopped([&] { Write(document, file, options); })) break;
    EXPECT_EQ(BytesOf(file), before);
    EXPECT_EQ(folder_.Names().size(), 1U);
  }
  EXPECT_GT(stops, 0);
  EXPECT_NE(BytesOf(file), before);
  EXPECT_EQ(BytesOf(folder_ / "in.hvxdoc.old"), before);
}

// A callback may look, and work on what is its own; the result is as without it.
TEST_F(StoppingTest, WhatIsToldOfProgressMayOnlyLook) {
  const Upgrader upgrader;
  const auto upgraded = [&](const char* example) {
    Document document = Read(Example(example));
    upgrader.Upgrade(document);
    return TextOf(document);
  };
  const std::string alone = upgraded("bolted_bracket");
  Document document = Read(Example("bolted_bracket"));
  Feature pressure = *document.Find(247);
  int calls = 0;
  const auto look = [&](std::uint64_t, std::uint64_t) {
    for (const Feature each : document.All()) {
      for (const std::string_view key : each.Keys()) EXPECT_TRUE(each.Get(key));
    }
    static_cast<void>(Check(document));
    static_cast<void>(ChangesSinceRead(document));
    const auto isRefused = [](const auto& change) {
      ExpectError(Kind::kUsage, "upgraded or written", change);
    };
    isRefused([&] { static_cast<void>(document.Create("Part")); });
    isRefused([&] { document.Remove(document.OfType("HVXPressure").front()); });
    isRefused([&] { pressure.SetAlias("mine"); });
    isRefused([&] { pressure.SetUpToDate(false); });
    isRefused([&] { pressure.Set("Mine", 1); });
    isRefused([&] { pressure.Remove("Supports"); });
    isRefused([&] { upgrader.Upgrade(document); });
    isRefused([&] { Write(document, folder_ / "other.hvxdoc"); });
    ++calls;
    return true;
  };
  upgrader.Upgrade(document, {.onProgress = [&](std::uint64_t done, std::uint64_t total) {
                     Document another = Read(Example("heated_pipe"));
                     another.Find(1)->SetAlias("other");
                     static_cast<void>(TextOf(another));
                     ExpectError(Kind::kUsage, "this thread is upgrading another document",
                                 [&] { upgrader.Upgrade(another); });
                     return look(done, total);
                   }});
  Write(document, folder_ / "result.hvxdoc", {.onProgress = look});
  EXPECT_GT(calls, 2);
  EXPECT_TRUE(BytesOf(folder_ / "result.hvxdoc") == alone);
  pressure.Set("Mine", 1);  // as soon as that is done
}

// What a program's function throws is the program's own.
TEST_F(StoppingTest, WhatACallbackThrowsComesOutAsItIs) {
  const auto complain = [](std::uint64_t, std::uint64_t) -> bool { throw std::out_of_range("mine"); };
  const std::filesystem::path file = folder_.Put("in.hvxdoc", BytesOf(Example("heated_pipe")));
  EXPECT_THROW(static_cast<void>(Read(file, {.onProgress = complain})), std::out_of_range);
  EXPECT_THROW(LineReader(file, {.onProgress = complain}), std::out_of_range);
  Document document = Read(file);
  EXPECT_THROW(Upgrader().Upgrade(document, {.onProgress = complain}), std::out_of_range);
  EXPECT_THROW(Write(document, folder_ / "out", {.onProgress = complain}), std::out_of_range);
  EXPECT_EQ(folder_.Names().size(), 1U);
}

}  // namespace
