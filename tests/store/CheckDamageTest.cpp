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

/// What a check should say of a damage.
struct Expected {
  std::string table;
  std::string index;
  PageNumber page = 0;  ///< 0: not compared
  int row = -1;         ///< -1: not compared
  std::string words;
};

struct Damage {
  const char* name;
  std::function<Expected(DamagedFile&)> inflict;
};

constexpr const char* kSpectra = "Pane_spectral_data";
constexpr const char* kPaneAngle = "PaneAngle";

std::string pageName(PageNumber page) {
  return "page " + std::to_string(page);
}

const std::vector<Damage> kDefinitionDamage{
    {"DefinitionOfAnotherKind",
     [](DamagedFile& file) -> Expected {
       const PageNumber page = file.table("Pane").page;
       file.page(page)[0] = static_cast<std::uint8_t>(PageType::usageMap);
       return {"Pane", "", page, -1, "should define table 'Pane'"};
     }},
    {"LoopOfDefinitionPages",
     [](DamagedFile& file) -> Expected {
       const PageNumber page = file.table("Frame").page;
       store32(file.page(page) + file.format().definition.nextPage, page);
       return {"Frame", "", page, -1, "form a loop"};
     }},
    {"DefinitionTooLong",
     [](DamagedFile& file) -> Expected {
       const PageNumber page = file.table("Groups").page;
       store32(file.page(page) + file.format().definition.length, 100000);
       return {"Groups", "", page, -1, "100000 bytes"};
     }},
    {"TooManyColumns",
     [](DamagedFile& file) -> Expected {
       const PageNumber page = file.table("Groups").page;
       store16(file.page(page) + file.format().definition.columnCount, 4000);
       return {"Groups", "", page, -1, "more columns or indexes than are possible"};
     }},
    {"ColumnType",
     [](DamagedFile& file) -> Expected {
       file.columnBlock("Groups")[file.format().column.type] = 0x77;
       return {"Groups", "", file.table("Groups").page, -1, "type that there is not"};
     }},
    {"ColumnNumberTwice",
     [](DamagedFile& file) -> Expected {
       const auto& layout = file.format().column;
       // The first columns have indexes.
       std::uint8_t* third = file.columnBlock("Frame") + 2 * layout.size;
       store16(third + layout.size + layout.number, load16(third + layout.number));
       return {"Frame", "", file.table("Frame").page, -1, "number of another column"};
     }},
    {"ColumnBeyondThoseOfRows",
     [](DamagedFile& file) -> Expected {
       const auto& layout = file.format().column;
       store16(file.columnBlock("Frame") + 3 * layout.size + layout.number, 5);
       return {"Frame", "", file.table("Frame").page, -1, "but rows have at most 5 columns"};
     }},
    {"ColumnBeyondThoseOfVariableLength",
     [](DamagedFile& file) -> Expected {
       const auto& layout = file.format().column;
       store16(file.columnBlock("Groups") + 2 * layout.size + layout.variableIndex, 2);
       return {"Groups", "", file.table("Groups").page, -1, "of which there are 2"};
     }},
};

