// What the commands tell of sources of every kind, whole, as the files of `sources` have it.
#include "commands/CellText.h"
#include "commands/CommandsTest.h"
#include "commands/NodeContent.h"
#include "commands/OpenCommands.h"
#include "commands/RecordReader.h"
#include "commands/RecordTable.h"
#include "commands/TolerantOffer.h"
#include "commands/ValueColumns.h"
#include "model/Raised.h"
#include "support/EncodedFile.h"

namespace orv::test {
namespace {

using commands::Answer;
using commands::RecordKind;
using commands::RecordReader;

class SourcesTest : public CommandsTest {
 protected:
  SourcesTest() {
    ui.tellsAll = true;
    const auto full = makeFullDatabase(folder / "full.mdb");
    addPoint(*full, 2, 0, 0, 640);
    makeVersion2Of(*full, folder / "old.mdb");
    makeGlazingDatabase(folder / "glazing.mdb");
    makeGlazingDatabase(folder / "optics5.mdb");
    for (const char* name : {"panes", "blinds"}) std::filesystem::create_directory(folder / name);
    folder.write("panes/a.txt", paneText("Alpha"));
    folder.write("panes/b.txt", "no pane");
    folder.write("panes/c.json", R"([{"name": "c0", "spectral_data": {"spectral_data": [
        {"wavelength": 0.325, "T": 0.75, "Rf": 0.1, "Rb": 0.2}]}}, {"x": "it's none"}])");
    folder.write("blinds/d.txt", "{ Product type: 2 }\nNanometers\n");
  }

  void tell(const std::string& text) { told += text + "\n"; }

  /// What was shown and asked since the last time.
  void tellLog() {
    for (const std::string& line : messages()) tell("  " + line);
    ui.log.clear();
  }

  void tellFailure(const std::function<void()>& work) {
    const Raised raised = raisedBy(work);
    if (raised.number != 0) tell(fmt::format("  {}: {}", raised.number, raised.description));
  }

  void tellNode(const sources::datasource* node) {
    const bool isText = commands::nodeView(node) == commands::NodeView::text;
    tell(fmt::format("== {}{}", commands::nodeTitle(node),
                     isText ? ", text: " + commands::nodeText(node) : ""));
  }

  /// The columns from a certain one on.
  void tellTable(commands::RecordTable& table, std::size_t first = 0) {
    table.readAll();
    while (table.fillNext()) {
    }
    const auto columns = std::span(table.columns()).subspan(first);
    for (const auto& column : columns) {
      told += fmt::format("{}, {}, {}{} | ", column.name, column.title, column.unit,
                          column.isShownAsNumber() ? "#" : "");
    }
    tell("");
    for (std::size_t row = 0; row < table.rowsRead(); ++row) {
      for (std::size_t i = 0; i < columns.size(); ++i) {
        told += commands::cellText(columns[i], table.value(row, first + i), 4) + " | ";
      }
      tell("");
    }
  }

  void tellPane(const RecordReader& reader, const std::string& id) {
    tell(fmt::format("{}: {}, angles {}, of spectra {}, of data {}", id,
                     reader.isThere(id) ? "there" : "not there", reader.angles(id),
                     reader.spectralAngles(id), reader.dataAngles(id)));
    for (const std::int16_t angle : reader.dataAngles(id)) {
      tellFailure([&] {
        const auto pane = reader.pane(id, angle);
        tell(
            fmt::format("  at {}: {} points, direction {} of {}, besides {}; unread {}; not given "
                        "{}; remarks {}",
                        angle, pane->SpectralData() ? pane->SpectralData()->count() : 0,
                        pane->ORV_Direction(), reader.directions(id, angle),
                        reader.otherDirections(id, *pane), reader.unreadColumns(id, *pane),
                        reader.columnsNotGiven(id, *pane), reader.remarks(id, angle)));
      });
    }
    tellFailure([&] {
      for (const auto& set : reader.dataSets(id)) {
        tell(fmt::format("  set: {} at {}, direction {}", set->filename(), set->ORV_Angle(),
                         set->ORV_Direction()));
      }
    });
  }

  void tellRecords(const Node& set) {
    const auto identifiers = commands::recordIdentifiers(*set);
    tell(fmt::format("{} records: {}", commands::countRecords(*set), identifiers));
    const auto table = commands::openRecordTable(set);
    tellTable(*table);
    const RecordReader reader(session, set);
    if (commands::recordKind(*set) == RecordKind::panes) {
      for (const std::string& id : identifiers) tellPane(reader, id);
      commands::ValueColumns values(commands::openRecordTable(set), session, set,
                                    {.stored = true, .computedBy = optics::Standard::nfrc300});
      tellTable(values, table->columns().size());
    }
    tellFailure([&] { tell(reader.isThere("9") ? "9 is there" : "9 is not there"); });
    tellFailure([&] { reader.pane("9", 0); });
    tellFailure([&] { reader.frame("9"); });
    tellFailure([&] { reader.shading("9"); });
    tellFailure([&] { reader.isThere("it's"); });
    tellFailure([&] { reader.pane("it's", 0); });
  }

  void tellSource(const Node& source) {
    tellNode(source.get());
    if (source->ADOConnection()) tellFailure([&] { commands::openRecordTable(source); });
    if (!source->ADOConnection()) tellRecords(source);
    for (const auto& child : source->DataSources()) {
      tellNode(child.get());
      if (child->ADOConnection()) tellRecords(child);
    }
    tellLog();
  }

  void tellCopy(const Node& from, const Node& to) {
    const auto result = commands::pasteRecords(session, selectAll(from), to);
    tell(fmt::format("{}{}", result.summary(true), result.refused ? " Refused." : ""));
    for (const auto* notes : {&result.notes, &result.zeros, &result.notKept}) {
      for (const std::string& line : linesOf(*notes)) tell("  " + line);
    }
    tellLog();
  }

  /// Compares what was told with what a file of `sources` has.
  void expect(const std::string& file) {
    EXPECT_EQ(folder.hiddenIn(told),
              readFile(ORV_SOURCE_DIR "/tests/commands/sources/" + file + ".txt"));
  }

  static constexpr const char* kSources[] = {"full.mdb",    "old.mdb", "glazing.mdb",
                                             "optics5.mdb", "panes",   "blinds"};
  std::string told;
};

