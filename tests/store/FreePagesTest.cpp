// Maps of free pages as other programs leave them: no page that is in use is taken for a free one.

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <functional>
#include <map>

#include "model/Raised.h"
#include "store/Check.h"
#include "store/FileContent.h"
#include "store/StoreError.h"
#include "store/TableDesign.h"
#include "store/jet/catalog/Creation.h"
#include "store/jet/compact/CopyTarget.h"
#include "store/jet/file/MemoryFile.h"
#include "store/jet/page/DataPage.h"
#include "store/jet/page/FreePages.h"
#include "store/jet/page/PageCache.h"
#include "store/jet/page/UsageMap.h"
#include "support/MemoryFiles.h"

namespace orv::store::jet {
namespace {

constexpr std::size_t kOwnRow = 69;  // bytes of a map's row in new files

/// A form of the map: gives the map's row for a file, whose bits are in a row from page 0 on.
struct Form {
  const char* name;
  std::uint64_t sum;  ///< of the bytes of the file in the end
  std::function<Bytes(Pager&, Bytes)> rewrite;
  bool lies = false;
};

Bytes resized(Bytes row, std::size_t size) {
  row.resize(size, 0xff);
  return row;
}

Bytes pointers(std::size_t size, const std::map<std::size_t, PageNumber>& places) {
  Bytes row(size, 0);
  row[0] = 1;
  for (const auto& [index, page] : places) store32(&row[1 + 4 * index], page);
  return row;
}

/// The first page of rows of the table: no page of bits.
PageNumber pageOfRows(Pager& pager) {
  PageNumber page = FreePages::kFirst;
  while (pager.read(page).type() != PageType::data) ++page;
  return page;
}

const std::vector<Form> kForms{
    {"AsItIs", 0xaba439915ddc6f97, [](Pager&, Bytes row) { return row; }},
    {"LengthenedRow", 0xab83b16e4cbfd5eb,
     [](Pager&, const Bytes& row) { return resized(row, row.size() + 32); }},
    {"ShortRow", 0xf206b33b2874354a, [](Pager&, const Bytes& row) { return resized(row, 5 + 16); }},
    {"BeginsPastTheFirstPages", 0x44469555a87b9a9f,
     [](Pager& pager, Bytes row) {
       const PageNumber start = pager.pageCount() / 2 / 8 * 8;
       std::rotate(row.begin() + 5, row.begin() + 5 + start / 8, row.end());
       std::fill(row.end() - start / 8, row.end(), 0xff);
       store32(&row[1], start);
       return row;
     }},
    {"BeginsPastTheFile", 0x56873f3b3cc89ce5,
     [](Pager& pager, Bytes row) {
       store32(&row[1], pager.pageCount() / 8 * 8 + 8);
       std::fill(row.begin() + 5, row.end(), 0xff);
       return row;
     }},
    {"NullPointers", 0x56873f3b3cc89ce5,
     [](Pager&, const Bytes& row) { return pointers(row.size(), {}); }},
    {"PointersThatWereBits", 0x19213b879d687fdb,
     [](Pager&, const Bytes& row) {
       return pointers(row.size() + 32, {{0, 0xffffff80}, {3, 1000000}, {24, 0xffffff80}});
     }},
    {"PointerToAPageOfRows", 0x56873f3b3cc89ce5,
     [](Pager& pager, const Bytes& row) {
       return pointers(row.size(), {{0, pageOfRows(pager)}});
     }},
    {"AllPagesAreFree", 0x9f0a1b0658bd2595,
     [](Pager& pager, const Bytes& row) {
       const PageNumber page = pager.append();
       std::fill_n(pager.modify(page), pager.format().pageSize, std::uint8_t{0xff});
       store32(pager.modify(page), 0x0105);
       return pointers(row.size(), {{0, page}});
     },
     true},
};

class ForeignFreePages : public testing::TestWithParam<Form> {
 protected:
  void SetUp() override {
    createTable(*createDatabase(test::kFile),
                test::design("Notes", "id longInteger, note memo", "id primary: id"));
    open();
    Transaction filled(database_->pager());
    for (int id = 0; id < 300; ++id) insert(id);
    for (int id = 0; id < 300; id += 10) erase(id);
    filled.commit();
    change([&] {
      Pager& pager = database_->pager();
      DataPageEditor maps(pager.format(), pager.modify(FreePages::kPlace.page),
                          FreePages::kPlace.page);
      const auto old = maps.rowBytes(FreePages::kPlace.row);
      ASSERT_EQ(old.size(), kOwnRow);
      ASSERT_LT(pager.pageCount(), 8 * (kOwnRow - 5));
      const Bytes row = GetParam().rewrite(pager, {old.begin(), old.end()});
      DataPageEditor(pager.format(), pager.modify(FreePages::kPlace.page), FreePages::kPlace.page)
          .replace(FreePages::kPlace.row, row, SlotKind::row);
    });
  }

