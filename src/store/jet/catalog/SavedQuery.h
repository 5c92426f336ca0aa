// A saved query: its parts in the file, and its text.
#pragma once

#include <string>
#include <vector>

#include "store/Schema.h"
#include "store/jet/catalog/Database.h"

namespace orv::store::jet {

/// The kinds of saved queries, with the codes of the file format.
enum class QueryKind : std::int16_t {
  select = 1,
  makeTable = 2,
  append = 3,
  update = 4,
  erase = 5,
  crosstab = 6,
  dataDefinition = 7,
  passThrough = 8,
  unionQuery = 9,
};

/// A saved query as the rows of MSysQueries describe it, each of them one part of a clause.
class SavedQuery {
 public:
  SavedQuery(std::string name, std::vector<QueryPart> parts);

  /// A query whose parts do not say it is a SELECT.
  QueryKind kind() const { return kind_; }

  /// The query as Access SQL, in one line. Raises kCorruptFile when its parts do not fit together.
  std::string sql() const;

  /// The parts of a new SELECT query, in the order in which the file keeps them.
  static std::vector<QueryPart> partsOf(const QueryDesign& design);

 private:
  /// The attribute of a part: which clause it belongs to.
  enum Attribute : std::uint8_t {
    kStart = 0,
    kType = 1,
    kParameter = 2,
    kOptions = 3,
    kOtherDatabase = 4,
    kTable = 5,
    kColumn = 6,
    kJoin = 7,
    kWhere = 8,
    kGroupBy = 9,
    kHaving = 10,
    kOrderBy = 11,
    kEnd = 255,
  };

  std::vector<const QueryPart*> all(Attribute attribute) const;
  const QueryPart* first(Attribute attribute) const;
  bool hasOption(int option) const;

  std::string parameters() const;
  std::string select(const std::string& into) const;
  std::string predicate() const;
  std::string columns() const;
  std::string clauses() const;
  std::string tables() const;
  std::string grouping() const;
  std::string ordering() const;
  std::string append() const;
  std::string update() const;
  std::string crosstab() const;
  std::string unions() const;
  static std::string otherDatabase(const QueryPart* part);

  std::string name_;
  std::vector<QueryPart> parts_;
  QueryKind kind_ = QueryKind::select;
};

}  // namespace orv::store::jet
