// Records with another value in every field, in the columns that they should be in, and back.

#include <gtest/gtest.h>

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

  const std::shared_ptr<store::Connection> second =
      database::CreateEmptyDatabase((folder.path() / "second.mdb").string());
};

TEST_F(FullRecordTest, APaneStandsInItsColumnsAndComesBack) {
  const auto pane = fullPane();
  pane->SubstrateReference()->SpectralData(spectrumOfTwo(302.5F));
  pane->SubstrateReference()->SpectralData()->Tf(1, 0.7F);
  insertPane(*pane, *dc);
  EXPECT_EQ(rowsOf(*dc, "SELECT * FROM Pane"),
            "1|file "
            "\"ä\".dat|product|2|3|1.9176999|0.15316693|0.9876543210987|0.123456789012345|0."
            "10149999|0.114499986|True|False|True|True|True|True|0|{text}\nof two|True|AB|#");
  EXPECT_EQ(rowsOf(*dc, "SELECT * FROM Pane_integrated_data"),
            "1|37|0.19249997|0.20549996|0.16649997|0.17949997|0.24449995|0.25749996|0.21849996|0."
            "23149996|0.4265001|0.43950012|0.4005001|0.4135001 "
            "1|60|0.19249997|0.20549996|0.16649997|0.17949997|0.24449995|0.25749996|0.21849996|0."
            "23149996|0.4265001|0.43950012|0.4005001|0.4135001");
  EXPECT_EQ(rowsOf(*dc, "SELECT * FROM Pane_spectral_data"),
            "1|37|0|302.5|0.1|0.3|1e-08|0.1|0.3 "
            "1|37|0|302.83334|0.43333334|0.6333333|0.33333334|0.7|0.6333333 "
            "1|60|0|302.5|0.1|0.3|1e-08|0.1|0.3 "
            "1|60|0|302.83334|0.43333334|0.6333333|0.33333334|0.7|0.6333333");
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

  const auto old = makeVersion2Of(*dc, (folder.path() / "old.mdb").string());
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
  EXPECT_EQ(database.InsertFrame(frame, *dc), 1);
  EXPECT_EQ(rowsOf(*dc,
                   "SELECT FrameID, name, product_name, groupID, supplierID, u_value, "
                   "FrameTypeID, width, Info FROM Frame"),
            "1|frame|Null|3|2|1.3|4|70|of oak");
  const auto back = database.RetrieveFrameORV_30(*dc, 0, "FRAME", "");
  EXPECT_EQ(back->id(), 1);
  EXPECT_EQ(whole(*back), whole(frame));
  database.InsertFrame(*back, *second);
  EXPECT_EQ(everyRow(*second), everyRow(*dc));

  const auto old = makeVersion2Of(*dc, (folder.path() / "old.mdb").string());
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
  const auto row = dc->openRecordset("Shading");
  double expected = 0;
  for (const auto& [column, member] : shadingNumbers()) {
    EXPECT_EQ(row->value(column), store::Value(++expected / 7)) << column;
  }
  for (const auto& [column, member] : shadingFlags()) {
    EXPECT_EQ(row->value(column), store::Value((shading.*member)())) << column;
  }
  for (const auto& [column, member] : shadingTexts()) {
    EXPECT_EQ(row->value(column), store::Value(std::string("the ® ") + column));
  }
  EXPECT_EQ(rowsOf(*dc,
                   "SELECT Shading_id, groupnameID, supplierID, Supplier_dataID, typeID FROM "
                   "Shading"),
            "1|3|2|-8|4");
  EXPECT_EQ(rowsOf(*dc, "SELECT * FROM Shading_integrated_data_temp"),
            "1|30|1|2|3|4|5|6|7|8|9|10|11|0.3333333333333333 1|60|12|11|10|9|8|7|6|5|4|3|2|0.25");
  EXPECT_EQ(rowsOf(*dc, "SELECT * FROM Shading_spectral_data"),
            "1|300.1|0.1|0.2|0.3|0.4|0.5|0.6|0.7|0.3333333333333333 "
            "1|2500|0.8|0.7|0.6|0.5|0.4|0.3|0.2|1e-07");
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

}  // namespace
}  // namespace orv::test
