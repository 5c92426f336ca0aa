// Tables of comma-separated values, read.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orv::commands::edit {

/// Rows of cells. Cells between quotation marks may hold separators, line breaks and doubled
/// quotation marks.
using CsvRows = std::vector<std::vector<std::string>>;

enum class EmptyLines { leftOut, kept };

/// Reads a text with this separator. Raises kInvalidCall for a quotation mark that does not end,
/// naming its line.
CsvRows readCsv(std::string_view text, char separator, EmptyLines emptyLines = EmptyLines::leftOut);

/// The separator of a text: of tab, semicolon and comma the one that its first line has most of.
char separatorOf(std::string_view text);

/// Reads a file, whose separator is found out; a byte order mark is passed over. Raises
/// kFileNotFound where it cannot be read.
CsvRows readCsvFile(const std::string& path);

}  // namespace orv::commands::edit
