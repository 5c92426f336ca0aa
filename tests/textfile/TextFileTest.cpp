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

TEST(TextFile, IsReplacedWhole) {
  const test::Folder folder;
  const auto file = folder.path() / "a.txt";
  folder.write("a.txt", "before, and longer");
  std::filesystem::permissions(file, std::filesystem::perms(0640));
  std::filesystem::create_symlink("a.txt", folder.path() / "link.txt");
  writeText((folder.path() / "link.txt").string(), "after");
  EXPECT_EQ(folder.read("a.txt"), "after");
  EXPECT_TRUE(std::filesystem::is_symlink(folder.path() / "link.txt"));
  EXPECT_EQ(std::filesystem::status(file).permissions(), std::filesystem::perms(0640));

  std::filesystem::create_directory(folder.path() / "folder");
  test::raisedBy([&] { writeText((folder.path() / "folder").string(), "x"); });
  const std::filesystem::directory_iterator entries(folder.path());
  EXPECT_EQ(std::distance(begin(entries), end(entries)), 3) << "nothing is left behind";
}

}  // namespace

}  // namespace orv::textfile