  void open() {
    database_ = Database::open(test::kFile, "");
    table_ = database_->table("Notes");
  }
  /// Makes a change, after which all is as before but for it.
  void change(const std::function<void()>& work) {
    Transaction transaction(database_->pager());
    work();
    transaction.commit();
    expectSound();
  }

  static std::string note(int id) { return std::string(1900, static_cast<char>('a' + id % 26)); }
  void insert(int id) { rows_[id] = table_->insert(std::vector<Value>{id, note(id)}); }
  void erase(int id) {
    table_->erase(rows_.at(id));
    rows_.erase(id);
  }

  void expectSound() {
    open();
    for (const auto& [id, place] : rows_) {
      const RowView row = table_->row(place).value();
      ASSERT_EQ(row.value(table_->definition().columns[0]), Value(id));
      ASSERT_EQ(row.value(table_->definition().columns[1]), Value(note(id))) << id;
    }
    EXPECT_EQ(test::rowsOf(*table_).size(), rows_.size());
    const CheckReport report = checkFile(test::kFile, "");
    for (const CheckFinding& fault : report.faults) {
      EXPECT_TRUE(GetParam().lies && fault.page == 1 && fault.row == 0) << fault.toText();
    }
    EXPECT_EQ(report.faultCount, GetParam().lies ? 1U : 0U);
  }

