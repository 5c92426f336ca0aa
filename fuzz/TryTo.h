// What a fuzz target is allowed to see of damage.
#pragma once

#include "errors/Error.h"

namespace orv::fuzz {

/// Does something with what may be damaged or mistaken: an error may come of it, and nothing else.
template <class Action>
void tryTo(Action action) {
  try {
    action();
  } catch (const Error&) {
  }
}

}  // namespace orv::fuzz
