#include "store/jet/definition/DefinitionPages.h"

#include <algorithm>
#include <cstring>
#include <set>

#include "store/jet/page/PageAllocator.h"

namespace orv::store::jet {
namespace {

constexpr std::size_t kMaxDefinitionPages = 1000;
/// The free space that a page states is this much less than what it has.
constexpr std::size_t kReserved = 8;

/// Starts a page of a definition anew.
std::uint8_t* blankPage(Pager& pager, PageNumber page) {
  std::uint8_t* bytes = pager.modify(page);
  std::memset(bytes, 0, pager.format().pageSize);
  bytes[0] = static_cast<std::uint8_t>(PageType::tableDefinition);
  bytes[1] = 1;
  return bytes;
}

/// Goes through the pages, adding what each has to `definition`.
void collectPages(Pager& pager, PageNumber first, const std::string& table,
                  DefinitionPages& definition) {
  const Format& format = pager.format();
  std::set<PageNumber> seen;
  for (PageNumber page = first; page != 0;) {
    if (!seen.insert(page).second || seen.size() > kMaxDefinitionPages) {
      raiseDamaged(page, "the pages of the definition of table '" + table + "' form a loop");
    }
    const PageRef ref = pager.read(page);
    if (ref.type() != PageType::tableDefinition) {
      raiseDamaged(page, "it should define table '" + table + "', but is a page of another kind");
    }
    const std::size_t skip = page == first ? 0 : format.definition.pageHeader;
    definition.bytes.insert(definition.bytes.end(), ref.data() + skip, ref.data() + ref.size());
    if (page != first) {
      definition.more.push_back(page);
    }
    page = ref.view().u32(format.definition.nextPage);
  }
}

}  // namespace

DefinitionPages readDefinitionPages(Pager& pager, PageNumber first, const std::string& table) {
  DefinitionPages definition;
  collectPages(pager, first, table, definition);
  return definition;
}

DefinitionPages readDefinitionPagesAsFarAsPossible(Pager& pager, PageNumber first) {
  DefinitionPages definition;
  try {
    collectPages(pager, first, "", definition);
  } catch (const DamagedPage&) {  // What comes before it is there.
  }
  return definition;
}

void writeDefinitionPages(Pager& pager, PageNumber first, DefinitionPages& definition) {
  const Format& format = pager.format();
  const std::size_t header = format.definition.pageHeader;
  store32(&definition.bytes[format.definition.length],
          static_cast<std::uint32_t>(definition.bytes.size()));
  std::size_t at = header;
  for (std::size_t i = 0; at < definition.bytes.size(); ++i) {
    const std::size_t length = std::min(format.pageSize - header, definition.bytes.size() - at);
    const bool last = at + length == definition.bytes.size();
    if (!last && i == definition.more.size()) {
      definition.more.push_back(PageAllocator(pager).allocate());
    }
    std::uint8_t* page = blankPage(pager, i == 0 ? first : definition.more[i - 1]);
    std::memcpy(page + header, &definition.bytes[at], length);
    const std::size_t room = format.pageSize - header - length;
    store16(page + format.definition.freeSpace,
            static_cast<std::uint32_t>(room > kReserved ? room - kReserved : 0));
    store32(page + format.definition.nextPage, last ? 0 : definition.more[i]);
    at += length;
  }
}

}  // namespace orv::store::jet
