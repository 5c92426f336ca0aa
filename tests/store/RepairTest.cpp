// What a damage does not touch, a repair saves; and the repaired file is sound.

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <regex>
#include <set>

#include "errors/Error.h"
#include "model/Raised.h"
#include "store/Check.h"
#include "store/Compact.h"
#include "store/Connection.h"
#include "store/FileContent.h"
#include "store/Jet3File.h"
#include "store/SampleFile.h"
#include "store/StoreError.h"
#include "store/SystemCalls.h"
#include "store/TableDesign.h"
#include "store/jet/catalog/Creation.h"
#include "store/jet/catalog/Database.h"
#include "store/jet/catalog/SecurityIds.h"
#include "store/jet/row/LongValue.h"
#include "support/Corpus.h"
#include "support/EncodedFile.h"
#include "support/MemoryFiles.h"
#include "support/ReadFile.h"
#include "support/TemporaryFolder.h"

namespace orv::store::jet {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;

/// A row of a table and the pages that it needs.
struct FoundRow {
  std::string text;
  std::set<PageNumber> pages;
};

struct FoundTable {
  std::set<PageNumber> pages;  ///< of its definition and its entry in the catalogue
  std::vector<FoundRow> rows;
};

/// The users' tables of a file, with all values as the rows have them.
std::map<std::string, FoundTable> readTables(const std::string& path) {
  std::map<std::string, FoundTable> tables;
  const auto database = Database::open(path, "");
  Pager& pager = database->pager();
  for (const CatalogEntry& entry : database->entries()) {
    if (entry.kind != CatalogEntry::Kind::table || entry.isSystem()) continue;
    const auto table = database->table(entry.name);
    FoundTable& found = tables[entry.name];
    found.pages = {kCatalogPage, table->definition().page, entry.row.page};
    found.pages.insert(table->definition().morePages.begin(), table->definition().morePages.end());
    for (TableScan scan = table->scan(); scan.next();) {
      FoundRow& row = found.rows.emplace_back();
      row.pages.insert(scan.rowId().page);
      const PageRef home = pager.read(scan.rowId().page);
      const DataPage page(pager.format(), home.view());
      if (page.slot(scan.rowId().row).kind == SlotKind::pointer) {
        row.pages.insert(load32(page.bytes(scan.rowId().row).data()) >> 8);
      }
      for (const Column& column : table->definition().columns) {
        const auto stored = scan.row().bytes(column);
        Bytes value(stored.begin(), stored.end());
        if (column.isLongValue() && !stored.empty()) {
          forEachLongValuePart(pager, stored, 0, [&](RowId part) { row.pages.insert(part.page); });
          value = readLongValue(pager, stored, 0);
        }
        row.text.append(value.begin(), value.end());
        row.text += scan.row().isNull(column) ? "-" : "|";
      }
    }
  }
  return tables;
}

/// A way to damage the content of a file.
using Damage = void (*)(std::string& content, std::mt19937& random);

/// Where a page begins that is not the first.
std::size_t anyPage(const std::string& content, std::mt19937& random) {
  const std::size_t pages = content.size() / kJet4.pageSize;
  return (1 + random() % (random() % 3 == 0 ? 12 : pages - 1)) * kJet4.pageSize;
}

void changeBytes(std::string& content, std::mt19937& random) {
  const std::size_t page = anyPage(content, random);
  for (unsigned i = 0; i <= random() % 3; ++i) {
    content[page + random() % kJet4.pageSize] ^= static_cast<char>(1 + random() % 255);
  }
}

/// Where pages tell what they are and have.
void changeHead(std::string& content, std::mt19937& random) {
  const std::size_t page = anyPage(content, random);
  content[page + random() % 400] ^= static_cast<char>(1 + random() % 255);
}

void clearPage(std::string& content, std::mt19937& random) {
  content.replace(anyPage(content, random), kJet4.pageSize, kJet4.pageSize, '\0');
}

void fillPage(std::string& content, std::mt19937& random) {
  const std::size_t page = anyPage(content, random);
  for (std::size_t i = 0; i < kJet4.pageSize; ++i) content[page + i] = static_cast<char>(random());
}

void copyPage(std::string& content, std::mt19937& random) {
  const std::string page = content.substr(anyPage(content, random), kJet4.pageSize);
  content.replace(anyPage(content, random), kJet4.pageSize, page);
}

void cutOff(std::string& content, std::mt19937& random) {
  const std::size_t half = content.size() / kJet4.pageSize / 2 * kJet4.pageSize;
  content.resize(half + random() % half);
}

/// What a file says of itself, its password among it.
void overwriteHeader(std::string& content, std::mt19937& random) {
  const std::size_t begin = random() % 0x78;
  for (std::size_t i = 0; i < 16 + random() % 0x80; ++i) {
    content[begin + i] = static_cast<char>(random());
  }
}

/// The pages that are not what they were.
std::set<PageNumber> damagedPages(const std::string& before, const std::string& after) {
  std::set<PageNumber> pages;
  for (std::size_t at = 0; at < before.size(); at += kJet4.pageSize) {
    const bool isSame =
        at < after.size() && before.compare(at, kJet4.pageSize, after, at, kJet4.pageSize) == 0;
    if (!isSame) pages.insert(static_cast<PageNumber>(at / kJet4.pageSize));
  }
  return pages;
}

bool meet(const std::set<PageNumber>& a, const std::set<PageNumber>& b) {
  return std::ranges::any_of(a, [&](PageNumber page) { return b.contains(page); });
}

/// Expects each row that no damaged page has a part of, and that the report tells of losses.
void expectSaved(const std::map<std::string, FoundTable>& before, const std::string& repaired,
                 const std::set<PageNumber>& damaged, const CompactReport& report) {
  const auto after = readTables(repaired);
  for (const auto& [name, table] : before) {
    if (meet(table.pages, damaged)) continue;
    const auto found = after.find(name);
    ASSERT_NE(found, after.end()) << name << " is gone";
    std::multiset<std::string> saved;
    for (const FoundRow& row : found->second.rows) saved.insert(row.text);
    for (const FoundRow& row : table.rows) {
      const auto same = saved.find(row.text);
      EXPECT_TRUE(same != saved.end() || meet(row.pages, damaged)) << "a sound row of " << name;
      if (same != saved.end()) saved.erase(same);
    }
    const bool tellsOfLosses = !report.isWhole() || !report.salvaged.empty();
    EXPECT_TRUE(found->second.rows.size() >= table.rows.size() || tellsOfLosses) << name;
  }
}

class Repair : public testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    if (isSample()) {
      orv::test::makeSampleFile(sound_);
    } else if (isConverted()) {
      orv::test::makeConvertedFile(sound_);
    } else {
      ORV_NEEDS_CORPUS();
      sound_ = test::corpusFolder() / GetParam();
    }
  }
  static bool isSample() { return std::string(GetParam()) == "sample"; }
  static bool isConverted() { return std::string(GetParam()) == "converted"; }

  const test::TemporaryFolder folder_;
  fs::path sound_ = folder_ / "sound.mdb";
};

