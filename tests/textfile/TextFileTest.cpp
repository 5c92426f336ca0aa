#include <fmt/format.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "model/Raised.h"
#include "support/CaseFile.h"
#include "textfile/Folder.h"
#include "textfile/GivenEntries.h"
#include "textfile/Likeness.h"
#include "textfile/TextFile.h"

namespace orv::textfile {

namespace {

TEST(TextFile, IsUtf16WithItsMarkUtf8WhenValidElseWindows1252) {
  struct Case {
    std::string bytes;
    const char* text;
  };
  using namespace std::string_literals;
  const Case cases[] = {{"", ""},
                        {"\xFF\xFE\xE9\0\x22\x6F"s, "é漢"},
                        {"\xFE\xFF\0\xE9\x6F\x22"s, "é漢"},
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
  folder.write("clear.dat", "");
  EXPECT_EQ(findFile(folder.path(), "CLEAR.dat")->filename(), "Clear.DAT") << "the first of two";
  EXPECT_FALSE(findFile(folder.path(), "clear").has_value());
  EXPECT_FALSE(findFile(folder.path(), ".").has_value());
  EXPECT_EQ(test::raisedBy([&] { requireFile(folder.path() / "none", "a.txt"); }).description,
            "There is no file 'a.txt' in the folder '" + (folder.path() / "none").string() + "'");
}

TEST(TextFile, RefusesWhatIsNoTextOrCannotBeReadOrWritten) {
  const test::Folder folder;
  const auto refused = [&](const std::string& name, auto action) {
    auto raised = test::raisedBy([&] { action(folder.path() / name); });
    const std::string file = "The file '" + (folder.path() / name).string() + "' ";
    EXPECT_EQ(raised.description.substr(0, file.size()), file);
    return fmt::format("{} {}", raised.number, raised.description.substr(file.size()));
  };
  const auto read = [](const std::filesystem::path& path) { (void)readText(path); };
  const auto write = [](const std::filesystem::path& path) { writeText(path.string(), "x"); };
  folder.write("huge.txt", "");
  std::filesystem::resize_file(folder.path() / "huge.txt", 16 << 20);
  EXPECT_EQ(refused("huge.txt", read),
            "5 is not a text file in UTF-8, UTF-16 or Windows-1252: it holds zero bytes");
  std::filesystem::resize_file(folder.path() / "huge.txt", (16 << 20) + 1);
  EXPECT_EQ(refused("huge.txt", read),
            "5 is too large for a spectral text file: 16777217 bytes, where 16777216 are the most");
  EXPECT_EQ(refused("none.txt", read), "57 cannot be read: No such file or directory");
  EXPECT_EQ(refused("none/a.txt", write), "57 cannot be written: No such file or directory");
  EXPECT_EQ(refused("", write), "57 cannot be written: Is a directory");

  // The system gives this file a size, and no more than a line of it.
  const std::filesystem::path shorter = "/sys/kernel/uevent_seqnum";
  if (!std::filesystem::exists(shorter)) return;
  errno = ENOENT;  // of some call before
  EXPECT_EQ(test::raisedBy([&] { read(shorter); }).description,
            "The file '" + shorter.string() + "' cannot be read: Input/output error");
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

  // A name that a program of the same number has left; a new file is as the user's mask has it.
  folder.write(".orv-" + std::to_string(getpid()) + "-0", "left");
  const auto mask = umask(027);
  writeText((folder.path() / "new.txt").string(), "new");
  umask(mask);
  EXPECT_EQ(folder.read("new.txt"), "new");
  EXPECT_EQ(std::filesystem::status(folder.path() / "new.txt").permissions(),
            std::filesystem::perms(0640));
  std::filesystem::create_directory(folder.path() / "folder");
  test::raisedBy([&] { writeText((folder.path() / "folder").string(), "x"); });
  const std::filesystem::directory_iterator entries(folder.path());
  EXPECT_EQ(std::distance(begin(entries), end(entries)), 5) << "nothing is left behind";
}

TEST(TextFile, IsLikeAPaneOrAShading) {
  constexpr const char* kNames[] = {"neither", "pane", "shading"};
  for (const auto& cells : test::casesOf("textfile/likenesses.tsv", 2)) {
    EXPECT_EQ(kNames[static_cast<int>(likenessOf(cells[0]))], cells[1]) << cells[0];
  }
}

TEST(TextFile, TellsWhichEntriesItGives) {
  const test::Folder folder;
  folder.write("a.txt", "SI Microns 3 1\n\u00A0TIR= 0\n{ Type: Film }{ Material: }{ TIR }\n1 1\n");
  using Entries = std::set<std::string>;
  EXPECT_EQ(givenEntries(folder.path() / "a.txt"), Entries{"type"});
  EXPECT_EQ(givenEntries(folder.path() / "a.txt", true), (Entries{"type", "tir"}));
}

}  // namespace

}  // namespace orv::textfile
