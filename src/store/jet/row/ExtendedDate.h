// Dates of the type "Date/Time Extended", which Access 2019 and later have in `.accdb` files.
#pragma once

#include "store/Value.h"
#include "store/jet/file/Bytes.h"

namespace orv::store::jet {

/// The date in 42 bytes of ASCII: 19 digits of days since 1 January of year 1, `:`, 12 digits of
/// seconds of the day, 7 digits of 100 nanoseconds, `:7` and a zero byte. Raises kCorruptFile.
Date decodeExtendedDate(ByteView bytes);

}  // namespace orv::store::jet