TEST_P(Repair, SavesWhatADamageLeaves) {
  const std::string whole = test::readFile(sound_);
  const auto before = readTables(sound_.string());
  const std::string path = folder_ / "damaged.mdb";
  const std::string repaired = folder_ / "repaired.mdb";
  unsigned seed = 0;
  std::string told;
  const bool isLong = std::getenv("ORV_LONG_TESTS") != nullptr;
  const int times = isLong ? 300 : isSample() ? 4 : isConverted() ? 20 : 2;
  for (const Damage damage :
       {changeBytes, changeHead, clearPage, fillPage, copyPage, cutOff, overwriteHeader}) {
    for (int time = 0; time < times; ++time) {
      std::mt19937 random(++seed);
      SCOPED_TRACE("seed " + std::to_string(seed));
      std::string content = whole;
      damage(content, random);
      std::ofstream(path, std::ios::binary) << content;
      fs::remove(repaired);
      const test::Raised refusal =
          test::raisedBy([&] { told += test::textOf(checkFile(path, "")); });
      const CompactReport report = repairFile(path, "", repaired);
      told += std::to_string(refusal.number) + test::textOf(report);
      orv::test::expectSound(repaired);
      expectSaved(before, repaired, damagedPages(whole, content), report);
      if (isConverted()) {
        told += std::to_string(test::sumOf(test::describe(*Database::open(repaired, ""))));
      }
      if (HasFailure()) return;
    }
  }
  if ((isSample() || isConverted()) && !isLong) {
    EXPECT_EQ(test::sumOf(told), isSample() ? 0x48f047a2948f14dbu : 0x39c0e1bdf1cc450eu) << told;
  }
}

