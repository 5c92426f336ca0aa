// What the tolerant reading mends, and what it leaves alone.
#include <gtest/gtest.h>

#include "model/Raised.h"
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
  const std::string start = "SI Nanometers 4 1\n";
  const std::string rows = "300 0.1 0.05 0.06\n500.5 0.8 0.07 0.08\n";
  const std::string inMicrons = "0.3 0.1 0.05 0.06\n0.5 0.8 0.07 0.08\n";
  const std::string two = "300 0.1 0.05 0.06 | 500.5 0.8 0.07 0.08";
  const std::string microns = "300 0.1 0.05 0.06 | 500 0.8 0.07 0.08";
  struct Case {
    std::string text;
    std::string repairs;
    std::string points;
  };
  const Case cases[] = {
      {start + rows, "", two},
      {start + "300,0 0,1 0,05 0,06\n500,5 0,8 0,07 0,08\n", "commas are decimal points", two},
      {start + "300;0,1;0,05;0,06\n500,5;0,8;0,07;0,08\n",
       "semicolons part columns, commas are decimal points", two},
      {start + "300, 0.1, 0.05, 0.06\n500.5,0.8,0.07,0.08\n", "commas part columns", two},
      {start + "300 0,1 0,05 0,06\n500.5 0,8 0,07 0,08\n", "commas are decimal points", two},
      {start + "300,0.1 0.05 0.06\n500.5,0.8 0.07 0.08\n", "commas part columns", two},
      {start + "300,\t0,1,\t0,05,\t0,06\n500,5, 0,8, 0,07, 0,08\n",
       "commas part columns, commas are decimal points", two},
      {start + "wavelength;T;Rf;Rb\n[nm] [-] [-] [-]\n" + rows, "2 lines of words left out", two},
      {"Laboratory of Ham\n" + start + "# measured\n" + rows, "2 lines of words left out", two},
      {"SI nm 4.0 mm 1.0 W/(mK)\n" + rows,
       "\"nm\" is read as Nanometers, \"mm\" is left out, \"W/(mK)\" is left out", two},
      {"SI \u00B5m 4,0mm 1\n" + inMicrons,
       "\"\u00B5m\" is read as Microns, \"4,0mm\" is read as 4,0, commas are decimal points",
       microns},
      {start + "300 10% 5% 6%\n500.5 80% 7% 8%\n", "percent", two},
      {start + "nm T/%\n300 10 5 6\n500.5 80 7 8\n", "percent, 1 line of words left out", two},
      {start + "300 10 5 6\n500.5 80 7 8\n", "percent", two},
      {start + "300 10 1 1\n500.5 80 1 1\n", "percent", "300 0.1 0.01 0.01 | 500.5 0.8 0.01 0.01"},
      {start + "300 0.1 0.05 0.06 9\n500.5 0.8 0.07 0.08 80\n", "", two},
      {start + "300,0.1,0.05,0.06\n500.5,0.8,0.07,1\n", "commas part columns",
       "300 0.1 0.05 0.06 | 500.5 0.8 0.07 1"},
      {start + "300,0 0,1 0,1 0,1\n500,0 0,1 0,1 0,1\n", "commas are decimal points",
       "300 0.1 0.1 0.1 | 500 0.1 0.1 0.1"},
      {start + "300,1\n400,0\n", "commas part columns", "300 1 0 0 | 400 0 0 0"},
      {start + "TIR=0,2\nEmis=0,84 , 0,1\n" + rows, "commas are decimal points", two},
      {"NFRC of 2001\n#\n" + start + rows, "", two},
      {"IP \u03BCm 4in 1.5 Btu/hft\n" + inMicrons,
       "\"\u03BCm\" is read as Microns, \"4in\" is read as 4, \"Btu/hft\" is left out", microns},
      {"SI um 4 INCH 1.5 Wm-1K-1\n" + inMicrons,
       "\"um\" is read as Microns, \"INCH\" is left out, \"Wm-1K-1\" is left out", microns},
      {"SI Nanometers 4D0 1\n" + rows, "exponents with D", two},
      {start + "300 1.5 0.05 0.06\n", "", "300 1.5 0.05 0.06"},
      {start + "300 1.6 100 6\n", "percent", "300 0.016 1 0.06"},
      {start + "300 100.5 5 6\n", "", "300 100.5 5 6"},
      {start + "600 0.3 0.2 0.1\n500.5 0.8 0.07 0.08\n300 0.1 0.05 0.06\n",
       "descending wavelengths are turned round", two + " | 600 0.3 0.2 0.1"},
      {start + "300\u202F0.1\u2007\u00A00.05 0.06\n500.5 0.8 0.07 0.08\x1A{ end }\n\n300",
       "what follows the end-of-file character is left out, no-break spaces are read as blanks",
       two},
      {start + "300 1.0D-1 0.5d-1 0.06\n500.5 0.8 0.07 0.08\n", "exponents with D", two},
  };
  for (const Case& c : cases) {
    std::string repairs;
    const auto raised = test::raisedBy([&] {
      const auto pane = read(c.text, repairs);
      EXPECT_EQ(pointsOf(*pane), c.points) << c.text;
      EXPECT_EQ(pane->Thickness(), 4) << c.text;
    });
    EXPECT_EQ(raised.number, 0) << c.text << raised.description << raised.place;
    EXPECT_EQ(repairs, c.repairs) << c.text;
  }
}

/// What has two readings, or none, stays as it is, comments do anyway, and so does the number of
/// the line that an error names.
TEST_F(Repairs, LeaveAloneWhatIsNotCertain) {
  for (const std::string text :
       {"SI Nanometers 4 1\n300,0,1,0\n400,0,1,0\n", "SI Nanometers 4 1\n300,0 0,1\n400,0 0,1\n",
        "300;0,1;0,05\n", "{ unclosed\nSI nm 4 1\n",
        "{ Info: 1,5; 20% nm }\nSI Microns 4 1\n0.3 * 0\n", "SI Microns 4 1\n0.5 0.1\n0.4 *\n",
        "SI Nanometers 4 1\n500 0.1 0.1\n500 0.2 0.2\n", "SI Microns 4 1\n0.5 0.1\n0.4 0.1\n",
        "SI Microns 4 1\n0.5 0.1 0.1\n0.4 * 0\n", "SI Microns 4,0 1\n300,0,1,0\n400,0,1,0\n"}) {
    std::string mended = text;
    const std::string done = textfile::repair(mended);
    EXPECT_EQ(mended, text) << done;
    EXPECT_EQ(done, "");
  }
  std::string twoColumns = "SI Nanometers 4 1\n300,5 0,1\n";  // no share is as large as 5
  textfile::repair(twoColumns);
  EXPECT_EQ(twoColumns, "SI Nanometers 4 1\n300.5 0.1\n");
  std::string repairs;
  const auto raised =
      test::raisedBy([&] { read("words\nSI nm 4 1\nmore words\n300;0,1\n400;x\n", repairs); });
  EXPECT_EQ(raised.place.substr(0, 25), "lab.txt, line 5, column 5") << raised.place;
}

}  // namespace

}  // namespace orv
