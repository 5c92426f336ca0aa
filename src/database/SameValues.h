// Which values count as the same, where records are compared and where one replaces another.
#pragma once

#include "store/Value.h"

namespace orv::database {

/// How exactly values are compared.
struct Likeness {
  double tolerance = 0;   ///< how far apart numbers may be; of flags and codes nothing is
  bool inSingle = false;  ///< the records hold this number in single precision
  bool isCode = false;    ///< it counts nothing
};

/// Whether two numbers count as the same.
bool areSameNumbers(double a, double b, const Likeness& likeness);

/// Whether two values of a field do: Null is 0, no, or an empty text. Numbers are compared in
/// single precision where one of them is.
bool areSameValues(const store::Value& a, const store::Value& b, const Likeness& likeness);

/// The bytes of a picture's column; some keep a text there.
store::Bytes pictureBytes(const store::Value& value);

/// Whether a database takes two names for the same; an empty one is "Unknown".
bool areSameNames(const std::string& a, const std::string& b);

}  // namespace orv::database
