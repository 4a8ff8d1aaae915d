#include "interface/Translation.h"

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

// What is wrong with an installation is told as "FILE: PROBLEM. ADVICE"; all files have absolute names.
Error ErrorOfInstallation(std::string text) {
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

void ThrowAsError(Error::Kind otherwise, const std::filesystem::path& file) {
  try {
    throw;
  } catch (const Error&) {
    throw;
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const ThrownOutside& thrown) {
    std::rethrow_exception(thrown.exception);
  } catch (const standalone::ChangedMeanwhile& error) {
    throw ErrorOf(error, Error::Kind::kChanged);
  } catch (const DocumentError& error) {
    throw ErrorOf(error, KindOf(error.GetKind()));
  } catch (const standalone::UpgradeAborted& error) {
    throw Error(Error::Kind::kStopped, file.string(), 0, error.Problem(), error.Advice());
  } catch (const std::exception& error) {
    if (otherwise == Error::Kind::kInstallation) throw ErrorOfInstallation(error.what());
    throw Error(otherwise, file.string(), 0, error.what(), "");
  } catch (...) {
    throw Error(otherwise, file.string(), 0, "something was thrown that tells nothing of itself", "");
  }
}

void RefuseUse(std::string problem, std::string advice) {
  throw Error(Error::Kind::kUsage, "", 0, std::move(problem), std::move(advice));
}

void TellProgress(const std::function<bool(std::uint64_t, std::uint64_t)>& onProgress, std::uint64_t done,
                  std::uint64_t total, std::string_view what) {
  if (!onProgress) return;
  bool goesOn = false;
  try {
    goesOn = onProgress(done, total);
  } catch (...) {
    throw ThrownOutside{std::current_exception()};
  }
  if (!goesOn) throw Error(Error::Kind::kStopped, "", 0, std::string(what) + " was stopped", "");
}

}  // namespace hvxupgrade
