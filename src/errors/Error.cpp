#include "errors/Error.h"

#include <utility>

namespace orv {

Error::Error(std::int32_t number, std::string description, std::string source)
    : number_(number), description_(std::move(description)), source_(std::move(source)) {
  what_ = description_;
  if (!source_.empty()) {
    what_ += what_.empty() ? source_ : " [" + source_ + "]";
  }
  what_ += " (error " + std::to_string(number_) + ")";
}

}  // namespace orv
