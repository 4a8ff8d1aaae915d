// What may go wrong between a result that is ready and its place.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <functional>

#include "file/AtomicFile.h"
#include "file/DocumentError.h"
#include "file/TemporaryName.h"
#include "support/FileSystemFaults.h"
#include "support/TempFolder.h"

namespace {

using namespace standalone;
using testing::ElementsAre;
using testing::HasSubstr;
using testing_support::BytesOf;
using testing_support::FaultyFileSystem;
namespace fs = std::filesystem;

class AtomicFileTest : public testing::Test {
 protected:
  // Replaces `document_`, which `meanwhile` may change before the result gets to its place. Gives the message
  // of the refusal; empty when it was replaced.
  std::string Replace(WriteOptions options, const std::function<void()>& meanwhile = {}) {
    options.overwrite = true;
    return Write(document_, options, meanwhile);
  }

  std::string Write(const fs::path& file, const WriteOptions& options,
                    const std::function<void()>& meanwhile = {}) {
    try {
      AtomicFile output(file, options);
      output.Write("new");
      if (meanwhile) meanwhile();
      output.Commit();
      return "";
    } catch (const ChangedMeanwhile& changed) {
      kept_ = changed.Kept();
      return changed.what();
    } catch (const DocumentError& error) {
      EXPECT_EQ(error.GetKind(), DocumentError::Kind::kUnwritable);
      return error.what();
    }
  }

  [[nodiscard]] WriteOptions ReplacingWhatIsThere() const {
    WriteOptions options;
    options.replaces = FileIdentity::Of(document_);
    return options;
  }

  static WriteOptions WithBackup() {
    WriteOptions options;
    options.backupSuffix = ".old";
    return options;
  }

