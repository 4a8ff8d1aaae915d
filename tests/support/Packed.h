#pragma once

#include <string>
#include <string_view>

#include "file/Packer.h"

namespace testing_support {

/// The text as one gzip member or one zstd frame.
inline std::string Packed(std::string_view text, standalone::Compression compression) {
  std::string packed;
  const auto packer =
      standalone::Packer::Make(compression, [&packed](std::string_view piece) { packed += piece; });
  packer->Add(text);
  packer->Finish();
  return packed;
}

}  // namespace testing_support
