#include "store/jet/index/IndexLoader.h"

#include <algorithm>
#include <cstring>

#include "store/jet/index/IndexPageEditor.h"

namespace orv::store::jet {

void IndexLoader::add(std::span<const std::uint8_t> entry) {
  IndexPageEditor::refuseTooLong(pager_.format(), entry);
  addTo(0, entry);
}

std::uint32_t IndexLoader::addAll(EntrySorter& entries,
                                  const std::function<void(std::size_t)>& repeated) {
  entries.sort();
  std::uint32_t keys = 0;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    if (!entries.repeatsKey(i)) {
      ++keys;
    } else if (!entries.hasNull(i)) {
      repeated(i);
    }
    add(entries.entry(i));
  }
  return keys;
}

void IndexLoader::addTo(std::size_t level, std::span<const std::uint8_t> entry) {
  if (level == levels_.size()) {
    levels_.push_back({.page = newPage_()});
  }
  if (const std::size_t prefix = prefixWith(level, entry); takes(level, entry, prefix)) {
    levels_[level].prefix = prefix;
  } else {
    closePage(level);
    levels_[level].prefix = prefixWith(level, entry);
  }
  Level& open = levels_[level];
  open.bytes.insert(open.bytes.end(), entry.begin(), entry.end());
  open.ends.push_back(static_cast<std::uint32_t>(open.bytes.size()));
}

/// What the entries of a page would all begin with if it took one more. Each entry keeps bytes of
/// its own: a leaf's at least one, a node's its child.
std::size_t IndexLoader::prefixWith(std::size_t level, std::span<const std::uint8_t> entry) const {
  const Level& open = levels_[level];
  const std::size_t own = level == 0 ? 1 : IndexPage::kChildSize;
  if (open.ends.empty()) {
    return entry.size() - own;
  }
  const auto first = open.entry(0);
  const std::size_t limit = std::min({open.prefix, first.size() - own, entry.size() - own});
  const auto end = first.begin() + static_cast<std::ptrdiff_t>(limit);
  return static_cast<std::size_t>(std::mismatch(first.begin(), end, entry.begin()).first -
                                  first.begin());
}

bool IndexLoader::takes(std::size_t level, std::span<const std::uint8_t> entry,
                        std::size_t prefix) const {
  const Level& open = levels_[level];
  const Format& format = pager_.format();
  const std::size_t room = format.pageSize - format.indexPage.entries;
  return open.bytes.size() + entry.size() - prefix * open.ends.size() <= room;
}

/// Writes the page of a level, tells the level above of it, and begins the next one.
void IndexLoader::closePage(std::size_t level) {
  const PageNumber next = newPage_();
  // Only leaves are linked throughout.
  write(level, level == 0 ? next : 0);
  const PageNumber closed = levels_[level].page;
  const auto last = levels_[level].entry(levels_[level].ends.size() - 1);
  Bytes above(last.begin(), last.end() - (level == 0 ? 0 : IndexPage::kChildSize));
  for (int shift = 24; shift >= 0; shift -= 8) {
    above.push_back(static_cast<std::uint8_t>(closed >> shift));
  }
  Level& open = levels_[level];
  open.previous = level == 0 ? closed : 0;
  open.page = next;
  open.bytes.clear();
  open.ends.clear();
  addTo(level + 1, above);
}

PageNumber IndexLoader::finish() {
  if (levels_.empty()) {
    levels_.push_back({.page = newPage_()});
  }
  for (std::size_t level = 0;; ++level) {
    write(level, 0);
    const PageNumber last = levels_[level].page;
    if (level + 1 == levels_.size()) {
      return last;
    }
    levels_[level + 1].tail = last;
  }
}

void IndexLoader::write(std::size_t level, PageNumber next) {
  const Level& open = levels_[level];
  const auto& layout = pager_.format().indexPage;
  std::uint8_t* page = pager_.modify(open.page);
  IndexPageEditor::initialize(pager_.format(), page, table_, static_cast<std::uint8_t>(level));
  store32(page + layout.previous, open.previous);
  store32(page + layout.next, next);
  store32(page + layout.tail, open.tail);
  const std::size_t prefix = open.ends.size() < 2 ? 0 : open.prefix;
  store16(page + layout.prefixLength, static_cast<std::uint32_t>(prefix));
  std::size_t end = 0;
  for (std::size_t i = 0; i < open.ends.size(); ++i) {
    const auto own = open.entry(i).subspan(i == 0 ? 0 : prefix);
    std::memcpy(page + layout.entries + end, own.data(), own.size());
    end += own.size();
    page[layout.mask + end / 8] |= static_cast<std::uint8_t>(1u << end % 8);
  }
  store16(page + layout.freeSpace,
          static_cast<std::uint32_t>(pager_.format().pageSize - layout.entries - end));
}

}  // namespace orv::store::jet
