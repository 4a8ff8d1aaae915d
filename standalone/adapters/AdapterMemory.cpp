#include "adapters/AdapterMemory.h"

namespace standalone {

AdapterMemory::Piece* AdapterMemory::kept_ = nullptr;
std::size_t AdapterMemory::keptCount_ = 0;

}  // namespace standalone