  test::MemoryFiles files_;
  std::shared_ptr<Database> database_;
  std::shared_ptr<Table> table_;
  std::map<int, RowId> rows_;
};

// Grows the file past the end of its bitmap, and frees pages that the map has no bit for.
TEST_P(ForeignFreePages, GiveNoPageThatIsInUse) {
  change([&] {
    for (int id = 1; id < 300; id += 10) erase(id);
    for (int id = 1000; id < 1100; ++id) insert(id);
  });
  change([&] {
    for (int id = 1100; id < 1400; ++id) insert(id);
  });
  EXPECT_GT(database_->pager().pageCount(), 8 * (kOwnRow - 5));
  change([&] {
    while (!rows_.empty()) erase(rows_.begin()->first);
  });
  change([&] {
    for (int id = 0; id < 200; ++id) insert(id);
  });
  test::expectBytes(test::kFile, GetParam().sum);
}

TEST(FreePages, TheFirstPageBeyondTheBitmapLosesNoFreePage) {
  test::MemoryFiles files;
  const auto database = createDatabase(test::kFile);
  Pager& pager = database->pager();
  Transaction transaction(pager);
  FreePages free(pager);
  const PageNumber first = pager.append();
  const PageNumber second = pager.append();
  while (pager.pageCount() < 8 * (kOwnRow - 5)) free.remove(pager.append());
  free.add(first);
  free.add(second);
  const PageNumber beyond = pager.append();
  free.remove(beyond);
  EXPECT_FALSE(free.contains(beyond));
  EXPECT_NE(free.contains(first), free.contains(second)) << "one of them has the bits";
  EXPECT_EQ(pager.pageCount(), beyond + 1);
  transaction.commit();
}

/// Pages are listed in a row's bits where those reach, else on pages of bits: as they are added,
/// and as a copy lists them.
TEST(UsageMap, ListsPagesAtTheBoundsOfItsBits) {
  test::MemoryFiles files;
  const auto database = createDatabase(test::kFile);
  createTable(*database, test::design("T", "a byte"));
  Pager& pager = database->pager();
  const Transaction undone(pager);
  const RowId place = database->table("T")->definition().ownedPages;
  const PageRef header = pager.read(0);
  Bytes copy;
  PageNumber copied = 0;
  CopyTarget target(std::make_unique<MemoryFile>(copy), "copy.mdb", {header.data(), header.size()},
                    [&](PageNumber pages) { copied = pages; });
  const std::pair<std::vector<PageNumber>, bool> cases[] = {
      {{}, false},        {{13, 14}, false},
      {{9, 519}, false},  {{9, 520}, true},
      {{519, 9}, false},  {{520, 9}, true},
      {{3, 32735}, true}, {{3, 32735, 32736, 70000, 556511}, true}};
  const auto listed = [](const UsageMap& map) {
    std::vector<PageNumber> pages;
    for (auto page = map.next(0, kEndOfPages); page; page = map.next(*page + 1, kEndOfPages))
      pages.push_back(*page);
    return pages;
  };
  std::vector<std::pair<RowId, std::vector<PageNumber>>> copies;
  for (auto [pages, hasPointers] : cases) {
    const Savepoint emptied(pager);
    UsageMap map(pager, place);
    for (const PageNumber page : pages) map.add(page);
    std::ranges::sort(pages);
    EXPECT_EQ(listed(map), pages);
    EXPECT_EQ(MapBits(pager, place, MapBits::BadPointer::damage).hasPointers(), hasPointers);
    copies.emplace_back(target.addMap(pages), pages);
  }
  target.finish();
  EXPECT_EQ(copied, target.pager().pageCount());
  for (const auto& [map, pages] : copies) EXPECT_EQ(listed({target.pager(), map}), pages);
  UsageMap full(pager, place);
  full.add(3);
  EXPECT_EQ(test::raisedBy([&] { full.add(17 * 32736); }).number, kCorruptFile);
  EXPECT_EQ(test::raisedBy([&] { full.add(17 * 32736 - 1); }).number, 0);
}

/// A change is undone whole when a part of it has failed, or when it is given up behind its parts.
TEST(Pager, ATransactionThatFailedInPartIsNotCommitted) {
  test::MemoryFiles files;
  const auto database = createDatabase(test::kFile);
  Pager& pager = database->pager();
  EXPECT_EQ(test::raisedBy([&] { pager.modify(2); }).number, kStoreFailure);
  {
    Transaction whole(pager);
    pager.append();
    { const Transaction failed(pager); }
    EXPECT_EQ(test::raisedBy([&] { whole.commit(); }).number, kStoreFailure);
  }
  const std::uint64_t size = files.size(test::kFile);
  {
    const Transaction given(pager);
    Transaction part(pager);
    pager.append();
    part.commit();
    EXPECT_EQ(files.size(test::kFile), size) << "a part is written with the whole";
  }
  Transaction next(pager);
  const PageNumber page = pager.append();
  EXPECT_EQ(page * kJet4.pageSize, size);
  next.commit();
  EXPECT_EQ(pager.pageCount(), page + 1);
  EXPECT_EQ(files.size(test::kFile), (page + 1) * kJet4.pageSize);
}

/// Pages are put (with a letter), looked for, and all shown (?) or forgotten (0).
TEST(PageCache, GivesUpThePageThatWasUsedLongestAgo) {
  PageCache cache(3);
  std::string kept;
  for (const std::string step :
       {"3a", "1a", "2a", "?", "4b", "?", "2c", "2", "5d", "6e", "?", "0", "?", "5f", "?"}) {
    const auto page = static_cast<PageNumber>(step[0] - '0');
    if (step.size() == 2) cache.put(page, std::make_shared<std::uint8_t[]>(1, step[1]));
    if (step.size() == 1 && page < 7) cache.find(page);
    if (step == "0") cache.clear();
    if (step == "?") kept += ' ';
    for (PageNumber each = 1; step == "?" && each < 7; ++each) {
      if (const PageBytes bytes = cache.find(each)) kept += fmt::format("{}{:c}", each, bytes[0]);
    }
  }
  EXPECT_EQ(kept, " 1a2a3a 2a3a4b 2c5d6e  5f");
}

const auto nameOf = [](const auto& info) { return info.param.name; };
INSTANTIATE_TEST_SUITE_P(Forms, ForeignFreePages, testing::ValuesIn(kForms), nameOf);

}  // namespace
}  // namespace orv::store::jet