TEST_P(Repair, OfASoundFileLosesNothing) {
  std::string progress;
  const CompactReport report = repairFile(
      sound_.string(), "", folder_ / "repaired.mdb",
      [&](std::size_t done, std::size_t all) { progress += fmt::format("{}/{} ", done, all); });
  EXPECT_TRUE(report.isWhole() && report.salvaged.empty() && report.notes.empty());
  expectSaved(readTables(sound_.string()), folder_ / "repaired.mdb", {}, report);
  if (isSample()) {
    EXPECT_EQ(orv::test::difference(orv::test::contentOf(sound_),
                                    orv::test::contentOf(folder_ / "repaired.mdb")),
              "");
    EXPECT_EQ(progress, "64/308 128/308 218/308 282/308 ");
    orv::test::expectBytes(folder_ / "repaired.mdb", 0xa9160ecb2c874d94);
  }
}

INSTANTIATE_TEST_SUITE_P(Files, Repair,
                         testing::Values("sample", "converted", "sources/orvdata-3.0.0.mdb",
                                         "access/overflowTestV2000.mdb",
                                         "access/queryTestV2000.mdb", "access/indexTestV2000.mdb"),
                         [](const auto& info) {
                           return fs::path(info.param).stem().string().substr(0, 6);
                         });

class RepairOfTheSample : public testing::Test {
 protected:
  RepairOfTheSample() { orv::test::makeSampleFile(sound_); }

  /// A copy of so many bytes of the sample, with some of the first ones changed.
  std::string damagedCopy(std::size_t size, std::string_view beginning) {
    std::string content = test::readFile(sound_);
    content.resize(std::min(size, content.size()));
    content.replace(0, beginning.size(), beginning);
    std::ofstream(folder_ / "damaged.mdb", std::ios::binary) << content;
    return folder_ / "damaged.mdb";
  }

  const test::TemporaryFolder folder_;
  const std::string sound_ = folder_ / "sound.mdb";
};

TEST_F(RepairOfTheSample, KeepsThePasswordOrTellsThatItIsLost) {
  test::setPassword(sound_, "Sesame 7");
  const std::string unnamed = damagedCopy(SIZE_MAX, "no database");
  EXPECT_THROW(repairFile(unnamed, "", folder_ / "new.mdb"), Error);
  EXPECT_TRUE(repairFile(unnamed, "Sesame 7", folder_ / "named.mdb").isWhole());
  EXPECT_THROW(Database::open(folder_ / "named.mdb", ""), Error);
  // A password is what people can type: from the blank to the tilde.
  test::setPassword(unnamed, "Sesame 7");  // which takes it away
  for (const char last : {'\x1f', ' ', '~', '\x7f'}) {
    const std::string password{'a', last};
    const std::string path = folder_ / fmt::format("{}.mdb", static_cast<int>(last));
    const bool isKept = last == ' ' || last == '~';
    test::setPassword(unnamed, password);
    EXPECT_EQ(repairFile(unnamed, isKept ? password : "", path).isWhole(), isKept);
    test::setPassword(unnamed, password);
  }

  const std::string empty = damagedCopy(SIZE_MAX, std::string(kJet4.pageSize, '\0'));
  EXPECT_THAT(repairFile(empty, "", folder_ / "open.mdb").lost, ElementsAre(HasSubstr("password")));
  EXPECT_EQ(readTables(folder_ / "open.mdb").size(), 9u);
  // The ids of users go with the date of the new header.
  const SecurityIds ids =
      SecurityIds::of(*Database::open(folder_ / "open.mdb", "")->table("MSysObjects"));
  EXPECT_EQ(ids.admin(), SecurityIds::ofNewFiles().admin());
}

