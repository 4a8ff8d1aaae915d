#include "native/Lines.h"

#include <chrono>
#include <utility>

#include "hvxupgrade/Error.h"

namespace python {

using hvxupgrade::Error;

// Long compared with what the lock costs, and short enough that little memory is taken meanwhile.
constexpr std::chrono::microseconds kAhead{500};

Lines::Lines(const std::filesystem::path& file, py::object told,
             std::optional<std::uint64_t> maxUnpackedBytes)
    : file_(file), progress_(std::move(told)) {
  hvxupgrade::ReadOptions options;
  options.maxUnpackedBytes = maxUnpackedBytes;
  options.onProgress = progress_.Teller();
  WithoutLock(progress_, [&] { reader_.emplace(file, options); });
  header_ = reader_->GetHeader();
}

std::optional<HeldLine> Lines::Next() {
  RequireIdle();
  if (ahead_.empty() && reader_ && !fault_) ReadAhead();
  if (!ahead_.empty()) {
    HeldLine line = std::move(ahead_.front());
    ahead_.pop_front();
    return line;
  }
  if (fault_) {
    reader_.reset();
    std::rethrow_exception(std::exchange(fault_, nullptr));
  }
  return std::nullopt;
}

void Lines::ReadAhead() {
  isReading_ = true;
  try {
    const bool isEnd = WithoutLock(progress_, [this] {
      const auto until = std::chrono::steady_clock::now() + kAhead;
      while (std::chrono::steady_clock::now() < until) {
        HeldLine line;
        if (!reader_->Next(line.feature)) return true;
        line.number = reader_->LineNumber();
        ahead_.push_back(std::move(line));
      }
      return false;
    });
    if (isEnd) reader_.reset();
  } catch (...) {
    fault_ = std::current_exception();
  }
  isReading_ = false;
}

void Lines::Close() {
  RequireIdle();
  ahead_.clear();
  fault_ = nullptr;
  reader_.reset();
}

void Lines::RequireIdle() const {
  if (isReading_)
    throw Error(Error::Kind::kUsage, file_.string(), 0, "the lines are being read",
                "Let one thread at a time ask for the next line");
}

}  // namespace python
