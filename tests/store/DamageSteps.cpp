#include "store/DamageSteps.h"

#include <algorithm>
#include <functional>
#include <sstream>

#include "store/jet/page/DataPage.h"
#include "store/jet/page/FreePages.h"
#include "store/jet/page/UsageMap.h"
#include "store/jet/row/RowSpace.h"

namespace orv::store::jet {
namespace {

constexpr const char* kSpectra = "Pane_spectral_data";

/// The rest of a step.
using Words = std::istringstream;

std::string word(Words& words) {
  std::string next;
  words >> next;
  std::ranges::replace(next, '~', ' ');
  return next;
}

std::size_t number(const std::string& text) {
  return std::stoul(text, nullptr, 0);
}

std::vector<std::string> partsOf(const std::string& text) {
  std::vector<std::string> parts;
  std::istringstream rest(text);
  for (std::string part; std::getline(rest, part, '/');) parts.push_back(part);
  parts.resize(3);
  return parts;
}

RowId rowOf(DamagedFile& file, const std::string& text) {
  const auto parts = partsOf(text);
  const std::string &kind = parts[0], &one = parts[1], &two = parts[2];
  if (kind == "freeMap") return FreePages::kPlace;
  if (kind == "pictures") return *file.table("Frame").columns.back().longValuePages;
  if (kind == "owned") return file.table(one).ownedPages;
  if (kind == "room") return file.table(one).freePages;
  if (kind == "tree") return file.index(one, two).ownedPages;
  if (kind == "object") return file.database().find(one)->row;
  if (kind == "part") return file.longValue("Frame", "picture").at(number(one));
  if (kind == "moved") return file.movedRow("Moved", number(one)).row;
  if (kind == "content") return file.movedRow("Moved", number(one)).content;
  return one == "last" ? file.rows(kind).back() : file.rows(kind).at(number(one));
}

/// The page of an index that is its root, or a leaf.
PageNumber indexPage(DamagedFile& file, const std::string& text) {
  const auto parts = partsOf(text);
  const RealIndex& index = file.index(parts[0], parts[1]);
  return parts[2] == "root" ? index.root : file.leaves(index).at(number(parts[2]));
}

std::uint32_t numberOf(DamagedFile& file, const std::string& text) {
  if (text == "last") return file.pager().pageCount() - 1;
  if (text.starts_with("leaf/")) return indexPage(file, kSpectra + ("/PaneAngle" + text.substr(4)));
  return text.find('/') == text.npos ? file.table(text).page : rowOf(file, text).toPointer();
}

/// A page by its number, or of a row.
PageNumber pageOf(DamagedFile& file, const std::string& text) {
  const bool isNumber = text.find_first_not_of("0123456789") == text.npos;
  const bool isPage = text == "last" || text.starts_with("leaf/");
  return isNumber ? static_cast<PageNumber>(number(text))
         : isPage ? numberOf(file, text)
                  : rowOf(file, text).page;
}

Bytes bytesOf(DamagedFile& file, const std::string& text) {
  const std::size_t sign = std::min(text.find_first_of("@&"), text.size());
  const std::size_t star = std::min(text.find('*'), sign);
  Bytes bytes;
  for (std::size_t i = 0; i < star; i += 2) {
    bytes.push_back(static_cast<std::uint8_t>(std::stoul(text.substr(i, 2), nullptr, 16)));
  }
  if (star < sign) bytes.resize(number(text.substr(star + 1, sign - star - 1)), bytes[0]);
  if (sign == text.size()) return bytes;
  std::uint8_t stored[4];
  store32(stored, numberOf(file, text.substr(sign + 1)));
  if (text[sign] == '&') std::ranges::reverse(stored);
  bytes.insert(bytes.end(), stored, stored + 4);
  return bytes;
}

/// Where a definition has some bytes.
std::uint8_t* find(DamagedFile& file, const std::string& table, const Bytes& bytes) {
  std::uint8_t* page = file.definition(table);
  return std::search(page, page + kJet4.pageSize, bytes.begin(), bytes.end());
}

std::uint8_t* nameOf(DamagedFile& file, const std::string& table, const std::string& column) {
  Bytes letters{static_cast<std::uint8_t>(2 * column.size())};
  for (const char c : column) {
    letters.insert(letters.end(), {0, static_cast<std::uint8_t>(c)});
  }
  return find(file, table, letters) + 2;
}

std::uint8_t* mapsOf(DamagedFile& file, const std::string& table, const std::string& column) {
  const TableDefinition& definition = file.table(table);
  const Column& found = definition.columns[definition.findColumn(column).value()];
  Bytes pointer(4);
  store32(pointer.data(), found.longValuePages->toPointer());
  return find(file, table, pointer) - 2;
}

/// The part of a definition for an index tree, behind the columns and their names (of two bytes a
/// letter); behind the last tree those for the names of indexes begin.
std::uint8_t* treeOf(DamagedFile& file, const std::string& table, std::size_t number) {
  const auto& columns = file.table(table).columns;
  std::uint8_t* at = file.columnBlock(table, columns.size());
  for (const Column& column : columns) at += 2 + 2 * column.name.size();
  return at + number * kJet4.index.realSize;
}

std::uint8_t* placeOf(DamagedFile& file, const std::string& kind, Words& words) {
  if (kind == "header") return file.page(0);
  const std::string what = word(words);
  if (kind == "definition") return file.definition(what);
  if (kind == "column") return file.columnBlock(what, number(word(words)));
  if (kind == "name") return nameOf(file, what, word(words));
  if (kind == "maps") return mapsOf(file, what, word(words));
  if (kind == "tree") return treeOf(file, what, number(word(words)));
  if (kind == "named") {
    return treeOf(file, what, file.table(what).realIndexes.size()) +
           number(word(words)) * kJet4.index.logicalSize;
  }
  if (kind == "index") return file.page(indexPage(file, what));
  const RowId row = rowOf(file, what);
  if (kind == "page") return file.page(row.page);
  if (kind == "entry") return file.rowEntry(row);
  if (kind == "row") return file.rowBytes(row);
  if (kind == "field") {
    const std::string table = partsOf(what)[0];
    return file.field(table == "object" ? "MSysObjects" : table, row, word(words)).data();
  }
  if (kind != "end") throw std::logic_error("there is no step " + kind);
  const PageRef page = file.pager().read(row.page);
  const std::size_t length = DataPage(kJet4, page.view()).slot(row.row).length;
  return file.rowBytes(row) + length;
}

/// Where a field of a place is.
std::ptrdiff_t offsetOf(const std::string& field) {
  const auto& d = kJet4.definition;
  const auto& c = kJet4.column;
  const auto& x = kJet4.index;
  const auto& p = kJet4.indexPage;
  static const std::map<std::string, std::size_t> fields{
      {"definition rowCount", d.rowCount},
      {"definition nextPage", d.nextPage},
      {"definition length", d.length},
      {"definition columnCount", d.columnCount},
      {"definition indexCount", d.indexCount},
      {"definition realIndexCount", d.realIndexCount},
      {"definition ownedPages", d.ownedPages},
      {"definition freePages", d.freePages},
      {"definition autoNumber", d.autoNumber},
      {"column type", c.type},
      {"column number", c.number},
      {"column variableIndex", c.variableIndex},
      {"column sortOrder", c.sortOrder},
      {"column sortVersion", c.sortVersion},
      {"column flags", c.flags},
      {"column extraFlags", c.extraFlags},
      {"column length", c.length},
      {"tree columns", x.realColumns},
      {"tree flags", x.realFlags},
      {"named tree", x.logicalReal},
      {"named type", x.logicalType},
      {"named relationTable", x.logicalRelationTable},
      {"page freeSpace", kJet4.data.freeSpace},
      {"page owner", kJet4.data.owner},
      {"page rowCount", kJet4.data.rowCount},
      {"page rowTable", kJet4.data.rowTable},
      {"index freeSpace", p.freeSpace},
      {"index owner", p.owner},
      {"index previous", p.previous},
      {"index next", p.next},
      {"index tail", p.tail},
      {"index prefixLength", p.prefixLength},
      {"index mask", p.mask}};
  const auto found = fields.find(field);
  return found != fields.end() ? static_cast<std::ptrdiff_t>(found->second)
                               : std::stol(field.substr(field.find(' ')));
}

void changeBytes(DamagedFile& file, const std::string& kind, const std::string& step) {
  Words words(step);
  word(words);
  placeOf(file, kind, words);
  const std::string field = word(words), sign = word(words);
  const std::ptrdiff_t at = offsetOf(kind + " " + field);
  Bytes bytes = bytesOf(file, word(words));
  Words again(step);
  word(again);
  std::uint8_t* place = placeOf(file, kind, again) + at;
  if (sign == "+") bytes[0] = static_cast<std::uint8_t>(bytes[0] + *place);
  std::ranges::copy(bytes, place);
}

/// "insertEntry PAGE NUMBER BYTES", "setEntry PAGE NUMBER AT BYTES" (from the entry's end on where
/// AT is negative), "copyEntry PAGE NUMBER FROM", "dropEntry PAGE NUMBER".
void changeEntries(DamagedFile& file, const std::string& kind, Words& words) {
  IndexPageEditor editor = file.indexPage(indexPage(file, word(words)));
  std::vector<Bytes> entries;
  for (std::size_t i = 0; i < editor.count(); ++i) entries.push_back(editor.entry(i));
  const auto at = entries.begin() + static_cast<std::ptrdiff_t>(number(word(words)));
  if (kind == "dropEntry") entries.erase(at);
  if (kind == "insertEntry") entries.insert(at, bytesOf(file, word(words)));
  if (kind == "copyEntry") entries.insert(at, Bytes(entries.at(number(word(words)))));
  if (kind == "setEntry") {
    const int from = std::stoi(word(words));
    std::ranges::copy(bytesOf(file, word(words)), (from < 0 ? at->end() : at->begin()) + from);
  }
  editor.assign(entries);
}

/// A page at the end of the file that is neither free nor used.
PageNumber addPage(DamagedFile& file) {
  const PageNumber page = file.pager().append();
  FreePages(file.pager()).remove(page);
  return page;
}

/// "list MAP PAGE": the page has a number, or is that of a row.
template <auto kChange>
void changeMap(DamagedFile& file, Words& words) {
  UsageMap map(file.pager(), rowOf(file, word(words)));
  (map.*kChange)(pageOf(file, word(words)));
}

using Deed = std::function<void(DamagedFile&, Words&)>;

const std::map<std::string, Deed> kDeeds{
    {"erase",
     [](auto& file, auto& words) {
       const RowId row = rowOf(file, word(words));
       DataPageEditor(kJet4, file.page(row.page), row.page).erase(row.row);
     }},
    {"list", changeMap<&UsageMap::add>},
    {"unlist", changeMap<&UsageMap::remove>},
    {"shortenMap",
     [](auto& file, auto& words) {
       const RowId map = rowOf(file, word(words));
       DataPageEditor(kJet4, file.page(map.page), map.page)
           .replace(map.row, Bytes(5), SlotKind::row);
     }},
    // "addPages TYPES": pages of these types that nothing uses.
    {"addPages",
     [](auto& file, auto& words) {
       for (const std::uint8_t type : bytesOf(file, word(words))) *file.page(addPage(file)) = type;
     }},
    // A copy of the page of a row, which the table does not list, and of which so many rows are
    // deleted.
    {"copyPage",
     [](auto& file, auto& words) {
       const PageRef rows = file.pager().read(rowOf(file, word(words)).page);
       const PageNumber page = addPage(file);
       std::copy_n(rows.data(), kJet4.pageSize, file.page(page));
       DataPageEditor copy(kJet4, file.page(page), page);
       for (std::size_t i = number(word(words)); i-- > 0;) copy.erase(static_cast<std::uint8_t>(i));
     }},
    // "addHidden ROW COUNT": moved rows that no place leads to, on the page of a row.
    {"addHidden",
     [](auto& file, auto& words) {
       const PageNumber page = rowOf(file, word(words)).page;
       DataPageEditor rows(kJet4, file.page(page), page);
       for (std::size_t i = number(word(words)); i-- > 0;) rows.add(Bytes(20), SlotKind::hidden);
     }},
    {"addPart",
     [](auto& file, auto&) {
       const Column& column = file.table("Frame").columns.back();
       RowSpace(file.pager(), kLongValueOwner, *column.longValuePages, *column.longValueFreePages)
           .add(Bytes(10, 0x55), SlotKind::row);
     }},
    // "addNodes LEAF COUNT": above a leaf of the index of spectra so many nodes, each of which
    // leads to the one below it; the last is the last page.
    {"addNodes",
     [](auto& file, auto& words) {
       PageNumber child = numberOf(file, word(words));
       for (std::size_t i = number(word(words)); i-- > 0;) {
         const PageNumber page = addPage(file);
         IndexPageEditor::initialize(kJet4, file.page(page), file.table(kSpectra).page, 1);
         file.indexPage(page).setTail(child);
         child = page;
       }
     }},
};

}  // namespace

void inflict(DamagedFile& file, const std::string& step) {
  Words words(step);
  const std::string kind = word(words);
  const auto deed = kDeeds.find(kind);
  if (deed != kDeeds.end()) return deed->second(file, words);
  if (kind.ends_with("Entry")) return changeEntries(file, kind, words);
  changeBytes(file, kind, step);
}

}  // namespace orv::store::jet
