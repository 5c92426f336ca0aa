// Each kind of damage is found where it is, and said in words; what only looks odd is a remark.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "store/Check.h"
#include "store/Compact.h"
#include "store/DamagedFile.h"
#include "store/FileContent.h"
#include "store/SampleFile.h"
#include "store/jet/page/DataPage.h"
#include "store/jet/page/FreePages.h"
#include "store/jet/page/UsageMap.h"
#include "store/jet/row/LongValue.h"
#include "store/jet/row/RowSpace.h"
#include "support/TemporaryFolder.h"

namespace orv::store::jet {
namespace {

namespace fs = std::filesystem;
using orv::test::contentOf;
using orv::test::makeSampleFile;
using orv::test::textOf;

/// A way to damage a file, known by words that a check has for it.
struct Damage {
  const char* words;
  std::function<void(DamagedFile&)> inflict;
};

constexpr const char* kSpectra = "Pane_spectral_data";

std::uint8_t byteOf(PageType type) {
  return static_cast<std::uint8_t>(type);
}

/// The part of a definition for an index tree, behind the columns and their names (of two bytes a
/// letter); behind the last tree those for the names of indexes begin.
std::uint8_t* indexBlock(DamagedFile& file, const std::string& table, std::size_t number) {
  const auto& columns = file.table(table).columns;
  std::uint8_t* at = file.columnBlock(table, columns.size());
  for (const Column& column : columns) at += 2 + 2 * column.name.size();
  return at + number * kJet4.index.realSize;
}

/// That for the first name of an index, behind the trees.
std::uint8_t* nameBlock(DamagedFile& file, const std::string& table) {
  return indexBlock(file, table, file.table(table).realIndexes.size());
}

/// Gives the first column of a table, by which there is an index, a type of no index.
Damage typedAs(const char* words, int type) {
  return {words, [type](auto& file) {
            file.columnBlock("Groups")[kJet4.column.type] = static_cast<std::uint8_t>(type);
          }};
}

/// Exchanges what two columns have in a place of their blocks.
Damage exchanged(const char* words, const char* table, std::size_t one, std::size_t other,
                 std::size_t place) {
  return {words, [=](auto& file) {
            std::uint8_t* at = file.columnBlock(table, one) + place;
            std::swap_ranges(at, at + 2, file.columnBlock(table, other) + place);
          }};
}

/// Gives a row another value in a column.
void setValue(DamagedFile& file, const std::string& table, RowId row, const std::string& column,
              const Value& value) {
  const auto changed = file.database().table(table);
  std::vector<Value> values;
  for (const Column& each : file.table(table).columns) {
    values.push_back(each.name == column ? value : changed->row(row)->value(each));
  }
  changed->update(row, values);
}

const std::vector<Damage> kDefinitionDamage{
    {"should define table 'Pane'",
     [](auto& file) { *file.definition("Pane") = byteOf(PageType::usageMap); }},
    {"form a loop",
     [](auto& file) {
       store32(file.definition("Frame") + kJet4.definition.nextPage, file.table("Frame").page);
     }},
    {"100000 bytes",
     [](auto& file) { store32(file.definition("Groups") + kJet4.definition.length, 100000); }},
    {"more columns or indexes than are possible",
     [](auto& file) { store16(file.definition("Groups") + kJet4.definition.columnCount, 4000); }},
    {"type that there is not",
     [](auto& file) { file.columnBlock("Groups")[kJet4.column.type] = 0x77; }},
    {"number of another column",
     [](auto& file) {  // of one without an index
       const auto third = load16(file.columnBlock("Frame", 2) + kJet4.column.number);
       store16(file.columnBlock("Frame", 3) + kJet4.column.number, third);
     }},
    {"but rows have at most 5 columns",
     [](auto& file) { store16(file.columnBlock("Frame", 3) + kJet4.column.number, 5); }},
    {"of which there are 2",
     [](auto& file) { store16(file.columnBlock("Groups", 2) + kJet4.column.variableIndex, 2); }},
    {"the definition of column 'Remark' has the place of another column",
     [](auto& file) { store16(file.columnBlock("Groups", 2) + kJet4.column.variableIndex, 0); }},
    {"has a key of other values",
     [](auto& file) { store16(indexBlock(file, "Groups", 0) + kJet4.index.realColumns, 0xffff); }},
    typedAs("a structure runs past its end", 0x0b),
    typedAs("a structure runs past its end", 0x13),
    typedAs("a structure runs past its end", 0x14),
    exchanged("has a key of other values", "MSysACEs", 0, 2, kJet4.column.fixedOffset),
    exchanged("has a key of other values", "MSysACEs", 0, 2, kJet4.column.number),
    exchanged("has a key of other values", "MSysQueries", 4, 7, kJet4.column.variableIndex),
    {"a structure runs past its end",
     [](auto& file) { file.columnBlock("All types", 4)[kJet4.column.flags] &= 0xfe; }},
    {"column 'Attribute' has 4 bytes, but takes at most 1",
     [](auto& file) { file.columnBlock("MSysQueries", 0)[kJet4.column.flags] &= 0xfe; }},
    {"column 'SupplierName' has 14 bytes, but takes at most 13",
     [](auto& file) { store16(file.columnBlock("Suppliers", 1) + kJet4.column.length, 13); }},
};

/// What is not in the way of reading a file, but of making its tables anew.
const std::vector<Damage> kQuietDamage{
    {"",  // no name of the last column
     [](auto& file) {
       std::uint8_t* at = indexBlock(file, "Moved", 0) - 4;
       store16(at, 0);
       std::copy(at + 4, at + 104, at + 2);
     }},
    {"", [](auto& file) { store16(file.definition("Moved") + kJet4.definition.columnCount, 0); }},
    {"", [](auto& file) { file.columnBlock("All types", 1)[kJet4.column.flags] &= 0xfe; }},
    {"", [](auto& file) { file.columnBlock("MSysObjects", 7)[kJet4.column.type] = 6; }},
    {"", [](auto& file) { nameBlock(file, "Groups")[kJet4.index.logicalType] = 3; }},
    {"", [](auto& file) { store16(nameBlock(file, "Groups") + kJet4.index.logicalSize, 0); }},
    typedAs("of a type that cannot be indexed", 0x0d),
    typedAs("of a type that cannot be indexed", 0x0e),
    typedAs("of a type that cannot be indexed", 0x11),
    {"", [](auto& file) { store16(file.columnBlock("Suppliers", 1) + kJet4.column.length, 14); }},
    {"",
     [](auto& file) {
       for (const char* column : {"Name", "Flags"}) {
         setValue(file, "MSysObjects", file.database().find("Shading")->row, column, Value());
       }
     }},
    {"",
     [](auto& file) {
       setValue(file, "MSysObjects", file.database().find("Groups")->row, "Type", Value());
     }},
};

/// A definition that is not whole, so that only what its map leads to is believed.
void makeUnsure(DamagedFile& file, const std::string& table) {
  file.columnBlock(table, 1)[kJet4.column.type] = 0x77;
}

void eraseRow(DamagedFile& file, RowId row) {
  DataPageEditor(file.format(), file.page(row.page), row.page).erase(row.row);
}

/// A page at the end of the file that is neither free nor used.
PageNumber addPage(DamagedFile& file) {
  const PageNumber page = file.pager().append();
  FreePages(file.pager()).remove(page);
  return page;
}

const std::vector<Damage> kRowDamage{
    {"outside the page's rows",
     [](auto& file) { store16(file.rowEntry(file.rows(kSpectra)[10]), 0x1fff); }},
    {"1234 free bytes",
     [](auto& file) { store16(file.firstPage(kSpectra) + kJet4.data.freeSpace, 1234); }},
    {"its table of rows is longer than the page",
     [](auto& file) { store16(file.firstPage("Frame") + kJet4.data.rowCount, 3000); }},
    {"its table of rows is longer than the page",
     [](auto& file) {
       std::uint8_t* page = file.firstPage("Frame");
       store16(page + kJet4.data.rowTable, 0x1fff);
       store16(page + kJet4.data.rowCount, 3000);
     }},
    {"says that it belongs to the table defined on page",
     [](auto& file) {
       store32(file.firstPage(kSpectra) + kJet4.data.owner, file.table("Pane").page);
     }},
    {"is a page of another kind",
     [](auto& file) { *file.firstPage(kSpectra) = byteOf(PageType::indexLeaf); }},
    {"columns",
     [](auto& file) {
       store16(file.rowBytes(file.rows("Suppliers")[1]), file.table("Suppliers").maxColumns + 1u);
     }},
    {"variable columns",
     [](auto& file) {
       const RowId row = file.rows("Suppliers")[1];
       const std::size_t length =
           DataPage(file.format(), file.pager().read(row.page).view()).slot(row.row).length;
       const std::size_t mask = (file.table("Suppliers").maxColumns + 7u) / 8;
       // The end of the first variable column, after the number of them and the first's begin.
       store16(file.rowBytes(row) + length - mask - 6, 0x0fff);
     }},
    {"a row has more variable columns than its table",
     [](auto& file) {
       const RowId row = file.rows("Suppliers")[1];
       const std::size_t length =
           DataPage(file.format(), file.pager().read(row.page).view()).slot(row.row).length;
       store16(file.rowBytes(row) + length - 3, file.table("Suppliers").variableColumns + 1u);
     }},
    {"row 200",
     [](auto& file) {
       const auto [row, content] = file.movedRow("Moved");
       store32(file.rowBytes(row), RowId{content.page, 200}.toPointer());
     }},
    {"that page is not one of the table's",
     [](auto& file) {
       const auto row = file.movedRow("Moved").row;
       store32(file.rowBytes(row), file.rows("MSysObjects")[0].toPointer());
     }},
    {"its former place does not lead to it",
     [](auto& file) { eraseRow(file, file.movedRow("Moved").row); }},
    {"belongs to memos and pictures, but is used by the table",
     [](auto& file) { store32(file.firstPage(kSpectra) + kJet4.data.owner, kLongValueOwner); }},
    {"belongs to the table defined on page 4711",
     [](auto& file) { store32(file.firstPage(kSpectra) + kJet4.data.owner, 4711); }},
    {"has been moved to row 49 of page 124, and another row too",
     [](auto& file) {
       const auto [row, content] = file.movedRow("Moved");
       const RowId other = file.rows("Moved")[1];
       store16(file.rowEntry(other), load16(file.rowEntry(other)) | 0x4000);
       store32(file.rowBytes(other), content.toPointer());
     }},
    {"but that is no moved row",
     [](auto& file) { eraseRow(file, file.movedRow("Moved").content); }},
    {"it leads to page",
     [](auto& file) { file.columnBlock("Suppliers", 1)[kJet4.column.type] = 0x0c; }},
    {"its former place does not lead to it",  // and it cannot be read
     [](auto& file) {
       const auto [row, content] = file.movedRow("Moved");
       eraseRow(file, row);
       store16(file.rowBytes(content), 999);
     }},
    {"its former place does not lead to it",
     [](auto& file) {
       eraseRow(file, file.movedRow("Moved").row);
       makeUnsure(file, "Moved");
     }},
    {"has a type that there is not",
     [](auto& file) {
       file.ownedPages("Groups").remove(file.rows("Groups")[0].page);
       makeUnsure(file, "Groups");
     }},
    {"not listed as one of its pages",  // with more rows than the table lacks
     [](auto& file) {
       file.ownedPages("Groups").remove(file.rows("Groups")[0].page);
       store32(file.definition("Groups") + kJet4.definition.rowCount, 3);
     }},
    {"says that it has 255 rows, but 0",  // as many as a page may have, and one more
     [](auto& file) {
       store32(file.definition("Groups") + kJet4.definition.rowCount, 255);
       store32(file.firstPage("Groups") + kJet4.data.owner, 4711);
     }},
    {"says that it has 256 rows, but 0",
     [](auto& file) {
       store32(file.definition("Groups") + kJet4.definition.rowCount, 256);
       store32(file.firstPage("Groups") + kJet4.data.owner, 4711);
     }},
    {"Page 154: row 0 lies outside the page's rows",  // of former days, and no row of it can be
                                                      // read
     [](auto& file) {
       const PageNumber page = addPage(file);
       std::copy_n(file.firstPage("Groups"), kJet4.pageSize, file.page(page));
       for (std::size_t row = 0; row < 4; ++row) {
         store16(file.page(page) + kJet4.data.rowTable + 2 * row, 0x1fff);
       }
     }},
    {"more faults",
     [](auto& file) {
       const std::vector<RowId> rows = file.rows(kSpectra);
       for (std::size_t i = 0; i < 60; i += 2) store16(file.rowEntry(rows[i]), 0x1fff);
     }},
};

const std::vector<Damage> kLongValueDamage{
    {"do not add up to its length",
     [](auto& file) { store32(file.rowBytes(file.longValue("Frame", "picture").parts[0]), 0); }},
    {"part of two memos or pictures",
     [](auto& file) {
       const auto parts = file.longValue("Frame", "picture").parts;
       store32(file.rowBytes(parts[1]), parts[0].toPointer());
     }},
    {"do not add up to its length",
     [](auto& file) {
       const RowId row = file.longValue("Frame", "picture").row;
       std::uint8_t* definition = file.field("Frame", row, "picture").data();
       store32(definition, load32(definition) + 1);
     }},
    {"part of two memos or pictures",  // of one as long as may be
     [](auto& file) {
       const auto [row, parts] = file.longValue("Frame", "picture");
       store32(file.rowBytes(parts[1]), parts[0].toPointer());
       store32(file.field("Frame", row, "picture").data(), LongValueDefinition::kLengthMask);
     }},
    {"a structure runs past its end",  // longer than the row
     [](auto& file) {
       const RowId row = file.rows("All types")[1];
       std::uint8_t* definition = file.field("All types", row, "Remark").data();
       store32(definition, load32(definition) + 1);
     }},
    {"but is used by memos and pictures",
     [](auto& file) {
       const PageNumber page = file.longValue("Frame", "picture").parts[1].page;
       store32(file.page(page) + kJet4.data.owner, file.table("Frame").page);
     }},
};

const std::vector<Damage> kPageDamage{
    {"not marked as the header", [](auto& file) { *file.page(0) = 1; }},
    {"serves something else too",
     [](auto& file) {
       store32(file.definition("Pane") + kJet4.definition.freePages,
               file.table("Pane").ownedPages.toPointer());
     }},
    {"map of pages is of an unknown kind",
     [](auto& file) { *file.rowBytes(file.table("Pane").ownedPages) = 7; }},
    {"map of pages is of an unknown kind",
     [](auto& file) { *file.rowBytes(FreePages::kPlace) = 7; }},
    {"a map of pages is too short",
     [](auto& file) {
       const RowId map = file.table("Pane").ownedPages;
       DataPageEditor(kJet4, file.page(map.page), map.page)
           .replace(map.row, Bytes(5), SlotKind::row);
     }},
    {"used twice: by the rows of table 'Groups'",
     [](auto& file) { file.ownedPages("Suppliers").add(file.rows("Groups")[0].page); }},
    {"not listed as one of its pages",
     [](auto& file) { file.ownedPages("Groups").remove(file.rows("Groups")[0].page); }},
    {"having room",
     [](auto& file) {
       UsageMap(file.pager(), file.table("Suppliers").freePages).add(file.rows("Groups")[0].page);
     }},
    {"serves something else too",
     [](auto& file) {
       store32(file.definition("Shading") + kJet4.definition.ownedPages,
               file.table("Pane").ownedPages.toPointer());
     }},
    {"calls pages free that every file needs", [](auto& file) { FreePages(file.pager()).add(2); }},
    {"listed as free, but is in use by the rows of table",
     [](auto& file) { FreePages(file.pager()).add(file.rows("Pane")[0].page); }},
    {"but the file has only", [](auto& file) { file.ownedPages("Groups").add(500); }},
    {"should be here, but the page is in use",
     [](auto& file) {
       store32(file.definition("Shading") + kJet4.definition.ownedPages,
               file.rows("Groups")[2].toPointer());
     }},
};

/// Two names of the same length.
void giveNameOf(DamagedFile& file, const std::string& one, const std::string& other) {
  const RowId given = file.database().find(one)->row;
  const RowId taker = file.database().find(other)->row;
  const auto name = file.field("MSysObjects", given, "Name");
  const Bytes taken(name.begin(), name.end());
  std::ranges::copy(taken, file.field("MSysObjects", taker, "Name").begin());
}

/// Gives the entry of table "Shading" another number.
void renumber(DamagedFile& file, const std::string& column, std::uint32_t number) {
  const RowId shading = file.database().find("Shading")->row;
  store32(file.field("MSysObjects", shading, column).data(), number);
}

/// Deletes the entry of table "Groups". So many entries there are to have been.
void loseEntry(DamagedFile& file, std::uint32_t count) {
  eraseRow(file, file.database().find("Groups")->row);
  store32(file.definition("MSysObjects") + kJet4.definition.rowCount, count);
}

const std::vector<Damage> kCatalogDamage{
    {"has the id of",
     [](auto& file) {
       renumber(file, "Id", static_cast<std::uint32_t>(file.database().find("Pane")->id));
     }},
    {"the file has only", [](auto& file) { renumber(file, "Id", 99999); }},
    {"has the name of another table or query",
     [](auto& file) { giveNameOf(file, "Moved", "Frame"); }},
    {"has the name of another table or query",
     [](auto& file) { giveNameOf(file, "MSysQueries", "MSysObjects"); }},
    {"query 'MSysACEs' has the name of another table or query",
     [](auto& file) { giveNameOf(file, "MSysACEs", "qryPanes"); }},
    {"has no parts",
     [](auto& file) {
       for (const RowId row : file.rows("MSysQueries")) eraseRow(file, row);
     }},
    {"query 'qryPanes' lacks its last part",
     [](auto& file) { eraseRow(file, file.rows("MSysQueries").back()); }},
    {"there are parts of a query",
     [](auto& file) { eraseRow(file, file.database().find("qryPanes")->row); }},
    {"Table 'Shading', page 4294967280", [](auto& file) { renumber(file, "Id", 0xfffffff0); }},
    {"Table 'Shading': a structure runs past its end", [](auto& file) { renumber(file, "Id", 0); }},
    {"leads to a row that is not there",  // a definition on a page that is free
     [](auto& file) {
       const CatalogEntry groups = *file.database().find("Groups");
       FreePages(file.pager()).add(static_cast<PageNumber>(groups.id));
       eraseRow(file, groups.row);
     }},
    {"leads to a row that is not there", [](auto& file) { loseEntry(file, 18); }},
    {"leads to a row that is not there", [](auto& file) { loseEntry(file, 17); }},
    {"leads to a row that is not there",
     [](auto& file) {
       loseEntry(file, 17);
       FreePages(file.pager()).add(2);
     }},
    {"leads to a row that is not there",  // and where the catalogue has lost more
     [](auto& file) {
       loseEntry(file, 17);
       renumber(file, "Id", 99999);
     }},
    {"outside the page's rows",
     [](auto& file) {
       store16(file.rowEntry(file.database().find("Shading")->row), 0x1fff);
       loseEntry(file, 16);
     }},
    {"leads to a row that is not there",
     [](auto& file) {
       loseEntry(file, 17);
       file.columnBlock("MSysObjects", 7)[kJet4.column.type] = 6;
     }},
    {"map of pages is of an unknown kind",  // and where it is not known which pages are free
     [](auto& file) {
       eraseRow(file, file.database().find("Groups")->row);
       *file.rowBytes(FreePages::kPlace) = 7;
     }},
    {"belongs to an object that is not", [](auto& file) { renumber(file, "ParentId", 4711); }},
    {"on page 777, but there is none",
     [](auto& file) {
       std::uint8_t* named = indexBlock(file, "Groups", file.table("Groups").realIndexes.size());
       store32(named + kJet4.index.logicalRelationTable, 777);
     }},
};

const RealIndex& spectraIndex(DamagedFile& file) {
  return file.index(kSpectra, "PaneAngle");
}

/// The page of the index of spectra that is its root (-1), or a leaf.
PageNumber spectraPage(DamagedFile& file, int leaf) {
  const RealIndex& index = spectraIndex(file);
  return leaf < 0 ? index.root : file.leaves(index)[static_cast<std::size_t>(leaf)];
}

/// The leaf of a key that needs but one.
PageNumber keyPage(DamagedFile& file, const std::string& table) {
  return file.index(table, "PrimaryKey").root;
}

/// Changes the entries of a page of an index.
void changeEntries(DamagedFile& file, PageNumber page,
                   const std::function<void(std::vector<Bytes>&)>& change) {
  IndexPageEditor editor = file.indexPage(page);
  std::vector<Bytes> entries = entriesOf(editor);
  change(entries);
  editor.assign(entries);
}

const std::vector<Damage> kIndexDamage{
    {"has Null in a column that the index requires",
     [](auto& file) {  // and several rows with the same group, of which the index is made the key
       const RealIndex& index = file.index("Pane", "Groups");
       indexBlock(file, "Pane", index.number)[kJet4.index.realFlags] = 0x89;
       std::uint8_t* named = indexBlock(file, "Pane", file.table("Pane").realIndexes.size());
       for (; load32(named + kJet4.index.logicalReal) != index.number;) named += 28;
       named[kJet4.index.logicalType] = 1;
     }},
    {"leads to no leaf of the index",
     [](auto& file) {
       std::uint8_t* root = file.page(spectraPage(file, -1));
       std::fill(root + kJet4.indexPage.tail, root + kJet4.pageSize, std::uint8_t{0});
     }},
    {"is out of order",
     [](auto& file) {
       changeEntries(file, spectraPage(file, 1), [](auto& all) { std::swap(all[3], all[4]); });
     }},
    {"no entry in the index", [](auto& file) { file.indexPage(spectraPage(file, 1)).erase(5); }},
    {"entry 7, for row 251",
     [](auto& file) {
       changeEntries(file, spectraPage(file, 1), [](auto& all) { all[7].back() = 251; });
     }},
    {"entry 1, for row",
     [](auto& file) {
       changeEntries(file, keyPage(file, "Pane"),
                     [](auto& all) { all.insert(all.begin(), Bytes(all.front())); });
     }},
    {"which the index does not allow",
     [](auto& file) {
       changeEntries(file, keyPage(file, "Pane"), [](auto& all) {
         std::copy_n(all[0].begin(), all[0].size() - IndexPage::kPointerSize, all[1].begin());
       });
     }},
    {"key of other values than the row",
     [](auto& file) {
       store32(file.field("Suppliers", file.rows("Suppliers")[1], "SupplierID").data(), 777);
     }},
    {"comes before it",
     [](auto& file) { file.indexPage(spectraPage(file, 2)).setPrevious(spectraPage(file, 0)); }},
    {"follows",
     [](auto& file) { file.indexPage(spectraPage(file, 1)).setNext(spectraPage(file, 0)); }},
    {"key of other values",
     [](auto& file) { ++file.page(spectraPage(file, 1))[kJet4.indexPage.prefixLength]; }},
    {"do not fit its mask",
     [](auto& file) { file.page(spectraPage(file, 1))[kJet4.indexPage.mask] |= 1; }},
    {"used twice by index",
     [](auto& file) {
       const PageNumber first = spectraPage(file, 0);
       changeEntries(file, spectraPage(file, -1), [&](auto& all) {
         for (int i = 0; i < 4; ++i) {
           all[1][all[1].size() - 1 - i] = static_cast<std::uint8_t>(first >> (8 * i));
         }
       });
     }},
    {"the last one below",
     [](auto& file) {
       changeEntries(file, spectraPage(file, -1),
                     [](auto& all) { all[0][all[0].size() - 9] ^= 1; });
     }},
    {"does not come before what follows",
     [](auto& file) {
       const Bytes next = file.indexPage(spectraPage(file, 1)).entry(0);
       changeEntries(file, spectraPage(file, -1), [&](auto& all) {
         all[0].erase(all[0].begin(), all[0].end() - IndexPage::kChildSize);
         all[0].insert(all[0].begin(), next.begin(), next.end());
       });
     }},
    {"the index of another table",
     [](auto& file) {
       store32(file.page(keyPage(file, "Groups")) + kJet4.indexPage.owner, file.table("Pane").page);
     }},
    {"17 free bytes",
     [](auto& file) {
       store16(file.page(keyPage(file, "Groups")) + kJet4.indexPage.freeSpace, 17);
     }},
    {"not listed as one of its pages",
     [](auto& file) {
       UsageMap(file.pager(), spectraIndex(file).ownedPages).remove(spectraPage(file, 1));
     }},
    {"but its tree does not have it",
     [](auto& file) {
       const PageNumber page = addPage(file);
       UsageMap(file.pager(), spectraIndex(file).ownedPages).add(page);
     }},
    {"should not be there",
     [](auto& file) {  // the entry of a Null that does not count
       const RowId row = file.rows("Pane")[7];
       changeEntries(file, file.index("Pane", "Groups").root, [&](auto& all) {
         all.push_back({0xff, 0, static_cast<std::uint8_t>(row.page >> 8),
                        static_cast<std::uint8_t>(row.page), row.row});
       });
     }},
};

/// What other programs leave in their files: nothing of it loses a row.
const std::vector<Damage> kOddities{
    {"says that it has 41 rows, but 40",
     [](auto& file) { store32(file.definition("Pane") + kJet4.definition.rowCount, 41); }},
    {"this page and 1 more are neither free nor used",
     [](auto& file) {
       for (const std::uint8_t kind : {0x77, 2, 3, 4, 5, 5}) *file.page(addPage(file)) = kind;
     }},
    {"belongs to no row",
     [](auto& file) {
       const TableDefinition& table = file.table("Frame");
       const Column& column = table.columns[table.findColumn("picture").value()];
       RowSpace(file.pager(), kLongValueOwner, *column.longValuePages, *column.longValueFreePages)
           .add(Bytes(10, 0x55), SlotKind::row);
     }},
    {"entry 0 of the page is not the last one",
     [](auto& file) {  // but one between its leaf and the next
       changeEntries(file, spectraPage(file, -1),
                     [](auto& all) { all[0].insert(all[0].end() - IndexPage::kChildSize, 0); });
     }},
    {"it holds the definition of a table",  // of former days
     [](auto& file) {
       const PageNumber page = addPage(file);
       const PageNumber rows = addPage(file);
       std::copy_n(file.definition("Groups"), kJet4.pageSize, file.page(page));
       std::copy_n(file.firstPage("Groups"), kJet4.pageSize, file.page(rows));
       store32(file.page(rows) + kJet4.data.owner, page);
     }},
    {"has all its rows without them",
     [](auto& file) {
       const PageNumber page = addPage(file);
       const PageRef rows = file.pager().read(file.rows("Groups")[0].page);
       std::copy_n(rows.data(), kJet4.pageSize, file.page(page));
     }},
    {"its former place does not lead to it",
     [](auto& file) {
       const PageNumber page = file.rows("Groups")[0].page;
       DataPageEditor(kJet4, file.page(page), page).add(Bytes(20, 0x55), SlotKind::hidden);
     }},
    {"its former place does not lead to it",  // and the table lacks no row
     [](auto& file) {
       eraseRow(file, file.movedRow("Moved").row);
       store32(file.definition("Moved") + kJet4.definition.rowCount, 119);
     }},
    {"should go on on page 32768, but does not",
     [](auto& file) {
       std::uint8_t* map = file.rowBytes(FreePages::kPlace);
       std::fill_n(map, 69, std::uint8_t{0});
       map[0] = 1;  // pointers
       map[66] = 0x80;
     }},
};

/// Damages the sample, checks it and compares what is said of it: as faults, or as remarks alone.
/// Then the file is repaired, and compared with the sample. `sum` is of all that is said of them,
/// and of the places where they are.
void expectFound(const std::vector<Damage>& damages, bool asFault, std::uint64_t sum) {
  std::string said;
  const orv::test::TemporaryFolder folder;
  makeSampleFile(folder / "sound.mdb");
  const orv::test::Content sound = contentOf(folder / "sound.mdb");
  for (const auto& [words, inflict] : damages) {
    SCOPED_TRACE(words);
    DamagedFile file(folder / "sound.mdb", folder / "damaged");
    inflict(file);
    file.save();
    const CheckReport report = checkFile(file.path().string(), "");
    EXPECT_EQ(report.faults.empty(), !asFault);
    EXPECT_THAT(textOf(report), testing::HasSubstr(words));

    const std::string repaired = folder / "repaired.mdb";
    const CompactReport told = repairFile(file.path().string(), "", repaired);
    said += textOf(report) + textOf(told) + orv::test::difference(sound, contentOf(repaired)) +
            "\n" +
            std::to_string(orv::test::sumOf(orv::test::describe(*Database::open(repaired, ""))));
    orv::test::expectSound(repaired);
    fs::remove(repaired);
  }
  EXPECT_EQ(orv::test::sumOf(said), sum) << said;
}

TEST(CheckDamage, OfDefinitionsIsFoundAndNamed) {
  expectFound(kDefinitionDamage, true, 0xeedbc449c0d5b517);
}

TEST(CheckDamage, OfDefinitionsThatOnlyARepairMinds) {
  expectFound(kQuietDamage, false, 0x291f16524e17ba2f);
}

TEST(CheckDamage, OfRowsIsFoundAndNamed) {
  expectFound(kRowDamage, true, 0xcf224d540a99f450);
}

TEST(CheckDamage, OfLongValuesIsFoundAndNamed) {
  expectFound(kLongValueDamage, true, 0xca3351f1adae970e);
}

TEST(CheckDamage, OfPagesIsFoundAndNamed) {
  expectFound(kPageDamage, true, 0x85c03e0c20980d1c);
}

TEST(CheckDamage, OfTheCatalogueIsFoundAndNamed) {
  expectFound(kCatalogDamage, true, 0x5e3bca35706d7f6f);
}

TEST(CheckDamage, OfIndexesIsFoundAndNamed) {
  expectFound(kIndexDamage, true, 0xc28db850ced80a1e);
}

TEST(CheckDamage, IsARemarkWhereNoRowIsLost) {
  expectFound(kOddities, false, 0x6f40a0d32844229f);
}

}  // namespace
}  // namespace orv::store::jet