TEST_F(SourcesTest, EachTellsItsRecords) {
  for (const char* name : kSources) tellSource(opener.openAny(folder / name));
  tellNode(nullptr);
  expect("records");
}

/// Databases of other makers need not have each column and table.
TEST_F(SourcesTest, ColumnsAndTablesMayBeMissing) {
  const auto full = store::Connection::openFile(folder / "full.mdb");
  for (const char* missing :
       {"direction", "Ra", "reflection_sub", "info", "Shading_integrated_data_temp", "Suppliers"}) {
    tell(std::string("without ") + missing);
    const std::string name = std::string(missing) + ".mdb";
    makeRenamed(*full, folder / name, {{missing, ""}}, "3.0.0");
    const Node node = opener.openAny(folder / name);
    const RecordReader reader(session, recordSet(node, RecordKind::panes));
    for (const char* id : {"1", "2", "4"}) tellFailure([&] { tellPane(reader, id); });
    for (const RecordKind kind : {RecordKind::frames, RecordKind::shadings}) {
      const Node set = recordSet(node, kind);
      tellFailure([&] {
        for (const auto& entry : commands::listRecords(session, set)) {
          tell(entry.identifier + " " + entry.name + " of " + entry.supplier);
        }
      });
      tellFailure([&] { RecordReader(session, set).frame("1"); });
      tellFailure([&] {
        const auto shading = RecordReader(session, set).shading("1");
        tell(fmt::format("{} {} {}", shading->Info(), shading->spectrum().size(),
                         shading->integrated().size()));
      });
    }
  }
  expect("missing");
}

TEST_F(SourcesTest, EachIsCopiedOrRefused) {
  const auto to = newDatabase();
  const auto second = newDatabase("second.mdb");
  const Node older = recordSet(opener.openAny(folder / "old.mdb"), RecordKind::panes);
  ui.inputs = {"First"};
  tellCopy(older, nullptr);
  for (const char* name : kSources) {
    const Node node = opener.openAny(folder / name);
    const std::string group = std::string("Of ") + name;
    tell("== to and from " + node->text());
    tellCopy(older, node);
    for (const RecordKind kind : {RecordKind::panes, RecordKind::frames, RecordKind::shadings}) {
      const Node set = recordSet(node, kind);
      if (!set) continue;
      tellCopy(set, set);
      ui.inputs = {""};
      tellCopy(set, to);
      ui.inputs = {"IGDB", group};
      ui.answers.assign(9, Answer::yes);
      tellCopy(set, to);
      ui.inputs = {group};
      ui.answers.assign(9, Answer::no);
      tellCopy(set, recordSet(second, kind));
      ui.inputs = {group};
      tellCopy(set, recordSet(second, RecordKind::frames));
    }
  }
  expect("copies");
}

