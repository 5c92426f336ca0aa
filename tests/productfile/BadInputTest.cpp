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
  std::string text;
  std::int32_t number;
  std::string description;
  std::string place;
};

const std::string kRows = "/measured_data/spectral_data/angle_block/0/wavelength_data";

TEST(BadInputTest, IsToldWithItsPlace) {
  const std::vector<BadInput> inputs = {
      {"{\n \"näme\": x}", kInvalidCall,
       "This is no JSON: syntax error while parsing value - "
       "invalid literal; last read: '\"näme\": x'",
       "a.json, line 2, column 10"},
      {"", kInvalidCall,
       "This is no JSON: syntax error while parsing value - unexpected end of "
       "input; expected '[', '{', or a literal",
       "a.json, line 1, column 1"},
      {"{\"name\": \"\xFF\"}", kInvalidCall,
       "This is no JSON: syntax error while parsing value - "
       "invalid string: ill-formed UTF-8 byte; last read: '\"\xFF'",
       "a.json, line 1, column 11"},
      {productWith("4.5", "NaN"), kInvalidCall,
       "This is no JSON: syntax error while parsing value "
       "- invalid literal; last read: '\"thickness\": N'",
       "a.json, line 2, column 36"},
      {productWith("4.5", "1e999"), kOverflow, "This number is too large",
       "a.json, line 2, column 36"},
      {productWith("4.5", "1e50"), kOverflow, "Too large a number",
       "a.json, /measured_data/thickness: 1e+50"},
      {productWith("4.5", "\"NaN\""), kTypeMismatch, "Here a number is wanted",
       "a.json, /measured_data/thickness: \"NaN\""},
      {productWith("4.5", "-4.5"), kInvalidCall, "This is negative, and no such value is below 0",
       "a.json, /measured_data/thickness: -4.5"},
      {productWith("4.5", "[4, 5]"), kTypeMismatch, "Here a number is wanted",
       "a.json, /measured_data/thickness: a list of 2"},
      {productWith("Front", "Inside"), kInvalidCall,
       "No side of a pane. It is one of Front, Back, Both, Neither",
       "a.json, /coating_properties/coated_side: \"Inside\""},
      {productWith("Microns", "Furlongs"), kInvalidCall,
       "No unit of wavelengths. It is Microns or Nanometers",
       "a.json, /measured_data/spectral_data/unit: \"Furlongs\""},
      {productWith("Microns", "Nanometers"), kInvalidCall,
       "No wavelength in nanometers, which this file says it has",
       "a.json, " + kRows + "/0/w: 0.3"},
      {productWith("0.3", "300"), kInvalidCall,
       "No wavelength in microns, which products of this form have",
       "a.json, " + kRows + "/0/w: 300"},
      {productWith("0.3", "-0.3"), kInvalidCall,
       "No wavelength in microns, which products of this form have",
       "a.json, " + kRows + "/0/w: -0.3"},
      {productWith("\"w\"", "\"x\""), kInvalidCall, "A value is missing",
       "a.json, " + kRows + "/0/w: null"},
      {productWith("0.2", "20"), kInvalidCall, "This is no fraction. Values are between 0 and 1",
       "a.json, " + kRows + "/0/tf: 20"},
      {productWith("\"tf\"", "\"T\""), kInvalidCall,
       "No row has all of transmittance and both reflectances",
       "a.json, " + kRows + ": a list of 1"},
      {productWith("10", "12.5"), kTypeMismatch, "Here a whole number is wanted",
       "a.json, /measured_data/spectral_data/angle_block/0/incidence_angle: 12.5"},
      {productWith("10", "-2147483649"), kOverflow, "Too large a number",
       "a.json, /measured_data/spectral_data/angle_block/0/incidence_angle: -2147483649"},
      {productWith("\"name\"", "\"orv_record\": {\"hidden\": 1}, \"name\""), kTypeMismatch,
       "Here true or false is wanted", "a.json, /orv_record/hidden: 1"},
      {productWith("angle_block", "angles"), kInvalidCall,
       "This is no product of a known form: there is neither /spectral_data/spectral_data, "
       "/physical_properties/optical_properties/optical_data/angle_blocks nor "
       "/measured_data/spectral_data/angle_block",
       "a.json: an object"},
      {"[]", kInvalidCall, "This file holds an empty list", "a.json: a list of 0"},
      {"7", kTypeMismatch, "Here an object is wanted", "a.json: 7"},
  };
  for (const BadInput& input : inputs) {
    SCOPED_TRACE(input.text);
    const auto raised = raisedBy([&] { ProductFile(input.text, "a.json").product(""); });
    EXPECT_EQ(raised.number, input.number);
    EXPECT_EQ(raised.description, input.description);
    EXPECT_EQ(raised.place, input.place);
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
}

TEST(BadInputTest, FilesThatCannotBeReadAndDataThatAreNotThereAreRefused) {
  const Folder folder;
  const auto path = [&](const char* name) { return folder.path() / name; };
  folder.write("large.json", "");
  std::filesystem::resize_file(path("large.json"), productfile::kLargestFile + 1);
  const auto large = raisedBy([&] { ProductFile::read(path("large.json")); });
  EXPECT_EQ(large.number, kInvalidCall);
  EXPECT_NE(large.description.find("has 268435457 bytes, and 268435456 are the most"),
            std::string::npos)
      << large.description;
  EXPECT_EQ(raisedBy([&] { ProductFile::read(path("none.json")); }).number, kDeviceIo);

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
    EXPECT_EQ(raised.description.substr(0, 37), "Lists and objects are within each oth");
    EXPECT_EQ(raised.place.substr(0, 25), "deep.json, line 1, column");
  }
}

}  // namespace
}  // namespace orv::test
