#include "report/ResultCodes.h"

#include <fmt/format.h>

namespace tool {

std::string CodeWithName(HRESULT code) {
  const std::string_view name = CodeName(code);
  return name.empty() ? CodeText(code) : fmt::format("{} ({})", CodeText(code), name);
}

std::string CodeText(HRESULT code) {
  return fmt::format("0x{:08X}", static_cast<std::uint32_t>(code));
}

std::string_view CodeName(HRESULT code) {
  if (code == E_FAIL) return "E_FAIL";
  return code == E_NOINTERFACE ? "E_NOINTERFACE" : "";
}

}  // namespace tool
