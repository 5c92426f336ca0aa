// The errors that the database layer raises of its own.
#pragma once

#include <cstdint>
#include <string>

#include "errors/Error.h"

namespace orv::database {

inline constexpr std::int32_t kRetrievalFailed = kUserErrorBase + 513;
inline constexpr std::int32_t kCannotRetrieve = kUserErrorBase + 514;
inline constexpr std::int32_t kCannotWrite = kUserErrorBase + 515;
inline constexpr std::int32_t kRecordExists = kUserErrorBase + 516;
inline constexpr std::int32_t kInvalidSpectrum = kUserErrorBase + 517;
inline constexpr std::int32_t kInvalidSubstrateSpectrum = kUserErrorBase + 518;
inline constexpr std::int32_t kSubstrateWavelengthsDiffer = kUserErrorBase + 519;
/// The version of an ORV database is none that the program knows.
inline constexpr std::int32_t kUnknownVersion = kUserErrorBase + 999;

/// The text for one of the numbers 513 to 519 above the base; for any other number a text that
/// says that the error is not handled.
std::string ErrorDescription(std::int32_t number);

/// The error of this number, with the product as its source.
Error databaseError(std::int32_t number, std::string place = "");

/// Raises databaseError(number) when the condition is false.
void RaiseUnless(bool condition, std::int32_t number);

}  // namespace orv::database
