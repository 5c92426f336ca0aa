// The records of a node as a table of fields.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "model/Codes.h"
#include "sources/datasource.h"
#include "store/Value.h"

namespace orv::commands {

struct RecordColumn {
  std::string name;   ///< in the database
  std::string title;  ///< for people, without the unit
  std::string unit;
  bool isNumber = false;
  std::span<const CodeName> names = {};  ///< of codes, which are shown with them

  bool isShownAsNumber() const { return isNumber && names.empty(); }
};

/// A column of this name, with its title and its unit.
RecordColumn recordColumn(const std::string& name, bool isNumber);

/// A field of a column as it is shown: fractions with `digits` digits, a code with its name.
std::string cellText(const RecordColumn& column, const store::Value& value, int digits);

/// Rows of the record set that shows a node, or the files of a folder. Rows are read as far as
/// somebody has asked, so that a table of any size is there at once. The first column identifies
/// the records to all other commands. Reading raises what the store raises.
class RecordTable {
 public:
  virtual ~RecordTable() = default;

  const std::vector<RecordColumn>& columns() const { return columns_; }

  /// Reads on until `rows` rows have been read or none is left.
  virtual void readTo(std::size_t rows) = 0;
  virtual std::size_t rowsRead() const = 0;
  /// Whether all rows have been read.
  virtual bool isComplete() const = 0;
  /// Reads on to the end, in steps that a record set bears.
  void readAll();

  /// A field of a row that has been read.
  virtual store::Value value(std::size_t row, std::size_t column) const = 0;

  /// Fills the fields of a further row that are empty at first, because they take long to find.
  /// False when none is left.
  virtual bool fillNext() { return false; }
  /// Rows whose fields are filled.
  virtual std::size_t rowsFilled() const { return rowsRead(); }

 protected:
  std::vector<RecordColumn> columns_;
};

/// Opens the records of a record set or folder. Raises what opening the record set raises, and
/// kInvalidCall for a node that has none.
std::unique_ptr<RecordTable> openRecordTable(const std::shared_ptr<sources::datasource>& node);

}  // namespace orv::commands
