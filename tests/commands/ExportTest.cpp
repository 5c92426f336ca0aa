#include "commands/CommandsTest.h"
#include "commands/ExportRecords.h"

namespace orv::test {
namespace {

using commands::ExportForm;
using commands::RecordKind;

class ExportTest : public CommandsTest {};

TEST_F(ExportTest, EachAngleIsAFileWithANameThatFilesCanHave) {
  const auto database = newDatabase();
  auto& dc = *database->ADOConnection();
  session.database.InsertPane(*makePane("many", 0), dc);
  session.database.InsertPane(*makePane("many", 60), dc);
  for (const char* name : {"a/b:c", ".dat", "\x1f\x20.12", "type 1.d-t", "b.data1", "c.Dat4"}) {
    session.database.InsertPane(*makePane(name), dc);
  }
  const auto panes = selectAll(recordSet(database, RecordKind::panes));
  EXPECT_EQ(commands::exportRecords(session, panes, {folder / "out"}).files,
            (std::vector<std::string>{"many_0deg.txt", "many_60deg.txt", "a_b_c.txt", "_.dat",
                                      "_ .12.txt", "type 1.d-t.txt", "b.data1.txt", "c.Dat4"}));
}

/// Through files of each form into another database: names that no file can have, several angles,
/// and every field with a value of its own.
TEST_F(ExportTest, AnExportReadBackIsTheSameDatabase) {
  for (const auto& [name, form] : {std::pair("text", ExportForm::text),
                                   {"json", ExportForm::json},
                                   {"joined.json", ExportForm::json}}) {
    SCOPED_TRACE(name);
    const auto database = newDatabase(std::string(name) + ".mdb");
    auto& dc = *database->ADOConnection();
    for (const std::int16_t angle : {0, 45}) {
      const auto pane = fullPane();
      pane->filename("Type 1.5 mm/grey");
      pane->group("Demo");
      pane->ORV_Angle(angle);
      pane->SubstrateReference()->SpectralData(pane->SpectralData()->ShallowClone());
      if (form ==
          ExportForm::text) {  // which keeps no substrate, and no more than single precision
        pane->SubstrateReference(nullptr);
        pane->with_and_without_film(false);
        pane->ORV_Emissivity_front(0.75);
        pane->ORV_Emissivity_back(0.125);
      }
      pane->description("described\r\nin two lines");
      pane->SpectralData()->Tf(1, 0.123456F + static_cast<float>(angle) / 1000);
      session.database.InsertPane(*pane, dc);
    }
    const auto panes = selectAll(recordSet(database, RecordKind::panes));
    const auto place = folder / name;
    if (place.ends_with("joined.json")) {
      const auto joined = commands::exportJoined(session, panes, form);
      EXPECT_EQ(joined.dataSets, 2U);
      commands::writeJoined(place, joined.text, false);
    } else {
      commands::exportRecords(session, panes, {place, false, form});
    }

    const auto source = opener.openAny(place);
    const auto back = newDatabase(std::string("from ") + name + ".mdb");
    EXPECT_EQ(copyAll(source, back).copied, 2) << ::testing::PrintToString(messages());
    const auto again = copyAll(source, back, {.ifThere = commands::IfThere::replace});
    EXPECT_EQ(again.replaced, 2);
    for (const std::string& note : linesOf(again.notes)) EXPECT_EQ(note.find("kept"), note.npos);
    std::vector<std::string> statements{
        "SELECT * FROM Pane", "SELECT * FROM Groups",
        "SELECT angle, wavelength, transmission_outdoor, reflection_outdoor, reflection_indoor, "
        "transmission_sub FROM Pane_spectral_data ORDER BY angle, wavelength"};
    if (form == ExportForm::json) statements.emplace_back("SELECT * FROM Pane_integrated_data");
    for (const std::string& statement : statements) {
      EXPECT_EQ(rowsOf(*back->ADOConnection(), statement), rowsOf(dc, statement)) << statement;
    }
  }
}

}  // namespace
}  // namespace orv::test
