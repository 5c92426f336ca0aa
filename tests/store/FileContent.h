// What a file says, in words that do not depend on where in the file it stands.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "store/CheckReport.h"
#include "store/CompactReport.h"
#include "store/jet/catalog/Database.h"

namespace orv::test {

using Rows = std::vector<std::vector<store::Value>>;

/// A row with the values of its table's columns, and the rows of a table in the order of its pages.
std::vector<store::Value> valuesOf(const store::jet::Table& table, const store::jet::RowView& row);
Rows rowsOf(const store::jet::Table& table);

/// Lines by their subject: "header", "Pane columns", "Pane numbers" (of its columns), "Pane
/// indexes", "Pane rows", "Pane index 0" (the places of its rows in that order), "Pane last
/// number", "relation R", "query Q". System tables name other tables in place of their numbers.
using Content = std::map<std::string, std::vector<std::string>>;
Content contentOf(const std::filesystem::path& file, const std::string& password = "");

/// The subjects in which two contents differ; empty where they do not. System tables may have their
/// rows in another order.
std::string difference(const Content& before, const Content& after);

/// The rows of all tables, without dates, in one text.
std::string describe(store::jet::Database& database);

/// Expects that the check finds no fault in a file; what else it says of it.
store::CheckReport expectSound(const std::filesystem::path& file, const std::string& password = "");

/// All that a check has found, and a repair told, in one text.
std::string textOf(const store::CheckReport& report);
std::string textOf(const store::CompactReport& report);

/// A sum that nearly any change of a text alters.
std::uint64_t sumOf(const std::string& text);

/// Expects the bytes of a file, but for its dates, to have this sum. Access looks at more of a file
/// than we do, and no test can ask it: what foreign readers have accepted stays as it is, to the
/// byte. After a change that is meant they try the new files (tools/try-files), and the new sum
/// takes the place of the old one.
void expectBytes(const std::string& file, std::uint64_t sum);

/// The Access files of a folder of the corpus; none where it is absent.
std::vector<std::filesystem::path> corpusFiles(const std::string& folder);
/// What a file of the corpus asks for.
std::string passwordOf(const std::filesystem::path& corpusFile);

}  // namespace orv::test
