// The names that a record gets which brings none.
#pragma once

#include <string>

#include "model/Codes.h"

namespace orv::database {

template <class Record>
void setMissingNames(Record& record) {
  if (record.supplier().empty()) record.supplier(std::string(kUnknown));
  if (record.group().empty()) record.group(std::string(kUnknown));
}

}  // namespace orv::database
