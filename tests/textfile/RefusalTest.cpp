// Files that are refused: each error says where it is, what stands there and what to do.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <functional>

#include "model/Raised.h"
#include "support/CaseFile.h"
#include "textfile/Folder.h"
#include "textfile/ORV_TextFileInterface.h"

namespace orv {

namespace {

constexpr std::string_view kMark = "¦";

/// The place behind `text`: lines end with \n, \r or both, and columns are characters.
std::string placeBehind(const std::string& text) {
  int line = 1;
  int column = 1;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool ends = text[i] == '\n' ? i == 0 || text[i - 1] != '\r' : text[i] == '\r';
    line += ends ? 1 : 0;
    if (ends || text[i] == '\n') {
      column = 1;
    } else if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80) {
      ++column;
    }
  }
  return fmt::format(", line {}, column {}", line, column);
}

using Reading = std::function<void(const ORV_TextFileInterface&, const std::string& folder)>;

void expectRefused(const char* table, const Reading& reads) {
  const test::Folder folder;
  for (const auto& cells : test::casesOf(table, 5)) {
    std::string text = cells[0];
    std::string place = "a file.txt";
    if (const std::size_t mark = text.find(kMark); mark != std::string::npos) {
      text.erase(mark, kMark.size());
      place += placeBehind(text.substr(0, mark));
    }
    folder.write("a file.txt", text);
    const auto raised =
        test::raisedBy([&] { reads(ORV_TextFileInterface(), folder.path().string()); });
    EXPECT_EQ(std::to_string(raised.number), cells[1]) << text;
    EXPECT_EQ(raised.description, cells[2]) << text;
    EXPECT_EQ(raised.place, place + cells[3]) << text;
    EXPECT_EQ(raised.source, cells[4]) << text;
  }
}

TEST(Refusal, OfPaneFiles) {
  expectRefused("textfile/refused-panes.tsv", [](const auto& files, const std::string& folder) {
    files.ParseSpectralFile(folder, "a file.txt");
  });
}

TEST(Refusal, OfShadingFiles) {
  expectRefused("textfile/refused-shadings.tsv", [](const auto& files, const std::string& folder) {
    files.ParseSpectralFileShading(folder, "a file.txt");
  });
}

}  // namespace

}  // namespace orv