const std::vector<Damage> kRowDamage{
    {"RowOffset",
     [](DamagedFile& file) -> Expected {
       const RowId row = file.rows(kSpectra)[10];
       store16(file.rowEntry(row), 0x1fff);
       return {kSpectra, "", row.page, row.row, "outside the page's rows"};
     }},
    {"FreeSpaceOfPage",
     [](DamagedFile& file) -> Expected {
       const PageNumber page = file.rows(kSpectra)[0].page;
       store16(file.page(page) + file.format().data.freeSpace, 1234);
       return {kSpectra, "", page, -1, "1234 free bytes"};
     }},
    {"OwnerOfPage",
     [](DamagedFile& file) -> Expected {
       const PageNumber page = file.rows(kSpectra)[0].page;
       store32(file.page(page) + file.format().data.owner, file.table("Pane").page);
       return {kSpectra, "", page, -1, "says that it belongs to the table defined on page"};
     }},
    {"PageOfAnotherKind",
     [](DamagedFile& file) -> Expected {
       const PageNumber page = file.rows(kSpectra)[0].page;
       file.page(page)[0] = static_cast<std::uint8_t>(PageType::indexLeaf);
       return {kSpectra, "", page, -1, "is a page of another kind"};
     }},
    {"ColumnCountOfRow",
     [](DamagedFile& file) -> Expected {
       const RowId row = file.rows("Suppliers")[1];
       store16(file.rowBytes(row), file.table("Suppliers").maxColumns + 1u);
       return {"Suppliers", "", row.page, row.row, "columns"};
     }},
    {"VariableColumnsOfRow",
     [](DamagedFile& file) -> Expected {
       const RowId row = file.rows("Suppliers")[1];
       const std::size_t length =
           DataPage(file.format(), file.pager().read(row.page).view()).slot(row.row).length;
       const std::size_t mask = (file.table("Suppliers").maxColumns + 7u) / 8;
       // The end of the first variable column, after the number of them and the first's begin.
       store16(file.rowBytes(row) + length - mask - 6, 0x0fff);
       return {"Suppliers", "", row.page, row.row, "variable columns"};
     }},
    {"PointerOfMovedRow",
     [](DamagedFile& file) -> Expected {
       const auto [row, content] = file.movedRow("Moved");
       store32(file.rowBytes(row), RowId{content.page, 200}.toPointer());
       return {"Moved", "", row.page, row.row, "row 200"};
     }},
    {"PointerToAnotherTable",
     [](DamagedFile& file) -> Expected {
       const auto [row, content] = file.movedRow("Moved");
       store32(file.rowBytes(row), file.rows("MSysObjects")[0].toPointer());
       return {"Moved", "", row.page, row.row, "that page is not one of the table's"};
     }},
    {"MovedRowWithoutPointer",
     [](DamagedFile& file) -> Expected {
       const auto [row, content] = file.movedRow("Moved");
       DataPageEditor(file.format(), file.page(row.page), row.page).erase(row.row);
       return {"Moved", "", content.page, content.row, "its former place does not lead to it"};
     }},
    {"MoreThanAreListed",
     [](DamagedFile& file) -> Expected {
       const std::vector<RowId> rows = file.rows(kSpectra);
       for (std::size_t i = 0; i < 60; i += 2) store16(file.rowEntry(rows[i]), 0x1fff);
       return {kSpectra, "", 0, -1, "more faults"};
     }},
};

const std::vector<Damage> kLongValueDamage{
    {"ChainCutShort",
     [](DamagedFile& file) -> Expected {
       const auto [row, parts] = file.longValue("Frame", "picture");
       store32(file.rowBytes(parts[0]), 0);
       return {"Frame", "", row.page, row.row, "do not add up to its length"};
     }},
    {"LoopOfParts",
     [](DamagedFile& file) -> Expected {
       const auto [row, parts] = file.longValue("Frame", "picture");
       store32(file.rowBytes(parts[1]), parts[0].toPointer());
       return {"Frame", "", row.page, row.row, "part of two memos or pictures"};
     }},
    {"LengthOfLongValue",
     [](DamagedFile& file) -> Expected {
       const auto [row, parts] = file.longValue("Frame", "picture");
       std::uint8_t* definition = file.field("Frame", row, "picture").data();
       store32(definition, load32(definition) + 1);
       return {"Frame", "", row.page, row.row, "do not add up to its length"};
     }},
    {"PageOfLongValuesGivenAway",
     [](DamagedFile& file) -> Expected {
       const auto [row, parts] = file.longValue("Frame", "picture");
       store32(file.page(parts[1].page) + file.format().data.owner, file.table("Frame").page);
       return {"Frame", "", parts[1].page, -1, "but is used by memos and pictures"};
     }},
};

