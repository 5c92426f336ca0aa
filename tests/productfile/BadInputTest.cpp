// Input that is no product, or a wrong one: what is told, and where.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <ctime>

#include "model/Raised.h"
#include "productfile/ProductFile.h"
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

struct BadInput {
  std::string part;  ///< of a product, that the text replaces; empty where it replaces all
  std::string text;
  std::int32_t number;
  std::string description;
  std::string place;
};

const std::string kThickness = ", /measured_data/thickness: ";
const std::string kBlocks = ", /measured_data/spectral_data/angle_block";
const std::string kRows = kBlocks + "/0/wavelength_data";

TEST(BadInputTest, IsToldWithItsPlace) {
  std::vector<BadInput> inputs = {
      {"", "{\n \"néme\": x}", 5,
       "This is no JSON: syntax error while parsing value - invalid literal; last read: '\"néme\": "
       "x'",
       ", line 2, column 10"},
      {"", "", 5,
       "This is no JSON: syntax error while parsing value - unexpected end of input; expected '[', "
       "'{', or a literal",
       ", line 1, column 1"},
      {"", "{\"name\": \"\xFF\"}", 5,
       "This is no JSON: syntax error while parsing value - invalid string: ill-formed UTF-8 byte; "
       "last read: '\"\xFF'",
       ", line 1, column 11"},
      {"4.5", "NaN", 5,
       "This is no JSON: syntax error while parsing value - invalid literal; last read: "
       "'\"thickness\": N'",
       ", line 2, column 36"},
      {"4.5", "1e999", 6, "This number is too large", ", line 2, column 36"},
      {"4.5", "3.5e38", 6, "Too large a number", kThickness + "3.5e+38"},
      {"4.5", '"' + std::string(38, 'x') + '"', 13, "Here a number is wanted",
       kThickness + "\"" + std::string(38, 'x') + '"'},
      {"4.5", "\"ä" + std::string(34, 'x') + '"', 13, "Here a number is wanted",
       kThickness + "\"\\u00e4" + std::string(33, 'x') + "..."},
      {"4.5", "\"inf\"", 13, "Here a number is wanted", kThickness + "\"inf\""},
      {"4.5", "\"4.5mm\"", 13, "Here a number is wanted", kThickness + "\"4.5mm\""},
      {"\"Front\"", "7", 13, "Here a text is wanted", ", /coating_properties/coated_side: 7"},
      {"{\"coated_side\": \"Front\"}", "7", 13, "Here an object is wanted",
       ", /coating_properties: 7"},
      {"\"name\"", "\"unit_system\": \"metric\", \"name\"", 5, "No system of units. It is SI or IP",
       ", /unit_system: \"metric\""},
      {"4.5", "-4.5", 5, "This is negative, and no such value is below 0", kThickness + "-4.5"},
      {"4.5", "[4, 5]", 13, "Here a number is wanted", kThickness + "a list of 2"},
      {"Front", "Inside", 5, "No side of a pane. It is one of Front, Back, Both, Neither",
       ", /coating_properties/coated_side: \"Inside\""},
      {"Microns", "Furlongs", 5, "No unit of wavelengths. It is Microns or Nanometers",
       ", /measured_data/spectral_data/unit: \"Furlongs\""},
      {"Microns", "Nanometers", 5, "No wavelength in nanometers, which this file says it has",
       kRows + "/0/w: 0.3"},
      {"0.3", "0.0999", 5, "No wavelength in microns, which products of this form have",
       kRows + "/0/w: 0.0999"},
      {"0.3", "200.1", 5, "No wavelength in microns, which products of this form have",
       kRows + "/0/w: 200.1"},
      {"{\"w\": 0.3, \"tf\": 0.2, \"rf\": 0.1, \"rb\": 0.05}", "", 5,
       "The product has no spectral data", kRows + ": a list of 0"},
      {"{\"w\": 0.3, \"tf\": 0.2, \"rf\": 0.1, \"rb\": 0.05}", "7", 13, "Here an object is wanted",
       kRows + "/0: 7"},
      {"\"w\"", "\"x\"", 5, "A value is missing", kRows + "/0/w: null"},
      {"0.2", "20", 5, "This is no fraction. Values are between 0 and 1", kRows + "/0/tf: 20"},
      {"\"tf\"", "\"T\"", 5, "No row has all of transmittance and both reflectances",
       kRows + ": a list of 1"},
      {"10", "12.5", 13, "Here a whole number is wanted", kBlocks + "/0/incidence_angle: 12.5"},
      {"10", "-1", 5, "No angle of incidence", kBlocks + "/0/incidence_angle: -1"},
      {"10", "32768", 5, "No angle of incidence", kBlocks + "/0/incidence_angle: 32768"},
      {"{\"incidence_angle\"", "{\"incidence_angle\": 10}, {\"incidence_angle\"", 5,
       "A second block for 10 degrees", kBlocks + "/1: an object"},
      {"", R"({"measured_data": {"spectral_data": {"unit": "um", "angle_block": []}}})", 5,
       "There is no block of data", kBlocks + ": a list of 0"},
      {"", R"({"measured_data": {"spectral_data": {"unit": "um", "angle_block": 7}}})", 13,
       "Here a list is wanted", kBlocks + ": 7"},
      {"", R"({"id": -1, "spectral_data": {"spectral_data": []}})", 5, "No id is negative",
       ", /id: -1"},
      {"", R"({"type": "Shading", "name": "N", "subtype": "VENETIAN"})", 5,
       "\"N\" is a shading (venetian), and only panes are read from files of products",
       ": an object"},
      {"", R"({"type": "SHADING"})", 5,
       "\"\" is a shading, and only panes are read from files of products", ": an object"},
      {"10", "-2147483649", 6, "Too large a number", kBlocks + "/0/incidence_angle: -2147483649"},
      {"\"name\"", "\"orv_record\": {\"hidden\": 1}, \"name\"", 13, "Here true or false is wanted",
       ", /orv_record/hidden: 1"},
      {"angle_block", "angles", 5,
       "This is no product of a known form: there is neither /spectral_data/spectral_data, "
       "/physical_properties/optical_properties/optical_data/angle_blocks nor "
       "/measured_data/spectral_data/angle_block",
       ": an object"},
      {"", "1e999", 6, "This number is too large", ", line 1, column 1"},
      {"", "[7, 8]", 5, "This file holds a list of products, and none is chosen", ": a list of 2"},
      {"", "[]", 5, "This file holds an empty list", ": a list of 0"},
      {"", "7", 13, "Here an object is wanted", ": 7"},
  };
  for (const char* date :
       {"2026-02-30T12:00:00", "2026-01-31T12:00:00Z", "2026-01-31", "2026-01-31T24:00:00",
        "2026-01-31T-1:00:00", "2026-01-31T23:60:00", "2026-01-31T23:59:60"}) {
    const std::string record = fmt::format("\"orv_record\": {{\"file_date\": \"{}\"}}, ", date);
    inputs.push_back({"\"name\"", record + "\"name\"", kTypeMismatch,
                      "Here a date such as 2026-01-31T12:00:00 is wanted",
                      fmt::format(", /orv_record/file_date: \"{}\"", date)});
  }
  for (const BadInput& input : inputs) {
    SCOPED_TRACE(input.text);
    const std::string text = input.part.empty() ? input.text : productWith(input.part, input.text);
    const auto raised = raisedBy([&] { ProductFile(text, "a.json").product(""); });
    EXPECT_EQ(raised.number, input.number);
    EXPECT_EQ(raised.description, input.description);
    EXPECT_EQ(raised.place, "a.json" + input.place);
  }
}

