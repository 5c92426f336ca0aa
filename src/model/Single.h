// Narrowing of a computed value to the 32-bit float in which records keep it.
#pragma once

namespace orv {

/// The value as a 32-bit float. Raises error 6 (overflow) when it lies outside that type's range.
float toSingle(double value);

}  // namespace orv