const std::vector<Damage> kPageDamage{
    {"KindOfUsageMap",
     [](DamagedFile& file) -> Expected {
       const RowId map = file.table("Pane").ownedPages;
       *file.rowBytes(map) = 7;
       return {"Pane", "", map.page, map.row, "map of pages is of an unknown kind"};
     }},
    {"KindOfFreeMap",
     [](DamagedFile& file) -> Expected {
       *file.rowBytes({1, 0}) = 7;
       return {"", "", 1, 0, "map of pages is of an unknown kind"};
     }},
    {"PageOfTwoTables",
     [](DamagedFile& file) -> Expected {
       const PageNumber page = file.rows("Groups")[0].page;
       UsageMap(file.pager(), file.table("Suppliers").ownedPages).add(page);
       return {"Suppliers", "", page, -1, "used twice: by the rows of table 'Groups'"};
     }},
    {"PageMissingInMap",
     [](DamagedFile& file) -> Expected {
       const PageNumber page = file.rows("Groups")[0].page;
       UsageMap(file.pager(), file.table("Groups").ownedPages).remove(page);
       return {"Groups", "", page, -1, "not listed as one of its pages"};
     }},
    {"RoomOnForeignPage",
     [](DamagedFile& file) -> Expected {
       const PageNumber page = file.rows("Groups")[0].page;
       UsageMap(file.pager(), file.table("Suppliers").freePages).add(page);
       return {"Suppliers", "", page, -1, "having room"};
     }},
    {"MapOfTwoTables",
     [](DamagedFile& file) -> Expected {
       const PageNumber page = file.table("Shading").page;
       const RowId map = file.table("Pane").ownedPages;
       store32(file.page(page) + file.format().definition.ownedPages, map.toPointer());
       return {"Pane", "", map.page, map.row, "serves something else too"};
     }},
    {"MapOfFreePagesThatLies",
     [](DamagedFile& file) -> Expected {
       FreePages(file.pager()).add(2);
       return {"", "", 1, 0, "calls pages free that every file needs"};
     }},
    {"FreePageInUse",
     [](DamagedFile& file) -> Expected {
       const PageNumber page = file.rows("Pane")[0].page;
       FreePages(file.pager()).add(page);
       return {"Pane", "", page, -1, "listed as free, but is in use by the rows of table"};
     }},
    {"PageBeyondTheFile",
     [](DamagedFile& file) -> Expected {
       UsageMap(file.pager(), file.table("Groups").ownedPages).add(500);
       return {"Groups", "", 500, -1, "but the file has only"};
     }},
    {"MapWhereRowsAre",
     [](DamagedFile& file) -> Expected {
       const PageNumber page = file.table("Shading").page;
       const RowId row = file.rows("Groups")[2];
       store32(file.page(page) + file.format().definition.ownedPages, row.toPointer());
       return {"Shading", "", row.page, row.row, "should be here, but the page is in use"};
     }},
};

/// Two names of the same length.
Expected giveNameOf(DamagedFile& file, const std::string& one, const std::string& other) {
  const RowId given = file.database().find(one)->row;
  const RowId taker = file.database().find(other)->row;
  const auto name = file.field("MSysObjects", given, "Name");
  const Bytes taken(name.begin(), name.end());
  std::ranges::copy(taken, file.field("MSysObjects", taker, "Name").begin());
  return {"MSysObjects", "", 0, -1, "has the name of another table or query"};
}

