// Each kind of damage is found where it is, and said in words; what only looks odd is a remark.
// What can be read is read, and what is repaired of it is sound.

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <sstream>

#include "errors/Error.h"
#include "model/Raised.h"
#include "store/Check.h"
#include "store/Compact.h"
#include "store/DamagedFile.h"
#include "store/FileContent.h"
#include "store/SampleFile.h"
#include "store/StoreError.h"
#include "store/jet/page/ChangeObserver.h"
#include "store/jet/page/DataPage.h"
#include "store/jet/page/FreePages.h"
#include "store/jet/row/RowSpace.h"
#include "store/jet/table/RowReader.h"
#include "support/CaseFile.h"
#include "support/ReadFile.h"
#include "support/TemporaryFolder.h"

namespace orv::store::jet {
namespace {

namespace fs = std::filesystem;
using orv::test::contentOf;
using orv::test::makeSampleFile;
using orv::test::raisedBy;
using orv::test::textOf;

/// The rest of a step.
using Words = std::istringstream;

constexpr const char* kSpectra = "Pane_spectral_data";

/// The next word, of which ~ stands for a blank.
std::string word(Words& words) {
  std::string next;
  words >> next;
  std::ranges::replace(next, '~', ' ');
  return next;
}

std::size_t number(Words& words) {
  return std::stoul(word(words), nullptr, 0);
}

RowId row(DamagedFile& file, Words& words) {
  const std::string table = word(words);
  const std::vector<RowId> rows = file.rows(table);
  const std::string which = word(words);
  return which == "last" ? rows.back() : rows.at(std::stoul(which));
}

const Column& picture(DamagedFile& file) {
  return file.table("Frame").columns.back();
}

RowId part(DamagedFile& file, Words& words) {
  return file.longValue("Frame", "picture").parts.at(number(words));
}

/// The page of an index that is its root ("root"), or a leaf.
PageNumber indexPage(DamagedFile& file, Words& words) {
  const std::string table = word(words);
  const RealIndex& index = file.index(table, word(words));
  const std::string which = word(words);
  return which == "root" ? index.root : file.leaves(index).at(std::stoul(which));
}

PageNumber spectraPage(DamagedFile& file, const std::string& which) {
  Words words(fmt::format("{} PaneAngle {}", kSpectra, which));
  return indexPage(file, words);
}

/// The part of a definition for an index tree, behind the columns and their names (of two bytes a
/// letter); behind the last tree those for the names of indexes begin.
std::uint8_t* indexBlock(DamagedFile& file, const std::string& table, std::size_t number) {
  const auto& columns = file.table(table).columns;
  std::uint8_t* at = file.columnBlock(table, columns.size());
  for (const Column& column : columns) at += 2 + 2 * column.name.size();
  return at + number * kJet4.index.realSize;
}

/// Places that steps name: the first word, and what reads the others.
const std::map<std::string, std::function<std::uint8_t*(DamagedFile&, Words&)>> kPlaces{
    {"header", [](auto& file, auto&) { return file.page(0); }},
    {"freeMap", [](auto& file, auto&) { return file.rowBytes(FreePages::kPlace); }},
    {"map", [](auto& file, auto& w) { return file.rowBytes(file.table(word(w)).ownedPages); }},
    {"definition", [](auto& file, auto& w) { return file.definition(word(w)); }},
    {"column",
     [](auto& file, auto& w) {
       const std::string table = word(w);
       return file.columnBlock(table, number(w));
     }},
    {"tree",
     [](auto& file, auto& w) {
       const std::string table = word(w);
       return indexBlock(file, table, number(w));
     }},
    {"named",
     [](auto& file, auto& w) {
       const std::string table = word(w);
       return indexBlock(file, table, file.table(table).realIndexes.size()) +
              number(w) * kJet4.index.logicalSize;
     }},
    // The letters of a column's name.
    {"name",
     [](auto& file, auto& w) {
       const std::string table = word(w), column = word(w);
       Bytes letters(2 + 2 * column.size());
       store16(letters.data(), 2 * static_cast<std::uint32_t>(column.size()));
       for (std::size_t i = 0; i < column.size(); ++i) {
         letters[2 + 2 * i] = static_cast<std::uint8_t>(column[i]);
       }
       std::uint8_t* page = file.definition(table);
       return std::search(page, page + kJet4.pageSize, letters.begin(), letters.end()) + 2;
     }},
    {"page", [](auto& file, auto& w) { return file.page(row(file, w).page); }},
    {"entry", [](auto& file, auto& w) { return file.rowEntry(row(file, w)); }},
    {"row", [](auto& file, auto& w) { return file.rowBytes(row(file, w)); }},
    {"end",
     [](auto& file, auto& w) {
       const RowId id = row(file, w);
       const PageRef page = file.pager().read(id.page);
       const std::size_t length = DataPage(kJet4, page.view()).slot(id.row).length;
       return file.rowBytes(id) + length;
     }},
    {"field",
     [](auto& file, auto& w) {
       const std::string table = word(w);
       const RowId id = file.rows(table).at(number(w));
       return file.field(table, id, word(w)).data();
     }},
    {"object",
     [](auto& file, auto& w) {
       const RowId id = file.database().find(word(w))->row;
       return file.field("MSysObjects", id, word(w)).data();
     }},
    {"moved",
     [](auto& file, auto& w) { return file.rowBytes(file.movedRow("Moved", number(w)).row); }},
    {"part", [](auto& file, auto& w) { return file.rowBytes(part(file, w)); }},
    {"partPage", [](auto& file, auto& w) { return file.page(part(file, w).page); }},
    {"index", [](auto& file, auto& w) { return file.page(indexPage(file, w)); }},
};

/// Where the fields of a place are.
const std::map<std::string, std::size_t> kFields{
    {"definition rowCount", kJet4.definition.rowCount},
    {"definition nextPage", kJet4.definition.nextPage},
    {"definition length", kJet4.definition.length},
    {"definition columnCount", kJet4.definition.columnCount},
    {"definition indexCount", kJet4.definition.indexCount},
    {"definition realIndexCount", kJet4.definition.realIndexCount},
    {"definition ownedPages", kJet4.definition.ownedPages},
    {"definition freePages", kJet4.definition.freePages},
    {"definition autoNumber", kJet4.definition.autoNumber},
    {"column type", kJet4.column.type},
    {"column number", kJet4.column.number},
    {"column variableIndex", kJet4.column.variableIndex},
    {"column sortOrder", kJet4.column.sortOrder},
    {"column sortVersion", kJet4.column.sortVersion},
    {"column flags", kJet4.column.flags},
    {"column extraFlags", kJet4.column.extraFlags},
    {"column length", kJet4.column.length},
    {"tree columns", kJet4.index.realColumns},
    {"tree flags", kJet4.index.realFlags},
    {"named tree", kJet4.index.logicalReal},
    {"named relationTable", kJet4.index.logicalRelationTable},
    {"page freeSpace", kJet4.data.freeSpace},
    {"page owner", kJet4.data.owner},
    {"page rowCount", kJet4.data.rowCount},
    {"page rowTable", kJet4.data.rowTable},
    {"partPage owner", kJet4.data.owner},
    {"index freeSpace", kJet4.indexPage.freeSpace},
    {"index owner", kJet4.indexPage.owner},
    {"index previous", kJet4.indexPage.previous},
    {"index next", kJet4.indexPage.next},
    {"index tail", kJet4.indexPage.tail},
    {"index prefixLength", kJet4.indexPage.prefixLength},
    {"index mask", kJet4.indexPage.mask}};

/// Numbers of the file: "Pane" (the page of the definition), "Pane/3" (the place of a row), and of
/// other things.
std::uint32_t numberOf(DamagedFile& file, const std::string& what) {
  const std::size_t slash = std::min(what.find('/'), what.size());
  const std::string kind = what.substr(0, slash);
  if (kind == what) return file.table(what).page;
  Words which(what.substr(slash + 1));
  if (kind == "owned") return file.table(word(which)).ownedPages.toPointer();
  if (kind == "part") return part(file, which).toPointer();
  if (kind == "moved") return file.movedRow("Moved", number(which)).content.toPointer();
  if (kind == "row")
    return static_cast<std::uint32_t>(std::stoul(what.substr(slash + 1), nullptr, 16));
  if (kind == "leaf") return spectraPage(file, word(which));
  return file.rows(kind).at(number(which)).toPointer();
}

/// "PLACE FIELD = BYTES": the field is a name or a number of bytes from the place on; bytes are
/// hexadecimal, in the order of the file, or those of a number of it ("@Pane"). "+" adds to a byte.
void changeBytes(DamagedFile& file, const std::string& kind, Words& words) {
  const std::size_t begin = words.tellg();
  kPlaces.at(kind)(file, words);
  const std::string field = word(words), sign = word(words), value = word(words);
  const auto named = kFields.find(kind + " " + field);
  const std::ptrdiff_t at =
      named != kFields.end() ? static_cast<std::ptrdiff_t>(named->second) : std::stol(field);
  Bytes bytes;
  if (value.starts_with('@')) {
    bytes.resize(4);
    store32(bytes.data(), numberOf(file, value.substr(1)));
  }
  for (std::size_t i = 0; !value.starts_with('@') && i + 1 < value.size(); i += 2) {
    bytes.push_back(static_cast<std::uint8_t>(std::stoul(value.substr(i, 2), nullptr, 16)));
  }
  Words again(words.str().substr(begin));
  std::uint8_t* place = kPlaces.at(kind)(file, again) + at;
  if (sign == "+") bytes[0] = static_cast<std::uint8_t>(bytes[0] + *place);
  std::ranges::copy(bytes, place);
}

/// A page that steps name: by its number, or by a row on it.
PageNumber pageOf(DamagedFile& file, Words& words) {
  const std::string what = word(words);
  return what.find('/') == what.npos ? static_cast<PageNumber>(std::stoul(what))
                                     : numberOf(file, what) >> 8;
}

/// Changes the entries of a page of the index of spectra.
void changeEntries(DamagedFile& file, PageNumber page,
                   const std::function<void(std::vector<Bytes>&)>& change) {
  IndexPageEditor editor = file.indexPage(page);
  std::vector<Bytes> entries = entriesOf(editor);
  change(entries);
  editor.assign(entries);
}

void setChild(Bytes& entry, PageNumber child) {
  for (int i = 0; i < 4; ++i) {
    entry[entry.size() - 1 - static_cast<std::size_t>(i)] =
        static_cast<std::uint8_t>(child >> 8 * i);
  }
}

/// A page at the end of the file that is neither free nor used.
PageNumber addPage(DamagedFile& file) {
  const PageNumber page = file.pager().append();
  FreePages(file.pager()).remove(page);
  return page;
}

/// A copy of the page of a table's first row, which the table does not list.
PageNumber copyPage(DamagedFile& file, const std::string& table) {
  const PageNumber page = addPage(file);
  const PageRef rows = file.pager().read(file.rows(table)[0].page);
  std::copy_n(rows.data(), kJet4.pageSize, file.page(page));
  return page;
}

/// A node above a page of the index of spectra, of which that is the only child.
PageNumber addNode(DamagedFile& file, PageNumber child) {
  const PageNumber page = addPage(file);
  IndexPageEditor::initialize(kJet4, file.page(page), file.table(kSpectra).page, 1);
  file.indexPage(page).setTail(child);
  return page;
}

/// What more steps do: the first word, and what reads the others.
const std::map<std::string, std::function<void(DamagedFile&, Words&)>> kDeeds{
    {"erase",
     [](auto& file, auto& w) {
       const RowId id = row(file, w);
       DataPageEditor(kJet4, file.page(id.page), id.page).erase(id.row);
     }},
    {"eraseObject",
     [](auto& file, auto& w) {
       const RowId id = file.database().find(word(w))->row;
       DataPageEditor(kJet4, file.page(id.page), id.page).erase(id.row);
     }},
    {"erasePart",
     [](auto& file, auto& w) {
       const RowId id = part(file, w);
       DataPageEditor(kJet4, file.page(id.page), id.page).erase(id.row);
     }},
    {"own",
     [](auto& file, auto& w) {
       const std::string table = word(w);
       file.ownedPages(table).add(pageOf(file, w));
     }},
    {"disown",
     [](auto& file, auto& w) {
       const std::string table = word(w);
       file.ownedPages(table).remove(pageOf(file, w));
     }},
    {"offer",
     [](auto& file, auto& w) {
       UsageMap room(file.pager(), file.table(word(w)).freePages);
       room.add(pageOf(file, w));
     }},
    {"free", [](auto& file, auto& w) { FreePages(file.pager()).add(pageOf(file, w)); }},
    {"disownPart",
     [](auto& file, auto& w) {
       UsageMap(file.pager(), *picture(file).longValuePages).remove(part(file, w).page);
     }},
    // The maps of a column's long values are those of another, which there is not.
    {"loseMaps",
     [](auto& file, auto& w) {
       const std::string table = word(w);
       const auto& columns = file.table(table).columns;
       const Column& column = columns.at(file.table(table).findColumn(word(w)).value());
       std::uint8_t pointer[4];
       store32(pointer, column.longValuePages->toPointer());
       std::uint8_t* page = file.definition(table);
       store16(std::search(page, page + kJet4.pageSize, pointer, pointer + 4) - 2, 77);
     }},
    {"shortenMap",
     [](auto& file, auto& w) {
       const RowId map = file.table(word(w)).ownedPages;
       DataPageEditor(kJet4, file.page(map.page), map.page)
           .replace(map.row, Bytes(5), SlotKind::row);
     }},
    // Gives an object the name of another, of the same length.
    {"rename",
     [](auto& file, auto& w) {
       const RowId taker = file.database().find(word(w))->row;
       const RowId given = file.database().find(word(w))->row;
       const auto name = file.field("MSysObjects", given, "Name");
       const Bytes taken(name.begin(), name.end());
       std::ranges::copy(taken, file.field("MSysObjects", taker, "Name").begin());
     }},
    {"addPages",
     [](auto& file, auto&) {
       for (const std::uint8_t kind : {0x77, 2, 3, 4, 5, 5}) *file.page(addPage(file)) = kind;
     }},
    {"addPart",
     [](auto& file, auto&) {
       RowSpace(file.pager(), kLongValueOwner, *picture(file).longValuePages,
                *picture(file).longValueFreePages)
           .add(Bytes(10, 0x55), SlotKind::row);
     }},
    {"copyPage", [](auto& file, auto& w) { copyPage(file, word(w)); }},
    {"copyDeadPage",
     [](auto& file, auto& w) {
       const PageNumber page = copyPage(file, word(w));
       DataPageEditor rows(kJet4, file.page(page), page);
       for (std::uint8_t i = 0; i < rows.read().rowCount(); ++i) rows.erase(i);
     }},
    {"addHidden",
     [](auto& file, auto& w) {
       const PageNumber page = file.rows(word(w))[0].page;
       DataPageEditor rows(kJet4, file.page(page), page);
       for (std::size_t left = number(w); left > 0; --left)
         rows.add(Bytes(20, 0x55), SlotKind::hidden);
     }},
    {"pointFreeMapAside",
     [](auto& file, auto&) {
       std::uint8_t* map = file.rowBytes(FreePages::kPlace);
       std::fill_n(map, 69, std::uint8_t{0});
       map[0] = 1;  // pointers
       map[66] = 0x80;
     }},
    // Nulls, and several rows with the same group, of which the index is made the key.
    {"makeGroupsTheKey",
     [](auto& file, auto&) {
       const RealIndex& index = file.index("Pane", "Groups");
       indexBlock(file, "Pane", index.number)[kJet4.index.realFlags] = 0x89;
       std::uint8_t* named = indexBlock(file, "Pane", file.table("Pane").realIndexes.size());
       for (; load32(named + kJet4.index.logicalReal) != index.number;) named += 28;
       named[kJet4.index.logicalType] = 1;
     }},
    {"emptyRoot",
     [](auto& file, auto&) {
       std::uint8_t* root = file.page(spectraPage(file, "root"));
       std::fill(root + kJet4.indexPage.tail, root + kJet4.pageSize, std::uint8_t{0});
     }},
    {"swapEntries",
     [](auto& file, auto& w) {
       changeEntries(file, indexPage(file, w), [](auto& all) { std::swap(all[3], all[4]); });
     }},
    {"eraseEntry", [](auto& file, auto& w) { file.indexPage(indexPage(file, w)).erase(5); }},
    {"pointEntryAt",
     [](auto& file, auto& w) {
       const std::uint32_t place = numberOf(file, word(w));
       changeEntries(file, indexPage(file, w), [&](auto& all) {
         for (std::size_t i = 1; i <= 4; ++i) all[1].end()[-i] = place >> 8 * (i - 1) & 0xff;
       });
     }},
    {"eraseContent",
     [](auto& file, auto& w) {
       const RowId id = file.movedRow("Moved", number(w)).content;
       DataPageEditor(kJet4, file.page(id.page), id.page).erase(id.row);
     }},
    {"freePart", [](auto& file, auto& w) { FreePages(file.pager()).add(part(file, w).page); }},
    {"repeatEntry",
     [](auto& file, auto& w) {
       changeEntries(file, indexPage(file, w),
                     [](auto& all) { all.insert(all.begin(), Bytes(all.front())); });
     }},
    {"repeatKey",
     [](auto& file, auto& w) {
       changeEntries(file, indexPage(file, w), [](auto& all) {
         std::copy_n(all[0].begin(), all[0].size() - IndexPage::kPointerSize, all[1].begin());
       });
     }},
    // The entry of a Null that does not count.
    {"addEntryOfNull",
     [](auto& file, auto&) {
       const RowId id = file.rows("Pane")[7];
       changeEntries(file, file.index("Pane", "Groups").root, [&](auto& all) {
         all.push_back({0xff, 0, static_cast<std::uint8_t>(id.page >> 8),
                        static_cast<std::uint8_t>(id.page), id.row});
       });
     }},
    {"leadToFirstLeafTwice",
     [](auto& file, auto&) {
       const PageNumber first = spectraPage(file, "0");
       changeEntries(file, spectraPage(file, "root"), [&](auto& all) { setChild(all[1], first); });
     }},
    {"leadToLeafByNode",
     [](auto& file, auto&) {
       const PageNumber node = addNode(file, spectraPage(file, "1"));
       changeEntries(file, spectraPage(file, "root"), [&](auto& all) { setChild(all[1], node); });
     }},
    {"leadToLeafByManyNodes",
     [](auto& file, auto&) {
       PageNumber node = spectraPage(file, "1");
       for (std::size_t i = 0; i < kMaxIndexDepth; ++i) node = addNode(file, node);
       changeEntries(file, spectraPage(file, "root"), [&](auto& all) { setChild(all[1], node); });
     }},
    // The first entry of the root, which parts the first two leaves.
    {"changeParting",
     [](auto& file, auto& w) {
       const std::string how = word(w);
       const Bytes next = file.indexPage(spectraPage(file, "1")).entry(0);
       changeEntries(file, spectraPage(file, "root"), [&](auto& all) {
         Bytes& entry = all[0];
         const auto child = [&] { return entry.end() - IndexPage::kChildSize; };
         if (how == "down") entry[4] -= 1;
         if (how == "slightly") entry[entry.size() - 9] ^= 1;
         if (how == "longer") entry.insert(child(), 0);
         if (how == "next")
           entry.insert(entry.erase(entry.begin(), child()), next.begin(), next.end());
       });
     }},
    // The last leaf gets an entry in the root, which comes after all.
    {"partBehindTheLast",
     [](auto& file, auto&) {
       const PageNumber root = spectraPage(file, "root");
       const PageNumber last = file.indexPage(root).tail();
       changeEntries(file, root, [&](auto& all) {
         all.push_back(Bytes(all.back().size(), 0xff));
         setChild(all.back(), last);
       });
       file.indexPage(root).setTail(0);
     }},
    {"disownLeaf",
     [](auto& file, auto&) {
       UsageMap pages(file.pager(), file.index(kSpectra, "PaneAngle").ownedPages);
       pages.remove(spectraPage(file, "1"));
     }},
    {"ownMoreForIndex",
     [](auto& file, auto&) {
       const PageNumber page = addPage(file);
       UsageMap(file.pager(), file.index(kSpectra, "PaneAngle").ownedPages).add(page);
     }},
};

void inflict(DamagedFile& file, const std::string& step) {
  Words words(step);
  std::string kind;
  words >> kind;
  const auto deed = kDeeds.find(kind);
  deed != kDeeds.end() ? deed->second(file, words) : changeBytes(file, kind, words);
}

/// What reading the tables, and their rows in the order of their indexes, comes upon.
void readAll(Database& database, const std::function<void(const std::string&)>& note) {
  const auto raised = raisedBy([&] {
    for (const CatalogEntry& entry : std::vector(database.entries())) {
      if (entry.kind != CatalogEntry::Kind::table) continue;
      note(raisedBy([&] {
             const auto table = database.table(entry.name);
             const std::size_t rows = orv::test::rowsOf(*table).size(),
                               counted = table->countRows();
             if (rows != counted) note(fmt::format("{} rows, but {} are counted", rows, counted));
           }).description);
      note(raisedBy([&] {
             RowReader rows(database.table(entry.name));
             std::size_t lacking = 0;
             for (std::size_t i = 0; i < rows.table().definition().realIndexes.size(); ++i) {
               for (IndexCursor at = rows.table().index(i).first(); at.next();) {
                 lacking += rows.read(at.rowId()) == nullptr ? 1 : 0;
               }
             }
             if (lacking > 0) note(fmt::format("{} entries without a row", lacking));
           }).description);
    }
  });
  note(raised.description);
}

/// Counts what cannot be read of rows that are deleted.
class UnreadRows : public ChangeObserver {
 public:
  void rowChanged(const std::string&, std::span<const Value>, std::span<const Value>) override {}
  void rowNotRead() override { ++count; }
  std::size_t mark() const override { return 0; }
  void forgetSince(std::size_t) override {}
  void rolledBack() override {}
  std::uint64_t committing() noexcept override { return 0; }
  void committed() noexcept override {}

