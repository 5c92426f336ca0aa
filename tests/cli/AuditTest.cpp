// The verb `audit`.
#include <fstream>

#include "cli/CliTest.h"

namespace orv::test {
namespace {

TEST_F(CliTest, TheGuideHasAllRulesOfAnAudit) {
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
