#include <gtest/gtest.h>

#include "model/Raised.h"
#include "support/FullRecords.h"
#include "textfile/Folder.h"
#include "textfile/ORV_TextFileInterface.h"

namespace orv {

namespace {

class PaneReader : public ::testing::Test {
 protected:
  std::shared_ptr<GlazingData> parse(const std::string& text) {
    folder_.write("pane.txt", text);
    return ORV_TextFileInterface().ParseSpectralFile(folder_.path(), "pane.txt");
  }

  test::Raised raisedBy(const std::string& text) {
    return test::raisedBy([&] { parse(text); });
  }

  test::Folder folder_;
};

TEST_F(PaneReader, ReadsUnits) {
  struct Case {
    const char* words;
    std::int32_t unit;
    std::int32_t wavelengthUnit;
  };
  const Case cases[] = {{"SI Micron", kSI, kMicrons},
                        {"IP Nanometer", kIP, kNanometers},
                        {"SI nanometers", kSI, kNanometers}};
  for (const Case& c : cases) {
    const auto pane = parse(std::string(c.words) + " 3 1\n300 0.8 0.1 0.1\n");
    EXPECT_EQ(pane->unit(), c.unit) << c.words;
    EXPECT_TRUE(pane->use_estimation() && !pane->single_layer());
    EXPECT_EQ(pane->SpectralData()->WavelengthUnit(), c.wavelengthUnit) << c.words;
  }
}

TEST_F(PaneReader, ReadsTheAcceptanceOfTheNfrc) {
  EXPECT_EQ(parse("NFRC accepted 2001\n#\nSI Microns 3 1\n0.3 0.8\n")->Acceptance(), "#");
}

TEST_F(PaneReader, CarriesValuesOverFromTheLineBefore) {
  const auto pane = parse(
      "SI Microns 3 1\n"
      "0.30 * 0.07 0.09\n"      // nothing before the first line: 0
      "0.31 0.8 * *\n"          // both reflectances carried over
      "0.32 0.7 0.06\n"         // back as front
      "0.33 0.6\n"              // front carried over, back as front
      "0.34 0.5 0.1 0.2 9 x\n"  // further columns passed over
      "3.5E-01 0.4 0.1 0.2\n");
  const SpectralData& s = *pane->SpectralData();
  ASSERT_EQ(s.count(), 6);
  const float expected[][4] = {{0.30F, 0, 0.07F, 0.09F},    {0.31F, 0.8F, 0.07F, 0.09F},
                               {0.32F, 0.7F, 0.06F, 0.06F}, {0.33F, 0.6F, 0.06F, 0.06F},
                               {0.34F, 0.5F, 0.1F, 0.2F},   {0.35F, 0.4F, 0.1F, 0.2F}};
  for (std::int32_t i = 0; i < s.count(); ++i) {
    EXPECT_EQ(s.wl(i), expected[i][0]) << i;
    EXPECT_EQ(s.Tf(i), expected[i][1]) << i;
    EXPECT_EQ(s.Rf(i), expected[i][2]) << i;
    EXPECT_EQ(s.Rb(i), expected[i][3]) << i;
  }
}

TEST_F(PaneReader, ReadsInfraredLinesInEitherOrder) {
  struct Case {
    const char* lines;
    float tir, ef, eb;
  };
  const Case cases[] = {
      {"", 0, -1, -1},
      {"TIR=0.2\nEmis= 0.84 0.1\n", 0.2F, 0.84F, 0.1F},
      {"Emis= 0.84 , 4.657817E-02\ntir = 0.2\n", 0.2F, 0.84F, 4.657817E-02F},
      {"Emissivity=0.84\n", 0, 0.84F, 0.84F},
      {"TIR=0.1 Emis= 0.8 {front} 0.7\n", 0.1F, 0.8F, 0.7F},
  };
  for (const Case& c : cases) {
    const auto pane = parse("SI Microns 3 1\n" + std::string(c.lines) + "3E-01 0.8 0.1 0.1\n");
    EXPECT_EQ(pane->TfIR(), c.tir) << c.lines;
    EXPECT_EQ(pane->ef(), c.ef) << c.lines;
    EXPECT_EQ(pane->eb(), c.eb) << c.lines;
    EXPECT_EQ(pane->SpectralData()->count(), 1) << c.lines;
    if (c.ef >= 0) {
      EXPECT_EQ(pane->ef_source(), kTextFileSource);
      EXPECT_EQ(static_cast<float>(pane->ORV_Emissivity_front()), c.ef);
      EXPECT_EQ(static_cast<float>(pane->ORV_Emissivity_back()), c.eb);
    }
  }
}

TEST_F(PaneReader, ReadsTheSameRecordWhateverTheLineEndsAndBlankLines) {
  const std::string lines =
      "{ first }\nSI Microns\n\n{ Thickness } 3\n1\nEmis= 0.84\n{ Product Name: Café }\n"
      "0.3 0.8 0.1\n\n{ between }\n0.4 0.7 0.2 0.3";
  for (const char* const lineEnd : {"\n", "\r\n", "\r"}) {
    for (const std::string last : {"", "\n", "\n \t\n{ end }"}) {
      std::string text;
      for (const char c : lines + last) text += c == '\n' ? lineEnd : std::string(1, c);
      const auto pane = parse(text);
      EXPECT_EQ(pane->productname(), "Café");
      EXPECT_EQ(pane->eb(), 0.84F);
      ASSERT_EQ(pane->SpectralData()->count(), 2);
      EXPECT_EQ(pane->SpectralData()->Rb(0), 0.1F);
      EXPECT_EQ(pane->SpectralData()->Rb(1), 0.3F);
    }
  }
}

TEST_F(PaneReader, ReadsHeaderEntriesWithoutRegardToCase) {
  const auto pane = parse(
      "{ Ef_Source: Material }{ EB_SOURCE: spectral data }{ see: elsewhere }\n"
      "SI Microns 3 1\nEmis= 0.84 0.1\n"
      "{ product name: Low-E: the second }\n{ supplier:  Acme }\n{NFRC ID:}\n"
      "{ IGDB_Checksum: -1717699038 }\n{ Type: APPLIED film }\n{ Material: Glass }\n"
      "{ Coating Name: Ag }\n{ Coated Side: back }\n{ Coating Filename: c.txt }\n"
      "{ Substrate Filename: s.txt }\n{ Film Filename: f.txt }\n{ Description: Two\nlines }\n"
      "{ Appearance: Grey }\n{ Acceptance: # }\n{ Angle of Incidence: 60.5 }\n"
      "{ Coating class: b }\n"
      "{ Structure: a.txt;4;False\n + b.txt;0.76;true\n+ c.txt;6;FALSE }\n"
      "0.3 0.8 0.1 0.1\n");
  GlazingData p;
  p.filename("pane.txt"), p.FileDate(pane->FileDate()), p.productname("Low-E: the second");
  p.supplier("Acme"), p.NFRC_id(-1), p.IGDBChecksum(-1717699038), p.GlazingType(kAppliedFilm);
  p.Thickness(3), p.Conductivity(1), p.ef(0.84F), p.ef_source(kMaterialSource), p.eb(0.1F);
  p.eb_source(kSpectralDataSource), p.ORV_Emissivity_front(0.84F), p.ORV_Emissivity_back(0.1F);
  p.material("Glass"), p.CoatingName("Ag"), p.CoatedSide(kBackSide), p.CoatingFilename("c.txt");
  p.SubstrateFilename("s.txt"), p.FilmFilename("f.txt"), p.description("Two\nlines");
  p.Appearance("Grey"), p.Acceptance("#"), p.ORV_CoatingClass("b");
  p.ORV_Angle(60);  // halves to the even degree
  p.spectral_pane(true), p.use_estimation(true), p.SpectralData(pane->SpectralData());
  ORV_TextFileInterface().ParseStructure("a.txt;4;False+b.txt;0.76;True+c.txt;6;False", p);
  EXPECT_EQ(test::whole(*pane), test::whole(p));
  const auto glass = parse("{ Type: Monolithic }{ Material: Glass }\nSI Microns 3 1\n0.3 0.8\n");
  EXPECT_TRUE(glass->single_layer() && !glass->use_estimation());
  const auto odd = parse(
      "{Type: Film}{ Availability: Asia }{ Angle of Incidence: -32767.4 }"
      "{ single_layer: TRUE }{ freeze: true }{freeze:False}{ Use_: x }"
      "SI Microns 3 1\n0.3 0.8\n");
  EXPECT_EQ(odd->Availability(1)->Region(), "Asia");
  EXPECT_EQ(odd->Availability(1)->AlternateProductName(), "");
  EXPECT_EQ(odd->ORV_Angle(), -32767);
  EXPECT_TRUE(odd->single_layer() && odd->use_estimation() && !odd->ORV_Frozen());
  EXPECT_EQ(odd->UsesCount(), 0);
}

/// Each error says where it is, in lines and characters, what stands there and what to do.
TEST_F(PaneReader, RefusesMalformedFiles) {
  struct Case {
    const char* text;
    std::int32_t number;
    const char* description;
    const char* place;
    const char* source = "";
  };
  const std::pair<std::string, std::string> shorthands[] = {
      {"BODY ", "SI Microns 3 1\n"},
      {"HEAD ", "SI Microns 3 1\n0.3 0.8\n"},
      {"NOTOKEN", "Received non-token when expected a token"},
      {"NONUMBER", "is not a number.  Expected a number"},
      {"NEGATIVE", "is negative. No value of a pane is below 0"},
      {"ENDS", "The line, or the file, ends before the number."},
      {"TOL", " Or have the file read tolerantly (--tolerant)."},
      {"BRACES", " Each comment begins with { and ends with }, and holds no other braces."}};
  const auto spelledOut = [&](std::string text) {
    for (const auto& [shorthand, meaning] : shorthands) {
      const auto at = text.find(shorthand);
      if (at != std::string::npos) text.replace(at, shorthand.size(), meaning);
    }
    return text;
  };
  const Case cases[] = {
      {"", 1012, "Beginning of file:  NOTOKEN",
       "1, column 1. The file is empty, or all of it is comments."},
      {"{ nothing }\n\n", 1012, "Beginning of file:  NOTOKEN",
       "3, column 1. The file is empty, or all of it is comments."},
      {" CI Microns", 5, "Invalid unit",
       "1, column 2: 'CI'. A pane file begins with SI or IP, Microns or Nanometers, the thickness "
       "and the conductivity: SI Microns 4.0 1.0."},
      {"# float glass\n", 5, "Invalid unit",
       "1, column 1: '#'. Put comments between braces: { ... }.TOL"},
      {"SI nm", 5, "Invalid wavelength", "1, column 4: 'nm'. Write Nanometers.TOL"},
      {"SI \u00B5m", 5, "Invalid wavelength", "1, column 4: '\u00B5m'. Write Microns.TOL"},
      {"SI ells", 5, "Invalid wavelength", "1, column 4: 'ells'. It is Microns or Nanometers."},
      {"SI", 1012, "Wavelength units:  NOTOKEN", "1, column 3. ENDS"},
      {"SI Microns 4.0mm", 5, "Invalid thickness",
       "1, column 12: '4.0mm'. Leave the unit out: 4.0.TOL"},
      {"SI Microns 3\n1,5", 5, "Invalid conductivity",
       "2, column 1: '1,5'. Write a point before the decimals: 1.5.TOL"},
      {"NFRC accepted\n", 1012, "NFRC acceptance string:  NOTOKEN", "2, column 1. ENDS"},
      {"NFRC accepted\n#\n", 1012, "Units:  NOTOKEN", "3, column 1. ENDS"},
      {"SI Microns", 1012, "Thickness:  NOTOKEN", "1, column 11. ENDS"},
      {"SI Microns 3", 1012, "Conductivity:  NOTOKEN", "1, column 13. ENDS"},
      {"SI Microns 3 -1", 5, "'-1' NEGATIVE", "1, column 14"},
      {"SI Microns -3 1", 5, "'-3' NEGATIVE", "1, column 12"},
      {"BODY ", 9, "The file holds no spectral data",
       "2, column 1. Lines of a wavelength, a transmittance and two reflectances end a pane file."},
      {"BODY TIR 0", 1015, "TIR:  '0' is not an equal sign",
       "2, column 5. The lines are: TIR= 0.0 and Emis= 0.84 0.84."},
      {"BODY TIR=\n", 1012, "TIR:  NOTOKEN", "2, column 5. ENDS"},
      {"BODY TIR= mm", 1013, "TIR:  'mm' NONUMBER", "2, column 6. Leave the unit out.TOL"},
      {"BODY TIR= -1", 5, "'-1' NEGATIVE", "2, column 6"},
      {"BODY Emis=\n", 1012, "Emissivity:  NOTOKEN", "2, column 6. ENDS"},
      {"BODY Emis= #1", 1013, "Emissivity:  '#1' NONUMBER",
       "2, column 7. Put comments between braces: { ... }.TOL"},
      {"BODY Emis= -1", 5, "'-1' NEGATIVE", "2, column 7"},
      {"BODY Emis= 1 -1", 5, "'-1' NEGATIVE", "2, column 9"},
      {"BODY Emis= 0.8 ,\n", 1013,
       "Backward Emissivity:  Received a non-number when expected a number", "2, column 12. ENDS"},
      {"BODY Emis= 0.8 , 8%", 1013, "Backward Emissivity:  '8%' NONUMBER",
       "2, column 13. Write fractions of 1 in place of percent.TOL"},
      {"BODY Emis= 0.8", 1016, "Backward emissivity:  Invalid token sequence",
       "2, column 10. The file ends here."},
      {"BODY * 0.8", 1013, "Spectral Data:  '*' NONUMBER", "2, column 1"},
      {"BODY 0.3\n0.4 0.8", 1012, "Spectral Data:  NOTOKEN", "2, column 4. ENDS"},
      {"BODY wavelength T", 1015, "Emissivity:  'T' is not an equal sign",
       "2, column 12. The lines are: TIR= 0.0 and Emis= 0.84 0.84."},
      {"BODY 0.3 nan", 1013, "Spectral Data:  'nan' NONUMBER",
       "2, column 5. Put headings between braces: { ... }.TOL"},
      {"BODY 0.3 +-1", 1013, "Spectral Data:  '+-1' NONUMBER", "2, column 5"},
      {"BODY -0.3 1", 5, "'-0.3' NEGATIVE", "2, column 1"},
      {"BODY 0.3 -1", 5, "'-1' NEGATIVE", "2, column 5"},
      {"BODY 0.3 1 -2", 5, "'-2' NEGATIVE", "2, column 7"},
      {"BODY 0.3 1 2 5nm", 1013, "Spectral Data:  '5nm' NONUMBER",
       "2, column 9. Leave the unit out: 5.TOL"},
      {"BODY 0.3 1,2,3", 1013, "Spectral Data:  '1,2,3' NONUMBER",
       "2, column 5. Put blanks or tabs between the columns.TOL"},
      {"BODY 0.3 1\u00A02", 1013, "Spectral Data:  '1\u00A02' NONUMBER",
       "2, column 5. Put a blank in place of the no-break space.TOL"},
      {"BODY 0.3 5!", 1013, "Spectral Data:  '5!' NONUMBER", "2, column 5"},
      {"BODY 0.3 1e99", 1013, "Spectral Data:  '1e99' NONUMBER", "2, column 5"},
      {"BODY { Café } 0.3 0.8 1D-3", 1014, "Spectral Data:  '1D-3' is not a number and not an *",
       "2, column 18. Write E before the exponent: 1E-3.TOL"},
      {"BODY 0.3;0.8;0.1", 1013, "Spectral Data:  '0.3;0.8;0.1' NONUMBER",
       "2, column 1. Put blanks or tabs between the columns.TOL"},
      {"BODY 0.3 0.8 0.1 0.1\n\x1A", 1013, "Spectral Data:  '\x1A' NONUMBER",
       "3, column 1. Delete the end-of-file character (Ctrl-Z).TOL"},
      {"HEAD   { Type: Glass }", 5, "",
       "3, column 3: 'Glass'. It is one of Monolithic, Applied Film, Coated, Film, Laminate, "
       "Interlayer, Unknown.",
       "Glazing Type not recognized"},
      {"HEAD { Coated Side: }", 5, "",
       "3, column 1. It is one of Front, Back, Both, Neither, Unknown.",
       "Coating side type not recognized"},
      {"HEAD { NFRC ID: pending }", 13, "NFRC ID 'pending' is not a whole number of 32 bits",
       "3, column 1"},
      {"HEAD { Angle of Incidence: 32767.6 }", 6, "Angle of Incidence '32767.6' is too large",
       "3, column 1"},
      {"HEAD { freeze: 1 }", 13, "freeze '1' is neither True nor False", "3, column 1"},
      {"HEAD { transmission_IR_indoor: -1 }", 5,
       "transmission_IR_indoor '-1' is negative or too large", "3, column 1"},
      {"HEAD { transmission_IR_indoor: 4e38 }", 5,
       "transmission_IR_indoor '4e38' is negative or too large", "3, column 1"},
      {"HEAD { Structure: a.txt;thick;True }", 13, "Layer thickness 'thick' is not a number",
       "3, column 1"},
      {"HEAD { Structure: a.txt;4 }", 5, "",
       "3, column 1: 'a.txt;4'. A layer is file;thickness;True or False.", "Mal-formed structure"},
      {"HEAD { Structure: a.txt;4;maybe }", 5, "",
       "3, column 1: 'maybe'. It is True for a layer turned round, else False.",
       "Bad 3rd argument in layer"},
      {"BODY 0.3 0.8 { open\n\n", -2147220505, "", "2, column 9: '{'.BRACES",
       "Comment has no closing brace!"},
      {"SI\r\n}", -2147220505, "", "2, column 1: '}'.BRACES",
       "Closing brace w/o matching opening brace"},
      {"{one}\r{two\r\nlines}\n { a { b } }", -2147220505, "", "4, column 6: '{'.BRACES",
       "Closing brace w/o matching opening brace"},
  };
  for (const Case& c : cases) {
    const auto raised = raisedBy(spelledOut(c.text));
    EXPECT_EQ(raised.number, c.number) << c.text;
    EXPECT_EQ(raised.description, spelledOut(c.description)) << c.text;
    EXPECT_EQ(raised.source, c.source) << c.text;
    EXPECT_EQ(raised.place, "pane.txt, line " + spelledOut(c.place)) << c.text;
  }
}

}  // namespace

}  // namespace orv
