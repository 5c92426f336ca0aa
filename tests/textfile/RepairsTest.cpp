// What the tolerant reading mends, and what it leaves alone.
#include <gtest/gtest.h>

#include "model/Raised.h"
#include "support/CaseFile.h"
#include "textfile/Folder.h"
#include "textfile/ORV_TextFileInterface.h"
#include "textfile/repairs/Repairs.h"

namespace orv {

namespace {

/// All points as "wavelength T Rf Rb", in nanometres.
std::string pointsOf(const GlazingData& pane) {
  std::string text;
  const SpectralData& spectrum = *pane.SpectralData();
  for (std::int32_t i = 0; i < spectrum.count(); ++i) {
    const auto number = [](double value) {
      std::string digits = std::to_string(value);
      digits.erase(digits.find_last_not_of('0') + 1);
      return digits.ends_with('.') ? digits.substr(0, digits.size() - 1) : digits;
    };
    text += (i > 0 ? " | " : "") + number(spectrum.ConvertedWl(i, kNanometers)) + " " +
            number(spectrum.Tf(i)) + " " + number(spectrum.Rf(i)) + " " + number(spectrum.Rb(i));
  }
  return text;
}

class Repairs : public ::testing::Test {
 protected:
  std::shared_ptr<GlazingData> read(const std::string& text, std::string& repairs) {
    folder_.write("lab.txt", text);
    return ORV_TextFileInterface().ParseSpectralFile(folder_.path(), "lab.txt", &repairs);
  }

  test::Folder folder_;
};

TEST_F(Repairs, MakeLaboratoryFilesReadable) {
  for (const auto& cells : test::casesOf("textfile/repairs.tsv", 3)) {
    const std::string& text = cells[0];
    std::string repairs;
    const auto raised = test::raisedBy([&] {
      const auto pane = read(text, repairs);
      EXPECT_EQ(pointsOf(*pane), cells[2]) << text;
      EXPECT_EQ(pane->Thickness(), 4) << text;
    });
    EXPECT_EQ(raised.number, 0) << text << raised.description << raised.place;
    EXPECT_EQ(repairs, cells[1]) << text;
  }
}

/// What has two readings, or none, stays as it is, comments do anyway, and so does the number of
/// the line that an error names; a number of two has one where no share is as large.
TEST_F(Repairs, LeaveAloneWhatIsNotCertain) {
  for (const auto& cells : test::casesOf("textfile/left-alone.tsv", 3)) {
    std::string mended = cells[0];
    EXPECT_EQ(textfile::repair(mended), cells[2]) << cells[0];
    EXPECT_EQ(mended, cells[1]);
  }
  std::string repairs;
  const auto raised =
      test::raisedBy([&] { read("words\nSI nm 4 1\nmore words\n300;0,1\n400;x\n", repairs); });
  EXPECT_EQ(raised.place.substr(0, 25), "lab.txt, line 5, column 5") << raised.place;
}

}  // namespace

}  // namespace orv