const std::vector<Damage> kCatalogDamage{
    {"IdTwice",
     [](DamagedFile& file) -> Expected {
       const CatalogEntry* pane = file.database().find("Pane");
       const RowId shading = file.database().find("Shading")->row;
       store32(file.field("MSysObjects", shading, "Id").data(),
               static_cast<std::uint32_t>(pane->id));
       return {"MSysObjects", "", 0, -1, "has the id of"};
     }},
    {"DefinitionBeyondTheFile",
     [](DamagedFile& file) -> Expected {
       const RowId shading = file.database().find("Shading")->row;
       store32(file.field("MSysObjects", shading, "Id").data(), 99999);
       return {"Shading", "", 99999, -1, "the file has only"};
     }},
    {"NameTwice", [](DamagedFile& file) { return giveNameOf(file, "Moved", "Frame"); }},
    {"NameOfASystemTableTwice",
     [](DamagedFile& file) { return giveNameOf(file, "MSysQueries", "MSysObjects"); }},
    {"QueryWithoutParts",
     [](DamagedFile& file) -> Expected {
       for (const RowId row : file.rows("MSysQueries")) {
         DataPageEditor(file.format(), file.page(row.page), row.page).erase(row.row);
       }
       return {"MSysQueries", "", 0, -1, "has no parts"};
     }},
    {"QueryWithoutItsLastPart",
     [](DamagedFile& file) -> Expected {
       const RowId last = file.rows("MSysQueries").back();
       DataPageEditor(file.format(), file.page(last.page), last.page).erase(last.row);
       return {"MSysQueries", "", 0, -1, "query 'qryPanes' lacks its last part"};
     }},
    {"PartsOfNoQuery",
     [](DamagedFile& file) -> Expected {
       const RowId entry = file.database().find("qryPanes")->row;
       DataPageEditor(file.format(), file.page(entry.page), entry.page).erase(entry.row);
       return {"MSysQueries", "", 0, -1, "there are parts of a query"};
     }},
    {"ObjectOfNoContainer",
     [](DamagedFile& file) -> Expected {
       const RowId shading = file.database().find("Shading")->row;
       store32(file.field("MSysObjects", shading, "ParentId").data(), 4711);
       return {"MSysObjects", "", shading.page, shading.row, "belongs to an object that is not"};
     }},
    {"RelationWithNoTable",
     [](DamagedFile& file) -> Expected {
       const TableDefinition& groups = file.table("Groups");
       const auto& layout = file.format().index;
       // Behind the columns, their names (of two bytes a letter) and the parts of real indexes.
       std::size_t at = groups.columns.size() * file.format().column.size;
       for (const Column& column : groups.columns) at += 2 + 2 * column.name.size();
       at += groups.realIndexes.size() * layout.realSize;
       store32(file.columnBlock("Groups") + at + layout.logicalRelationTable, 777);
       return {"Groups", "PrimaryKey", groups.page, -1, "on page 777, but there is none"};
     }},
};

/// The page of the index of spectra that is its root (-1), or a leaf.
PageNumber spectraPage(DamagedFile& file, int leaf) {
  const RealIndex& index = file.index(kSpectra, kPaneAngle);
  return leaf < 0 ? index.root : file.leaves(index)[static_cast<std::size_t>(leaf)];
}

/// Changes the entries of a page of an index.
void changeEntries(DamagedFile& file, PageNumber page,
                   const std::function<void(std::vector<Bytes>&)>& change) {
  IndexPageEditor editor = file.indexPage(page);
  std::vector<Bytes> entries = entriesOf(editor);
  change(entries);
  editor.assign(entries);
}

Expected changeSpectra(DamagedFile& file, int leaf, const char* words,
                       const std::function<void(std::vector<Bytes>&)>& change) {
  changeEntries(file, spectraPage(file, leaf), change);
  return {kSpectra, kPaneAngle, spectraPage(file, leaf), -1, words};
}

