// The verb `integrate`, and the options of `copy` that go with it.
#include <functional>

#include "cli/CliTest.h"

namespace orv::test {
namespace {

class IntegrateVerbTest : public CliTest {
 protected:
  /// The cells of a line of tsv; the heading is line 0.
  static std::vector<std::string> line(const std::string& text, std::size_t number) {
    std::vector<std::string> cells(1);
    std::size_t at = 0;
    for (; number > 0; --number) at = text.find('\n', at) + 1;
    for (; at < text.size() && text[at] != '\n'; ++at) {
      if (text[at] == '\t') {
        cells.emplace_back();
      } else {
        cells.back() += text[at];
      }
    }
    return cells;
  }

  /// Every 5 nm where it is wanted, in µm.
  static std::string rows(
      int first, int last, const std::string& values,
      const std::function<bool(int)>& isWanted = [](int) { return true; }) {
    std::string text;
    for (int at = first; at <= last; at += 5) {
      if (isWanted(at)) text += std::to_string(at / 1000.0) + ' ' + values + '\n';
    }
    return text;
  }

  /// A pane that has all values.
  static std::string measuredText() {
    return "SI Microns 3 1\nEmis= 0.84 0.84\n" + rows(300, 2500, "0.75 0.0625 0.07");
  }

  static std::string cell(const std::string& text, std::size_t number, const std::string& column) {
    const auto names = line(text, 0);
    const auto found = std::find(names.begin(), names.end(), column);
    if (found == names.end()) return "no column " + column;
    return line(text, number)[static_cast<std::size_t>(found - names.begin())];
  }
};

TEST_F(IntegrateVerbTest, ShowsEveryValueOfAPaneInItsColumn) {
  folder.write("a.txt",
               "SI Microns 3 1\nTIR=0\nEmis= 0.84 0.837\n" +
                   rows(280, 2500, "1 0 0.125", [](int at) { return at <= 600 || at >= 700; }));
  folder.write("b.txt", "SI Microns 3 1\nTIR=0\nEmis= 0.84 0.84\n" + rows(380, 780, "0.5 0 0"));
  const Ended run = orv("integrate a.txt --format tsv");
  EXPECT_EQ(run.exit, 0) << run.err;
  EXPECT_EQ(
      run.out.substr(0, run.out.find('\n')),
      "id\tname\tangle\tstandard\tTf_sol\tRf_sol\tTb_sol\tRb_sol\tTf_vis\tRf_vis\tTb_vis\t"
      "Rb_vis\tTf_uv\tRf_uv\tTb_uv\tRb_uv\tTf_dw\tRf_dw\tTb_dw\tRb_dw\tTf_df\tTf_spf\tef\teb\t"
      "g\tRa\tX\tY\tZ\tL\ta\tb\tnote");
  EXPECT_EQ(cell(run.out, 1, "name"), "a.txt");
  EXPECT_EQ(cell(run.out, 1, "standard"), "EN 410");
  EXPECT_EQ(cell(run.out, 1, "Tf_dw"), "");
  EXPECT_EQ(cell(run.out, 1, "note"), "nothing between 600 and 700 nm");
  EXPECT_NEAR(std::stod(cell(run.out, 1, "Tb_vis")), 1, 1e-12);
  EXPECT_NEAR(std::stod(cell(run.out, 1, "Rb_uv")), 0.125, 1e-12);
  EXPECT_EQ(cell(run.out, 1, "eb"), "0.837");
  EXPECT_NEAR(std::stod(cell(run.out, 1, "L")), 100, 1e-9);

  const Ended both = orv("integrate . --standard iso9050 --format tsv");
  EXPECT_EQ(both.exit, 1);
  EXPECT_NE(cell(both.out, 1, "Tf_df"), "");
  EXPECT_EQ(cell(both.out, 2, "Tf_sol"), "");
  EXPECT_NE(cell(both.out, 2, "Tf_vis"), "");
  EXPECT_NE(cell(both.out, 2, "note").find("780 to 2494 nm are missing"), std::string::npos)
      << both.out;
  const Ended json = orv("integrate a.txt --standard nfrc300 --format json");
  EXPECT_NE(json.out.find("\"Rf_dw\": 0"), std::string::npos) << json.out;
  EXPECT_NE(json.out.find("\"Rf_Y\": 0"), std::string::npos);
  EXPECT_NE(json.out.find("\"Ra\": null"), std::string::npos);
  EXPECT_EQ(orv("integrate a.txt --standard en673").exit, 2);
  EXPECT_EQ(orv("integrate a.txt --missing").exit, 2);
  EXPECT_EQ(orv("integrate a.txt --force").exit, 2);
  const Ended refused = orv("integrate a.txt --store --format json");
  EXPECT_EQ(refused.exit, 2);
  EXPECT_EQ(refused.out, "");
}

TEST_F(IntegrateVerbTest, ComparesWithWhatIsStoredAndStores) {
  folder.write("a.txt", measuredText());
  orv("new db.mdb");
  const Ended copy = orv("copy a.txt db.mdb --group Demo --no-integrate");
  EXPECT_EQ(copy.out, "1 record copied.\n");
  EXPECT_NE(copy.err.find("0 is stored: integrated values (1)"), std::string::npos) << copy.err;
  const Ended store = orv("integrate db.mdb --store --missing --standard nfrc300 --format tsv");
  EXPECT_EQ(store.exit, 0) << store.err;
  EXPECT_EQ(store.err, "orv: 1 row of integrated values written by NFRC 300.\n");
  EXPECT_EQ(cell(store.out, 1, "Tf_sol_stored"), "") << "all were 0";
  const Ended difference =
      orv("integrate db.mdb 1 --standard nfrc300 --difference --format tsv --angle 0");
  const double stored = std::stod(cell(difference.out, 1, "Tf_sol_stored"));
  EXPECT_NEAR(stored, std::stod(cell(difference.out, 1, "Tf_sol")), 1e-7);
  EXPECT_GT(stored, 0.7);
  EXPECT_NEAR(std::stod(cell(difference.out, 1, "Rb_uv_difference")), 0, 1e-8);
  EXPECT_EQ(cell(difference.out, 1, "ef_stored"), "");
  const Ended other = orv("integrate db.mdb --angle 60");
  EXPECT_EQ(other.exit, 1);
  EXPECT_EQ(other.err, "orv: No pane has data at 60 degrees.\n");
}

TEST_F(IntegrateVerbTest, ACopySaysByWhichStandardItHasComputed) {
  folder.write("a.txt", measuredText());
  orv("new db.mdb");
  const Ended copy = orv("copy a.txt db.mdb --group Demo --standard iso9050");
  EXPECT_EQ(copy.out, "1 record copied. Integrated values of 1 pane computed by ISO 9050.\n");
  EXPECT_EQ(copy.err.find("integrated values"), std::string::npos) << copy.err;
  EXPECT_EQ(orv("copy a.txt db.mdb --group More --standard iso9050 --no-integrate").exit, 2);
}

}  // namespace
}  // namespace orv::test
