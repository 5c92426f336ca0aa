// A session with data sources of every kind.
#pragma once

#include <array>
#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "commands/PasteRecords.h"
#include "commands/RecordKind.h"
#include "commands/RecordList.h"
#include "commands/RecordingUi.h"
#include "commands/Session.h"
#include "commands/SourceOpener.h"
#include "database/SourceDatabases.h"
#include "sources/RecordSelection.h"
#include "support/Corpus.h"

namespace orv::test {

class CommandsTest : public ::testing::Test {
 public:
  using Node = commands::SourceOpener::Node;

  static sources::RecordSelection select(const Node& node,
                                         const std::vector<std::string>& identifiers) {
    return sources::RecordSelection::of(node, identifiers);
  }

 protected:
  /// A new, empty ORV database of version 3.0.0, opened.
  Node newDatabase(const std::string& name = "new.mdb") {
    database::CreateEmptyDatabase(folder / name);
    return opener.openOrvDatabase(folder.path().string(), name);
  }

  /// An ORV database as other makers have them: the tables of ours, changed.
  Node changedDatabase(const std::string& name,
                       const std::function<void(store::TableInfo&)>& change) {
    const auto ours = database::CreateEmptyDatabase(folder / "ours.mdb");
    const auto path = folder / name;
    {
      const auto other = store::Connection::create(path);
      for (const std::string& table : ours->tableNames()) {
        store::TableInfo design = ours->table(table);
        std::erase_if(design.indexes, [](const auto& index) { return index.ofRelation; });
        change(design);
        other->createTable(design);
      }
      addRow(*other, "ORVdata_version", {{"version", "3.0.0"}});
    }
    std::filesystem::remove(folder.path() / "ours.mdb");
    return opener.openAny(path);
  }

  /// A database with the tables of another one, but for those and the columns that are named, or
  /// one of version 2.0.1.
  Node remade(const Node& node, const std::string& without) {
    const std::string path = folder / fmt::format("remade{}.mdb", ++remakes_);
    NewNames names;
    std::istringstream words(without);
    for (std::string each; words >> each;) names[each] = "";
    without == "2.0.1" ? makeVersion2Of(*node->ADOConnection(), path)
                       : makeRenamed(*node->ADOConnection(), path, names, "3.0.0");
    return opener.openAny(path);
  }

  /// Changes each row of the tables of records.
  static void changeRows(const Node& node, const std::function<void(store::Recordset&)>& change) {
    for (const char* table : {"Pane", "Pane_integrated_data", "Pane_spectral_data", "Frame",
                              "Shading", "Shading_integrated_data_temp", "Shading_spectral_data"}) {
      auto rows = node->ADOConnection()->openRecordset(
          table, store::CursorType::keyset, store::LockType::optimistic, store::SourceKind::table);
      for (; !rows->eof(); rows->moveNext()) {
        change(*rows);
        rows->update();
      }
    }
  }

  /// Whether a column says which record, or which row of it, a row is.
  static bool isKept(const std::string& column) {
    static const std::set<std::string> kept{"PaneID",     "FrameID", "Shading_id",
                                            "Shading_ID", "groupID", "groupnameID",
                                            "name",       "angle",   "wavelength"};
    return kept.contains(column);
  }

  /// Another value for a column.
  static store::Value other(const store::ColumnInfo& column, const store::Value& value) {
    using store::ColumnType;
    switch (column.type) {
      case ColumnType::boolean:
        return !value.toBoolean();
      case ColumnType::integer:
      case ColumnType::longInteger:
        return value.isNull() || value.toLong() != 1 ? 1 : 2;
      case ColumnType::single:
      case ColumnType::double_:
        return value.isNull() || value.toDouble() < 0.5 ? 0.625 : 0.03125;
      case ColumnType::ole:
        return store::Bytes{7, 8, 9};
      default:
        return (value.isNull() ? "" : value.toText().substr(0, 3)) + "~";
    }
  }

  /// A copy of a file of the corpus, opened as what it is.
  Node foreign(const std::string& name) {
    std::filesystem::copy_file(corpusFolder() / "sources" / name, folder.path() / name);
    return opener.openAny(folder / name);
  }

  /// A folder of text files with these texts.
  Node texts(commands::TextFileKind kind,
             const std::vector<std::pair<std::string, std::string>>& files) {
    std::vector<std::string> names;
    for (const auto& [name, text] : files) {
      folder.write(name, text);
      names.push_back(name);
    }
    return opener.openTextFiles(folder.path().string(), names, kind);
  }

  static Node recordSet(const Node& source, commands::RecordKind kind) {
    return commands::recordSetOf(source, kind);
  }

  static sources::RecordSelection selectAll(const Node& node) {
    return select(node, commands::recordIdentifiers(*node));
  }

  /// Copies all records of a source, those that have no group into "Demo".
  commands::PasteResult copyAll(const Node& from, const Node& to,
                                const commands::PasteOptions& options = {}) {
    ui.inputs = {"Demo"};
    return commands::pasteRecords(session, selectAll(from), to, options);
  }

  static std::vector<std::string> linesOf(const commands::Notes& notes) {
    std::vector<std::string> lines;
    for (const auto& note : notes.list()) lines.push_back(note.line());
    return lines;
  }

  /// The log without what the user sees in passing only.
  std::vector<std::string> messages() const {
    std::vector<std::string> result;
    for (const std::string& line : ui.log) {
      if (!line.starts_with("status") && !line.starts_with("progress")) result.push_back(line);
    }
    return result;
  }

  Folder folder;
  RecordingUi ui;
  commands::Session session{ui};
  commands::SourceOpener opener{session};

 private:
  int remakes_ = 0;
};

/// A pane file of three points.
inline std::string paneText(const std::string& product = "Clear") {
  return "{ Units, Wavelength Units } SI Microns\n"
         "{ Thickness } 3.0\n"
         "{ Conductivity } 1.0\n"
         "{ IR Transmittance } TIR=0\n"
         "{ Emissivity, front back } Emis= 0.84 0.84\n"
         "{ Product Name: " +
         product +
         " }\n"
         "{ Type: Monolithic }\n"
         "0.300 0.1 0.05 0.06\n"
         "0.500 0.8 0.07 0.08\n"
         "2.500 0.7 0.06 0.07\n";
}

}  // namespace orv::test
