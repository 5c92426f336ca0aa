// Checking a database file: everything in it is read and compared with everything else.
#pragma once

#include <string>

#include "store/CheckReport.h"

namespace orv::store {

/// Walks the whole file: that every page is used once, every row can be read, counts are right,
/// every index has exactly the entries of its table's rows, in order, memos and pictures are
/// whole, and the catalogue agrees with the tables. The file is not changed (but for changes of
/// a program that was stopped midway, which are undone as at every opening), and other programs
/// cannot change it meanwhile.
///
/// Damage is reported, not raised. Needs about 50 bytes of memory for each row of the largest
/// table.
///
/// Raises kStoreFailure where the file cannot be opened or is no database, kNotAuthenticated for
/// a wrong password, kNotSupported for an encrypted file or one whose code page is not known.
CheckReport checkFile(const std::string& path, const std::string& password,
                      const CheckProgress& progress = {});

}  // namespace orv::store
