#include <gtest/gtest.h>

#include "model/Raised.h"
#include "textfile/Folder.h"
#include "textfile/TextFile.h"

namespace orv::textfile {

namespace {

TEST(TextFile, IsUtf8WhenValidElseWindows1252) {
  struct Case {
    const char* bytes;
    const char* text;
  };
  const Case cases[] = {{"", ""},
                        {"Caf\xC3\xA9 \xC2\xAE", "Café ®"},
                        {"\xEF\xBB\xBF"
                         "BOM",
                         "BOM"},
                        {"Caf\xE9 \xAE \x80 \x99", "Café ® € ™"},
                        {"\xC3", "Ã"}};
  const test::Folder folder;
  for (const Case& c : cases) {
    folder.write("a.txt", c.bytes);
    EXPECT_EQ(readText(folder.path() / "a.txt"), c.text);
  }
}

TEST(TextFile, IsFoundWithoutRegardToCase) {
  const test::Folder folder;
  folder.write("Clear.DAT", "");
  folder.write("Ärger.txt", "");
  EXPECT_EQ(findFile(folder.path(), "Clear.DAT")->filename(), "Clear.DAT");
  EXPECT_EQ(findFile(folder.path(), "CLEAR.dat")->filename(), "Clear.DAT");
  EXPECT_EQ(findFile(folder.path(), "äRGER.txt")->filename(), "Ärger.txt");
  EXPECT_FALSE(findFile(folder.path(), "clear").has_value());
  EXPECT_FALSE(findFile(folder.path(), ".").has_value());
  EXPECT_EQ(test::raisedBy([&] { requireFile(folder.path() / "none", "a.txt"); }).description,
            "There is no file 'a.txt' in the folder '" + (folder.path() / "none").string() + "'");
}

TEST(TextFile, RefusesWhatIsNoTextOrCannotBeWritten) {
  const test::Folder folder;
  folder.write("binary.txt", std::string_view("a\0b", 3));
  const auto binary = test::raisedBy([&] { readText(folder.path() / "binary.txt"); });
  EXPECT_EQ(binary.number, kInvalidCall);
  EXPECT_NE(binary.description.find("is not a text file"), std::string::npos);

  folder.write("huge.txt", "");
  std::filesystem::resize_file(folder.path() / "huge.txt", kLargestFile + 1);
  const auto huge = test::raisedBy([&] { readText(folder.path() / "huge.txt"); });
  EXPECT_NE(huge.description.find("is too large"), std::string::npos);

  const auto unwritable =
      test::raisedBy([&] { writeText(folder.withSeparator() + "none/a.txt", "x"); });
  EXPECT_EQ(unwritable.number, kDeviceIo);
  EXPECT_NE(unwritable.description.find("none/a.txt"), std::string::npos);
}

}  // namespace

}  // namespace orv::textfile
