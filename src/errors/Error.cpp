#include "errors/Error.h"

#include <utility>

namespace orv {

Error::Error(std::int32_t number, std::string description, std::string source, std::string place)
    : number_(number),
      description_(std::move(description)),
      source_(std::move(source)),
      place_(std::move(place)) {
  what_ = place_.empty() || description_.empty() ? description_ : place_ + ": " + description_;
  if (!source_.empty()) {
    what_ += what_.empty() ? source_ : " [" + source_ + "]";
  }
  what_ += " (error " + std::to_string(number_) + ")";
}

}  // namespace orv
