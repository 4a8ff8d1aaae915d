#include "native/HeldDocument.h"

#include <algorithm>

#include "hvxupgrade/Error.h"

namespace python {

using hvxupgrade::Error;

void HeldDocument::RequireOpen() const {
  if (isWorkedOn_)
    throw Error(Error::Kind::kUsage, document_.DisplayName(), 0, "the document is being worked on",
                "Wait until the call that reads, upgrades, checks or writes it has returned.");
  if (isGivenUp_)
    throw Error(Error::Kind::kUsage, document_.DisplayName(), 0,
                "an upgrade of the document was stopped halfway", "Read the document again.");
}

hvxupgrade::Document& HeldDocument::Open() {
  RequireOpen();
  return document_;
}

void HeldDocument::ShareUpgrader(std::shared_ptr<const hvxupgrade::Upgrader> upgrader) {
  if (std::ranges::find(upgraders_, upgrader) == upgraders_.end()) upgraders_.push_back(std::move(upgrader));
}

}  // namespace python
