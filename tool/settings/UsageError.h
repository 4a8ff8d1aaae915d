#pragma once

#include <stdexcept>

namespace tool {

/// The program was called in a way that it does not offer; the message is for the user.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace tool
