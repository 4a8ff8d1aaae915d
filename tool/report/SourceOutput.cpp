#include "report/SourceOutput.h"

#include <fmt/format.h>

#include "terminal/Terminal.h"

namespace tool {
namespace {

void AppendName(JsonObject& object, const standalone::UpgradeSource& source) {
  object.Text("name", source.library);
  if (!source.version.empty()) object.Text("version", source.version);
}

}  // namespace

std::string WordsOf(const standalone::UpgradeSource& source) {
  return Printable(source.version.empty() ? source.library
                                          : fmt::format("{} {}", source.library, source.version));
}

void AppendSources(JsonObject& object, const standalone::UpgradeSources& sources) {
  JsonList list(object.Key("libraries"));
  for (const standalone::UpgradeSource& each : sources.All()) {
    JsonObject library(list.Entry());
    AppendName(library, each);
    library.Texts("upgrades", each.upgrades);
    library.Close();
  }
  list.Close();
}

void AppendSource(JsonObject& object, std::string_view key, const standalone::UpgradeSource& source) {
  JsonObject library(object.Key(key));
  AppendName(library, source);
  library.Close();
}

}  // namespace tool
