// The commit of what belongs to one record.
#pragma once

#include <functional>

#include "store/Connection.h"

namespace orv::database {

/// Makes the changes of one record in one commit. When an error ends them, what they wrote before
/// it is committed, and the error passes on. When the file or its medium is the cause, or the
/// program ends, nothing of the record is there.
void commitRecord(store::Connection& dc, const std::function<void()>& changes);

}  // namespace orv::database