/// With another byte where its first pages say what they are, or no more than a header.
TEST_F(RepairOfTheSample, IsRefusedWhereNothingSaysThatItIsADatabase) {
  std::string beginning = test::readFile(sound_).substr(0, 3 * kJet4.pageSize);
  const auto refused = [&](std::size_t size = SIZE_MAX) {
    const std::string path = damagedCopy(size, size == SIZE_MAX ? beginning : "");
    const auto raised = test::raisedBy([&] { repairFile(path, "", folder_ / "new.mdb"); });
    EXPECT_EQ(fs::exists(folder_ / "new.mdb"), raised.number == 0);
    fs::remove(folder_ / "new.mdb");
    const std::string& text = raised.description;
    return raised.number == 0 ? "" : text.substr(text.find("' ") + 2);
  };
  const std::string nothing =
      "cannot be repaired: neither its header page nor the pages after it are those of an Access "
      "database of format Jet 4. Take a copy from before the damage.";
  EXPECT_EQ(refused(kJet4.pageSize - 1), nothing);
  EXPECT_EQ(refused(kJet4.pageSize), "");
  for (const std::size_t at : {4096, 4097, 8192, 8193}) {
    beginning[at] ^= 4;
    EXPECT_EQ(refused(), "") << at;  // the header is whole
    beginning[4] ^= 1;
    EXPECT_EQ(refused(), nothing) << at;
    beginning[at] ^= 4;
    EXPECT_EQ(refused(), "") << at;
    beginning[4] ^= 1;
  }
  beginning.replace(4, 17, std::string("Standard ACE DB\0\2", 17));
  EXPECT_EQ(refused(), "cannot be repaired: files of format ACE (Access 2007) are only read.");
  beginning[0x14] = 1;
  EXPECT_EQ(refused(), "");
}

/// Its users and owners are hidden anew; what is none of those that every file has stays.
TEST_F(RepairOfTheSample, KeepsTheIdsOfWorkgroups) {
  const auto owners = [](const std::string& path) {
    const auto database = Database::open(path, "");
    const SecurityIds ids = SecurityIds::of(*database->table("MSysObjects")), plain(0);
    std::vector<Value> found;
    for (const auto& [name, column] : {std::pair("MSysObjects", "Owner"), {"MSysACEs", "SID"}}) {
      const auto table = database->table(name);
      for (const auto& row : test::rowsOf(*table)) {
        const Value& owner = row[*table->definition().findColumn(column)];
        const auto* id = owner.getIf<Bytes>();
        const bool isHidden = id != nullptr && id->size() == SecurityIds::kSize;
        found.push_back(isHidden ? Value(ids.translate(*id, plain)) : owner);
      }
    }
    return found;
  };
  {
    const auto database = Database::open(sound_, "");
    const auto objects = database->table("MSysObjects");
    Transaction transaction(database->pager());
    const std::pair<const char*, Value> owned[] = {
        {"Pane", Value()}, {"Frame", Bytes(80, 'Z')}, {"Groups", Bytes(3, 'Z')}};
    for (const auto& [name, owner] : owned) {
      const RowId id = database->find(name)->row;
      std::vector<Value> values = test::valuesOf(*objects, objects->row(id).value());
      values[*objects->definition().findColumn("Owner")] = owner;
      objects->update(id, values);
    }
    transaction.commit();
  }
  const std::vector<Value> before = owners(sound_);
  const std::string damaged = damagedCopy(SIZE_MAX, std::string(kJet4.pageSize, '\0'));
  repairFile(damaged, "", folder_ / "new.mdb");
  EXPECT_EQ(owners(folder_ / "new.mdb"), before);
  EXPECT_TRUE(std::ranges::count(before, Value()) > 0);
}

