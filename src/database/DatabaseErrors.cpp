#include "database/DatabaseErrors.h"

#include <fmt/format.h>

#include "database/Product.h"

namespace orv::database {

std::string ErrorDescription(std::int32_t number) {
  switch (number) {
    case kRetrievalFailed:
      return "Data retrieval failed.";
    case kCannotRetrieve:
      return "Unable to retrieve this data from this database.";
    case kCannotWrite:
      return "Unable to write this data from this database.";
    case kRecordExists:
      return "This record already exists.";
    case kInvalidSpectrum:
      return "The spectral data of this pane is invalid. The values may be unphysical.";
    case kInvalidSubstrateSpectrum:
      return "The spectral data of the subtrate of this pane is invalid. The values may be "
             "unphysical.";
    case kSubstrateWavelengthsDiffer:
      return "Data for this pane and its substrate are not given at identical wavelengths.";
    default:
      return fmt::format("An unhandled error occured in {}.", kProductName);
  }
}

Error databaseError(std::int32_t number, std::string place) {
  return Error(number, ErrorDescription(number), kProductName, std::move(place));
}

void RaiseUnless(bool condition, std::int32_t number) {
  if (!condition) throw databaseError(number);
}

}  // namespace orv::database
