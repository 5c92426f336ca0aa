// Input that is no product, or a wrong one: what is told, and where.
#include <chrono>
#include <cstdlib>
#include <ctime>

#include "model/Raised.h"
#include "productfile/ProductFile.h"
#include "support/CaseFile.h"
#include "textfile/Folder.h"

namespace orv::test {
namespace {

using namespace std::chrono_literals;
using productfile::ProductFile;

/// A product of which a part is replaced by something else.
std::string productWith(const std::string& part, const std::string& replacement) {
  std::string text = R"({"name": "a", "coating_properties": {"coated_side": "Front"},
    "measured_data": {"thickness": 4.5, "spectral_data": {"unit": "Microns", "angle_block": [
    {"incidence_angle": 10, "wavelength_data": [{"w": 0.3, "tf": 0.2, "rf": 0.1, "rb": 0.05}]}]}}})";
  text.replace(text.find(part), part.size(), replacement);
  return text;
}

TEST(BadInputTest, IsToldWithItsPlace) {
  for (const auto& cells : casesOf("productfile/refused.tsv", 5)) {
    const std::string text = cells[0].empty() ? cells[1] : productWith(cells[0], cells[1]);
    const auto raised = raisedBy([&] { ProductFile(text, "a.json").product(""); });
    EXPECT_EQ(std::to_string(raised.number), cells[2]) << text;
    EXPECT_EQ(raised.description, cells[3]) << text;
    EXPECT_EQ(raised.place, "a.json" + cells[4]) << text;
  }
}

TEST(BadInputTest, FilesThatCannotBeReadAndDataThatAreNotThereAreRefused) {
  const Folder folder;
  const auto path = [&](const char* name) { return folder.path() / name; };
  folder.write("large.json", "");
  std::filesystem::resize_file(path("large.json"), productfile::kLargestFile + 1);
  const auto large = raisedBy([&] { ProductFile::read(path("large.json")); });
  EXPECT_EQ(large.number, kInvalidCall);
  EXPECT_EQ(large.description, "The file '" + path("large.json").string() +
                                   "' has 268435457 bytes, and 268435456 are the most that are "
                                   "read of a file of products");
  const auto none = raisedBy([&] { ProductFile::read(path("none.json")); });
  EXPECT_EQ(none.number, kDeviceIo);
  EXPECT_EQ(none.description, "The file '" + path("none.json").string() +
                                  "' cannot be read: No such file or directory");

  const auto angle =
      raisedBy([] { ProductFile(productWith("4.5", "4"), "a.json").product("", 45); });
  EXPECT_EQ(angle.number, kInvalidCall);
  EXPECT_EQ(angle.description, "There are no data at 45 degrees");

  setenv("TZ", "XYZ-05:30", 1);  // east of Greenwich
  tzset();
  folder.write("dated.json", productWith("4.5", "4"));
  std::filesystem::last_write_time(
      path("dated.json"), std::chrono::file_clock::from_sys(std::chrono::sys_seconds(1000h)));
  EXPECT_EQ(ProductFile::read(path("dated.json")).product("").pane->FileDate(),
            Date(1005h + 30min));
  unsetenv("TZ");
  tzset();
}

/// Memory and stack stay within bounds whatever the size.
TEST(BadInputTest, DepthHasALimit) {
  constexpr std::size_t kManyBytes = 1'000'000;
  for (const char* bracket : {"[", "{\"a\":"}) {
    std::string text;
    while (text.size() < kManyBytes) text += bracket;
    const auto raised = raisedBy([&] { ProductFile(text, "deep.json"); });
    EXPECT_EQ(raised.description,
              "Lists and objects are within each other more than 64 times, as in "
              "no file of products");
    EXPECT_EQ(raised.place.substr(0, 25), "deep.json, line 1, column");
  }
  for (const std::size_t depth : {65, 66}) {
    const std::string lists = std::string(depth, '[') + std::string(depth, ']');
    EXPECT_EQ(raisedBy([&] { ProductFile(lists, ""); }).number, depth == 65 ? 0 : kInvalidCall);
  }
}

}  // namespace
}  // namespace orv::test
