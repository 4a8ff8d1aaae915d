#pragma once

#include <cstdint>
#include <functional>
#include <stdexcept>

#include "model/Document.h"

namespace standalone {

/// What the watch throws into a run that changes nothing any more.
class IdleRun : public std::runtime_error {
 public:
  explicit IdleRun(std::int64_t calls);
};

/// Ends a run that goes on for ever: one that makes host calls, more than any routine needs to look through
/// the whole document, and changes nothing meanwhile. At work for its life; one at a time.
class IdleWatch {
 public:
  /// The document must outlive it. `meanwhile` is called now and then within a long piece of work; what it
  /// throws ends that.
  IdleWatch(const Document& document, std::function<void()> meanwhile);
  ~IdleWatch();
  IdleWatch(const IdleWatch&) = delete;
  IdleWatch& operator=(const IdleWatch&) = delete;

  /// A piece of work begins: what was called before it does not count.
  void Restart();

 private:
  void Look();

  const Document& document_;
  std::function<void()> meanwhile_;
  std::int64_t mostCalls_;
  std::int64_t quietCalls_ = 0;  // since something was changed
  std::uint64_t changes_ = 0;
};

}  // namespace standalone