TEST(BadInputTest, PublishedValuesAreFractions) {
  for (const auto& [value, description] :
       {std::pair{"83.4", "This is no fraction. Values are between 0 and 1"},
        std::pair{"2.01", "This is no fraction. Values are between 0 and 1"}, std::pair{"2", ""},
        std::pair{"-1", "This is negative, and no such value is below 0"}}) {
    const ProductFile file(fmt::format(R"({{"spectral_data": {{"spectral_data": [
        {{"wavelength": 1, "T": 0, "Rf": 0, "Rb": 0}}]}},
        "integrated_results_summary": [{{"rfsol": {}, "tspf": 10.9}}]}})",
                                       value),
                           "a.json");
    const auto raised = raisedBy([&] { file.product(""); });
    EXPECT_EQ(raised.description, description);
    EXPECT_EQ(raised.place,
              raised.number == 0
                  ? ""
                  : fmt::format("a.json, /integrated_results_summary/0/rfsol: {}", value));
  }
}

TEST(BadInputTest, InAListThePlaceBeginsWithTheProduct) {
  const ProductFile file("[" + productWith("4.5", "true") + "]", "a.json");
  EXPECT_EQ(raisedBy([&] { file.product("/0"); }).place,
            "a.json, /0/measured_data/thickness: true");
  for (const char* pointer : {"/1", "/-1", "/0/name", "/x", ""}) {
    EXPECT_EQ(raisedBy([&] { file.product(pointer); }).number, kInvalidCall) << pointer;
  }
  const auto unknown = raisedBy([&] { file.angles("/1"); });
  EXPECT_EQ(unknown.description, "There is no such product in this file");
  EXPECT_EQ(unknown.place, "a.json, /1");
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
