#include "database/DatabaseErrors.h"
#include "database/Fields.h"
#include "database/SpectralValidation.h"
#include "database/TestDatabase.h"
#include "model/Raised.h"
#include "store/jet/catalog/Database.h"
#include "support/CaseFile.h"

namespace orv::test {
namespace {

using PaneInsertionTest = DatabaseTest;

TEST_F(PaneInsertionTest, NamesThatAreMissingBecomeUnknown) {
  const auto pane = makePane("clear.txt");
  pane->supplier("");
  pane->group("");
  database.InsertPane(*pane, *dc);
  EXPECT_EQ(pane->id(), 1);
  EXPECT_EQ(rowsOf(*dc, "SELECT * FROM Groups") + " " + rowsOf(*dc, "SELECT * FROM Suppliers"),
            "1|Unknown 1|Unknown");
  EXPECT_EQ(rowsOf(*dc, "SELECT groupID, supplierID FROM Pane"), "1|1");
}

/// Gives a spectrum another number of points, "points 3", or values: "Rb 2 1; Rf 2 0".
void spoil(GlazingData& pane, const std::string& changes) {
  if (changes == "none") return pane.SpectralData(nullptr);
  SpectralData& spectrum = *pane.SpectralData();
  std::istringstream words(changes);
  std::string curve;
  float value = 0;
  for (std::int32_t at = 0; words >> curve >> at; words.ignore()) {
    if (curve == "points") return spectrum.Allocate(at - 1);
    words >> value;
    if (curve == "wl") spectrum.wl(at, value);
    if (curve == "Tf") spectrum.Tf(at, value);
    if (curve == "Tb") spectrum.Tb(at, value);
    if (curve == "Rf") spectrum.Rf(at, value);
    if (curve == "Rb") spectrum.Rb(at, value);
  }
}

TEST_F(PaneInsertionTest, UnphysicalSpectraAreRefusedAndLeaveTheRowsBeforeThem) {
  std::int64_t panes = 0;
  for (const auto& cells : casesOf("database/refused-spectra.tsv", 4)) {
    const std::string name = cells[0] + ": " + cells[1];
    SCOPED_TRACE(name);
    const auto pane = cells[0] == "pane" ? makePane(name) : withSubstrate(makePane(name));
    spoil(cells[0] == "pane" ? *pane : *pane->SubstrateReference(), cells[1]);
    const bool isRefused = cells[2] != "0";
    if (cells[0] == "substrate" && isRefused) questions.answers = {false};
    const std::int64_t spectralRows = rowCount("Pane_spectral_data");
    const Raised raised = raisedBy([&] { database.InsertPane(*pane, *dc); });
    EXPECT_EQ(std::to_string(raised.number), cells[2]);
    EXPECT_EQ(raised.place, cells[3]);
    EXPECT_EQ(rowCount("Pane"), ++panes);
    EXPECT_EQ(rowCount("Pane_integrated_data"), panes);
    EXPECT_EQ(rowCount("Pane_spectral_data"), spectralRows + (isRefused ? 0 : 5));
  }
}

TEST_F(PaneInsertionTest, APaneIsPreparedByWhatItsInsertionWouldRefuse) {
  database.InsertPane(*makePane("pane"), *dc);
  const auto numberOf = [&](GlazingData& pane, database::Existing existing) {
    return raisedBy([&] { database.PreparePane(pane, *dc, existing); }).number;
  };
  using enum database::Existing;
  const auto pane = makePane("pane"), fresh = makePane("fresh");
  EXPECT_EQ(numberOf(*pane, refused), 0) << "what is sound is refused by its insertion";
  for (const auto& each : {pane, fresh}) each->SpectralData()->Rf(0, 2);
  fresh->supplier("");
  EXPECT_EQ(numberOf(*pane, refused), database::kRecordExists);
  EXPECT_EQ(numberOf(*pane, replaced), database::kInvalidSpectrum);
  EXPECT_EQ(numberOf(*fresh, refused), database::kInvalidSpectrum);
  EXPECT_EQ(fresh->supplier(), "Unknown");
  fresh->spectral_pane(false);
  EXPECT_EQ(numberOf(*fresh, refused), 0);
  SpectralData many;
  many.Allocate(32'766);
  for (std::int32_t i = 0; i < 32'767; ++i) many.wl(i, 1);
  EXPECT_EQ(raisedBy([&] { database::checkSpectrum(many); }).number, 0);
  many.Allocate(32'767);
  EXPECT_EQ(
      raisedBy([&] { database::checkSpectrum(many); }).description,
      "The spectrum has 32768 points; 32767 is the most that a database gives back. Leave out "
      "wavelengths.");
}

TEST(FieldsTest, NullIsNothingAndPicturesMayBeTexts) {
  using namespace database;
  const store::Bytes bytes{'p'};
  EXPECT_EQ(FieldToString({}) + FieldToString(2.5), "2.5");
  EXPECT_EQ(FieldToDouble({}) + FieldToLong({}), 0);
  EXPECT_EQ(fieldToInteger(-32'768) + fieldToInteger(32'767), -1);
  for (const int number : {-32'769, 32'768}) {
    EXPECT_EQ(raisedBy([&] { fieldToInteger(number); }).description,
              "The number " + std::to_string(number) + " does not fit 16 bits.");
  }
  EXPECT_EQ(fieldToPicture(bytes), bytes);
  EXPECT_TRUE(fieldToPicture("p").empty() && fieldToPictureText(bytes).empty());
  EXPECT_EQ(fieldToPictureText("p") + fieldToPictureText({}), "p");
  EXPECT_EQ(pictureToField(bytes, "x", store::ColumnType::memo), store::Value(bytes));
  EXPECT_EQ(pictureToField({}, "p", store::ColumnType::ole), store::Value(bytes));
  EXPECT_EQ(pictureToField({}, "p", store::ColumnType::memo), store::Value("p"));
  EXPECT_EQ(pictureToField({}, "p", store::ColumnType::text), store::Value("p"));
  EXPECT_TRUE(pictureToField({}, "", store::ColumnType::text).isNull());
}

/// The substrate of a pane and the two questions about it.
using SubstrateTest = DatabaseTest;

std::shared_ptr<GlazingData> badPane(const std::string& name) {
  auto pane = withSubstrate(makePane(name));
  pane->SubstrateReference()->SpectralData()->wl(0, 0.31F);
  return pane;
}

TEST_F(SubstrateTest, ABadOneThatIsNotLeftOutIsRefused) {
  questions.answers = {false};
  const Raised raised = raisedBy([&] { database.InsertPane(*badPane("pane.txt"), *dc); });
  EXPECT_EQ(raised.number, database::kSubstrateWavelengthsDiffer);
  EXPECT_EQ(questions.asked,
            std::vector<std::string>{
                "ORV: Data for this pane and its substrate are not given at identical "
                "wavelengths.\n\nDo you want to save this pane (pane.txt) without saving the "
                "substrate data?"});
  EXPECT_EQ(rowCount("Pane_spectral_data"), 0);
}

TEST_F(SubstrateTest, NobodyIsAskedForAPaneThatIsThereAlready) {
  database.InsertPane(*makePane("pane"), *dc);
  EXPECT_EQ(raisedBy([&] { database.InsertPane(*badPane("pane"), *dc); }).number,
            database::kRecordExists);
}

/// Whoever thinks about the answer keeps nobody from the file.
TEST_F(SubstrateTest, TheFileIsFreeWhileTheQuestionIsOpen) {
  class LooksAtTheFile : public database::PaneQuestions {
   public:
    explicit LooksAtTheFile(store::Connection& dc) : dc_(dc) {}
    bool confirm(const std::string&, const std::string&) override {
      isLocked = isLocked || dc_.database().pager().inTransaction();
      return true;
    }
    bool isLocked = false;

   private:
    store::Connection& dc_;
  } user(*dc);
  database::ORV_DatabaseInterface asking(user);
  asking.InsertPane(*badPane("pane"), *dc);
  EXPECT_FALSE(user.isLocked);
  EXPECT_EQ(rowCount("Pane_spectral_data"), 5);
  EXPECT_EQ(rowsOf(*dc, "SELECT with_and_without_film FROM Pane"), "True")
      << "the pane's row is written before its substrate is left out";
}

TEST_F(SubstrateTest, ABadOneIsLeftOutWhenTheUserSaysSo) {
  questions.answers = {true, false, true, false};
  const auto pane = badPane("pane");
  database.InsertPane(*pane, *dc);
  EXPECT_EQ(pane->SubstrateFilename(), "");
  EXPECT_FALSE(pane->with_and_without_film());
  EXPECT_FALSE(pane->HasSubstrate());
  EXPECT_EQ(rowCount("Pane_spectral_data"), 5);
  EXPECT_EQ(rowsOf(*dc, "SELECT transmission_sub FROM Pane_spectral_data"), "0 0 0 0 0");
  ASSERT_EQ(questions.asked.size(), 2U);
  EXPECT_EQ(questions.asked[1],
            "True: Do you want to ignore the substrate for other files with incompatible "
            "substrate data?");

  database.InsertPane(*badPane("next"), *dc);
  EXPECT_EQ(questions.asked.size(), 4U) << "asked again, since the second answer was No";
  questions.answers = {true, true};
  for (const char* name : {"third", "fourth"}) database.InsertPane(*badPane(name), *dc);
  EXPECT_EQ(questions.asked.size(), 6U) << "and never more after Yes";
  EXPECT_EQ(rowCount("Pane_spectral_data"), 20);
}

}  // namespace
}  // namespace orv::test
