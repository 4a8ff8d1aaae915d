#include "native/HeldDocument.h"

#include "hvxupgrade/Error.h"

namespace python {

using hvxupgrade::Error;

void HeldDocument::RequireOpen() const {
  if (isWorkedOn_)
    throw Error(Error::Kind::kUsage, document_.File().string(), 0, "the document is being worked on",
                "Wait until the call that reads, upgrades, checks or writes it has returned");
}

hvxupgrade::Document& HeldDocument::Open() {
  RequireOpen();
  return document_;
}

}  // namespace python
