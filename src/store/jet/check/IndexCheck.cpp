#include "store/jet/check/IndexCheck.h"

#include <fmt/format.h>

#include <algorithm>

#include "store/jet/page/UsageMap.h"

namespace orv::store::jet {
namespace {

RowId rowOf(const Bytes& entry) {
  const std::uint8_t* pointer = entry.data() + entry.size() - IndexPage::kPointerSize;
  return {static_cast<PageNumber>(pointer[0] << 16 | pointer[1] << 8 | pointer[2]), pointer[3]};
}

std::span<const std::uint8_t> keyOf(const Bytes& entry) {
  return std::span(entry).first(entry.size() - IndexPage::kPointerSize);
}

}  // namespace

std::string_view nameOfIndex(const TableDefinition& table, const RealIndex& index) {
  const auto named =
      std::ranges::find(table.logicalIndexes, index.number, &LogicalIndex::realIndex);
  return named == table.logicalIndexes.end() ? "(without a name)" : std::string_view(named->name);
}

IndexCheck::IndexCheck(CheckContext& context, const TableDefinition& table, const RealIndex& index,
                       RowKeys& keys)
    : context_(context),
      table_(table),
      index_(index),
      keys_(keys),
      place_{.table = table.name, .index = nameOfIndex(table, index)},
      user_(context.pages.addUser(place_, fmt::format("index '{}'", place_.index))) {}

void IndexCheck::run() {
  ++context_.report.indexes;
  walk(index_.root, 0);
  if (!broken_ && lastLeafsNext_ != 0) {
    context_.log.fault(place_.onPage(lastLeaf_), Harm::index,
                       fmt::format("the leaf is the last one of the index, but says that page {} "
                                   "follows",
                                   lastLeafsNext_));
  }
  entry_.clear();
  compareSeparators();
  findMissingEntries();
  checkMap();
}

void IndexCheck::walk(PageNumber page, std::size_t depth) {
  const CheckPlace place = place_.onPage(page);
  if (!context_.pages.claim(user_, page)) {
    broken_ = true;
    return;
  }
  const bool read = context_.log.guard(place, Harm::index, [&] {
    if (depth > kMaxIndexDepth) {
      raiseDamaged(page, "the index has more levels than are possible");
    }
    const StoredIndexPage stored(context_.pager, page, table_.page);
    checkFreeSpace(stored);
    stored.entries.isLeaf() ? checkLeaf(stored, depth) : checkNode(stored, depth);
  });
  broken_ |= !read;
}

void IndexCheck::checkNode(const StoredIndexPage& node, std::size_t depth) {
  const IndexPage& entries = node.entries;
  const CheckPlace place = place_.onPage(node.bytes.number());
  if (entries.childCount() == 0) {
    raiseDamaged(place.page, "the page leads to no leaf of the index");
  }
  for (std::size_t i = 0; i < entries.childCount(); ++i) {
    walk(entries.child(i), depth + 1);
    if (!broken_ && i < entries.count()) {
      checkSeparator(node, i);
    }
  }
}

/// A node's entry should be the last one below it. One that comes after that, as Access leaves it
/// when the last one is deleted, does as well unless it reaches what follows.
void IndexCheck::checkSeparator(const StoredIndexPage& node, std::size_t at) {
  Bytes separator = node.entries.separator(at);
  if (separator == previous_) {
    return;
  }
  if (std::ranges::lexicographical_compare(separator, previous_)) {
    context_.log.fault(place_.onPage(node.bytes.number()), Harm::index,
                       fmt::format("entry {} of the page comes before the last one below page {}, "
                                   "to which it leads",
                                   at, node.entries.child(at)));
    return;
  }
  separators_.push_back({node.bytes.number(), node.entries.child(at), at, std::move(separator)});
}

/// Compares the entries of nodes that come after what is below them with the entry that follows,
/// which is empty at the end of the index.
void IndexCheck::compareSeparators() {
  for (const Separator& separator : separators_) {
    const CheckPlace place = place_.onPage(separator.node);
    const std::string what = fmt::format("entry {} of the page is not the last one below page {}",
                                         separator.at, separator.child);
    if (entry_.empty() || std::ranges::lexicographical_compare(separator.entry, entry_)) {
      context_.log.remark(place, what);
    } else {
      context_.log.fault(place, Harm::index, what + ", and does not come before what follows");
    }
  }
  separators_.clear();
}

void IndexCheck::checkLeaf(const StoredIndexPage& leaf, std::size_t depth) {
  const CheckPlace place = place_.onPage(leaf.bytes.number());
  if (leafDepth_.value_or(depth) != depth) {
    context_.log.fault(place, Harm::index, "the leaf is on another level than those before it");
  }
  leafDepth_ = depth;
  checkLinks(leaf);
  for (std::size_t i = 0; i < leaf.entries.count(); ++i) {
    leaf.entries.copyEntry(i, entry_);
    compareSeparators();
    checkEntry(place, i);
    std::swap(entry_, previous_);
  }
}

void IndexCheck::checkLinks(const StoredIndexPage& leaf) {
  const PageNumber number = leaf.bytes.number();
  if (!broken_) {
    if (leaf.entries.previous() != lastLeaf_) {
      context_.log.fault(place_.onPage(number), Harm::index,
                         fmt::format("the leaf says that page {} comes before it, but page {} does",
                                     leaf.entries.previous(), lastLeaf_));
    }
    if (lastLeaf_ != 0 && lastLeafsNext_ != number) {
      context_.log.fault(place_.onPage(lastLeaf_), Harm::index,
                         fmt::format("the leaf says that page {} follows, but page {} does",
                                     lastLeafsNext_, number));
    }
  }
  lastLeaf_ = number;
  lastLeafsNext_ = leaf.entries.next();
  broken_ = false;
}

void IndexCheck::checkEntry(const CheckPlace& place, std::size_t at) {
  ++context_.report.indexEntries;
  const RowId row = rowOf(entry_);
  const auto fault = [&](std::string_view what) {
    context_.log.fault(
        place, Harm::index,
        fmt::format("entry {}, for row {} of page {}, {}", at, row.row, row.page, what));
  };
  if (!previous_.empty()) {
    if (!std::ranges::lexicographical_compare(previous_, entry_)) {
      fault("is out of order");
    }
    if (index_.unique && std::ranges::equal(keyOf(previous_), keyOf(entry_)) &&
        !keys_.hasNull(index_.number, row)) {
      fault("has the values of the entry before it, which the index does not allow");
    }
  }
  switch (keys_.match(index_.number, row, keyOf(entry_))) {
    case RowKeys::Match::right:
      break;
    case RowKeys::Match::noRow:
      fault("leads to a row that is not there");
      break;
    case RowKeys::Match::notMeant:
      fault("should not be there: the row has only Null in the index's columns");
      break;
    case RowKeys::Match::otherKey:
      fault("has a key of other values than the row");
      break;
    case RowKeys::Match::otherForm:
      context_.log.remark(
          place, fmt::format("entry {}, for row {} of page {}, counts letters that expand, such as "
                             "ß, as one, as another program does: Access does not find the row by "
                             "the index until the file is compacted there, or the text changed",
                             at, row.row, row.page));
      break;
    case RowKeys::Match::again:
      fault("is the second one for that row");
      break;
  }
}

void IndexCheck::checkFreeSpace(const StoredIndexPage& page) {
  const Format& format = context_.pager.format();
  const std::size_t said = page.bytes.view().u16(format.indexPage.freeSpace);
  if (said != page.entries.freeSpace()) {
    context_.log.fault(place_.onPage(page.bytes.number()), Harm::counts,
                       fmt::format("the page says that it has {} free bytes, but it has {}", said,
                                   page.entries.freeSpace()));
  }
}

void IndexCheck::findMissingEntries() {
  keys_.forEachMissing(index_.number, [&](RowId row) {
    context_.log.fault(place_.at(row), Harm::index, "the row has no entry in the index");
  });
}

/// The map of the index's pages, which says what becomes free when the index is removed.
void IndexCheck::checkMap() {
  if (!context_.pages.claimMap(user_, index_.ownedPages)) {
    return;
  }
  context_.log.guard(place_.at(index_.ownedPages), Harm::counts, [&] {
    const UsageMap listed(context_.pager, index_.ownedPages);
    for (auto page = listed.next(0); page; page = listed.next(*page + 1)) {
      if (!context_.pages.isClaimedBy(user_, *page)) {
        context_.log.fault(place_.onPage(*page), Harm::counts,
                           "the page is listed as one of the index, but its tree does not have it");
      }
    }
    context_.pages.forEachPageOf(user_, [&](PageNumber page) {
      if (!listed.contains(page)) {
        context_.log.fault(place_.onPage(page), Harm::counts,
                           "the page is part of the index, but not listed as one of its pages");
      }
    });
  });
}

}  // namespace orv::store::jet
