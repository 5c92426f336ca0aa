// The short form of fuzzing, for every build of the tests: random inputs, always the same ones.
// With arguments it runs the inputs in those files, as a fuzzer does to repeat a finding.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

namespace {

std::vector<std::uint8_t> randomInput(std::mt19937& random) {
  std::vector<std::uint8_t> input(std::uniform_int_distribution<std::size_t>(1, 300)(random));
  for (std::uint8_t& byte : input) {
    byte = static_cast<std::uint8_t>(random());
  }
  return input;
}

}  // namespace

int main(int count, char** arguments) {
  for (int i = 1; i < count; ++i) {
    std::ifstream file(arguments[i], std::ios::binary);
    const std::vector<char> input{std::istreambuf_iterator<char>(file), {}};
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
  }
  if (count > 1) {
    return 0;
  }
  constexpr int kInputs = 150;
  std::mt19937 random(20'240'229);
  for (int i = 0; i < kInputs; ++i) {
    const std::vector<std::uint8_t> input = randomInput(random);
    LLVMFuzzerTestOneInput(input.data(), input.size());
  }
  std::printf("%d random inputs raised nothing but errors.\n", kInputs);
}
