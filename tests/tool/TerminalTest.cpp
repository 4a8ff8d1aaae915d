#include <fcntl.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <optional>
#include <string>

#include "terminal/Terminal.h"

namespace tool {
namespace {

// A variable of the environment for a while; without a value it is not set.
class Variable {
 public:
  Variable(const char* name, const char* value) : name_(name) {
    if (const char* const before = std::getenv(name)) before_ = before;
    Set(value);
  }
  ~Variable() { Set(before_ ? before_->c_str() : nullptr); }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

 private:
  void Set(const char* value) const {
    if (value == nullptr) {
      unsetenv(name_);
    } else {
      setenv(name_, value, 1);
    }
  }

  const char* name_;
  std::optional<std::string> before_;
};

struct Close {
  void operator()(std::FILE* stream) const { std::fclose(stream); }
};
using Stream = std::unique_ptr<std::FILE, Close>;

TEST(TerminalTest, ColoursAreForTerminalsThatShowThem) {
  const Stream master(fdopen(posix_openpt(O_RDWR | O_NOCTTY), "r+"));
  ASSERT_NE(master, nullptr);
  ASSERT_EQ(grantpt(fileno(master.get())), 0);
  ASSERT_EQ(unlockpt(fileno(master.get())), 0);
  const Stream terminal(fdopen(open(ptsname(fileno(master.get())), O_RDWR | O_NOCTTY), "r+"));
  ASSERT_NE(terminal, nullptr);
  const auto painted = [&](const char* type, const char* refused) {
    const Variable term("TERM", type);
    const Variable noColour("NO_COLOR", refused);
    return Paint(terminal.get(), Colour::kRed, "word") != "word";
  };
  EXPECT_TRUE(painted("xterm", nullptr));
  EXPECT_TRUE(painted(nullptr, ""));
  EXPECT_FALSE(painted("xterm", "1"));
  EXPECT_FALSE(painted("dumb", nullptr));

  const Variable term("TERM", "xterm");
  const Stream file(std::fopen("/dev/null", "w"));
  EXPECT_FALSE(TakesCommands(file.get()));
}

}  // namespace
}  // namespace tool
