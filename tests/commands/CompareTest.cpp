// The differences of two sources: which records belong together, and what is told of them.
#include <gmock/gmock.h>

#include "commands/CommandsTest.h"
#include "commands/ExportRecords.h"
#include "commands/IgdbPassword.h"
#include "commands/compare/Compare.h"
#include "commands/compare/CopyChanges.h"
#include "database/SourceDatabases.h"
#include "model/Raised.h"
#include "support/CaseFile.h"
#include "support/EncodedFile.h"
#include "support/FullRecords.h"

namespace orv::test {
namespace {

using commands::RecordKind;
using commands::TextFileKind;
using commands::compare::CompareOptions;
using commands::compare::Comparison;
using commands::compare::Match;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;
using Lines = std::vector<std::string>;

class CompareTest : public CommandsTest {
 protected:
  /// "state set id_a id_b name angle field a b", parted by "|".
  Lines compare(const Node& a, const Node& b, const CompareOptions& options = {}) {
    result = commands::compare::compareSources(session, a, b, options);
    Lines lines;
    for (const auto& each : result.differences) {
      const auto& pair = result.pairs[each.pair];
      lines.push_back(fmt::format(
          "{}|{}|{}|{}|{}|{}|{}|{}|{}", nameOf(pair.state), commands::setName(pair.kind),
          fmt::join(pair.a, ","), fmt::join(pair.b, ","), pair.name,
          each.angle ? fmt::format("{}", *each.angle) : "", each.field,
          each.a.isNull() ? "" : each.a.toText(), each.b.isNull() ? "" : each.b.toText()));
    }
    return lines;
  }

  void insert(const Node& node, const std::string& name, const std::string& group = "Demo",
              std::int16_t angle = 0, float T = 0) {
    const auto pane = makePane(name, angle);
    pane->group(group);
    if (T != 0) pane->SpectralData()->Tf(3, T);
    session.database.InsertPane(*pane, *node->ADOConnection());
  }

  static void set(const Node& node, const std::string& table, const std::string& condition,
                  const std::string& column, const store::Value& value) {
    setAll(*node->ADOConnection(), table, column, value, condition);
  }

  /// "a-b", the identifiers of each pair, after a "?" where others would do as well.
  Lines pairs(const CompareOptions& options) {
    compare(a, b, options);
    Lines lines;
    for (const auto& pair : result.pairs) {
      lines.push_back(fmt::format("{}{}-{}", pair.isAmbiguous ? "?" : "", fmt::join(pair.a, ","),
                                  fmt::join(pair.b, ",")));
    }
    return lines;
  }

