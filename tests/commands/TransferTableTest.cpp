// Every kind of source, every kind of record, into every kind of destination.
#include <map>
#include <set>

#include "commands/CommandsTest.h"
#include "commands/PasteRecords.h"
#include "commands/RecordDetails.h"
#include "commands/RecordReader.h"
#include "database/GlazingDatabase.h"

namespace orv::test {
namespace {

using commands::RecordKind;

struct Transfer {
  const char* name;
  const char* file;  ///< of the corpus
  RecordKind kind;
  const char* identifier;  ///< empty for all records
  int copied;
  bool asksForGroup;
};

const Transfer kTransfers[] = {
    {"PanesOfVersion2", "orvdata-2.0.1.mdb", RecordKind::panes, "", 12, true},
    {"FramesOfVersion2", "orvdata-2.0.1.mdb", RecordKind::frames, "", 4, true},
    {"ShadingsOfVersion2", "orvdata-2.0.1.mdb", RecordKind::shadings, "", 1, true},
    {"PanesOfVersion3", "orvdata-3.0.0.mdb", RecordKind::panes, "", 40, true},
    {"OnePaneOfVersion3", "orvdata-3.0.0.mdb", RecordKind::panes, "4", 1, true},
    {"FramesOfVersion3", "orvdata-3.0.0.mdb", RecordKind::frames, "", 6, true},
    {"ShadingsOfVersion3", "orvdata-3.0.0.mdb", RecordKind::shadings, "", 3, true},
    {"PanesOfTheIgdb", "glazing.mdb", RecordKind::panes, "", 200, false}};

/// Where the records go: a new database of ours or a file of another maker, and within it the
/// record set or the database's own node.
struct Destination {
  const char* name;
  bool isForeign;
  bool isRecordSet;
};

std::ostream& operator<<(std::ostream& out, const Destination& destination) {
  return out << destination.name;
}

const Destination kDestinations[] = {{"IntoDatabase", false, false},
                                     {"IntoRecordSet", false, true},
                                     {"IntoForeignDatabase", true, false}};

class TransferTableTest : public CommandsTest, public ::testing::WithParamInterface<Destination> {
 protected:
  Node source(const std::string& file) {
    Node& node = sources_[file];
    if (!node) node = foreign(file);
    return node;
  }

  Node destinationDatabase(const std::string& name) {
    if (!GetParam().isForeign) return newDatabase(name);
    std::filesystem::copy_file(corpusFolder() / "sources" / "orvdata-3.0.0.mdb",
                               folder.path() / name);
    return opener.openAny((folder.path() / name).string());
  }

  /// The records that came last to the destination are those of the source, in order.
  void compareRecords(const sources::RecordSelection& from, const Node& to) {
    const RecordKind kind = *commands::recordKind(*to);
    const auto written = commands::recordIdentifiers(*to);
    const commands::RecordReader source(session, from.DataSourcePtr());
    const commands::RecordReader copy(session, to);
    const std::size_t first = written.size() - static_cast<std::size_t>(from.RecordsCount());
    for (std::int32_t i = 1; i <= from.RecordsCount(); ++i) {
      const std::string& a = from.SelectedRecordID(i);
      const std::string& b = written[first + static_cast<std::size_t>(i) - 1];
      SCOPED_TRACE(a);
      EXPECT_EQ(shown(copy, b, kind), shown(source, a, kind));
      if (kind != RecordKind::panes) continue;
      ASSERT_EQ(source.angles(a), copy.angles(b));
      for (const std::int16_t angle : source.angles(a)) {
        const auto pane = source.pane(a, angle);
        const auto copied = copy.pane(b, angle);
        compareSpectra(pane->SpectralData().get(), copied->SpectralData().get());
        ASSERT_EQ(copied->HasSubstrate(), pane->HasSubstrate());
        if (!pane->HasSubstrate()) continue;
        EXPECT_EQ(copied->SubstrateReference()->SpectralData()->Tf(0),
                  pane->SubstrateReference()->SpectralData()->Tf(0));
      }
    }
  }