TEST_F(RepairOfTheSample, TellsOfPagesThatTheDiskDoesNotGive) {
  struct stat sound {};
  ASSERT_EQ(::stat(sound_.c_str(), &sound), 0);
  const auto told = [&](const std::set<PageNumber>& bad) {
    test::SystemCalls calls;
    calls.isBad = [&](int file, off_t place) {
      struct stat there {};
      return ::fstat(file, &there) == 0 && there.st_ino == sound.st_ino &&
             bad.contains(static_cast<PageNumber>(place / 4096));
    };
    CompactReport report;
    const auto raised =
        test::raisedBy([&] { report = repairFile(sound_, "", folder_ / "new.mdb"); });
    calls.isBad = [](int, off_t) { return false; };
    if (raised.number != 0) return raised.description + '\n';
    const std::string lacks =
        test::difference(test::contentOf(sound_), test::contentOf(folder_ / "new.mdb"));
    test::expectSound(folder_ / "new.mdb");
    fs::remove(folder_ / "new.mdb");
    return test::textOf(report) + lacks + '\n';
  };
  std::string text = told({39, 41});
  for (const PageNumber page : {0, 1, 2, 3, 17, 18, 19, 20, 21, 37, 46, 111, 115, 120, 124, 152}) {
    text += fmt::format("{}: ", page) + told({page});
  }
  // Where the new file cannot be written, there is none.
  test::SystemCalls calls;
  calls.ends["pwrite"] = {0, 0, ENOSPC};
  const auto full = test::raisedBy([&] { repairFile(sound_, "", folder_ / "new.mdb"); });
  EXPECT_THAT(full.description, HasSubstr("No space left on device"));
  EXPECT_FALSE(fs::exists(folder_ / "new.mdb"));
  text = std::regex_replace(text, std::regex("/[^ ]*/"), "");
  EXPECT_EQ(test::sumOf(text), 0xd5cae06d1878bf19u) << text;
}

/// What is wrong with the new file is no damage of the old one.
TEST(RepairOfALargeFile, EndsWhereTheDiskFails) {
  test::MemoryFiles files;
  {
    const auto database = createDatabase("large.mdb");
    createTable(*database, test::design("Pictures", "id longInteger, picture ole", "id: id"));
    for (const int id : {1, 2, 3}) {
      database->table("Pictures")->insert(std::vector<Value>{id, Bytes(3'000'000, 0x5A)});
    }
  }
  const auto repaired = [] { return repairFile("large.mdb", "", "new.mdb"); };
  const std::size_t before = files.calls();
  repaired();
  const std::size_t calls = files.calls() - before;
  files.remove("new.mdb");
  for (std::size_t i = 0; i < 20; ++i) {
    files.failAt(i * calls / 20);
    EXPECT_EQ(test::raisedBy(repaired).number, kStoreFailure) << i;
    EXPECT_EQ(files.status("new.mdb"), std::nullopt) << i;
  }
}