  testing_support::TempFolder folder_;
  const fs::path document_ = folder_.Put("a", "original");
  std::string kept_;
};

TEST_F(AtomicFileTest, ADocumentThatIsNoLongerWhatWasReadStays) {
  EXPECT_THAT(
      Replace(ReplacingWhatIsThere(), [&] { folder_.Put("a", "newer"); }),
      HasSubstr(
          "a: changed meanwhile: another program wrote to it. Nothing was written; run the upgrade again"));
  EXPECT_EQ(BytesOf(document_), "newer");

  // A program that sets the time back does not go unnoticed.
  const auto written = fs::last_write_time(document_);
  EXPECT_THAT(Replace(ReplacingWhatIsThere(),
                      [&] {
                        folder_.Put("a", "NEWER");
                        fs::last_write_time(document_, written);
                      }),
              HasSubstr("another program wrote to it"));
  EXPECT_EQ(BytesOf(document_), "NEWER");

  EXPECT_THAT(Replace(ReplacingWhatIsThere(), [&] { fs::rename(folder_.Put("b", "saved"), document_); }),
              HasSubstr("another file was put in its place"));
  EXPECT_EQ(BytesOf(document_), "saved");
  EXPECT_THAT(Replace(ReplacingWhatIsThere(), [&] { fs::remove(document_); }),
              HasSubstr("it was removed or renamed"));
  EXPECT_THAT(folder_.Names(), ElementsAre());
}

TEST_F(AtomicFileTest, AChangeAtTheLastMomentTakesTheBackupBack) {
  WriteOptions options = ReplacingWhatIsThere();
  options.backupSuffix = ".old";
  {
    const FaultyFileSystem lateChange({.onLink = [&] { fs::rename(folder_.Put("b", "saved"), document_); }});
    EXPECT_THAT(Replace(options), HasSubstr("another file was put in its place"));
  }
  EXPECT_EQ(BytesOf(document_), "saved");
  EXPECT_THAT(folder_.Names(), ElementsAre("a"));
  options.replaces = FileIdentity::Of(document_);
  EXPECT_EQ(Replace(options), "");  // the backup, which changes the file's state, does not stand in the way
  EXPECT_THAT(folder_.Names(), ElementsAre("a", "a.old"));
}

// Its backup holds the only old document: nobody must be told to remove that.
TEST_F(AtomicFileTest, ABackupOfAnotherRunIsNotToBlame) {
  WriteOptions options = ReplacingWhatIsThere();
  options.backupSuffix = ".old";
  {
    const FaultyFileSystem otherRun({.beforeLink = [&] {
      fs::rename(document_, folder_ / "a.old");
      folder_.Put("a", "its result");
    }});
    EXPECT_THAT(Replace(options), HasSubstr("another file was put in its place"));
  }
  EXPECT_EQ(BytesOf(document_), "its result");
  EXPECT_EQ(BytesOf(folder_ / "a.old"), "original");
}

TEST_F(AtomicFileTest, AResultThatCameTooLateIsKeptWhenAskedFor) {
  for (const char* const name : {"a.upgraded", "a.upgraded.2"}) {
    WriteOptions options = ReplacingWhatIsThere();
    options.keepResult = true;
    EXPECT_THAT(Replace(options, [&] { folder_.Put("a", name); }), HasSubstr(std::string(name) + "; run"));
    EXPECT_EQ(kept_, folder_ / name);
    EXPECT_EQ(BytesOf(kept_), "new");
    EXPECT_EQ(BytesOf(document_), name);
  }
  EXPECT_THAT(folder_.Names(), ElementsAre("a", "a.upgraded", "a.upgraded.2"));
}

TEST_F(AtomicFileTest, ABackupThatAKilledRunMadeIsTheBackup) {
  fs::create_hard_link(document_, folder_ / "a.old");
  EXPECT_EQ(Replace(WithBackup()), "");
  EXPECT_EQ(BytesOf(folder_ / "a.old"), "original");
  EXPECT_EQ(BytesOf(document_), "new");

  fs::copy_file(document_, folder_ / "a.old", fs::copy_options::overwrite_existing);
  EXPECT_EQ(Replace(WithBackup()), "");
  EXPECT_EQ(BytesOf(folder_ / "a.old"), "new");

  // A link would lead to the new document.
  fs::remove(folder_ / "a.old");
  fs::create_symlink("a", folder_ / "a.old");
  EXPECT_THAT(Replace(WithBackup()), HasSubstr("its name is taken by something else"));
}

TEST_F(AtomicFileTest, WhatCannotBePutInPlaceTakesItsOwnBackupBackOnly) {
  const FaultyFileSystem fails({.renameError = EIO});
  EXPECT_THAT(Replace(WithBackup()), HasSubstr("a: cannot be put in place ("));
  EXPECT_THAT(folder_.Names(), ElementsAre("a"));
  fs::create_hard_link(document_, folder_ / "a.old");
  EXPECT_THAT(Replace(WithBackup()), HasSubstr("cannot be put in place ("));
  EXPECT_THAT(folder_.Names(), ElementsAre("a", "a.old"));
  EXPECT_EQ(BytesOf(document_), "original");
}

TEST_F(AtomicFileTest, WithoutLinksABackupIsACopyWhichIsWholeBeforeItBearsItsName) {
  const FaultyFileSystem noLinks({.linkError = EPERM});
  const std::string long_(1000, 'x');
  folder_.Put("a", long_);
  ASSERT_EQ(chmod(document_.c_str(), 0640), 0);
  const auto before = FileIdentity::Of(document_);

  rlimit limits{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &limits), 0);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit tiny{500, limits.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &tiny), 0);
  const std::string message = Replace(WithBackup());
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limits), 0);
  std::signal(SIGXFSZ, handler);
  EXPECT_THAT(message, HasSubstr("a.old: the backup cannot be made ("));
  EXPECT_THAT(folder_.Names(), ElementsAre("a"));

  EXPECT_EQ(Replace(WithBackup()), "");
  EXPECT_EQ(BytesOf(folder_ / "a.old"), long_);
  EXPECT_EQ(FileIdentity::Of(folder_ / "a.old")->modified, before->modified);
  EXPECT_EQ(fs::status(folder_ / "a.old").permissions(), fs::perms(0640));
  EXPECT_THAT(Replace(WithBackup()), HasSubstr("its name is taken by something else"));
  EXPECT_THAT(folder_.Names(), ElementsAre("a", "a.old"));
}

TEST_F(AtomicFileTest, NoRoomForTheBackupIsCalledThat) {
  const FaultyFileSystem full({.linkError = ENOSPC});
  EXPECT_THAT(Replace(WithBackup()), HasSubstr("There is no room for it: make room"));
  EXPECT_THAT(folder_.Names(), ElementsAre("a"));
}

TEST_F(AtomicFileTest, ANewFileNeedsNeitherLinksNorExclusiveRenames) {
  {
    const FaultyFileSystem plain({.linkError = EPERM, .replacesAlways = true});
    EXPECT_EQ(Write(folder_ / "b", {}), "");
    EXPECT_EQ(BytesOf(folder_ / "b"), "new");
    EXPECT_THAT(Write(folder_ / "c", {}, [&] { folder_.Put("c", "mine"); }), HasSubstr("exists already"));
    EXPECT_EQ(BytesOf(folder_ / "c"), "mine");
  }
  const FaultyFileSystem failing({.linkError = EPERM, .renameError = EIO, .replacesAlways = true});
  EXPECT_THAT(Write(folder_ / "d", {}), HasSubstr("cannot be put in place"));
  EXPECT_THAT(folder_.Names(), ElementsAre("a", "b", "c"));
}