  /// All that is shown of a record but what a copy has anew.
  static std::vector<std::string> shown(const commands::RecordReader& reader,
                                        const std::string& identifier, RecordKind kind) {
    const auto fields =
        kind == RecordKind::frames ? commands::frameDetails(*reader.frame(identifier))
        : kind == RecordKind::shadings
            ? commands::shadingDetails(*reader.shading(identifier))
            : commands::paneDetails(*reader.pane(identifier, reader.angles(identifier).at(0)));
    std::set<std::string> anew{"id", "group"};
    if (kind == RecordKind::frames) anew.insert("product name");
    if (kind == RecordKind::panes) anew.insert({"type", "direction", "substrate file"});
    std::vector<std::string> lines;
    for (const auto& field : fields) {
      if (!anew.contains(field.name)) lines.push_back(field.name + ": " + field.value);
    }
    return lines;
  }

  static void compareSpectra(const SpectralData* from, const SpectralData* to) {
    ASSERT_EQ(from == nullptr, to == nullptr);
    if (from == nullptr) return;
    ASSERT_EQ(to->count(), from->count());
    for (std::int32_t i = 0; i < from->count(); ++i) {
      ASSERT_EQ(to->ConvertedWl(i, kNanometers), from->ConvertedWl(i, kNanometers)) << i;
      ASSERT_EQ(to->Tf(i), from->Tf(i)) << i;
      ASSERT_EQ(to->Rf(i), from->Rf(i)) << i;
      ASSERT_EQ(to->Rb(i), from->Rb(i)) << i;
    }
  }

 private:
  std::map<std::string, Node> sources_;
};

TEST_P(TransferTableTest, CopiesTheRecordsWithTheSpecifiedTexts) {
  ORV_NEEDS_CORPUS();
  for (const Transfer& transfer : kTransfers) {
    SCOPED_TRACE(transfer.name);
    const auto from = recordSet(source(transfer.file), transfer.kind);
    const auto database = destinationDatabase(std::string(transfer.name) + ".mdb");
    const auto to = recordSet(database, transfer.kind);
    const auto records =
        *transfer.identifier ? select(from, {transfer.identifier}) : selectAll(from);
    const std::int64_t before = commands::countRecords(*to);
    ui.log.clear();
    if (transfer.asksForGroup) ui.inputs = {"Copied"};

    const auto result =
        commands::pasteRecords(session, records, GetParam().isRecordSet ? to : database);

    EXPECT_EQ(result.copied, transfer.copied);
    EXPECT_EQ(result.failed, 0);
    EXPECT_EQ(commands::countRecords(*to) - before, transfer.copied);
    EXPECT_EQ(messages().size(), transfer.asksForGroup ? 1U : 0U)
        << ::testing::PrintToString(messages());
    EXPECT_EQ(ui.log[0], "progress: Pasting records...");
    EXPECT_EQ(ui.log[1], "progress: Opening database...");
    const std::string verb = transfer.kind == RecordKind::frames ? "Pasting " : "Reading ";
    EXPECT_EQ(ui.log[2], "status: " + verb + records.SelectedRecordID(1) + "...");
    EXPECT_EQ(ui.log[ui.log.size() - 2], "status: Ready");
    const auto entries = commands::listRecords(session, to);
    EXPECT_EQ(entries.back().group, transfer.asksForGroup ? "Copied" : "IGDB");
    compareRecords(records, to);
  }
}

INSTANTIATE_TEST_SUITE_P(All, TransferTableTest, ::testing::ValuesIn(kDestinations),
                         [](const auto& info) { return std::string(info.param.name); });

/// The Optics5 user database has the tables of the IGDB and no password: one is made from it.
TEST_F(CommandsTest, PanesOfAnOptics5UserDatabaseAskForTheirGroup) {
  const auto path = (folder.path() / "user.mdb").string();
  test::makeGlazingDatabase(path, {{{"GlazingID", 1},
                                    {"FileName", "mine.dat"},
                                    {"Type", "laminated"},
                                    {"Substrate_FileName", "N/A"}}})
      ->close();
  const auto user = opener.openAny(path);
  EXPECT_EQ(user->DataType(), sources::DataType::optics5User);
  const auto database = newDatabase();
  ui.inputs = {"Mine"};
  const auto result =
      commands::pasteRecords(session, selectAll(recordSet(user, RecordKind::panes)), database);
  EXPECT_EQ(result.copied, 1) << ::testing::PrintToString(messages());
  const auto pane =
      session.database.RetrievePaneORV_30(*database->ADOConnection(), 1, "", "", 0, 0);
  EXPECT_EQ(pane->description(), "Unknown Appearance: ") << "laminated is no known type";
}

}  // namespace
}  // namespace orv::test