  int count = 0;
};

std::string repeated(const std::string& text, std::size_t times) {
  std::string all;
  for (std::size_t i = 0; i < times; ++i) all += text;
  return all;
}

/// "insert TABLE ROW COLUMN VALUE" (a copy of the row), "update" likewise, "delete TABLE ROW": a
/// row is one of the sound file. Of a value, "m*250" are many letters; "-" is Null.
std::string change(Database& database, const std::map<std::string, std::vector<RowId>>& rows,
                   const std::string& step) {
  Words words(step.substr(5));
  const std::string what = word(words), name = word(words);
  const RowId id = rows.at(name).at(number(words));
  const auto observer = std::make_shared<UnreadRows>();
  database.pager().observe(observer);
  const auto raised = raisedBy([&] {
    const auto table = database.table(name);
    const TableDefinition& definition = table->definition();
    if (what == "delete") return table->erase(id);
    std::vector<Value> values;
    const auto found = table->row(id);
    if (!found) throw Error(kNoCurrentRecord, "the row is not there");
    const RowView& view = *found;
    for (const Column& column : definition.columns) {
      values.push_back(column.autoNumber && what == "insert" ? Value() : view.value(column));
    }
    const std::string column = word(words), text = word(words);
    const std::size_t star = text.find('*');
    values.at(definition.findColumn(column).value()) =
        text == "-" ? Value()
        : star == text.npos
            ? Value(text)
            : Value(repeated(text.substr(0, star), std::stoul(text.substr(star + 1))));
    what == "insert" ? void(table->insert(values)) : table->update(id, values);
  });
  database.pager().observe(nullptr);
  return step + ": " + (observer->count > 0 ? "not read whole, " : "") +
         (raised.number == 0 ? "done" : raised.description);
}

/// What a check says, of many findings of one table and index the first and the last: then the sum
/// of all comes first. Of what it advises the first sentence is enough.
std::string shortened(const CheckReport& report) {
  std::istringstream lines(textOf(report));
  std::vector<std::string> all;
  for (std::string line; std::getline(lines, line); all.push_back(line)) {
    const std::size_t advice = line.find(". ");
    if (advice != line.npos) line.resize(line.find('.', advice + 1) + 1);
  }
  const auto ownerOf = [](const std::string& line) { return line.substr(0, line.find(", page")); };
  std::string text;
  std::size_t left = 0;
  for (std::size_t i = 0; i < all.size(); ++i) {
    const bool isWithin = i > 1 && i + 1 < all.size() && ownerOf(all[i - 1]) == ownerOf(all[i]) &&
                          ownerOf(all[i + 1]) == ownerOf(all[i]);
    left += isWithin ? 1 : 0;
    if (!isWithin) text += all[i] + "\n";
  }
  return left == 0 ? text : fmt::format("{:x}: {}", orv::test::sumOf(textOf(report)), text);
}

/// Damages the sample, checks it, reads it, and compacts or repairs it; or, where it is changed,
/// checks it again.
std::vector<std::string> foundOf(const std::string& sound, const orv::test::Content& content,
                                 const std::vector<std::string>& steps) {
  std::vector<std::string> found;
  DamagedFile file(sound, "damaged");
  const std::string path = file.path().string();
  const auto note = [&](std::string text) {
    for (std::size_t at = 0; (at = text.find(path)) != text.npos;)
      text.replace(at, path.size(), "~");
    const std::size_t advice = text.find(" Check the file to see what is affected");
    std::istringstream lines(text.substr(0, advice));
    for (std::string line; std::getline(lines, line);) {
      line.erase(line.find_last_not_of(" ;") + 1);
      if (found.empty() || found.back() != line) found.push_back(line);
    }
  };
  SCOPED_TRACE(steps.front());
  std::map<std::string, std::vector<RowId>> rows;
  for (const char* table : {"Groups", "Pane", "Frame", "Moved", kSpectra})
    rows[table] = file.rows(table);
  const auto isChange = [](const std::string& step) { return step.starts_with("then "); };
  for (const std::string& step : steps) {
    if (!isChange(step)) inflict(file, step);
  }
  file.save();
  const CheckReport report = checkFile(path, "");
  note(shortened(report));
  const auto database = Database::open(path, "");
  readAll(*database, [&](const std::string& text) { note(text.empty() ? "" : "read: " + text); });
  if (isChange(steps.back())) {
    for (const std::string& step : steps) {
      if (isChange(step)) note(change(*database, rows, step));
    }
    const CheckReport after = checkFile(path, "");
    note(fmt::format("then {} faults, {} remarks", after.faultCount, after.remarkCount));
    const std::string name = [&] {
      Words words(steps.back().substr(5));
      word(words);
      return word(words);
    }();
    const auto raised = raisedBy([&] {
      const auto table = database->table(name);
      std::string keys = fmt::format("{} rows, keys", table->rowCount());
      for (std::size_t i = 0; i < table->definition().realIndexes.size(); ++i) {
        keys += fmt::format(" {}", table->keyCount(i));
      }
      note(keys);
    });
    note(raised.description);
    return found;
  }
  const orv::test::TemporaryFolder folder;
  const std::string made = folder / "made.mdb";
  if (report.sound()) {
    note("compacted: " + raisedBy([&] { compactFile(path, "", made); }).description);
    fs::remove(made);
  }
  const auto raised = raisedBy([&] { note("repaired: " + textOf(repairFile(path, "", made))); });
  if (raised.number != 0) {
    note("not repaired: " + raised.description);
    return found;
  }
  const std::string differs = orv::test::difference(content, contentOf(made));
  if (!differs.empty()) {
    const std::string text = orv::test::describe(*Database::open(made, ""));
    note(fmt::format("differs: {}: {:x}", differs, orv::test::sumOf(text)));
  }
  const CheckReport left = checkFile(made, "");
  if (!left.sound()) note("left: " + shortened(left));
  return found;
}

class CheckDamage : public testing::TestWithParam<const char*> {};

TEST_P(CheckDamage, IsFoundAndNamed) {
  const orv::test::TemporaryFolder folder;
  const std::string sound = folder / "sound.mdb";
  makeSampleFile(sound);
  const orv::test::Content content = contentOf(sound);
  const std::string expected =
      orv::test::readFile(fmt::format(ORV_SOURCE_DIR "/tests/store/damages/{}.txt", GetParam()));
  const std::string found = orv::test::retold(
      expected, [&](const auto& steps) { return foundOf(sound, content, steps); });
  EXPECT_EQ(found, expected);
}

INSTANTIATE_TEST_SUITE_P(, CheckDamage,
                         testing::Values("definitions", "rows", "values", "pages", "catalogue",
                                         "indexes", "oddities", "changes"),
                         [](const auto& info) { return std::string(info.param); });

}  // namespace
}  // namespace orv::store::jet