/// What a log has is lost only where the file lacks it.
TEST_F(RepairOfTheSample, TellsOfTheChangesThatOnlyTheLogHas) {
  fs::copy_file(sound_, folder_ / "before.mdb");
  const auto connection = Connection::openFile(sound_);
  auto rows =
      connection->openRecordset("SELECT * FROM Groups", CursorType::keyset, LockType::optimistic);
  rows->setValue("GroupName", "Renamed");
  rows->update();
  fs::copy_file(sound_, folder_ / "after.mdb");
  fs::copy_file(sound_, folder_ / "shorter.mdb");
  fs::resize_file(folder_ / "shorter.mdb", fs::file_size(sound_) / 2);
  const std::pair<std::string, const char*> cases[] = {
      {"before",
       "parts of the last change, which only '~/before.mdb-log' has. To have them, put the "
       "first 4096 bytes of a copy from before the damage in place of those of the damaged file, "
       "with that log beside it, and open it (orv info)"},
      {"after", ""},
      {"shorter",
       "what only '~/shorter.mdb-log' has of the last change: it does not fit the file as it is "
       "now"}};
  for (const auto& [name, told] : cases) {
    const std::string damaged = folder_ / (name + ".mdb");
    fs::copy_file(sound_ + "-log", damaged + "-log");
    std::fstream(damaged, std::ios::in | std::ios::out | std::ios::binary) << "no database";
    const auto lost = repairFile(damaged, "", folder_ / (name + "-new.mdb")).lost;
    const std::string first = lost.empty() ? "" : lost[0];
    EXPECT_EQ(std::regex_replace(first, std::regex(folder_.path().string()), "~"), told);
  }
}

/// A log whose database has a sound header is brought into it first, which makes it longer here.
TEST_F(RepairOfTheSample, CompletesWhatALogHas) {
  const std::string before = folder_ / "before.mdb";
  fs::copy_file(sound_, before);
  const auto database = Database::open(sound_, "");
  database->table("Frame")->insert(
      std::vector<Value>{Value(), "large", 1.5, Value(), Bytes(50'000, 7)});
  fs::copy_file(sound_ + "-log", before + "-log");
  const CompactReport report = repairFile(before, "", folder_ / "new.mdb");
  EXPECT_EQ(report.sizeBefore, fs::file_size(sound_));
  EXPECT_EQ(test::difference(test::contentOf(sound_), test::contentOf(folder_ / "new.mdb")), "");
}

/// The file ends one byte before the first row of a page does.
TEST_F(RepairOfTheSample, TakesTheRowsThatTheLastPartOfAPageHas) {
  const auto before = readTables(sound_);
  const std::string table = "Pane_spectral_data";
  PageNumber last = 0;
  for (const FoundRow& row : before.at(table).rows) last = std::max(last, *row.pages.begin());
  const std::string cut = damagedCopy((last + 1) * kJet4.pageSize - 1, "");
  const CompactReport report = repairFile(cut, "", folder_ / "repaired.mdb");
  orv::test::expectSound(folder_ / "repaired.mdb");
  const std::size_t left = before.at(table).rows.size() - 1;
  EXPECT_EQ(readTables(folder_ / "repaired.mdb").at(table).rows.size(), left);
  EXPECT_THAT(test::textOf(report), HasSubstr(fmt::format("{}: {} saved, 1 lost", table, left)));

  // Of a definition all is there, or nothing.
  const PageNumber page = Database::open(sound_, "")->table("Groups")->definition().page;
  const std::string content = test::readFile(sound_);
  const auto length = static_cast<unsigned char>(content[page * kJet4.pageSize + 8]) +
                      256U * static_cast<unsigned char>(content[page * kJet4.pageSize + 9]) + 8;
  for (const std::size_t there : {1U, 62U, 63U, length - 1, length}) {
    const std::string part = damagedCopy(page * kJet4.pageSize + there, "");
    const std::string target = folder_ / fmt::format("{}.mdb", there);
    repairFile(part, "", target);
    test::expectSound(target);
    EXPECT_EQ(readTables(target).contains("Groups"), there == length);
  }

  // Of an encoded page a part says nothing.
  const std::string whole = damagedCopy(SIZE_MAX, "");
  test::encodePages(*FileSystem::system().open(whole, FileSystem::Open::existing), 0x1234567);
  fs::resize_file(whole, fs::file_size(whole) - 100);
  EXPECT_THAT(repairFile(whole, "", folder_ / "decoded.mdb").lost,
              ElementsAre(HasSubstr("3996 bytes")));
}

}  // namespace
}  // namespace orv::store::jet