const std::vector<Damage> kIndexDamage{
    {"EntriesOutOfOrder",
     [](DamagedFile& file) {
       return changeSpectra(file, 1, "is out of order",
                            [](auto& entries) { std::swap(entries[3], entries[4]); });
     }},
    {"EntryMissing",
     [](DamagedFile& file) -> Expected {
       const PageNumber leaf = spectraPage(file, 1);
       const RowId row = rowOfEntry(file.indexPage(leaf).entry(5));
       file.indexPage(leaf).erase(5);
       return {kSpectra, kPaneAngle, row.page, row.row, "no entry in the index"};
     }},
    {"EntryOfNoRow",
     [](DamagedFile& file) {
       return changeSpectra(file, 1, "entry 7, for row 251",
                            [](auto& entries) { entries[7].back() = 251; });
     }},
    {"EntryTwice",
     [](DamagedFile& file) -> Expected {
       const PageNumber leaf = file.leaves(file.index("Pane", "PrimaryKey"))[0];
       changeEntries(file, leaf, [](auto& all) { all.insert(all.begin(), Bytes(all.front())); });
       return {"Pane", "PrimaryKey", leaf, -1, "entry 1, for row"};
     }},
    {"UniqueKeyTwice",
     [](DamagedFile& file) -> Expected {
       const PageNumber leaf = file.leaves(file.index("Pane", "PrimaryKey"))[0];
       changeEntries(file, leaf, [](auto& entries) {
         std::copy_n(entries[0].begin(), entries[0].size() - IndexPage::kPointerSize,
                     entries[1].begin());
       });
       return {"Pane", "PrimaryKey", leaf, -1, "which the index does not allow"};
     }},
    {"RowWithOtherKey",
     [](DamagedFile& file) -> Expected {
       const RowId row = file.rows("Suppliers")[1];
       store32(file.field("Suppliers", row, "SupplierID").data(), 777);
       const PageNumber leaf = file.leaves(file.index("Suppliers", "PrimaryKey"))[0];
       return {"Suppliers", "PrimaryKey", leaf, -1, "key of other values than the row"};
     }},
    {"LinkToPreviousLeaf",
     [](DamagedFile& file) -> Expected {
       const auto leaves = file.leaves(file.index(kSpectra, kPaneAngle));
       file.indexPage(leaves[2]).setPrevious(leaves[0]);
       return {kSpectra, kPaneAngle, leaves[2], -1, pageName(leaves[0]) + " comes before it"};
     }},
    {"LinkToNextLeaf",
     [](DamagedFile& file) -> Expected {
       const auto leaves = file.leaves(file.index(kSpectra, kPaneAngle));
       file.indexPage(leaves[1]).setNext(leaves[0]);
       return {kSpectra, kPaneAngle, leaves[1], -1, pageName(leaves[0]) + " follows"};
     }},
    {"PrefixLength",
     [](DamagedFile& file) -> Expected {
       const PageNumber leaf = spectraPage(file, 1);
       ++file.page(leaf)[file.format().indexPage.prefixLength];
       return {kSpectra, kPaneAngle, leaf, -1, "key of other values"};
     }},
    {"MaskOfEntries",
     [](DamagedFile& file) -> Expected {
       const PageNumber leaf = spectraPage(file, 1);
       file.page(leaf)[file.format().indexPage.mask] |= 1;
       return {kSpectra, kPaneAngle, leaf, -1, "do not fit its mask"};
     }},
    {"ChildTwice",
     [](DamagedFile& file) -> Expected {
       const PageNumber first = spectraPage(file, 0);
       changeEntries(file, spectraPage(file, -1), [&](auto& entries) {
         for (int i = 0; i < 4; ++i) {
           entries[1][entries[1].size() - 1 - i] = static_cast<std::uint8_t>(first >> (8 * i));
         }
       });
       return {kSpectra, kPaneAngle, first, -1, "used twice by index"};
     }},
    {"EntryOfNode",
     [](DamagedFile& file) {
       return changeSpectra(file, -1, "the last one below",
                            [](auto& entries) { entries[0][entries[0].size() - 9] ^= 1; });
     }},
    {"EntryOfNodeThatReachesTheNextLeaf",
     [](DamagedFile& file) {
       const Bytes first = file.indexPage(spectraPage(file, 1)).entry(0);
       return changeSpectra(file, -1, "does not come before what follows", [&](auto& entries) {
         entries[0].erase(entries[0].begin(), entries[0].end() - IndexPage::kChildSize);
         entries[0].insert(entries[0].begin(), first.begin(), first.end());
       });
     }},
    {"OwnerOfIndexPage",
     [](DamagedFile& file) -> Expected {
       const PageNumber root = file.index("Groups", "PrimaryKey").root;
       store32(file.page(root) + file.format().indexPage.owner, file.table("Pane").page);
       return {"Groups", "PrimaryKey", root, -1, "the index of another table"};
     }},
    {"FreeSpaceOfIndexPage",
     [](DamagedFile& file) -> Expected {
       const PageNumber root = file.index("Groups", "PrimaryKey").root;
       store16(file.page(root) + file.format().indexPage.freeSpace, 17);
       return {"Groups", "PrimaryKey", root, -1, "17 free bytes"};
     }},
    {"IndexPageNotListed",
     [](DamagedFile& file) -> Expected {
       const PageNumber leaf = spectraPage(file, 1);
       UsageMap(file.pager(), file.index(kSpectra, kPaneAngle).ownedPages).remove(leaf);
       return {kSpectra, kPaneAngle, leaf, -1, "not listed as one of its pages"};
     }},
    {"IndexPageOfNoTree",
     [](DamagedFile& file) -> Expected {
       const PageNumber page = file.pager().append();
       FreePages(file.pager()).remove(page);
       UsageMap(file.pager(), file.index(kSpectra, kPaneAngle).ownedPages).add(page);
       return {kSpectra, kPaneAngle, page, -1, "but its tree does not have it"};
     }},
    {"EntryOfANullThatDoesNotCount",
     [](DamagedFile& file) -> Expected {
       const RowId row = file.rows("Pane")[7];
       const PageNumber leaf = file.leaves(file.index("Pane", "Groups"))[0];
       changeEntries(file, leaf, [&](auto& entries) {
         entries.push_back({0xff, 0, static_cast<std::uint8_t>(row.page >> 8),
                            static_cast<std::uint8_t>(row.page), row.row});
       });
       return {"Pane", "Groups", leaf, -1, "should not be there"};
     }},
};

