#include "database/DatabaseErrors.h"
#include "database/Lookups.h"
#include "database/ShadingColumns.h"
#include "database/TestDatabase.h"
#include "model/Raised.h"
#include "support/Corpus.h"

namespace orv::test {
namespace {

class FrameTest : public DatabaseTest {
 protected:
  static FrameDataClass makeFrame(const std::string& name) {
    FrameDataClass frame;
    frame.name(name);
    frame.group("Tarven frames");
    frame.supplier("Maker");
    frame.frametype("Wood");
    frame.u_value(1.3);
    frame.width(70);
    frame.picture({1, 2, 3});
    frame.Info("info");
    return frame;
  }
};

TEST_F(FrameTest, AFrameComesBackAsItWasInserted) {
  FrameDataClass frame = makeFrame("frame");
  EXPECT_EQ(database.InsertFrame(frame, *dc), 1);
  const auto back = database.RetrieveFrameORV_30(*dc, 1, "", "");
  ASSERT_NE(back, nullptr);
  EXPECT_EQ(back->id(), 1);
  EXPECT_EQ(back->name(), "frame");
  EXPECT_EQ(back->productname(), "");
  EXPECT_EQ(back->group(), "Tarven frames") << "the maker's own groups are kept";
  EXPECT_EQ(back->supplier(), "Maker");
  EXPECT_EQ(back->frametype(), "Wood");
  EXPECT_EQ(back->u_value(), 1.3);
  EXPECT_EQ(back->width(), 70);
  EXPECT_EQ(back->picture(), (std::vector<std::uint8_t>{1, 2, 3}));
  EXPECT_EQ(back->Info(), "info");
}

TEST_F(FrameTest, AnyOtherGroupIsUnknown) {
  FrameDataClass frame = makeFrame("frame");
  frame.group("My frames");
  database.InsertFrame(frame, *dc);
  EXPECT_EQ(database.RetrieveFrameORV_30(*dc, 0, "frame", "My frames")->group(), "Unknown");
  EXPECT_EQ(database.RetrieveFrameORV_30(*dc, 0, "frame", "no group"), nullptr);
}

TEST_F(FrameTest, EmptyNamesOfLookupRowsBecomeUnknown) {
  FrameDataClass frame;
  frame.name("frame");
  database.InsertFrame(frame, *dc);
  EXPECT_EQ(frame.supplier(), "Unknown");
  EXPECT_EQ(frame.group(), "Unknown");
  EXPECT_EQ(frame.frametype(), "Unknown");
  EXPECT_EQ(database::GroupIdByName("unknown", *dc), 1);
  EXPECT_TRUE(valueOf("SELECT picture FROM Frame").isNull());
}

TEST_F(FrameTest, TheSameNameInTheSameGroupIsRefusedAndNothingWritten) {
  FrameDataClass frame = makeFrame("frame");
  database.InsertFrame(frame, *dc);
  FrameDataClass again = makeFrame("Frame");
  again.supplier("Someone else");
  EXPECT_EQ(raisedBy([&] { database.InsertFrame(again, *dc); }).number, database::kRecordExists);
  EXPECT_EQ(rowCount("Frame"), 1);
  EXPECT_EQ(rowCount("Suppliers"), 1);
}

TEST_F(FrameTest, WithoutKeyAndNameNothingCanBeRetrieved) {
  EXPECT_EQ(raisedBy([&] { database.RetrieveFrameORV_30(*dc, 0, "", "g"); }).number,
            database::kRetrievalFailed);
}

TEST_F(FrameTest, ForeignFrames) {
  ORV_NEEDS_CORPUS();
  const auto source = [&](const char* name) {
    std::filesystem::copy_file(corpusFolder() / "sources" / name, folder.path() / name);
    return database.OpenDatabase((folder.path() / name).string(), "");
  };
  const auto version3 = source("orvdata-3.0.0.mdb");
  const auto frame = database.RetrieveFrameORV_30(*version3, 2, "", "");
  EXPECT_EQ(frame->group(), "Tarven Frames");
  EXPECT_EQ(frame->supplier(), "Café Verre");
  EXPECT_EQ(frame->frametype(), "Aluminium");
  EXPECT_EQ(frame->picture().size(), 20000U);
  const auto version2 = source("orvdata-2.0.1.mdb");
  const auto old = database.RetrieveFrameORV_20(*version2, 0, "oldframe2");
  EXPECT_EQ(old->id(), 2);
  EXPECT_EQ(old->frametype(), "Wood");
  EXPECT_EQ(old->supplier(), "Unknown");
  EXPECT_EQ(old->group(), "Unknown");
}

class ShadingTest : public DatabaseTest {
 protected:
  /// A shading whose every number is different.
  static ShadingDataClass makeShading(const std::string& name) {
    ShadingDataClass shading;
    double next = 0.001;
    struct Fill {
      ShadingDataClass& shading;
      double& next;
      void operator()(Property<double> ShadingDataClass::*member) const {
        (shading.*member)(next += 0.001);
      }
      void operator()(Property<bool> ShadingDataClass::*member) const { (shading.*member)(true); }
      void operator()(Property<std::int32_t> ShadingDataClass::*member) const {
        (shading.*member)(3);
      }
      void operator()(Property<std::string> ShadingDataClass::*member) const {
        (shading.*member)("text");
      }
      void operator()(database::ShadingKey) const {}
    };
    for (const auto& column : database::shadingColumns()) {
      std::visit(Fill{shading, next}, column.member);
    }
    shading.name(name);
    shading.integrated({ShadingIntegratedData{.angle = 0, .reflection_solar_outdoor = 0.5},
                        ShadingIntegratedData{.angle = 60, .transmission_UV_indoor = 0.25}});
    shading.spectrum({ShadingSpectralPoint{.wavelength = 300, .T_out_BB = 0.1, .R_in_BD = 0.2},
                      ShadingSpectralPoint{.wavelength = 2500, .T_in_BD = 0.3}});
    return shading;
  }
};

TEST_F(ShadingTest, AShadingComesBackAsItWasInserted) {
  ShadingDataClass shading = makeShading("blind");
  shading.supplier("Maker");
  database.InsertShading(shading, *dc);
  EXPECT_EQ(shading.id(), 1);
  EXPECT_EQ(shading.group(), "Unknown");

  const auto back = database.RetrieveShading(*dc, 1);
  ASSERT_NE(back, nullptr);
  for (const auto& column : database::shadingColumns()) {
    std::visit(
        [&](auto member) {
          if constexpr (!std::is_same_v<decltype(member), database::ShadingKey>) {
            EXPECT_EQ(((*back).*member)(), (shading.*member)()) << column.name;
          }
        },
        column.member);
  }
  EXPECT_EQ(back->supplier(), "Maker") << "and not the name of its group's number";
  EXPECT_EQ(back->group(), "Unknown");
  EXPECT_EQ(back->integrated(), shading.integrated());
  EXPECT_EQ(back->spectrum(), shading.spectrum());
}

TEST_F(ShadingTest, TheSameShadingCanBeInsertedTwice) {
  ShadingDataClass shading = makeShading("blind");
  database.InsertShading(shading, *dc);
  database.InsertShading(shading, *dc);
  EXPECT_EQ(shading.id(), 2);
  EXPECT_EQ(rowCount("Shading"), 2);
  EXPECT_EQ(rowCount("Shading_spectral_data"), 4);
  EXPECT_EQ(database.RetrieveShading(*dc, 3), nullptr);
}

TEST_F(ShadingTest, ForeignTablesMayHoldLess) {
  ORV_NEEDS_CORPUS();
  for (const char* name : {"orvdata-3.0.0.mdb", "orvdata-2.0.1.mdb"}) {
    std::filesystem::copy_file(corpusFolder() / "sources" / name, folder.path() / name);
  }
  const auto version2 = database.OpenDatabase((folder.path() / "orvdata-2.0.1.mdb").string(), "");
  EXPECT_EQ(database.RetrieveShading(*version2, 1)->name(), "oldblind");

  const auto version3 = database.OpenDatabase((folder.path() / "orvdata-3.0.0.mdb").string(), "");
  ShadingDataClass shading = makeShading("blind");
  database.InsertShading(shading, *version3);
  const auto back = database.RetrieveShading(*version3, shading.id());
  EXPECT_EQ(back->Uv_transm_slat_surf_BB(), shading.Uv_transm_slat_surf_BB());
  EXPECT_EQ(back->spectrum(), shading.spectrum());
  ASSERT_EQ(back->integrated().size(), 2U);
  EXPECT_EQ(back->integrated()[1].angle, 60);
}

}  // namespace
}  // namespace orv::test
