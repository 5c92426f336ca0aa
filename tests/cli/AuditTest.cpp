// The verb `audit`.
#include <fstream>

#include "cli/CliTest.h"

namespace orv::test {
namespace {

class AuditVerbTest : public CliTest {
 protected:
  /// Nearly grey, every 5 nm.
  static std::string paneText(const std::string& maker, double emissivity, bool hasGap) {
    std::string text = "SI Nanometers 4 1\nEmis= 0.84 " + std::to_string(emissivity) +
                       "\n{ Manufacturer: " + maker + " }\n";
    for (int nm = 300; nm <= 2500; nm += 5) {
      if (hasGap && nm > 600 && nm < 620) continue;
      text += std::to_string(nm) + ' ' + std::to_string(0.7 - nm / 1e5) + " 0.1 0.1\n";
    }
    return text;
  }
};

TEST_F(AuditVerbTest, TellsFindingsAndEndsAsBadAsTheyAre) {
  folder.write("a.txt", paneText("Maker", 0.84, false));
  folder.write("b.txt", paneText("Unknown", 0.84, true));
  folder.write("c.txt", paneText("Maker", 1.5, false));
  const Ended good = orv("audit a.txt --strict --format tsv");
  EXPECT_EQ(good.exit, 0);
  EXPECT_EQ(good.out, "severity\trule\tset\tid\tname\tangle\tfield\tvalue\texpected\tmessage\n");
  EXPECT_EQ(good.err, "orv: 1 record: no errors, no warnings, no notes.\n");
  const Ended warned = orv("audit b.txt --format tsv --quiet");
  EXPECT_EQ(warned.exit, 0);
  EXPECT_EQ(
      warned.out.substr(warned.out.find('\n') + 1),
      "warning\tgaps\tpanes\tb.txt\tb.txt\t0\twavelength\t20 nm\t\tPoints are missing: nothing "
      "between 600 and 620 nm\n"
      "note\tunknown-maker\tpanes\tb.txt\tb.txt\t\tsupplier\tUnknown\t\tNobody knows who makes "
      "it\n");
  EXPECT_EQ(warned.err, "");
  EXPECT_EQ(orv("audit b.txt --strict").exit, 1);
  EXPECT_EQ(orv("audit b.txt --strict --without gaps,jump").exit, 0);
  const Ended all = orv("audit . --severity error --format json");
  EXPECT_EQ(all.exit, 1);
  EXPECT_NE(all.out.find("\"value\": \"1.5\""), std::string::npos) << all.out;
  EXPECT_EQ(all.err, "orv: 3 records: 1 error, no warnings, no notes.\n");
  EXPECT_EQ(orv("audit . a.txt b.txt").exit, 0);
  EXPECT_EQ(orv("audit nowhere.mdb").exit, 3);
  EXPECT_EQ(orv("audit").exit, 2);
  EXPECT_EQ(orv("audit . --set frames").exit, 2);
  const Ended unknown = orv("audit . --rule gap");
  EXPECT_EQ(unknown.exit, 2);
  EXPECT_NE(unknown.err.find("There is no rule \"gap\""), std::string::npos) << unknown.err;
}

TEST_F(AuditVerbTest, TheGuideHasAllRules) {
  std::ifstream file(ORV_SOURCE_DIR "/docs/user-guide.md");
  const std::string guide(std::istreambuf_iterator<char>(file), {});
  const std::string rules = orv("audit --rules --format tsv").out;
  std::string rows;
  for (std::size_t at = rules.find('\n') + 1; at < rules.size();) {
    const std::size_t end = rules.find('\n', at);
    std::string row = "| `" + rules.substr(at, end - at) + " |";
    for (std::size_t tab = row.find('\t'), i = 0; tab != std::string::npos;
         tab = row.find('\t'), ++i) {
      row.replace(tab, 1, i == 0 ? "` | " : " | ");
    }
    rows += row + '\n';
    at = end + 1;
  }
  EXPECT_NE(guide.find(rows), std::string::npos) << rows;
}

}  // namespace
}  // namespace orv::test
