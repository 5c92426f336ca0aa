// The password of a database.
#pragma once

#include <string>

#include "store/Value.h"
#include "store/jet/page/Format.h"

namespace orv::store::jet {

/// The field of the password in a header page, without the masks.
Bytes passwordField(const Format& format, const Bytes& header);
/// The password in a header page whose hidden part is decoded; empty for none.
std::string passwordIn(const Format& format, const Bytes& header);

}  // namespace orv::store::jet
