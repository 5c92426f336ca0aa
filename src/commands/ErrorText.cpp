#include "commands/ErrorText.h"

#include "errors/Error.h"
#include "store/StoreError.h"

namespace orv::commands {

namespace {

/// Of the numbers that are raised without a description.
std::string standardText(std::int32_t number) {
  switch (number) {
    case kInvalidCall:
      return "Invalid procedure call or argument";
    case kOverflow:
      return "Overflow";
    case kSubscriptOutOfRange:
      return "Subscript out of range";
    default:
      return "Error " + std::to_string(number);
  }
}

}  // namespace

bool isDamage(const std::exception& exception) {
  const auto* error = dynamic_cast<const Error*>(&exception);
  return error != nullptr && error->number() == store::kCorruptFile;
}

std::string describe(const std::exception& exception) {
  const auto* error = dynamic_cast<const Error*>(&exception);
  if (!error) return exception.what();
  const std::string text = !error->description().empty() ? error->description()
                           : !error->source().empty()    ? error->source()
                                                         : standardText(error->number());
  return error->place().empty() ? text : text + "\n" + error->place();
}

}  // namespace orv::commands
