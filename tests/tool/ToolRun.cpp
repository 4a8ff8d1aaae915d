#include "ToolRun.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <set>

namespace tool_testing {

namespace fs = std::filesystem;

ToolTest::ToolTest() {
  std::string name = (fs::temp_directory_path() / "hvxupgrade-test.XXXXXX").string();
  streams_ = mkdtemp(name.data());
  folder_ = streams_ / "documents";
  fs::create_directory(folder_);
}

ToolTest::~ToolTest() {
  std::error_code error;
  fs::remove_all(streams_, error);
}

std::string ToolTest::Document(const std::string& name, std::string_view lines,
                               std::string_view upgrades) const {
  Put(Path(name), R"({"format":"hvxdoc","version":1,"upgrades":[)" + std::string(upgrades) +
                      R"(],"features":)" + std::to_string(std::ranges::count(lines, '\n')) + "}\n" +
                      std::string(lines));
  return Path(name);
}

std::string ToolTest::Content(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

void ToolTest::Put(const std::string& file, std::string_view content) {
  std::ofstream(file, std::ios::binary) << content;
}

std::string ToolTest::Names() const {
  std::set<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder_)) names.insert(entry.path().filename().string());
  std::string all;
  for (const std::string& name : names) all += (all.empty() ? "" : " ") + name;
  return all;
}

ToolTest::Ended ToolTest::Run(const std::vector<std::string>& arguments, const fs::path& out) const {
  return Wait(Start(arguments, out));
}

pid_t ToolTest::Start(const std::vector<std::string>& arguments, const fs::path& out) const {
  std::vector<std::string> texts = arguments;
  texts.insert(texts.begin(), HVXUPGRADE_PROGRAM);
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  fs::remove(streams_ / "out");  // what an earlier run wrote must not be taken for this one's
  const pid_t program = fork();
  if (program != 0) return program;
  const auto redirect = [](const fs::path& file, int to) {
    dup2(open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), to);
  };
  redirect(streams_ / "err", STDERR_FILENO);
  if (out == "closed") {
    close(STDOUT_FILENO);
  } else {
    redirect(out.empty() ? streams_ / "out" : out, STDOUT_FILENO);
  }
  if (mostOpenFiles_ != 0) {
    close_range(STDERR_FILENO + 1, ~0U, 0);
    const rlimit limit{mostOpenFiles_, mostOpenFiles_};
    setrlimit(RLIMIT_NOFILE, &limit);
  }
  execv(pointers.front(), pointers.data());
  _exit(127);
}

ToolTest::Ended ToolTest::Wait(pid_t program) const {
  int status = 0;
  waitpid(program, &status, 0);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, Content(streams_ / "out"), Content(streams_ / "err")};
}

}  // namespace tool_testing
