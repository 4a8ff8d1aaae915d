// Several documents are open at once, and several threads of one process work on them, each on its own.

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <future>
#include <random>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "check/Conformity.h"
#include "check/Integrity.h"
#include "compare/DocumentDifference.h"
#include "file/DocumentReader.h"
#include "file/DocumentWriter.h"
#include "session/FeatureCatalogs.h"
#include "session/InstalledFiles.h"
#include "session/Messages.h"
#include "sheet/Sheet.h"
#include "support/RandomDocuments.h"
#include "support/TempFolder.h"
#include "support/UpgradeFixture.h"

namespace {

using namespace standalone;
using testing_support::BytesOf;

#if defined(__SANITIZE_THREAD__)
#define HVX_THREADS_ARE_WATCHED
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define HVX_THREADS_ARE_WATCHED
#endif
#endif

#if defined(HVX_SANITIZED) || defined(HVX_THREADS_ARE_WATCHED)
constexpr int kRandomDocuments = 4;  // a run takes several times as long
#else
constexpr int kRandomDocuments = 24;
#endif
constexpr int kWorkers = 3;

// What is done to one document, and all that came of it.
struct Account {
  std::vector<std::string> findings;
  std::vector<std::string> faults;
  std::size_t subjects = 0;
  std::size_t changed = 0;
  std::int64_t calls = 0;
  std::string result;  // the file

  friend bool operator==(const Account&, const Account&) = default;
};

class ThreadsTest : public testing_support::UpgradeTest {
 protected:
  ThreadsTest() {
    std::mt19937 random(20240304);
    for (const char* const example : {"bolted_bracket", "heated_pipe"})
      files_.emplace_back(fmt::format("{}/examples/{}.hvxdoc", HVX_SOURCE_DIR, example));
    for (int i = 0; i < kRandomDocuments; ++i) {
      const DocumentPtr document = testing_support::DocumentOf(
          i % 2 == 0 ? testing_support::DamagedExample(random) : testing_support::OddExample(random));
      files_.push_back(folder_ / fmt::format("old{}.hvxdoc", i).c_str());
      WriteDocument(*document.Get(), files_.back());
    }
  }

  // Reads, checks, upgrades, checks and compares, writes.
  Account AccountOf(const std::filesystem::path& file, std::string_view worker) const {
    Account account;
    const std::filesystem::path result = folder_ / fmt::format("{}.hvxdoc", worker).c_str();
    const DocumentPtr before = ReadDocument(file);
    const DocumentPtr document = ReadDocument(file);
    const auto check = [&] {
      for (const Finding& finding : CheckConformity(*document.Get())) {
        account.findings.push_back(fmt::format("#{} {} {} {}", finding.feature->id, finding.identifier,
                                               finding.reason, finding.damage));
      }
      account.subjects += sheet::ReadSheet(*document.Get()).Subjects().size();
    };
    check();
    {
      const CheckpointScope counting({});
      static_cast<void>(manager_.Run(document, manager_.Pending(*document.Get())));
      account.calls = Checkpoint::CallCount();
    }
    check();
    account.faults = FindFaults(*document.Get());
    account.changed = Compare(*before.Get(), *document.Get()).changed.size();
    WriteOptions options;
    options.overwrite = true;
    WriteDocument(*document.Get(), result, options);
    account.result = BytesOf(result);
    return account;
  }

  // Each worker goes through all documents, beginning with another one.
  std::vector<std::vector<Account>> AccountsOfWorkers() const {
    std::vector<std::future<std::vector<Account>>> workers;
    for (std::size_t worker = 0; worker < kWorkers; ++worker) {
      workers.push_back(std::async(std::launch::async, [this, worker] {
        std::vector<Account> accounts(files_.size());
        for (std::size_t i = 0; i < files_.size(); ++i) {
          const std::size_t document = (i + worker * files_.size() / kWorkers) % files_.size();
          accounts[document] = AccountOf(files_[document], fmt::format("worker{}", worker));
        }
        return accounts;
      }));
    }
    std::vector<std::vector<Account>> accounts;
    for (std::future<std::vector<Account>>& worker : workers) accounts.push_back(worker.get());
    return accounts;
  }

  testing_support::TempFolder folder_;
  std::vector<std::filesystem::path> files_;
  VersionManager manager_{{&testing_support::Library()}};
};

// Goes on in a thread of its own for the life of this object.
class Meanwhile {
 public:
  template <class Action>
  explicit Meanwhile(Action action)
      : work_(std::async(std::launch::async, [this, action] {
          for (int round = 0; !isOver_; ++round) action(round);
        })) {}
  ~Meanwhile() {
    isOver_ = true;
    EXPECT_NO_THROW(work_.get());
  }
  Meanwhile(const Meanwhile&) = delete;
  Meanwhile& operator=(const Meanwhile&) = delete;