  Comparison result;
  Node a = newDatabase("a.mdb");
  Node b = newDatabase("b.mdb");
};

TEST_F(CompareTest, EachFieldOfAPaneIsToldOnceAndKeysAreNot) {
  insert(b, "new");
  for (const auto& node : {a, b}) {
    insert(node, "same");
    insert(node, "pane");
    insert(node, "pane", "Demo", 60);
  }
  insert(a, "gone");
  EXPECT_THAT(compare(a, a), IsEmpty());
  EXPECT_EQ(ui.log, (Lines{"progress: Comparing records...", "status: Reading Panes...",
                           "status: Reading Panes...", "status: Comparing panes...",
                           "status: Reading Frames...", "status: Reading Frames...",
                           "status: Comparing frames...", "status: Reading Shadings...",
                           "status: Reading Shadings...", "status: Comparing shadings...",
                           "status: Ready", "progress ends"}));
  EXPECT_EQ(ui.steps.back(), std::pair(9, 9));
  const Lines others{"removed|panes|3||gone||||", "added|panes||1|new||||"};
  EXPECT_EQ(compare(a, b), others);
  EXPECT_EQ(result.summary(), "2 records are the same, 1 added, 1 removed, 0 changed.");

  const std::string pane = "name = 'pane'";
  const auto supplier = session.database.InsertSupplier("Fjord", *b->ADOConnection());
  set(b, "Pane", pane, "name", "PANE");
  set(b, "Pane", pane, "product_name", "Other");
  set(b, "Pane", pane, "supplierID", supplier);
  set(b, "Pane", pane, "thickness", 5.8F);
  set(b, "Pane", pane, "emission_IR_indoor", 0.05);
  set(b, "Pane", pane, "freeze", true);
  set(b, "Pane", pane, "Ra", 97);
  set(b, "Pane", pane, "info", "Mended");
  set(b, "Pane_integrated_data", "PaneID = 3 AND angle = 60", "transmission_UV_indoor", 0.5F);
  set(b, "Pane_spectral_data", "PaneID = 3 AND angle = 0 AND wavelength > 450",
      "transmission_outdoor", 0.6F);
  set(b, "Pane_spectral_data", "PaneID = 3 AND angle = 60 AND wavelength < 350",
      "reflection_indoor", 0.3F);
  set(b, "Pane_spectral_data", "PaneID = 3 AND angle = 60 AND wavelength > 650", "wavelength",
      705.0F);
  const std::string is = "changed|panes|2|3|pane|";
  const Lines all = compare(a, b);
  EXPECT_EQ(all, (Lines{is + "|name|pane|PANE", is + "|product name|Product pane|Other",
                        is + "|supplier|Maker|Fjord", is + "|thickness|5.7|5.8",
                        is + "|database emissivity back|0.1|0.05", is + "|description||Mended",
                        is + "|frozen|no|yes", is + "|Ra|0|97",
                        is + "60|ultraviolet transmittance back|0.22|0.5",
                        is + "0|T|0.52 at 500 nm|0.6 at 500 nm (+0.08)",
                        is + "60|wavelengths|5 points, 300 to 700 nm; only here: 1, from 700 nm|5 "
                             "points, 300 to 705 nm; only here: 1, from 705 nm",
                        is + "60|Rb|0.2 at 300 nm|0.3 at 300 nm (+0.1)", others[0], others[1]}));

  const Lines spectrum{all[9], all[10], all[11], others[0], others[1]};
  EXPECT_EQ(compare(a, b, {.fields = {"Spectrum"}}), spectrum);
  EXPECT_EQ(compare(a, b, {.fields = {"wavelengths", "Ra"}, .tolerance = 97}),
            (Lines{all[10], others[0], others[1]}));
  const Lines rest = compare(
      a, b,
      {.ignored = {"integrated values", "T", "data at 0", " 30 and 60 degrees"}, .tolerance = 0.1});
  EXPECT_EQ(rest.size(), all.size() - 5) << ::testing::PrintToString(rest);
  EXPECT_EQ(raisedBy([&] { compare(a, b, {.ignored = {"T", "speed"}}); }).number, kInvalidCall);

  // What is there of one source only.
  b->ADOConnection()->deleteRows("Pane_spectral_data", "PaneID = 2");
  set(b, "Pane_integrated_data", "PaneID = 2", "angle", 30);
  EXPECT_EQ(compare(a, b, {.fields = {"integrated values", "spectrum"}}).front(),
            "changed|panes|1|2|same|0|integrated values|there|none");
  EXPECT_THAT(compare(a, b), ::testing::Contains(
                                 "changed|panes|1|2|same|0|spectrum|5 points, 300 to 700 nm|none"));
}

TEST_F(CompareTest, EveryFieldIsToldThatIsAnother) {
  const auto alterAll = [](const Node& node) {
    for (const char* table : {"Pane", "Pane_integrated_data", "Pane_spectral_data", "Frame",
                              "Shading", "Shading_integrated_data_temp", "Shading_spectral_data"}) {
      auto rows = node->ADOConnection()->openRecordset(
          table, store::CursorType::keyset, store::LockType::optimistic, store::SourceKind::table);
      for (; !rows->eof(); rows->moveNext()) {
        for (std::size_t i = 0; i < rows->fields().size(); ++i) {
          const auto& column = rows->fields()[i];
          if (!isKept(column.name)) rows->setValue(i, other(column, rows->value(i)));
        }
        rows->update();
      }
    }
  };
  const auto pane = fullPane();
  pane->SubstrateReference()->SpectralData(spectrumOfTwo(302.5F));
  session.database.InsertPane(*pane, *a->ADOConnection());
  auto frame = fullFrame();
  session.database.InsertFrame(frame, *a->ADOConnection());
  auto shading = fullShading();
  session.database.InsertShading(shading, *a->ADOConnection());
  b->ADOConnection()->close();
  std::filesystem::copy_file(folder.path() / "a.mdb", folder.path() / "b.mdb",
                             std::filesystem::copy_options::overwrite_existing);
  b = opener.openAny((folder.path() / "b.mdb").string());
  alterAll(b);
  const Lines all = compare(a, b);
  Lines lines = all;
  for (const RecordKind kind : {RecordKind::panes, RecordKind::shadings}) {
    const auto files = folder.path() / commands::setName(kind);
    std::filesystem::create_directory(files);
    commands::exportRecords(session, selectAll(recordSet(a, kind)), {files, false});
    for (std::string line : compare(opener.openAny(files.string()), b)) {
      const auto id = line.find(result.pairs.front().a.front());
      line.replace(id, result.pairs.front().a.front().size(), "1");
      if (std::ranges::find(all, line) == all.end()) lines.push_back("of a file: " + line);
    }
    std::ranges::copy(result.remarks, std::back_inserter(lines));
  }
  std::vector<std::vector<std::string>> cases;
  for (const std::string& line : lines) cases.push_back({line});
  EXPECT_EQ(cases, casesOf("commands/compared-fields.txt", 1));
}

TEST_F(CompareTest, FramesAndShadingsAreCompared) {
  FrameDataClass frame;
  frame.name("frame");
  frame.group("Demo");
  frame.u_value(1.5);
  frame.picture({1, 2, 3});
  ShadingDataClass shading;
  shading.name("blind");
  shading.group("Demo");
  shading.slat_length(80);
  shading.integrated({{.angle = 30, .transmission_visual_outdoor = 0.25}});
  shading.spectrum({{.wavelength = 500, .R_in_BD = 0.125}, {.wavelength = 600}});
  for (const auto& node : {a, b}) {
    session.database.InsertFrame(frame, *node->ADOConnection());
    session.database.InsertShading(shading, *node->ADOConnection());
    frame.frametype("Wood");
    frame.picture({1, 2, 4});
    shading.Sol_refl_slat_surf_ind_BB(0.75);
    shading.integrated({{.angle = 30, .transmission_visual_outdoor = 0.5}});
    shading.spectrum({{.wavelength = 500, .R_in_BD = 0.125}, {.wavelength = 600, .R_in_BD = 0.5}});
  }
  EXPECT_EQ(
      compare(a, b),
      (Lines{
          "changed|frames|1|1|frame||frame type|Unknown|Wood",
          "changed|frames|1|1|frame||picture|3 bytes|3 bytes, others from byte 3 on",
          "changed|shadings|1|1|blind||Surface of the slats, beam: solar reflectance indoor|0|0.75",
          "changed|shadings|1|1|blind|30|visible transmittance front|0.25|0.5",
          "changed|shadings|1|1|blind||R_in_BD|0 at 600 nm|0.5 at 600 nm (+0.5)"}));
  EXPECT_THAT(compare(recordSet(a, RecordKind::frames), b, {.ignored = {"picture", "Frame type"}}),
              IsEmpty());
  EXPECT_EQ(raisedBy([&] {
              compare(recordSet(a, RecordKind::frames), recordSet(b, RecordKind::panes));
            }).number,
            kInvalidCall);
}

TEST_F(CompareTest, PanesOfTheIgdbAreComparedAsACopyBringsThem) {
  const auto path = folder.path() / "igdb.mdb";
  const auto pane = [](int id, const char* file, const char* type, const char* substrate) {
    return FieldValues{{"GlazingID", id},
                       {"FileName", file},
                       {"ProductName", "Glass"},
                       {"Manufacturer", "Maker"},
                       {"Type", type},
                       {"Substrate_FileName", substrate},
                       {"Thickness", 4.5},
                       {"Conductivity", 1.25},
                       {"ef", 0.84},
                       {"eb", 0.75},
                       {"TIR", 0.125},
                       {"Precalc_Tsol", id / 16.0}};
  };
  makeGlazingDatabase(
      path.string(),
      {pane(3, "film.dat", "Applied film", "CLEAR.DAT"), pane(1, "clear.dat", "Monolithic", "N/A"),
       pane(2, "alone.dat", "Applied film", "gone.dat"), pane(4, "extra.dat", "Coated", "N/A")})
      ->close();
  setPassword(path, commands::kIgdbPassword);
  const auto igdb = opener.openAny(path.string());
  ASSERT_EQ(igdb->DataType(), sources::DataType::igdb);
  ui.answers = {commands::Answer::yes, commands::Answer::no};  // the substrate of one is not there
  EXPECT_EQ(copyAll(recordSet(igdb, RecordKind::panes), b, {.integrateBy = std::nullopt}).copied, 4)
      << ::testing::PrintToString(messages());
  EXPECT_EQ(compare(igdb, b), Lines{});
  EXPECT_EQ(result.summary(), "4 records are the same, 0 added, 0 removed, 0 changed.");
  EXPECT_EQ(
      result.remarks,
      (Lines{"A has no frames: those of B were not compared.",
             "A has no shadings: those of B were not compared.",
             "Not compared, since only the panes of B have it: coating class, acceptance, Ra."}));
  set(b, "Pane", "name = 'film.dat'", "product_name", "Film");
  set(b, "Pane", "name = 'clear.dat'", "groupID",
      session.database.InsertGroup("Other", *b->ADOConnection()));
  set(b, "Pane_integrated_data", "PaneID = 3", "transmission_solar_outdoor", 0.5F);
  set(b, "Pane_spectral_data", "PaneID = 1 AND wavelength = 500", "transmission_sub", 0.25F);
  set(b, "Pane_spectral_data", "PaneID = 1 AND wavelength = 300", "reflection_indoor", 0.75F);
  set(b, "Pane", "name = 'alone.dat'", "with_and_without_film", true);
  set(b, "Pane_spectral_data", "PaneID = 3", "transmission_sub", 0.5F);
  EXPECT_EQ(
      compare(igdb, b),
      (Lines{"changed|panes|alone.dat|3|alone.dat||with and without film|no|yes",
             "changed|panes|alone.dat|3|alone.dat|0|solar transmittance front|0.125|0.5",
             "removed|panes|clear.dat||clear.dat||||",
             "changed|panes|film.dat|1|film.dat||product name|Glass|Film",
             "changed|panes|film.dat|1|film.dat|0|Rb|0.04875 at 300 nm|0.75 at 300 nm (+0.7013)",
             "changed|panes|film.dat|1|film.dat|0|T of the substrate|0.135 at 500 nm|0.25 at 500 "
             "nm (+0.115)",
             "added|panes||2|clear.dat||||"}));
  EXPECT_EQ(
      compare(igdb, b, {.fields = {"Rb"}, .group = "igdb"}),
      (Lines{"removed|panes|clear.dat||clear.dat||||",
             "changed|panes|film.dat|1|film.dat|0|Rb|0.04875 at 300 nm|0.75 at 300 nm (+0.7013)"}));
}

TEST_F(CompareTest, NumbersAreToldAsFarAsTheyDiffer) {
  for (const auto& node : {a, b}) {
    insert(node, "pane");
    FrameDataClass frame;
    frame.name("frame");
    frame.picture(node == a ? store::Bytes{1, 2, 3} : store::Bytes{1, 2});
    session.database.InsertFrame(frame, *node->ADOConnection());
    set(node, "Pane_spectral_data", "PaneID = 1", "direction", node == a ? 1 : 2);
  }
  set(b, "Pane", "PaneID = 1", "emission_IR_outdoor", 0.840000000001);
  set(b, "Pane", "PaneID = 1", "emission_IR_indoor", store::Value());
  set(b, "Pane", "PaneID = 1", "Ra", store::Value());
  set(b, "Pane_integrated_data", "PaneID = 1", "reflection_UV_indoor", 0.20000002F);
  set(b, "Pane_spectral_data", "wavelength = 500", "reflection_indoor", 0.22000003F);
  EXPECT_EQ(compare(a, b),
            (Lines{"changed|panes|1|1|pane||database emissivity front|0.84|0.840000000001",
                   "changed|panes|1|1|pane||database emissivity back|0.1|",
                   "changed|panes|1|1|pane|0|ultraviolet reflectance back|0.2|0.20000002",
                   "changed|panes|1|1|pane|0|direction|1|2",
                   "changed|panes|1|1|pane|0|Rb|0.22 at 500 nm|0.22000003 at 500 nm (+2.98e-08)",
                   "changed|frames|1|1|frame||picture|3 bytes|2 bytes"}));
  EXPECT_EQ(compare(a, b, {.fields = {"spectrum"}, .isForCopy = true}),
            (Lines{"changed|panes|1|1|pane|0|Rb|0.22 at 500 nm|0.22000003 at 500 nm (+2.98e-08)"}));
  EXPECT_EQ(result.remarks, (Lines{"Different, but not brought by a copy, so that it stays as it "
                                   "is in B (panes): direction (1)."}));
  // A curve that is 0 all over is none of the others'.
  set(b, "Pane_spectral_data", "PaneID = 1", "reflection_indoor", 0);
  EXPECT_EQ(compare(a, b, {.fields = {"Rb"}}),
            (Lines{"changed|panes|1|1|pane|0|Rb|0.24000001 at 700 nm|0 at 700 nm (-0.24)"}));
  // Without a row of values the spectrum is there all the same.
  b->ADOConnection()->deleteRows("Pane_integrated_data", "PaneID = 1");
  EXPECT_EQ(compare(b, a, {.fields = {"integrated values"}, .isForCopy = true}),
            (Lines{"changed|panes|1|1|pane|0|integrated values|none|there"}));
  EXPECT_EQ(compare(b, a, {.ignored = {"database emissivity front", "picture"}, .tolerance = 1}),
            (Lines{"changed|panes|1|1|pane|0|integrated values|none|there",
                   "changed|panes|1|1|pane|0|direction|2|1"}));
}

TEST_F(CompareTest, RecordsArePutTogetherAsIsAskedFor) {
  insert(a, "one.txt", "Old", 0, 0.9F);
  insert(a, "two.txt", "Demo", 0, 0.8F);
  insert(b, "two.TXT", "demo", 0, 0.8F);
  insert(b, "one.json", "New", 0, 0.7F);
  insert(b, "three.txt", "Demo", 0, 0.90005F);
  EXPECT_THAT(pairs({.match = Match::name}), ElementsAre("1-", "2-1", "-2", "-3"));
  EXPECT_THAT(pairs({.match = Match::id}), ElementsAre("1-1", "2-2", "-3"));
  EXPECT_THAT(pairs({.match = Match::filename, .fields = {"group"}}),
              ElementsAre("1-2", "2-1", "-3"));
  EXPECT_EQ(result.differences[0].field, "group");
  EXPECT_THAT(pairs({.match = Match::spectrum}), ElementsAre("1-", "2-1", "-2", "-3"));
  EXPECT_THAT(pairs({.match = Match::spectrum, .tolerance = 1e-4}),
              ElementsAre("1-3", "2-1", "-2"));

  for (const char* name : {"Float 4.0 mm", "v1.5", ".net", "bare", "last."}) insert(a, name);
  for (const char* name : {"Float 4.1 mm", "v1.6", ".dat", "bare.dat", "last"}) insert(b, name);
  EXPECT_THAT(pairs({.match = Match::filename}), ElementsAre("1-2", "2-1", "3-", "4-", "5-", "6-7",
                                                             "7-", "-3", "-4", "-5", "-6", "-8"));

  // Of one name in one group there are several only in shadings and in other makers' databases.
  for (const auto* name : {"x", "x", "y"}) {
    ShadingDataClass shading;
    shading.name(name);
    shading.group("Demo");
    session.database.InsertShading(shading, *a->ADOConnection());
    if (shading.id() != 2) session.database.InsertShading(shading, *b->ADOConnection());
  }
  compare(a, b, {.fields = {"name"}, .kind = RecordKind::shadings});
  EXPECT_EQ(result.summary(), "2 records are the same, 0 added, 1 removed, 0 changed.");
  EXPECT_THAT(result.remarks,
              ElementsAre(HasSubstr("the second with the second: x (2 in A, 1 in B).")));
}

TEST_F(CompareTest, OfSeveralAlikeThoseThatAreTheSameGoTogether) {
  // By spectrum, those of one name first, whatever their order.
  insert(a, "b");
  insert(a, "a");
  insert(b, "a");
  insert(b, "c");
  EXPECT_THAT(pairs({.match = Match::spectrum}), ElementsAre("1-2", "2-1"));
  insert(a, "d");
  insert(b, "e");
  EXPECT_THAT(pairs({.match = Match::spectrum}), ElementsAre("?1-2", "2-1", "3-3"));
  EXPECT_THAT(result.remarks, ElementsAre(HasSubstr("put together with it: b.")));

  // By name, where the first of two is gone: the second is the same, and is no change of the first.
  set(a, "Pane", "PaneID = 1", "thickness", 3.5F);
  set(a, "Pane", "PaneID < 3", "name", "twin");
  set(b, "Pane", "PaneID = 2", "name", "twin");
  set(b, "Pane", "PaneID = 2", "product_name", "Product a");
  EXPECT_THAT(pairs({}), ElementsAre("?1-", "?2-2", "3-", "-1", "-3"));
  const Lines twins = compare(a, b);
  EXPECT_THAT(twins, ::testing::Contains("removed|panes|1||twin||||"));
  EXPECT_EQ(result.count(commands::compare::State::changed), 0U) << ::testing::PrintToString(twins);
  EXPECT_THAT(
      commands::compare::copyablePairs(result, "").remarks(),
      ElementsAre(HasSubstr("of this name, of which nobody knows which would be replaced (of "
                            "those in other groups --group tells): twin.")));
  set(a, "Pane", "PaneID = 1", "name", "solo");
  set(b, "Pane", "PaneID = 1", "name", "twin");
  EXPECT_THAT(pairs({}), ElementsAre("1-", "?2-1", "3-", "?-2", "-3"));

  // What has no spectrum goes by its name, but not with one that has.
  insert(a, "bare");
  insert(b, "bare", "Demo", 0, 0.9F);
  a->ADOConnection()->deleteRows("Pane_spectral_data", "PaneID = 4");
  EXPECT_THAT(pairs({.match = Match::spectrum}), ElementsAre("?1-2", "2-1", "3-3", "4-", "-4"));
  EXPECT_THAT(result.remarks, ElementsAre(HasSubstr("with it: solo."),
                                          "1 record is without a spectrum: put together by name."));
  b->ADOConnection()->deleteRows("Pane_spectral_data", "PaneID = 4");
  insert(a, "odd", "Demo", 0, 0.8F);
  insert(b, "odd");
  b->ADOConnection()->deleteRows("Pane_spectral_data", "PaneID = 5");
  EXPECT_THAT(pairs({.match = Match::spectrum}),
              ElementsAre("?1-2", "2-1", "3-3", "4-4", "5-", "-5"));
  for (int i = 0; i < 11; ++i) {
    insert(a, fmt::format("a{}", i));
    insert(b, fmt::format("b{}", i));
  }
  pairs({.match = Match::spectrum});
  EXPECT_THAT(
      result.remarks,
      ElementsAre(HasSubstr("with it: solo, d, a0, a1, a2, a3, a4, a5, a6, a7, and 2 more."),
                  "3 records are without a spectrum: put together by name."));
}

TEST_F(CompareTest, ACurveIsToldOnceWhateverItsDirection) {
  const auto files = texts(TextFileKind::panes, {{"pane", paneText()}});
  copyAll(files, b);
  const auto add = [&](int direction) {
    addRow(*b->ADOConnection(), "Pane_spectral_data",
           {{"PaneID", 1}, {"angle", 0}, {"direction", direction}, {"wavelength", 500.0F}});
  };
  set(b, "Pane_spectral_data", "PaneID = 1", "direction", 1);
  EXPECT_THAT(compare(files, b), IsEmpty());
  add(2);
  EXPECT_THAT(compare(files, b), ElementsAre("changed|panes|pane|1|pane|0|spectrum|none|1 points, "
                                             "500 to 500 nm"));
  EXPECT_THAT(compare(files, b, {.isForCopy = true}), IsEmpty());
  EXPECT_THAT(result.remarks,
              ::testing::Contains(HasSubstr("stays as it is in B (panes): spectra of other "
                                            "directions (1).")));
  copyAll(recordSet(b, RecordKind::panes), a);
  EXPECT_THAT(compare(b, a, {.isForCopy = true}), IsEmpty());
  EXPECT_THAT(result.remarks, ElementsAre(HasSubstr("spectra of other directions (1).")));
}

TEST_F(CompareTest, FilesOfOnePaneAreOneRecord) {
  const std::string entries = "{ Record Name: pane }{ Angle of Incidence: 30 }\n";
  const auto files = texts(
      TextFileKind::panes,
      {{"pane", paneText("Alpha")}, {"pane_30", entries + paneText("Alpha")}, {"bad", "no pane"}});
  const auto twins =
      texts(TextFileKind::panes,
            {{"pane", paneText("Alpha")}, {"twin", "{ Record Name: pane }" + paneText("Alpha")}});
  copyAll(files, b);
  EXPECT_THAT(compare(files, b), IsEmpty());
  EXPECT_THAT(result.failures, ElementsAre(HasSubstr("bad cannot be read")));
  EXPECT_EQ(result.pairs.front().a, (Lines{"pane", "pane_30"}));
  EXPECT_THAT(result.remarks,
              UnorderedElementsAre("A has no frames: those of B were not compared.",
                                   "A has no shadings: those of B were not compared.",
                                   HasSubstr("only the panes of B have it: supplier, group, ")));
  EXPECT_EQ(compare(files, twins),
            (Lines{"changed|panes|pane,pane_30|pane|pane|30|spectrum|3 points, 300 to 2500 nm|none",
                   "added|panes||twin|pane||||"}));
  EXPECT_EQ(result.summary(), "0 records are the same, 1 added, 0 removed, 1 changed.");
  set(b, "Pane_spectral_data", "angle = 30 AND wavelength = 500", "reflection_indoor", 0.5F);
  EXPECT_EQ(compare(files, b),
            Lines{"changed|panes|pane,pane_30|1|pane|30|Rb|0.08 at 500 nm|0.5 at 500 nm (+0.42)"});
}

}  // namespace
}  // namespace orv::test
