#include "model/Single.h"

#include <cmath>
#include <limits>

#include "errors/Error.h"

namespace orv {

float toSingle(double value) {
  if (std::abs(value) > std::numeric_limits<float>::max()) {
    throw Error(kOverflow);
  }
  return static_cast<float>(value);
}

}  // namespace orv
