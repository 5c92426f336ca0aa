#include <gtest/gtest.h>

#include <sstream>

#include "cli/ShownStream.h"

namespace orv::cli {
namespace {

TEST(ShownStreamTest, CharactersAndMuchTextArePassedOnWhole) {
  std::stringbuf end;
  std::ostream out(&end);
  {
    const ShownStream shown(out);
    out << "ab" << std::flush;
    EXPECT_EQ(end.str(), "ab");
    std::string passed = "ab";
    for (const std::string character : {"c", "é", "€", "😀", "\u07FF", "\u0800", "\U00010000"}) {
      for (std::size_t i = 0; i < character.size(); ++i) {
        EXPECT_EQ(end.str(), passed) << i << character;
        out << character[i] << std::flush;
      }
      EXPECT_EQ(end.str(), passed += character);
    }
    out << "\x1b\x80" << std::flush << std::string(8000, 'x');
    EXPECT_EQ(end.str(), passed += "\\u001b\\x80") << "it waits for more";
    out << std::string(192, 'y');
    EXPECT_EQ(end.str(), passed) << "no more than 8192 bytes";
    out << 'z';
    EXPECT_EQ(end.str(), passed += std::string(8000, 'x') + std::string(192, 'y') + 'z');
    out << "\xE2\x82";
  }
  EXPECT_TRUE(end.str().ends_with("z\\xe2\\x82")) << "what never becomes a character";
  out << "\x1b";
  EXPECT_EQ(end.str().back(), '\x1b');
}

}  // namespace
}  // namespace orv::cli
