// Rows on standard output.
#pragma once

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "store/Value.h"

namespace orv::cli {

enum class Format { table, tsv, csv, json };

/// Writes rows of named columns as they come. Without end() nothing is complete.
class RowWriter {
 public:
  virtual ~RowWriter() = default;
  virtual void row(const std::vector<store::Value>& values) = 0;
  virtual void end() = 0;
};

/// `table`: columns lined up under their names as the first thousand rows need it, numbers to the
/// right, long bytes by their count, texts as orv::shown() has them. `tsv`: a line of names, then a
/// line a row; tabs, line breaks and backslashes in values become \t, \n, \r and \\. `csv`: the
/// same with commas; a value with a comma, a quotation mark or a line break stands between
/// quotation marks, those within it doubled. `json`: an array of objects. Bytes are hexadecimal
/// after "0x", dates "2024-12-31 23:59:59".
std::unique_ptr<RowWriter> makeRowWriter(Format format, std::vector<std::string> columns,
                                         std::ostream& out);

}  // namespace orv::cli