 private:
  std::atomic<bool> isOver_ = false;
  std::future<void> work_;
};

// A document full of names that nobody ever heard of.
void OpenUnheardOf(int round) {
  const DocumentPtr document = Document::Create("unheard of");
  for (int i = 0; i < 40; ++i) {
    const std::string name = fmt::format("Unheard{}of{}", i, round % 7);
    Feature& feature = *document->Create(document->LateTypeFor(name + "Type"), "", nullptr, nullptr);
    document->SetAttribute(feature, document->NameFor(name), Value::Integer(i));
    ASSERT_EQ(feature.TypeName(), name + "Type");
    ASSERT_EQ(NameTable::Text(feature.attributes[0].key), name);
    ASSERT_FALSE(Offers(feature, VLMInterfaceId("HVXIUpgrade")));
  }
  ASSERT_EQ(CheckConformity(*document.Get()).size(), 40U);
}

// The plug-in, from its loading to its unloading, with a run of an upgrade of its own.
void UsePlugIn(int /*round*/) {
  const UpgradeLibrary plugIn(testing_support::TestLibraryFile());
  const VersionManager manager({&plugIn.Description()});
  const DocumentPtr document = Document::Create("of the plug-in");
  document->Create(LateType::Of("ProbeStopTooLT"), "Probe", nullptr, nullptr);
  const UpgradeRun run = manager.Run(document, {"ProbeA", "ProbeDocument"});
  ASSERT_EQ(run.concerned.size(), 1U);
}

// Two languages of the same texts: those of the results stay what they are.
class TwoLanguages {
 public:
  TwoLanguages() {
    const std::filesystem::path english = InstalledFiles::DataFolder() / "messages" / "en";
    for (const char* const name : {"one", "other"}) std::filesystem::copy(english, folder_ / name);
  }
  ~TwoLanguages() { Messages::Use(InstalledFiles::DataFolder() / "messages", "en"); }
  TwoLanguages(const TwoLanguages&) = delete;
  TwoLanguages& operator=(const TwoLanguages&) = delete;

  void Switch(int round) const {
    Messages::Use(folder_ / "", round % 2 == 0 ? "one" : "other");
    FeatureCatalogs::Use(InstalledFiles::DataFolder() / "catalogs");
  }

 private:
  testing_support::TempFolder folder_;
};

// The threads come first: much is set up by whoever needs it first.
TEST_F(ThreadsTest, DocumentsComeOutOfSeveralThreadsAsOutOfOne) {
  const std::vector<std::vector<Account>> accounts = AccountsOfWorkers();
  for (std::size_t i = 0; i < files_.size(); ++i) {
    SCOPED_TRACE(files_[i]);
    const Account alone = AccountOf(files_[i], "alone");
    EXPECT_GT(alone.calls, 0);
    for (const std::vector<Account>& worker : accounts) EXPECT_TRUE(worker[i] == alone);
  }
}

TEST_F(ThreadsTest, WhateverOtherThreadsDoMeanwhile) {
  const TwoLanguages languages;
  std::vector<std::vector<Account>> accounts;
  std::size_t names = 0;
  {
    const Meanwhile opening(OpenUnheardOf);
    const Meanwhile usingPlugIn(UsePlugIn);
    const Meanwhile switching([&languages](int round) { languages.Switch(round); });
    accounts = AccountsOfWorkers();
    names = NameTable::Count();
  }
  EXPECT_LE(NameTable::Count(), names);
  EXPECT_EQ(NameTable::Find("Unheard1of1"), kNoName);
  EXPECT_EQ(VLMMetaClass::Find("Unheard1of1Type"), nullptr);
  for (std::size_t i = 0; i < files_.size(); ++i) {
    const Account alone = AccountOf(files_[i], "alone");
    for (const std::vector<Account>& worker : accounts) EXPECT_TRUE(worker[i] == alone) << files_[i];
  }
}

// Read by one thread, upgraded by the next, written by a third.
TEST_F(ThreadsTest, ADocumentPassesFromThreadToThread) {
  const std::filesystem::path result = folder_ / "passed.hvxdoc";
  DocumentPtr document;
  std::thread([&] { document = ReadDocument(files_[0]); }).join();
  std::thread([&] { static_cast<void>(manager_.Run(document, manager_.Pending(*document.Get()))); }).join();
  std::thread([&] {
    WriteDocument(*document.Get(), result);
    document = NULL_var;
  }).join();
  EXPECT_EQ(BytesOf(result), AccountOf(files_[0], "alone").result);
}

TEST_F(ThreadsTest, EachThreadHasItsOwnDocumentCallsAndObserver) {
  const CheckpointScope recording(testing_support::Recording());
  const DocumentPtr document = ReadDocument(files_[0]);
  const CurrentDocumentScope current(document);
  HVXUpgradeObserver** const observer = testing_support::Library().observer();

  std::thread([&] {
    EXPECT_EQ(Session::Current().CurrentDocument().Get(), nullptr);
    EXPECT_NE(testing_support::Library().observer(), observer);
    EXPECT_GT(AccountOf(files_[1], "other").calls, 0);
    EXPECT_EQ(Checkpoint::Recorded(), std::vector<HostCall>());
  }).join();

  EXPECT_EQ(Session::Current().CurrentDocument().Get(), document.Get());
  EXPECT_EQ(Checkpoint::CallCount(), 0);
}

TEST_F(ThreadsTest, StringsAreSharedByThreads) {
  const VLMUnicodeString shared = LateType::Of("HVXClamp").Text();
  std::vector<std::thread> threads;
  for (int thread = 0; thread < kWorkers; ++thread) {
    threads.emplace_back([&shared] {
      for (int i = 0; i < 20000; ++i) {
        const VLMUnicodeString copy = shared;
        ASSERT_EQ(copy.View(), "HVXClamp");
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(shared, LateType::Of("HVXClamp").Text());
}

}  // namespace