TEST_F(AtomicFileTest, ExtendedAttributesAndAccessListsStayAndNoneComeIn) {
  // Version 2; owner rw, user 4711 r, group r, mask r, others nothing.
  constexpr std::string_view kList{
      "\2\0\0\0"
      "\1\0\6\0\xff\xff\xff\xff"
      "\2\0\4\0\x67\x12\0\0"
      "\4\0\4\0\xff\xff\xff\xff"
      "\x10\0\4\0\xff\xff\xff\xff"
      "\x20\0\0\0\xff\xff\xff\xff",
      44};
  const auto get = [&](const char* name) {
    std::string value(256, '\0');
    const ssize_t size = getxattr(document_.c_str(), name, value.data(), value.size());
    return size < 0 ? std::string("none") : value.substr(0, static_cast<std::size_t>(size));
  };
  const fs::path inFolder = document_.parent_path();
  if (setxattr(document_.c_str(), "user.origin", "here", 4, 0) != 0 ||
      setxattr(document_.c_str(), "system.posix_acl_access", kList.data(), kList.size(), 0) != 0)
    GTEST_SKIP() << "the temporary folder's file system has no extended attributes or access lists";
  const std::string list = get("system.posix_acl_access");
  EXPECT_EQ(Replace({}), "");
  EXPECT_EQ(get("user.origin"), "here");
  EXPECT_EQ(get("system.posix_acl_access"), list);

  // What the folder gives to new files is not what the old one had.
  ASSERT_EQ(removexattr(document_.c_str(), "system.posix_acl_access"), 0);
  ASSERT_EQ(setxattr(inFolder.c_str(), "system.posix_acl_default", kList.data(), kList.size(), 0), 0);
  ASSERT_EQ(chmod(document_.c_str(), 0640), 0);
  EXPECT_EQ(Replace({}), "");
  EXPECT_EQ(get("system.posix_acl_access"), "none");
  EXPECT_EQ(fs::status(document_).permissions(), fs::perms(0640));
}

TEST_F(AtomicFileTest, OwnerAndGroupStayOrNothingIsReplaced) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can give a file to another user";
  constexpr uid_t kOther = 12345;
  ASSERT_EQ(chown(document_.c_str(), kOther, kOther + 1), 0);
  ASSERT_EQ(chmod(document_.c_str(), 0640), 0);
  EXPECT_EQ(Replace(WithBackup()), "");
  struct stat status {};
  ASSERT_EQ(stat(document_.c_str(), &status), 0);
  EXPECT_EQ(status.st_uid, kOther);
  EXPECT_EQ(status.st_gid, kOther + 1);
  EXPECT_EQ(status.st_mode & 07777U, 0640U);

  ASSERT_EQ(chmod(document_.parent_path().c_str(), 0777), 0);
  ASSERT_EQ(chmod(document_.c_str(), 0666), 0);
  ASSERT_EQ(seteuid(kOther + 2), 0);
  const std::string message = Replace({});
  ASSERT_EQ(seteuid(0), 0);
  EXPECT_THAT(message, HasSubstr("its owner and group (12345:12346) cannot be kept"));
  EXPECT_THAT(message, HasSubstr("Run this program as its owner, or write the result to another file"));
  EXPECT_THAT(folder_.Names(), ElementsAre("a", "a.old"));
}

TEST_F(AtomicFileTest, ATemporaryFileTellsWhetherItsProcessIsGone) {
  const fs::path longest = document_.parent_path() / std::string(255, 'n');
  const pid_t child = fork();
  if (child == 0) {
    AtomicFile output(longest, {});
    output.Write("half");
    kill(getpid(), SIGKILL);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFSIGNALED(status));
  fs::remove(document_);
  ASSERT_EQ(folder_.Names().size(), 1U);
  const std::string name = *folder_.Names().begin();
  EXPECT_THAT(name, testing::StartsWith(".nnn"));
  std::optional<TemporaryName> parsed = TemporaryName::Parse(name);
  ASSERT_TRUE(parsed);
  EXPECT_EQ(parsed->process, child);
  EXPECT_EQ(parsed->State(), Maker::kGone);

  std::string temporary;
  close(MakeTemporary(longest, temporary));
  parsed = TemporaryName::Parse(fs::path(temporary).filename().string());
  ASSERT_TRUE(parsed);
  EXPECT_EQ(parsed->State(), Maker::kRuns);
  ++parsed->start;  // another process that had the number before
  EXPECT_EQ(parsed->State(), Maker::kGone);
  parsed->host += "x";
  EXPECT_EQ(parsed->State(), Maker::kElsewhere);

  for (const char* const other :
       {"a", ".a.1234.abcdef", ".a.host.1.2.3.hvxtmp-", ".a.host.1.x.3.hvxtmp-abcdef", ".2.3.hvxtmp-abcdef"})
    EXPECT_FALSE(TemporaryName::Parse(other)) << other;
}

}  // namespace
