// The one exception type of the system, and the error numbers that several folders use.
#pragma once

#include <cstdint>
#include <exception>
#include <string>

namespace orv {

/// The base to which user-defined error numbers are added.
inline constexpr std::int32_t kUserErrorBase = -2147221504;  // 0x80040000

/// Standard error numbers, as the runtime of the system's files and messages has them.
inline constexpr std::int32_t kInvalidCall = 5;  ///< invalid procedure call or argument
inline constexpr std::int32_t kOverflow = 6;     ///< a number does not fit its type
inline constexpr std::int32_t kSubscriptOutOfRange = 9;
inline constexpr std::int32_t kTypeMismatch = 13;
inline constexpr std::int32_t kFileNotFound = 53;
inline constexpr std::int32_t kDeviceIo = 57;  ///< reading or writing a file failed
inline constexpr std::int32_t kPermissionDenied = 70;
inline constexpr std::int32_t kInvalidUseOfNull = 94;

/// A failure: a number, the source that raised it, and a description for people.
/// Number and source may carry the explanation when the description is empty. Where the words of
/// both are fixed, the place tells where it happened and what was found there.
class Error : public std::exception {
 public:
  explicit Error(std::int32_t number, std::string description = "", std::string source = "",
                 std::string place = "");

  std::int32_t number() const { return number_; }
  const std::string& description() const { return description_; }
  const std::string& source() const { return source_; }
  /// "CLEAR_3.DAT, line 12: '0,5'", say; empty where there is none.
  const std::string& place() const { return place_; }

  /// Place, description, source and number in one line, for logs and test output.
  const char* what() const noexcept override { return what_.c_str(); }

 private:
  std::int32_t number_;
  std::string description_;
  std::string source_;
  std::string place_;
  std::string what_;
};

}  // namespace orv