/// What other programs leave in their files: nothing of it loses a row.
const std::vector<Damage> kOddities{
    {"RowCount",
     [](DamagedFile& file) -> Expected {
       const PageNumber page = file.table("Pane").page;
       store32(file.page(page) + file.format().definition.rowCount, 41);
       return {"Pane", "", page, -1, "says that it has 41 rows, but 40"};
     }},
    {"PagesThatNothingUses",
     [](DamagedFile& file) -> Expected {
       for (const std::uint8_t kind : {0x77, 2, 3, 4, 5, 5}) {
         const PageNumber page = file.pager().append();
         FreePages(file.pager()).remove(page);
         file.page(page)[0] = kind;
       }
       return {"", "", 0, -1, "this page and 1 more are neither free nor used"};
     }},
    {"PartOfNoRow",
     [](DamagedFile& file) -> Expected {
       const TableDefinition& table = file.table("Frame");
       const Column& column = table.columns[table.findColumn("picture").value()];
       const RowId part = RowSpace(file.pager(), kLongValueOwner, *column.longValuePages,
                                   *column.longValueFreePages)
                              .add(Bytes(10, 0x55), SlotKind::row);
       return {"Frame", "", part.page, part.row, "belongs to no row"};
     }},
    {"EntryOfNodeBetweenItsLeafAndTheNext",
     [](DamagedFile& file) {
       return changeSpectra(file, -1, "entry 0 of the page is not the last one", [](auto& entries) {
         entries[0].insert(entries[0].end() - IndexPage::kChildSize, 0);
       });
     }},
    {"PageOfRowsThatTheTableDoesNotCount",
     [](DamagedFile& file) -> Expected {
       const PageNumber page = file.pager().append();
       FreePages(file.pager()).remove(page);
       const PageRef rows = file.pager().read(file.rows("Groups")[0].page);
       std::copy_n(rows.data(), file.format().pageSize, file.page(page));
       return {"Groups", "", page, -1, "has all its rows without them"};
     }},
    {"MovedRowThatTheTableDoesNotCount",
     [](DamagedFile& file) -> Expected {
       const PageNumber page = file.rows("Groups")[0].page;
       const std::uint8_t row = DataPageEditor(file.format(), file.page(page), page)
                                    .add(Bytes(20, 0x55), SlotKind::hidden);
       return {"Groups", "", page, row, "its former place does not lead to it"};
     }},
    {"MapOfFreePagesThatGoesOnNowhere",
     [](DamagedFile& file) -> Expected {
       std::uint8_t* map = file.rowBytes(FreePages::kPlace);
       std::fill_n(map, 69, std::uint8_t{0});
       map[0] = 1;  // pointers
       map[66] = 0x80;
       return {"", "", 1, 0, "should go on on page 32768, but does not"};
     }},
};

