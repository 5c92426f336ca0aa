// The B-tree of an index against a sorted set, and against damage.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <random>
#include <ranges>
#include <set>

#include "model/Raised.h"
#include "store/FileContent.h"
#include "store/StoreError.h"
#include "store/jet/index/EntrySorter.h"
#include "store/jet/index/IndexPageEditor.h"
#include "store/jet/index/IndexRun.h"
#include "store/jet/index/IndexTree.h"
#include "store/jet/page/DataPage.h"
#include "store/jet/page/PageAllocator.h"
#include "store/jet/page/Rc4.h"
#include "store/jet/page/UsageMap.h"
#include "support/MemoryFiles.h"

namespace orv::store::jet {
namespace {

constexpr PageNumber kMaps = 1;  ///< of free pages (row 0) and of the index's pages (row 1)
constexpr PageNumber kRoot = 2;
constexpr PageNumber kTable = 77;  ///< the page of the table's definition, which nobody reads
constexpr std::size_t kPageSize = 4096;

/// A file of three pages: header, maps, and the empty root of an index.
Bytes smallestFile() {
  Bytes file(3 * kPageSize);
  const char name[] = "\0\1\0\0Standard Jet DB";
  std::memcpy(file.data(), name, sizeof name);
  file[0x14] = 1;
  applyRc4(kHeaderKey, std::span(file).subspan(kJet4.header.masked, kJet4.header.maskedSize));
  DataPageEditor maps(kJet4, &file[kMaps * kPageSize], kMaps);
  maps.initialize(0);
  maps.add(UsageMap::emptyRow(kJet4));
  maps.add(UsageMap::emptyRow(kJet4));
  IndexPageEditor::initialize(kJet4, &file[kRoot * kPageSize], kTable, 0);
  return file;
}

struct Entry {
  Bytes key;
  RowId row;

  /// The order of the bytes, the row pointer taken in.
  bool operator<(const Entry& other) const { return bytes() < other.bytes(); }
  bool operator==(const Entry& other) const = default;
  Bytes bytes() const {
    Bytes all = key;
    for (const int shift : {16, 8, 0}) all.push_back(static_cast<std::uint8_t>(row.page >> shift));
    all.push_back(row.row);
    return all;
  }
};

class IndexTreeTest : public testing::Test {
 protected:
  void SetUp() override {
    Pager::createFile("index.mdb", smallestFile());
    pager_ = Pager::open("index.mdb");
    transaction_.emplace(*pager_);
    index_.root = kRoot;
    index_.ownedPages = {kMaps, 1};
  }

  IndexTree tree() { return {*pager_, index_, kTable}; }
  IndexPageEditor root() { return {*pager_, kRoot}; }
  void insert(const Entry& entry) {
    EXPECT_EQ(tree().insert(entry.key, entry.row), addToModel(entry));
  }
  void erase(Entry entry) {  // which may be one of the model
    EXPECT_EQ(tree().erase(entry.key, entry.row), takeFromModel(entry));
  }

  static constexpr auto kNoChange = IndexTree::Change::none;
  /// What adding or erasing an entry comes to.
  IndexTree::Change addToModel(const Entry& entry) {
    if (!model_.insert(entry).second) return kNoChange;
    keys_.insert(entry.key);
    return changeOf(entry);
  }
  IndexTree::Change takeFromModel(const Entry& entry) {
    const IndexTree::Change change = changeOf(entry);
    if (model_.erase(entry) == 0) return kNoChange;
    keys_.erase(keys_.find(entry.key));
    return change;
  }
  /// Whether an entry that is there is the only one of its key.
  IndexTree::Change changeOf(const Entry& entry) const {
    return keys_.count(entry.key) == 1 ? IndexTree::Change::key : IndexTree::Change::entry;
  }

  /// Checks cursors both ways against the model. The form of trees is for checkFile() to judge.
  void check() {
    std::vector<Entry> forward, backward;
    const auto note = [](std::vector<Entry>& found, const IndexCursor& at) {
      found.push_back({Bytes(at.key().begin(), at.key().end()), at.rowId()});
    };
    for (IndexCursor at = tree().first(); at.next();) note(forward, at);
    for (IndexCursor at = tree().last(); at.previous();) note(backward, at);
    EXPECT_TRUE(std::ranges::equal(forward, model_));
    EXPECT_TRUE(std::ranges::equal(backward, model_ | std::views::reverse));
    pages_ = 1;  // the root
    UsageMap map(*pager_, index_.ownedPages);
    for (auto page = map.next(0); page; page = map.next(*page + 1)) ++pages_;
  }