TEST_F(SourcesTest, FilesThatDifferFromTheFormatAreOfferedToBeMended) {
  for (const int count : {0, 1, 2, 8, 9, 10}) {
    const std::string name = fmt::format("lab{}", count);
    std::filesystem::create_directory(folder / name);
    folder.write(name + "/a.txt", paneText());
    folder.write(name + "/b.txt", "no pane");
    for (int i = 0; i < count; ++i) {
      folder.write(fmt::format("{}/c{}.txt", name, i), "SI nm 4,0 mm 1,0\n500;80;7;8\n");
    }
    const auto lab = opener.openAny(folder / name);
    for (const Answer answer : {Answer::no, Answer::yes, Answer::no}) {
      ui.answers = {answer};
      commands::offerTolerantReading(session, *lab);
      tell(fmt::format("{}: {}", name, session.tolerant.isAllowedIn(lab->Folder())));
      tellLog();
    }
  }
  for (const char* name : {"blinds", "full.mdb"}) {
    commands::offerTolerantReading(session, *opener.openAny(folder / name));
  }
  tellLog();
  expect("offers");
}

TEST_F(SourcesTest, WhatCannotBeOpenedIsTold) {
  commands::OpenCommands open(session);
  open.whenReplaced([&](const Node& closed, const Node& opened) {
    tell(fmt::format("{} {} by {} {}", closed->key(), closed->text(), opened->key(),
                     opened->text()));
  });
  const auto tellAll = [&](const std::vector<std::string>& names) {
    std::vector<std::string> paths;
    for (const std::string& name : names) paths.push_back(folder / name);
    for (const auto& node : open.openAll(paths)) {
      tell(node->key() + " " + node->text());
      const bool isFolder = node->DataType() == sources::DataType::textFolder;
      if (isFolder) tell(fmt::format("  {} files", node->DataSources().count()));
    }
    tellLog();
  };
  folder.write("damaged.mdb", std::string("\0\1\0\0Standard Jet DB\0\1", 21));
  store::Connection::create(folder / "other.mdb")->close();
  tellAll({"none.mdb"});
  tellAll({"none.mdb", "panes", "other.mdb"});
  tellAll({"panes/b.txt", "blinds/d.txt", "panes/a.txt"});
  tellAll({"damaged.mdb"});
  std::filesystem::copy_file(folder / "full.mdb", folder / "secret.mdb");
  setPassword(folder / "secret.mdb", "Sesame 7");
  ui.inputs = {"sesame", ""};
  tellAll({"secret.mdb"});
  ui.inputs = {"sesame", "Sesame 7"};
  tellAll({"secret.mdb", "old.mdb"});
  tellAll({"secret.mdb"});
  for (const char* name : {"none.mdb", "damaged.mdb", "other.mdb", "old.mdb"}) {
    const std::string place = folder.path().string();
    for (const Node& node :
         {open.openOrvDatabase(place, name), open.openIgdb(place, name),
          open.openOptics5UserDatabase(place, name), open.createOrvDatabase(place, name)}) {
      tell(node ? node->key() + " " + node->text() : "nothing");
    }
    tellLog();
  }
  for (const Answer answer : {Answer::no, Answer::yes}) {
    const auto node = open.openOrvDatabase(folder.path().string(), "full.mdb");
    std::filesystem::copy_file(folder / "full.mdb", folder / "copy.mdb");
    std::filesystem::rename(folder / "copy.mdb", folder / "full.mdb");
    ui.answers = {answer};
    for (int i = 0; i < 2; ++i) {
      const Node replacement = open.openReplacements();
      tell(replacement ? replacement->key() : "none");
    }
    tellLog();
  }
  const Node again = open.reopen(folder / "full.mdb");
  tell(again->key());
  tell(open.reopen(folder / "none.mdb") ? "opened" : "nothing");
  tellLog();
  expect("openings");
}

}  // namespace
}  // namespace orv::test
