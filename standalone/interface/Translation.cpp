#include "interface/Translation.h"

#include <fmt/format.h>

#include <exception>
#include <new>

#include "file/DocumentError.h"
#include "upgrade/UpgradeRun.h"

namespace hvxupgrade {
namespace {

using standalone::DocumentError;

// What a function of the program threw, on its way through the library.
struct ThrownOutside {
  std::exception_ptr exception;
};

Error::Kind KindOf(DocumentError::Kind kind) {
  switch (kind) {
    case DocumentError::Kind::kUnreadable:
      return Error::Kind::kUnreadable;
    case DocumentError::Kind::kInvalid:
      return Error::Kind::kInvalid;
    case DocumentError::Kind::kNewer:
      return Error::Kind::kNewer;
    case DocumentError::Kind::kUnwritable:
      break;
  }
  return Error::Kind::kUnwritable;
}

Error ErrorOf(const DocumentError& error, Error::Kind kind) {
  return {kind, error.File(), error.Line(), error.Problem(), error.Advice()};
}

constexpr const char* kAfterGivingUp =
    "Read it again; correct what it stopped at, or choose upgrades without this one";

// On what nobody foresaw.
const char* AdviceOn(Error::Kind kind) {
  return kind == Error::Kind::kStopped ? kAfterGivingUp : "";
}

// What is wrong with an installation is told as "FILE: PROBLEM. ADVICE"; all files have absolute names.
Error ErrorOfInstallation(std::string text) {
  text = WithoutOptions(std::move(text));
  std::string file;
  if (const std::size_t end = text.find(": "); text.starts_with('/') && end != std::string::npos) {
    file = text.substr(0, end);
    text.erase(0, end + 2);
  }
  std::string advice;
  if (const std::size_t end = text.rfind(". "); end != std::string::npos) {
    advice = text.substr(end + 2);
    text.resize(end);
  }
  return {Error::Kind::kInstallation, std::move(file), 0, std::move(text), std::move(advice)};
}

}  // namespace

std::string WithoutOptions(std::string text) {
  for (std::size_t begin = 0; (begin = text.find(" (--", begin)) != std::string::npos;)
    text.erase(begin, text.find(')', begin) + 1 - begin);
  return text;
}

void ThrowAsError(Error::Kind otherwise, const std::filesystem::path& file) {
  try {
    throw;
  } catch (const Error& error) {
    if (!error.File().empty() || file.empty()) throw;
    throw Error(error.GetKind(), file.string(), error.Line(), error.Problem(), error.Advice());
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const ThrownOutside& thrown) {
    std::rethrow_exception(thrown.exception);
  } catch (const standalone::ChangedMeanwhile& error) {
    throw ErrorOf(error, Error::Kind::kChanged);
  } catch (const DocumentError& error) {
    throw ErrorOf(error, KindOf(error.GetKind()));
  } catch (const standalone::UpgradeAborted& error) {
    throw Error(Error::Kind::kStopped, file.string(), 0, error.Problem(),
                error.Advice().empty() ? kAfterGivingUp : error.Advice());
  } catch (const std::filesystem::filesystem_error& error) {
    throw Error(otherwise, file.string(), 0, fmt::format("cannot be found ({})", error.code().message()),
                "Check the path, and that the folder of this process is still there");
  } catch (const std::exception& error) {
    if (otherwise == Error::Kind::kInstallation) throw ErrorOfInstallation(error.what());
    throw Error(otherwise, file.string(), 0, error.what(), AdviceOn(otherwise));
  } catch (...) {
    throw Error(otherwise, file.string(), 0, "something was thrown that tells nothing of itself",
                AdviceOn(otherwise));
  }
}

void RequireNamed(const std::filesystem::path& file, Error::Kind kind) {
  if (file.empty()) throw Error(kind, "", 0, "the name of the file is empty", "Give the name of a file");
  if (file.native().find('\0') != std::string::npos) {
    throw Error(kind, file.string(), 0, "the name of the file has a null character in it",
                "Give the name without it");
  }
}

void RefuseUse(std::string problem, std::string advice) {
  throw Error(Error::Kind::kUsage, "", 0, std::move(problem), std::move(advice));
}

void TellProgress(const std::function<bool(std::uint64_t, std::uint64_t)>& onProgress, std::uint64_t done,
                  std::uint64_t total, const Stopped& stopped) {
  if (!onProgress) return;
  bool goesOn = false;
  try {
    goesOn = onProgress(done, total);
  } catch (...) {
    throw ThrownOutside{std::current_exception()};
  }
  if (!goesOn) throw Error(Error::Kind::kStopped, "", 0, stopped.problem, stopped.advice);
}

}  // namespace hvxupgrade
