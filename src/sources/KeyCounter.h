// The counter that node keys are made from.
#pragma once

#include <cstdint>
#include <string>

namespace orv::sources {

/// One for the whole run, shared by every collection of nodes. It only ever rises, so that a key
/// names one node for the whole run, also after that node was removed.
class KeyCounter {
 public:
  /// The key that the next node gets: "1key" for the first.
  std::string current() const { return std::to_string(next_) + "key"; }
  void advance() { ++next_; }

 private:
  std::int32_t next_ = 1;
};

}  // namespace orv::sources
