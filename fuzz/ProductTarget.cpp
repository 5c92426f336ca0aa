// Reads files of products that are none, or damaged ones. What can be read is written, and must
// read back the same.

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "fuzz/Input.h"
#include "fuzz/TryTo.h"
#include "productfile/ProductFile.h"
#include "productfile/ProductWriter.h"

namespace {

using namespace orv::productfile;
using orv::fuzz::Input;
using orv::fuzz::tryTo;

constexpr std::array kSpecimens = {
    R"([{"name":"a","type":"glazing","subtype":"laminate","coated_side":"Back","nfrc_id":7,
 "measured_data":{"thickness":4.5,"conductivity":1,"tir_front":0,"emissivity_front":0.84},
 "integrated_results_summary":[{"calculation_standard_name":"NFRC","tfsol":0.5,"rfvis":null}],
 "spectral_data":{"spectral_data":[{"wavelength":0.3,"T":0.1,"Rf":0.2,"Rb":0.3},
 {"wavelength":2.5,"T":0.4,"Tb":0.5,"Rf":0.2,"Rb":0.3}]}},{"type":"shading","name":"b"}])",
    R"({"name":"a","manufacturer":"m","subtype":"COATED","hidden":false,"igdb_checksum":-5,
 "integrated_spectral_averages_summaries":[{"calculation_standard":"NFRC",
 "solar":{"transmittance_front":{"direct_direct":"0.5"}}}],"physical_properties":{"thickness":3,
 "optical_properties":{"optical_data":{"angle_blocks":[{"incidence_angle":0,"wavelength_data":[
 {"w":"0.3","specular":{"tf":"0.1","rf":"0.2","rb":"0.3"}}]}]}}},"orv_record":{"uses":["u"],
 "availability":[{"region":"r","product_name":"p"}],"layers":[{"file":"f","thickness":1,
 "flipped":true}],"file_date":"2026-01-31T12:00:00","emissivity_back":-1,"wavelength_unit":1,
 "integrated":{"tfuv":0.25},"spectral_pane":true,"0_30_60":true}})",
    R"({"product_name":"a","product_type":"coated-glass","unit_system":"IP","measured_data":{
 "thickness":0.25,"spectral_data":{"unit":"Nanometers","angle_block":[{"incidence_angle":8,
 "wavelength_data":[{"w":380,"tf":0.1,"rf":0.2,"rb":0.3},{"w":380,"tf":null}]}]}}})",
};

/// A product with places overwritten, or whatever the bytes are.
std::string textFrom(Input& input) {
  const std::size_t which = input.below(kSpecimens.size() + 1);
  if (which == kSpecimens.size()) return input.text(SIZE_MAX);
  std::string text = kSpecimens[which];
  while (!input.empty()) {
    const std::size_t place = input.below(text.size());
    const std::string patch = input.text(1 + input.below(8));
    text.replace(place, input.below(2) == 0 ? patch.size() : 1, patch);
  }
  return text;
}

void mustReadBack(const orv::GlazingData& pane) {
  const OrderedJson product = productOf(pane);
  const ProductFile file(formatProducts({product}), "back.json");
  const OrderedJson again = productOf(*file.product("").pane);
  if (again == product) return;
  std::fprintf(stderr, "%s\nreads back as\n%s\n", product.dump(1).c_str(), again.dump(1).c_str());
  std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  Input input(bytes, size);
  tryTo([&] {
    const ProductFile file(textFrom(input), "fuzz.json");
    for (const std::string& pointer : file.pointers()) {
      tryTo([&] {
        for (const std::int16_t angle : file.angles(pointer)) {
          mustReadBack(*file.product(pointer, angle).pane);
        }
      });
    }
  });
  return 0;
}
