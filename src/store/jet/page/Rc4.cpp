#include "store/jet/page/Rc4.h"

#include <array>
#include <numeric>
#include <utility>

namespace orv::store::jet {

void applyRc4(std::uint32_t key, std::span<std::uint8_t> bytes) {
  std::array<std::uint8_t, 256> state{};
  std::iota(state.begin(), state.end(), std::uint8_t{0});
  std::uint8_t j = 0;
  for (unsigned i = 0; i < state.size(); ++i) {
    j = static_cast<std::uint8_t>(j + state[i] + (key >> (8 * (i % 4))));
    std::swap(state[i], state[j]);
  }
  std::uint8_t i = 0;
  j = 0;
  for (std::uint8_t& byte : bytes) {
    j = static_cast<std::uint8_t>(j + state[++i]);
    std::swap(state[i], state[j]);
    byte ^= state[static_cast<std::uint8_t>(state[i] + state[j])];
  }
}

}  // namespace orv::store::jet
