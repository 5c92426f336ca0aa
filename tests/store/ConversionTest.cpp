// A file of Jet 3, converted, holds what it did.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "errors/Error.h"
#include "model/Raised.h"
#include "store/Check.h"
#include "store/Compact.h"
#include "store/Connection.h"
#include "store/FileContent.h"
#include "store/StoreError.h"
#include "store/jet/catalog/Database.h"
#include "support/Corpus.h"
#include "support/ReadFile.h"
#include "support/TemporaryFolder.h"

namespace orv::test {
namespace {

namespace fs = std::filesystem;
using namespace store;
using namespace store::jet;

fs::path accessFile(const std::string& name) {
  return corpusFolder() / "access" / name;
}

/// What a user may know of a file.
Content usersContent(const fs::path& file) {
  Content content = contentOf(file);
  std::erase_if(content, [](const auto& entry) {
    const std::string& subject = entry.first;
    return subject == "header" || subject.starts_with("MSys") || subject.ends_with(" numbers") ||
           subject.find(" index ") != std::string::npos;
  });
  return content;
}

TEST(Conversion, KeepsAllThatFilesOfAccess97Hold) {
  ORV_NEEDS_CORPUS();
  const TemporaryFolder folder;
  std::vector<fs::path> files = corpusFiles("access");
  std::erase_if(files, [](const fs::path& file) { return !file.string().ends_with("V1997.mdb"); });
  files.push_back(corpusFolder() / "foreign" / "nwind.mdb");
  for (const fs::path& file : files) {
    const std::string target = folder / file.filename().string();
    const CompactReport report = convertFile(file.string(), "", target, Losses::accept);
    EXPECT_EQ(report.sizeAfter, fs::file_size(target));
    EXPECT_EQ(Connection::openFile(target)->formatName(), "Jet 4");
    EXPECT_EQ(expectSound(target).remarkCount, 0u) << file;
    EXPECT_EQ(difference(usersContent(file), usersContent(target)), "") << file;
  }
}

TEST(Conversion, KeepsThePassword) {
  ORV_NEEDS_CORPUS();
  const TemporaryFolder folder;
  std::string content = readFile(accessFile("indexTestV1997.mdb"));
  std::size_t at = kJet3.header.password;  // what the header has of it is zeros under a mask
  for (const char letter : std::string_view("T\xfcr zu 97")) content[at++] ^= letter;
  std::ofstream(folder / "old.mdb", std::ios::binary) << content;
  const std::string password = "Tür zu 97";
  convertFile(folder / "old.mdb", password, folder / "new.mdb", Losses::refuse);
  EXPECT_THROW(Connection::openFile(folder / "new.mdb"), Error);
  EXPECT_EQ(Connection::openFile(folder / "new.mdb", password)->tableNames().size(), 3u);
}

/// Expects that a file is only converted when what is named may be lost.
void expectRefused(const std::string& path, const std::string& target, const std::string& what) {
  const Raised raised = raisedBy([&] { convertFile(path, "", target, Losses::refuse); });
  EXPECT_EQ(raised.number, kNotSupported);
  EXPECT_NE(raised.description.find(what), std::string::npos) << raised.description;
  EXPECT_FALSE(fs::exists(target));
}

/// A file of Jet 3 in which all texts of a table are sorted as in French.
std::string inFrench(const std::string& path, const char* name) {
  std::string content = readFile(path);
  const auto table = Database::open(path, "")->table(name);
  const std::size_t columns =
      table->definition().page * kJet3.pageSize + kJet3.definition.headerSize +
      table->definition().realIndexes.size() * kJet3.definition.realIndexEntry;
  for (std::size_t i = 0; i < table->definition().columns.size(); ++i) {
    content[columns + i * kJet3.column.size + kJet3.column.sortOrder] = 0x0c;  // 1036
  }
  return content;
}

TEST(Conversion, NamesWhatCannotBeKept) {
  ORV_NEEDS_CORPUS();
  const TemporaryFolder folder;
  const std::string forms = (corpusFolder() / "foreign" / "nwind.mdb").string();
  expectRefused(forms, folder / "forms.mdb", "form 'Main Switchboard'");
  const CompactReport report = convertFile(forms, "", folder / "forms.mdb", Losses::accept);
  EXPECT_EQ(report.lost.size(), 44u);
  ASSERT_FALSE(report.notes.empty());
  EXPECT_EQ(report.notes[0], "rights of users of a workgroup are left out: 108");

  // Text that is sorted as in French, of which the order of Jet 4 is not known.
  const std::string french = folder / "french.mdb";
  std::ofstream(french, std::ios::binary) << inFrench(forms, "Customers");
  const auto lost = convertFile(french, "", folder / "new.mdb", Losses::accept).lost;
  const auto isOfKey = [](const std::string& what) {
    return what.starts_with("index 'PrimaryKey' of table 'Customers'");
  };
  EXPECT_TRUE(std::ranges::any_of(lost, isOfKey));
  expectSound(folder / "new.mdb");
  EXPECT_EQ(contentOf(folder / "new.mdb").at("Customers rows"),
            contentOf(french).at("Customers rows"));
  for (const RelationInfo& relation : Connection::openFile(folder / "new.mdb")->relations()) {
    EXPECT_EQ(relation.enforced, relation.name != "CustomersOrders") << relation.name;
  }
}

TEST(Conversion, CountsCharactersThatTheCodePageDoesNotHave) {
  ORV_NEEDS_CORPUS();
  const TemporaryFolder folder;
  std::string content = readFile(accessFile("delTestV1997.mdb"));
  content[kJet3.header.codePage] ^= 1252 ^ 1253;  // Greek, which has nothing at 0xD2
  content.replace(content.rfind("vu"), 2, "\xD2\xD2");
  std::ofstream(folder / "greek.mdb", std::ios::binary) << content;
  expectRefused(folder / "greek.mdb", folder / "new.mdb",
                "a character of column 'a' of table 'Table', which the code page of the file does "
                "not have, a character of column 'b'");
}

TEST(Conversion, IsForFilesOfJet3Only) {
  ORV_NEEDS_CORPUS();
  const TemporaryFolder folder;
  expectRefused(accessFile("testV2000.mdb").string(), folder / "new.mdb", "Jet 3");
  EXPECT_THROW(compactFile(accessFile("testV1997.mdb").string(), "", folder / "new.mdb"), Error);
}

}  // namespace
}  // namespace orv::test
