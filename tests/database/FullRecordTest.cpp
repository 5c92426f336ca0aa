// Records with another value in every field, in the columns that they should be in, and back.

#include "database/DatabaseErrors.h"
#include "database/SourceDatabases.h"
#include "model/Raised.h"

namespace orv::test {
namespace {

class FullRecordTest : public DatabaseTest {
 protected:
  /// Group, supplier and frame type of a record have different keys.
  FullRecordTest() {
    for (store::Connection* each : {dc.get(), second.get()}) {
      for (const char* name : {"a", "b"}) database.InsertGroup(name, *each);
      database.InsertSupplier("a", *each);
      for (const char* name : {"a", "b", "c"}) database.InsertFrameType(name, *each);
    }
  }

  /// Inserts it at two angles into a database.
  void insertPane(GlazingData& pane, store::Connection& into) {
    for (const std::int16_t angle : {37, 60}) {
      pane.ORV_Angle(angle);
      database.InsertPane(pane, into);
    }
  }

  static std::string everyRow(store::Connection& of) {
    std::string text;
    for (const std::string& table : of.tableNames()) {
      text += table + ": " + rowsOf(of, "SELECT * FROM " + table) + "\n";
    }
    return text;
  }

  /// All rows of the database are those of a file of `records`.
  void expectRows(const std::string& file) {
    EXPECT_EQ(everyRow(*dc), readFile(ORV_SOURCE_DIR "/tests/database/records/" + file + ".txt"));
  }

  const std::shared_ptr<store::Connection> second =
      database::CreateEmptyDatabase(folder / "second.mdb");
};

TEST_F(FullRecordTest, APaneStandsInItsColumnsAndComesBack) {
  const auto pane = fullPane();
  pane->SubstrateReference()->SpectralData(spectrumOfTwo(302.5F));
  pane->SubstrateReference()->SpectralData()->Tf(1, 0.7F);
  insertPane(*pane, *dc);
  expectRows("pane");
  const auto back = retrieve(1, 60);
  EXPECT_EQ(back->group(), "Unknown") << "the group is never read";
  back->group("group");
  // The reflectance of the substrate is not read: all its curves are its transmittance.
  const SpectralData& substrate = *back->SubstrateReference()->SpectralData();
  for (const float value : {substrate.Tf(1), substrate.Tb(1), substrate.Rf(1), substrate.Rb(1)}) {
    EXPECT_EQ(value, 0.7F);
  }
  for (std::int32_t i = 0; i < substrate.count(); ++i) {
    back->SubstrateReference()->SpectralData()->Rf(
        i, pane->SubstrateReference()->SpectralData()->Rf(i));
  }
  insertPane(*back, *second);
  EXPECT_EQ(everyRow(*second), everyRow(*dc));

  const auto old = makeVersion2Of(*dc, folder / "old.mdb");
  EXPECT_EQ(database.RetrieveAnglesOfPaneDataORV_20(1, *old), (std::vector<std::int16_t>{37, 60}));
  for (const auto& [id, name] : {std::pair{1, ""}, std::pair{0, "file \"ä\".dat"}}) {
    const auto ofVersion2 = database.RetrievePaneORV_20(*old, id, name, 60, 0);
    ASSERT_NE(ofVersion2, nullptr);
    EXPECT_EQ(ofVersion2->SpectralData()->count(), 4) << "of both angles";
    const auto expected = retrieve(1, 60);
    expected->productname("");
    expected->supplier("Unknown");
    expected->Acceptance("");
    expected->SpectralData(ofVersion2->SpectralData());
    expected->SubstrateReference(ofVersion2->SubstrateReference());
    expected->SubstrateFilename(ofVersion2->SubstrateFilename());
    EXPECT_EQ(whole(*ofVersion2), whole(*expected));
  }
  EXPECT_EQ(database.RetrievePaneORV_20(*old, 2, "", 60, 0), nullptr);
  EXPECT_EQ(raisedBy([&] { database.RetrievePaneORV_20(*old, 0, "", 60, 0); }).number,
            database::kRetrievalFailed);
}

TEST_F(FullRecordTest, AFrameStandsInItsColumnsAndComesBack) {
  FrameDataClass frame = fullFrame();
  frame.picture({'o', 'a', 'k'});
  EXPECT_EQ(database.InsertFrame(frame, *dc), 1);
  expectRows("frame");
  const auto back = database.RetrieveFrameORV_30(*dc, 0, "FRAME", "");
  EXPECT_EQ(back->id(), 1);
  EXPECT_EQ(whole(*back), whole(frame));
  database.InsertFrame(*back, *second);
  EXPECT_EQ(everyRow(*second), everyRow(*dc));

  const auto old = makeVersion2Of(*dc, folder / "old.mdb");
  const auto ofVersion2 = database.RetrieveFrameORV_20(*old, 1, "");
  EXPECT_EQ(whole(*ofVersion2), whole(*database.RetrieveFrameORV_20(*old, 0, "frame")));
  EXPECT_EQ(raisedBy([&] { database.RetrieveFrameORV_20(*old, 0, ""); }).number,
            database::kRetrievalFailed);
  frame.group("Unknown");
  frame.supplier("Unknown");
  frame.frametype("4");
  EXPECT_EQ(whole(*ofVersion2), whole(frame));
}

TEST_F(FullRecordTest, AShadingStandsInItsColumnsAndComesBack) {
  ShadingDataClass shading = fullShading();
  database.InsertShading(shading, *dc);
  expectRows("shading");
  const auto back = database.RetrieveShading(*dc, 1);
  EXPECT_EQ(back->group(), "Unknown") << "the group is never read";
  back->group("Shades");
  database.InsertShading(*back, *second);
  EXPECT_EQ(everyRow(*second), everyRow(*dc));
  back->material(shading.material());
  back->position(shading.position());
  back->CoatedSide(shading.CoatedSide());
  EXPECT_EQ(whole(*back), whole(shading)) << "but for what databases have no column for";
  EXPECT_EQ(database.RetrieveShading(*dc, 2), nullptr);
}

TEST_F(FullRecordTest, OfAFrameAnyOtherGroupIsUnknown) {
  FrameDataClass frame = fullFrame();
  frame.group("My frames");
  database.InsertFrame(frame, *dc);
  EXPECT_EQ(database.RetrieveFrameORV_30(*dc, 0, "frame", "My frames")->group(), "Unknown");
  EXPECT_EQ(database.RetrieveFrameORV_30(*dc, 0, "frame", "no group"), nullptr);
}

TEST_F(FullRecordTest, WhatADatabaseHasNoColumnForKeepsItsDefault) {
  const auto old = store::Connection::create(folder / "old.mdb");
  old->createTable({"Shading", {{"Shading_id", store::ColumnType::longInteger}, {"name"}}});
  addRow(*old, "Shading", {{"Shading_id", 7}, {"name", "blind"}});
  ShadingDataClass expected;
  expected.name("blind");
  expected.group("Unknown");
  expected.supplier("Unknown");
  EXPECT_EQ(whole(*database.RetrieveShading(*old, 7)), whole(expected));
}

}  // namespace
}  // namespace orv::test
