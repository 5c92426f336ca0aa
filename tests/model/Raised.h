// The error that an action raises, for tests that look at its number and its texts.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "errors/Error.h"

namespace orv::test {

struct Raised {
  std::int32_t number = 0;  ///< 0 when nothing was raised
  std::string description;
  std::string source;
  std::string place;
};

template <class Action>
Raised raisedBy(Action action) {
  try {
    action();
  } catch (const Error& error) {
    return {error.number(), error.description(), error.source(), error.place()};
  }
  return {};
}

}  // namespace orv::test
