// New databases, and new tables, indexes and saved queries in them.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "store/Schema.h"
#include "store/jet/catalog/Database.h"

namespace orv::store::jet {

/// Makes an empty Jet 4 database at `path`, with what `fill` puts into it, and opens it. It is
/// filled in memory: the file appears whole or, after a failure, not at all; a crash may leave a
/// file "NAME-new", which is no database yet and is replaced by the next try. Raises
/// kStoreFailure, also where a file stands already.
using Filling = std::function<void(const std::shared_ptr<Database>&)>;
std::shared_ptr<Database> createDatabase(const std::string& path, const Filling& fill = {});

/// Each of these is one transaction, or part of the caller's. All raise kInvalidDesign for names,
/// sizes and numbers that are not possible, kObjectExists when the name is taken, and
/// kReadOnlyStore for files that cannot be changed.

/// A number for a new object that has no page.
std::int32_t nextObjectId(Database& database);

/// Makes a table without rows, with its indexes and the properties of its columns.
void createTable(Database& database, const TableInfo& design);

/// Makes an index over the rows that `table` has. Raises kDuplicateKey when they are not what
/// the index asks for: different, or all with a value.
void createIndex(Database& database, const std::string& table, const IndexInfo& design);

/// Saves a SELECT query, part by part. Parts of one attribute keep their order. The parts that
/// every query has (attributes 0 and 255) are added where they are missing.
void createQuery(Database& database, const std::string& name, const std::vector<QueryPart>& parts);

}  // namespace orv::store::jet