  test::MemoryFiles files_;
  std::shared_ptr<Pager> pager_;
  std::optional<Transaction> transaction_;
  RealIndex index_;
  std::set<Entry> model_;
  std::multiset<Bytes> keys_;  ///< of the model
  std::mt19937 random_{12345};
  std::size_t pages_ = 0;
};

Bytes longKey(std::uint32_t number) {
  number ^= 0x80000000;
  return {0x7f, std::uint8_t(number >> 24), std::uint8_t(number >> 16), std::uint8_t(number >> 8),
          std::uint8_t(number)};
}

RowId rowOf(std::uint32_t number) {
  return {100 + number / 200, static_cast<std::uint8_t>(number % 200)};
}

Entry numberEntry(std::uint32_t number) {
  return {longKey(number * 7), rowOf(number)};
}

/// Many rows of few keys.
Entry duplicateEntry(std::uint32_t number) {
  return {longKey(number % 5), rowOf(number)};
}

/// Long keys that have most in common.
Entry pathEntry(std::uint32_t number) {
  Bytes key(120 + number % 3 * 40, 0x4a);
  for (int shift = 24; shift >= 0; shift -= 8) {
    key.push_back(static_cast<std::uint8_t>(2 + (number >> shift & 0xff) / 2));
  }
  return {std::move(key), rowOf(number)};
}

/// From a few bytes to as many as there can be, with nothing in common.
Entry mixedEntry(std::uint32_t number) {
  std::mt19937 random(number);
  const std::size_t size = number % 4 == 0 ? 1 + random() % 1190 : 1 + random() % 20;
  Bytes key(size);
  for (std::uint8_t& byte : key) byte = static_cast<std::uint8_t>(random());
  return {std::move(key), rowOf(number)};
}

class IndexTreeShapes : public IndexTreeTest, public testing::WithParamInterface<int> {
 protected:
  Entry entry(std::uint32_t number) const {
    constexpr Entry (*kShapes[])(std::uint32_t) = {numberEntry, duplicateEntry, pathEntry,
                                                   mixedEntry};
    return kShapes[GetParam()](number);
  }
  /// Expects the pages that a test leaves, of each shape, to have this sum.
  void expectPages(const std::array<std::uint64_t, 4>& sums) {
    std::string content;
    for (PageNumber number = 0; number < pager_->pageCount(); ++number) {
      const PageRef page = pager_->read(number);
      content.append(page.data(), page.data() + page.size());
    }
    EXPECT_EQ(test::sumOf(content), sums[static_cast<std::size_t>(GetParam())]);
  }
};

TEST_P(IndexTreeShapes, HoldsWhatASetHolds) {
  constexpr std::uint32_t kNumbers = 3000;
  for (int i = 0; i < 3000; ++i) insert(entry(random_() % kNumbers));
  check();
  for (int i = 0; i < 5000; ++i) {
    const Entry chosen = entry(random_() % kNumbers);
    random_() % 2 == 0 ? insert(chosen) : erase(chosen);
  }
  check();
  for (int i = 0; i < 200; ++i) {
    const Entry chosen = entry(random_() % kNumbers);
    const auto at = model_.lower_bound({chosen.key, {}});
    const bool exists = at != model_.end() && at->key == chosen.key;
    EXPECT_EQ(tree().find(chosen.key), exists ? std::optional(at->row) : std::nullopt);
    IndexCursor cursor = tree().lowerBound(chosen.key);
    ASSERT_EQ(cursor.next(), at != model_.end());
    EXPECT_TRUE(at == model_.end() || cursor.rowId() == at->row);
  }
  while (!model_.empty()) {
    auto victim = model_.lower_bound(entry(random_() % kNumbers));
    erase(victim == model_.end() ? *model_.rbegin() : Entry(*victim));
    if (model_.size() % 150 == 0) check();
  }
  check();
  EXPECT_EQ(pages_, 1u);
  expectPages({0xe4a0e11824236b2f, 0x34d4d1fbaa6643a5, 0xc6036bf92b26f063, 0xec075a078766b456});
}

/// A tree that has shrunk to one leaf below its root, at either end, grows again, and goes.
TEST_P(IndexTreeShapes, GrowsAndShrinksInOrder) {
  std::set<Entry> all;
  for (std::uint32_t i = 0; i < 1200; ++i) all.insert(entry(i));
  const auto inOrder = [&](bool isUp, const auto& change) {
    std::vector<Entry> entries(all.begin(), all.end());
    if (!isUp) std::ranges::reverse(entries);
    for (const Entry& each : entries) change(each);
    check();
  };
  for (const bool isUp : {true, false}) {
    inOrder(isUp, [&](const Entry& each) { insert(each); });
    for (pages_ = 3; model_.size() > 40 || pages_ > 2;) {
      erase(isUp ? *model_.rbegin() : *model_.begin());
      if (model_.size() <= 40) check();
    }
    inOrder(isUp, [&](const Entry& each) { insert(each); });
    inOrder(!isUp, [&](const Entry& each) { erase(each); });
    EXPECT_EQ(pages_, 1u);
  }
  expectPages({0x73551b3524910ed6, 0xed512b1c9370553, 0xd5a44545cf08fe82, 0x7c59d84bf89c3482});
}

// Bursts of neighbours, up and down, from random places: most stay on a leaf, many cross its ends.
TEST_P(IndexTreeShapes, TakesRunsOfEntriesAsItTakesSingleOnes) {
  for (int run = 0; run < 8; ++run) {
    IndexRun entries(*pager_, index_, kTable);
    std::vector<std::pair<PageRef, Bytes>> read;  // by somebody who keeps pages as they are
    const auto sameKey = run % 2 == 0 ? IndexRun::SameKey::add : IndexRun::SameKey::refuse;
    for (int burst = 0; burst < 12; ++burst) {
      const bool erases = random_() % 8 < static_cast<unsigned>(run);
      const int step = burst % 2 == 0 ? 1 : -1;
      std::uint32_t number = 500 + random_() % 2000;
      for (int i = 0; i < 100; ++i, number += step) {
        const Entry chosen = entry(number);
        for (PageNumber page = kRoot; i == 70 && page < pager_->pageCount(); ++page) {
          const PageRef ref = pager_->read(page);
          read.emplace_back(ref, Bytes(ref.data(), ref.data() + ref.size()));
        }
        const bool isRefused = sameKey == IndexRun::SameKey::refuse && keys_.contains(chosen.key);
        if (erases) {
          ASSERT_EQ(entries.erase(chosen.key, chosen.row), takeFromModel(chosen));
        } else {
          ASSERT_EQ(entries.insert(chosen.key, chosen.row, sameKey),
                    isRefused ? kNoChange : addToModel(chosen));
        }
      }
    }
    entries.finish();
    for (const auto& [ref, bytes] : read) {
      ASSERT_TRUE(std::equal(bytes.begin(), bytes.end(), ref.data())) << ref.number();
    }
    check();
  }
  expectPages({0x804f9a7163bb6466, 0xfe3020290c1a8193, 0x9a264b66dc9cde4d, 0x118753a5de0e4130});
}

INSTANTIATE_TEST_SUITE_P(, IndexTreeShapes, testing::Range(0, 4));

// Between the entries of empty binary values stand others, which begin with the same byte.
TEST_F(IndexTreeTest, EntriesOfOneKeyThatStandApartShareIt) {
  const Bytes empty{0x7f};
  const Entry between{{0x7f, 0, 0, 5, 0, 9}, {9, 0}};
  insert({empty, {4, 0}});
  insert(between);
  IndexRun run(*pager_, index_, kTable);
  EXPECT_EQ(run.insert(empty, {6, 0}, IndexRun::SameKey::refuse), kNoChange);
  insert({empty, {6, 0}});
  erase({empty, {6, 0}});
  insert({empty, {6, 1}});
  erase({empty, {4, 0}});
  erase({empty, {6, 1}});

  EntrySorter sorter;
  const RowId last{0x60504, 3};
  const Entry behind{{0x7f, 0, 0, 4, 0, 0}, {9, 0}};
  for (const Entry& each : {Entry{empty, last}, between, behind, Entry{empty, {4, 0}}}) {
    sorter.add(each.row, false,
               [&](Bytes& bytes) { bytes.insert(bytes.end(), each.key.begin(), each.key.end()); });
  }
  sorter.sort();
  EXPECT_TRUE(sorter.row(0) == (RowId{4, 0}) && sorter.row(3) == last);
  EXPECT_TRUE(!sorter.repeatsKey(1) && !sorter.repeatsKey(2) && sorter.repeatsKey(3));
}

/// Leaves that another program has emptied hide no entries of a key from each other.
TEST_F(IndexTreeTest, EmptyLeavesHideNoKey) {
  const Bytes key = longKey(7);
  insert({longKey(1), {1, 0}});
  for (std::uint32_t i = 0; i < 6000; ++i) insert({key, rowOf(i)});
  insert({longKey(9), {1, 1}});
  const auto leaf = [&](std::size_t child) {
    return IndexPageEditor(*pager_, root().child(child));
  };
  const std::size_t last = root().childCount() - 1;
  ASSERT_GT(last, 3u);
  for (const bool isBefore : {true, false}) {
    const Savepoint undone(*pager_);
    IndexPageEditor end = leaf(isBefore ? 0 : last), beside = leaf(isBefore ? 1 : last - 1);
    isBefore ? end.erase(1, end.count()) : end.erase(0, end.count() - 1);
    beside.erase(0, beside.count());
    const RowId row = rowOf(isBefore ? 1 : 6001);
    EXPECT_EQ(IndexRun(*pager_, index_, kTable).insert(key, row, IndexRun::SameKey::refuse),
              kNoChange);
    EXPECT_EQ(IndexRun(*pager_, index_, kTable).insert(longKey(8), row, IndexRun::SameKey::refuse),
              IndexTree::Change::key);
  }
}

/// The last entries of leaves go, and nodes have no room for those before them, which are longer.
TEST_F(IndexTreeTest, NodesKeepEntriesThatHaveNoRoomForLongerOnes) {
  const auto entry = [](std::uint32_t number, bool isLong) {
    Entry made = numberEntry(number);
    made.key.resize(isLong ? 1000 : 6, isLong ? 7 : 8);
    return made;
  };
  for (std::uint32_t i = 0; i < 120; ++i) {
    insert(entry(i, true));
    insert(entry(i, false));
  }
  for (std::uint32_t i = 0; i < 120; ++i) erase(entry(i, false));
  check();
  EXPECT_EQ(pages_, 41u);
  EXPECT_EQ(root().separator(30), entry(92, false).bytes());
  for (std::uint32_t i = 120; i-- > 0;) insert(entry(i, false));
  check();
}

TEST_F(IndexTreeTest, CursorsOutliveChanges) {
  for (std::uint32_t i = 0; i < 3000; ++i) insert(numberEntry(i));
  // Each row is erased, and another added behind it, while a cursor stands on it.
  std::uint32_t expected = 0;
  IndexCursor cursor = tree().first();
  while (cursor.next()) {
    if (cursor.rowId().page >= 5000) continue;
    ASSERT_EQ(cursor.rowId(), rowOf(expected));
    erase(numberEntry(expected));
    Entry added = numberEntry(expected);
    added.key.back() += 1;
    added.row.page += 5000;
    insert(added);
    ++expected;
  }
  EXPECT_EQ(expected, 3000u);
  check();
  EXPECT_TRUE(cursor.previous());
  EXPECT_EQ(cursor.rowId(), model_.rbegin()->row);
}

/// Three of the longest, and what a node has of each besides, still fill no page.
TEST_F(IndexTreeTest, LongestKeysArePartedAndLongerOnesRefused) {
  const auto key = [](std::size_t size, std::uint8_t first) {
    Bytes bytes(size, 7);
    bytes.front() = first;
    return bytes;
  };
  std::size_t longest = 1000;
  const auto refused = [&] {
    const Savepoint undone(*pager_);
    return test::raisedBy([&] { tree().insert(key(longest + 1, 0), {1, 0}); });
  };
  while (refused().number == 0) ++longest;
  EXPECT_EQ(longest, 1197u) << "a third of 3616 bytes, less 8";
  EXPECT_EQ(refused().number, kNotSupported);
  EXPECT_EQ(refused().description, fmt::format("The values of an index's columns are too long "
                                               "together: their key takes {} bytes.",
                                               longest + 1));
  for (std::uint8_t i = 0; i < 40; ++i) {
    insert({key(longest, static_cast<std::uint8_t>(i * 37)), {i, 0}});
  }
  check();
}

/// The leaf before the one that a cursor stands on goes, with nearly all entries.
TEST_F(IndexTreeTest, CursorsOutliveTheLeafBefore) {
  for (std::uint32_t i = 0; i < 3000; ++i) insert(numberEntry(i));
  const PageNumber leaf = root().child(2);
  const Bytes first = StoredIndexPage(*pager_, leaf, kTable).entries.entry(0);
  IndexCursor cursor = tree().upperBound(std::span(first).first(first.size() - 4));
  ASSERT_TRUE(cursor.previous());
  const auto at = std::ranges::find(model_, cursor.rowId(), &Entry::row);
  const Entry kept = *at, before = *std::prev(at);
  for (const Entry& each : std::set(model_)) {
    if (each != kept && each != before) erase(each);
  }
  for (int i = 0; i < 20; ++i) PageAllocator(*pager_).allocate();  // its page serves something else
  ASSERT_TRUE(cursor.previous());
  EXPECT_EQ(cursor.rowId(), before.row);
}

/// An entry is found by its row, whatever its key, on any leaf.
TEST_F(IndexTreeTest, ErasesTheEntriesOfARow) {
  for (std::uint32_t i = 0; i < 3000; ++i) insert(duplicateEntry(i));
  EXPECT_EQ(tree().eraseRow(rowOf(3001)), kNoChange);
  for (std::uint32_t i = 0; i < 3000; i += 250) {
    EXPECT_EQ(tree().eraseRow(rowOf(i)), takeFromModel(duplicateEntry(i)));
  }
  check();
}

/// Writes a page as Access does: with as many bytes in the common prefix as `prefix` says.
void writePage(std::uint8_t* page, const std::vector<Bytes>& entries, std::size_t prefix) {
  const auto& layout = kJet4.indexPage;
  std::uint8_t* const begin = page + layout.entries;
  std::uint8_t* at = std::copy_n(entries.front().begin(), prefix, begin);
  for (const Bytes& entry : entries) {
    ASSERT_LE(at + entry.size() - prefix, page + kPageSize);
    at = std::copy(entry.begin() + static_cast<std::ptrdiff_t>(prefix), entry.end(), at);
    page[layout.mask + (at - begin) / 8] |= static_cast<std::uint8_t>(1 << (at - begin) % 8);
  }
  store16(page + layout.prefixLength, static_cast<std::uint32_t>(prefix));
  store16(page + layout.freeSpace, static_cast<std::uint32_t>(page + kPageSize - at));
}

/// A leaf that is full only because row pointers begin alike, as Access leaves it, takes entries
/// before, among and behind its own.
TEST_F(IndexTreeTest, PrefixesReachIntoRowPointers) {
  for (const Entry& added : {Entry{longKey(6), {1, 1}}, Entry{longKey(7), {0x10301, 99}},
                             Entry{longKey(8), {1, 1}}, Entry{Bytes(1100, 0x30), {1, 2}}}) {
    for (std::uint32_t i = 0; i < 1804; ++i) {
      addToModel({longKey(7), {0x10300 + i / 250, static_cast<std::uint8_t>(i % 250 / 2 * 2)}});
    }
    for (std::uint32_t i = 0; model_.size() < 1804; ++i) {
      addToModel({longKey(7), {0x10340 + i / 250, static_cast<std::uint8_t>(i % 250)}});
    }
    std::vector<Bytes> entries;
    for (const Entry& each : model_) entries.push_back(each.bytes());
    IndexTree::initializeRoot(*pager_, kRoot, kTable);
    writePage(pager_->modify(kRoot), entries, 7);
    insert(added);
    for (std::uint32_t i = 0; i < 40; ++i) insert({longKey(i % 9), {0x10320 + i * 7, 3}});
    check();
    while (!model_.empty()) erase(*model_.begin());
    check();
  }
}

TEST_F(IndexTreeTest, PrefixesOfNodesReachIntoRowPointers) {
  std::vector<Bytes> entries;
  for (std::uint32_t i = 0; i < 600; ++i) {
    entries.push_back(
        Entry{longKey(7), {0x10300 + i / 200, static_cast<std::uint8_t>(i % 200)}}.bytes());
    for (const int shift : {24, 16, 8, 0}) {
      entries.back().push_back(static_cast<std::uint8_t>((0x12345000 + i) >> shift));
    }
  }
  Bytes page(kPageSize);
  IndexPageEditor::initialize(kJet4, page.data(), kTable, 1);
  writePage(page.data(), entries, 7);
  IndexPageEditor editor(kJet4, page.data(), kRoot);
  EXPECT_TRUE(editor.fits(entries));
  ASSERT_TRUE(editor.insert(0, Bytes(entries.front()))) << "there is no room for another entry";
  editor.erase(0);
  editor.assign(entries);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    ASSERT_EQ(editor.entry(i), entries[i]);
    ASSERT_EQ(editor.child(i), 0x12345000 + i);
  }
}

/// Above a leaf of three long entries nodes, each of which has entries of keys of these sizes,
/// which lead to an empty leaf, before its tail, which leads on; the root is the highest. What
/// adding a fourth entry to the full leaf comes to.
class HighIndex : public IndexTreeTest {
 protected:
  test::Raised grow(std::size_t levels, std::vector<std::size_t> sizes) {
    const Savepoint undone(*pager_);
    const PageNumber other = PageAllocator(*pager_).allocate();
    IndexTree::initializeRoot(*pager_, other, kTable);
    PageNumber child = 0;
    for (std::size_t level = 0; level <= levels; ++level) {
      const PageNumber page = level == levels ? kRoot : PageAllocator(*pager_).allocate();
      IndexPageEditor::initialize(kJet4, pager_->modify(page), kTable, level);
      const bool isLeaf = level == 0;
      std::vector<Bytes> entries;
      for (const std::size_t size : isLeaf ? std::vector<std::size_t>(3, 1190) : sizes) {
        Entry entry{Bytes(size, static_cast<std::uint8_t>(entries.size())), {9, 0}};
        entry.key[0] = isLeaf ? 0x80 : 0x10;
        entries.push_back(entry.bytes());
        if (!isLeaf) entries.back().insert(entries.back().end(), {0, 0, 0, std::uint8_t(other)});
      }
      IndexPageEditor editor(*pager_, page);
      editor.assign(entries);
      if (!isLeaf) editor.setTail(child);
      child = page;
    }
    Bytes key(1190, 9);
    key[0] = 0x80;
    const auto raised = test::raisedBy([&] { tree().insert(key, {9, 1}); });
    const bool isThere = raised.number == 0 && tree().find(key) == RowId{9, 1};
    EXPECT_EQ(isThere, raised.number == 0);
    deepest_ = test::raisedBy([&] { tree().last(); }).description;
    return raised;
  }
  std::string deepest_;
};

TEST_F(HighIndex, HasAtMostSoManyLevels) {
  constexpr std::size_t kMost = 16;
  const std::vector<std::size_t> full(3, 1180);
  EXPECT_EQ(grow(kMost - 1, full).number, 0);
  EXPECT_EQ(grow(kMost, {1180, 1180}).number, 0);
  const auto tooMany = testing::HasSubstr("page 2: its index has too many levels");
  EXPECT_THAT(grow(kMost, full).description, tooMany);
  EXPECT_EQ(deepest_, "");
  EXPECT_THAT(grow(kMost + 1, {1180}).description,
              testing::HasSubstr("its index has too many levels"));
  EXPECT_THAT(deepest_, testing::HasSubstr("it leads to no leaf of its index"));
}

/// Another program may write entries of which a page has no room for three.
TEST_F(HighIndex, EntriesThatAreTooLongAreNotParted) {
  EXPECT_EQ(grow(2, {1700, 1700}).number, 0);
  for (const std::size_t levels : {1, 2}) {
    EXPECT_THAT(grow(levels, {3500}).description,
                testing::HasSubstr("its index entries are too long to be parted"));
  }
}

class DamagedIndex : public IndexTreeTest {
 protected:
  void SetUp() override {
    IndexTreeTest::SetUp();
    for (std::uint32_t i = 0; i < 2000; ++i) insert(numberEntry(i));
  }
  std::uint8_t* page(PageNumber number) { return pager_->modify(number); }
};

/// A page that a leaf names as its neighbour, but that is another index's, is not changed.
TEST_F(DamagedIndex, NeighboursThatAreAnotherIndexs) {
  const PageNumber other = pager_->append();
  IndexPageEditor::initialize(kJet4, page(other), kTable + 1, 0);
  // Adds or erases among the entries of a leaf, but not at its ends.
  const auto change = [&](std::size_t child, bool adds) {
    const StoredIndexPage leaf(*pager_, root().child(child), kTable);
    for (std::size_t i = 1; i + 1 < leaf.entries.count(); ++i) {
      Bytes key = leaf.entries.entry(i);
      const RowId row{key[key.size() - 2], key.back()};
      key.resize(key.size() - IndexPage::kPointerSize);
      key.back() += adds ? 1 : 0;
      adds ? tree().insert(key, row) : tree().erase(key, row);
    }
  };
  for (const bool adds : {false, true}) {
    const Savepoint undone(*pager_);
    store32(page(root().child(1)) + kJet4.indexPage.previous, other);
    if (!adds) change(2, false);
    EXPECT_EQ(test::raisedBy([&] { change(1, adds); }).number, kCorruptFile);
    EXPECT_EQ(StoredIndexPage(*pager_, other, kTable + 1).entries.next(), 0u) << adds;
  }
}

/// Bytes of an index are changed; what changes of entries come to then, and what cursors find.
TEST_F(DamagedIndex, AnyByteOfIt) {
  std::string told;
  const auto note = [&](const auto& work) { told += test::raisedBy(work).description + "\n"; };
  const auto lastOf = [](const IndexCursor& cursor) {
    return cursor.key().empty() ? '-' : static_cast<char>(cursor.key().back());
  };
  for (unsigned seed = 0; seed < 300; ++seed) {
    const Savepoint undone(*pager_);
    std::mt19937 random(seed);
    std::uint8_t* const bytes = page(kRoot + random() % (pager_->pageCount() - kRoot));
    const std::size_t end = seed % 3 == 0 ? kPageSize : seed % 3 == 1 ? 40 : 600;
    for (unsigned i = 0; i <= seed % 2; ++i) bytes[random() % end] ^= 1 + random() % 255;
    note([&] {
      for (int i = 0; i < 80; ++i) {
        const Entry each = numberEntry(random() % 2300);
        const auto change =
            i % 2 == 0 ? tree().insert(each.key, each.row) : tree().erase(each.key, each.row);
        told += std::to_string(static_cast<int>(change));
      }
    });
    note([&] {
      for (IndexCursor cursor = tree().first(); cursor.next();) told += lastOf(cursor);
    });
    note([&] {
      for (IndexCursor cursor = tree().last(); cursor.previous();) told += lastOf(cursor);
    });
  }
  EXPECT_EQ(test::sumOf(told), 0x4386e14a7ff58faeu) << told;
}

TEST_F(DamagedIndex, EntriesThatAreOutOfOrder) {
  std::vector<Bytes> entries;
  for (std::uint32_t i = 0; i < 401; ++i) entries.push_back(numberEntry(i).bytes());
  std::swap(entries[100], entries[101]);
  IndexTree::initializeRoot(*pager_, kRoot, kTable);
  writePage(page(kRoot), entries, 0);
  const auto raised = test::raisedBy([&] { tree().insert(longKey(5), {9, 9}); });
  EXPECT_THAT(raised.description, testing::HasSubstr("page 2: its index entries are out of order"));
}

}  // namespace
}  // namespace orv::store::jet
