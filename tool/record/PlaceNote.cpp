#include "record/PlaceNote.h"

#include <sys/mman.h>

#include <algorithm>
#include <atomic>
#include <new>
#include <string_view>
#include <utility>

#include "upgrade/UpgradePlace.h"

namespace tool {
namespace {

struct NotedText {
  char bytes[200];
  std::size_t size;

  void Set(std::string_view text) {
    size = std::min(text.size(), sizeof bytes);
    std::copy_n(text.begin(), size, bytes);
  }
  // Also of a note whose writer was killed.
  [[nodiscard]] std::string_view Get() const { return {bytes, std::min(size, sizeof bytes)}; }
};

}  // namespace

// What it points to is the libraries' and the version manager's, which stand at the same address in parent
// and worker.
struct PlaceNote::Shared {
  std::atomic<bool> isSet;
  standalone::UpgradePlace place;  // without texts
  NotedText lateType;
  NotedText name;
};

PlaceNote::PlaceNote() : shared_(nullptr) {
  void* const memory =
      mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory != MAP_FAILED) shared_ = new (memory) Shared();
}

PlaceNote::~PlaceNote() {
  if (shared_ != nullptr) munmap(shared_, sizeof(Shared));
}

void PlaceNote::Set(const standalone::UpgradePlace* place) {
  if (shared_ == nullptr) return;
  shared_->isSet.store(false, std::memory_order_release);
  if (place == nullptr) return;
  std::atomic_signal_fence(std::memory_order_seq_cst);  // a signal may end the worker between any two stores
  shared_->place = *place;
  shared_->lateType.Set(place->lateType);
  shared_->name.Set(place->name);
  shared_->isSet.store(true, std::memory_order_release);
}

standalone::UpgradePlace PlaceNote::Get() const {
  if (shared_ == nullptr || !shared_->isSet.load(std::memory_order_acquire)) return {};
  standalone::UpgradePlace place = shared_->place;
  place.lateType = shared_->lateType.Get();
  place.name = shared_->name.Get();
  return place;
}

std::string PlaceNote::Where() const {
  const standalone::UpgradePlace place = Get();
  return place.upgrade == nullptr ? "" : " in " + WordsOf(place);
}

std::string PlaceNote::Advice() const {
  const standalone::UpgradePlace place = Get();
  return place.upgrade == nullptr ? "" : AdviceAt(place);
}

}  // namespace tool
