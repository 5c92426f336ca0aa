#include "commands/ErrorText.h"

#include "errors/Error.h"

namespace orv::commands {

namespace {

std::string standardText(std::int32_t number) {
  switch (number) {
    case kInvalidCall:
      return "Invalid procedure call or argument";
    case kOverflow:
      return "Overflow";
    case kSubscriptOutOfRange:
      return "Subscript out of range";
    case kTypeMismatch:
      return "Type mismatch";
    case kFileNotFound:
      return "File not found";
    case kDeviceIo:
      return "Device I/O error";
    case kPermissionDenied:
      return "Permission denied";
    case kInvalidUseOfNull:
      return "Invalid use of Null";
    default:
      return "Error " + std::to_string(number);
  }
}

}  // namespace

std::string describe(const std::exception& exception) {
  const auto* error = dynamic_cast<const Error*>(&exception);
  if (!error) return exception.what();
  if (!error->description().empty()) return error->description();
  if (!error->source().empty()) return error->source();
  return standardText(error->number());
}

}  // namespace orv::commands
