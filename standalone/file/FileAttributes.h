#pragma once

#include <filesystem>

namespace standalone {

/// Gives the new file behind `descriptor` what `file` has beside its content: owner, group, access rights,
/// access control list and extended attributes. Throws `DocumentError` (`kUnwritable`) when one of them
/// cannot be kept, but for labels of the security system that this user may not set; `told` is what the
/// message calls the file.
void TakeOverAttributes(int descriptor, const std::filesystem::path& file, const std::filesystem::path& told);

}  // namespace standalone