bool isExpected(const CheckFinding& fault, const Expected& expected) {
  return fault.table == expected.table && fault.index == expected.index &&
         (expected.page == 0 || fault.page == expected.page) &&
         (expected.row == -1 || fault.row == expected.row) &&
         fault.what.find(expected.words) != std::string::npos;
}

/// Damages the sample, checks it and compares what is said of it: as faults, or as remarks alone.
/// Then the file is repaired, and compared with the sample. `sum` is of all that is said of them.
void expectFound(const std::vector<Damage>& damages, bool asFault, std::uint64_t sum) {
  std::string said;
  const orv::test::TemporaryFolder folder;
  makeSampleFile(folder / "sound.mdb");
  const orv::test::Content sound = contentOf(folder / "sound.mdb");
  for (const auto& [name, inflict] : damages) {
    SCOPED_TRACE(name);
    DamagedFile file(folder / "sound.mdb", folder / "damaged");
    const Expected expected = inflict(file);
    file.save();
    const CheckReport report = checkFile(file.path().string(), "");
    EXPECT_EQ(report.faults.empty(), !asFault);
    const auto& findings = asFault ? report.faults : report.remarks;
    EXPECT_TRUE(std::ranges::any_of(
        findings, [&](const CheckFinding& finding) { return isExpected(finding, expected); }))
        << "expected: " << expected.words << "\nfound: " << textOf(report);

    const std::string repaired = folder / "repaired.mdb";
    const CompactReport told = repairFile(file.path().string(), "", repaired);
    said +=
        textOf(report) + textOf(told) + orv::test::difference(sound, contentOf(repaired)) + "\n";
    orv::test::expectSound(repaired);
    fs::remove(repaired);
  }
  EXPECT_EQ(orv::test::sumOf(said), sum) << said;
}

TEST(CheckDamage, OfDefinitionsIsFoundAndNamed) {
  expectFound(kDefinitionDamage, true, 0xef94ba479f697fd5);
}

TEST(CheckDamage, OfRowsIsFoundAndNamed) {
  expectFound(kRowDamage, true, 0xb5e4b39b5e41bdcb);
}

TEST(CheckDamage, OfLongValuesIsFoundAndNamed) {
  expectFound(kLongValueDamage, true, 0xd5a6a0bfe63adf0d);
}

TEST(CheckDamage, OfPagesIsFoundAndNamed) {
  expectFound(kPageDamage, true, 0x250154082943caa2);
}

TEST(CheckDamage, OfTheCatalogueIsFoundAndNamed) {
  expectFound(kCatalogDamage, true, 0x5c69ec9cc9d48b5e);
}

TEST(CheckDamage, OfIndexesIsFoundAndNamed) {
  expectFound(kIndexDamage, true, 0x13da2d9ac3b8b751);
}

TEST(CheckDamage, IsARemarkWhereNoRowIsLost) {
  expectFound(kOddities, false, 0x7c07cf2324d8182);
}

}  // namespace
}  // namespace orv::store::jet
