#include "store/Jet3File.h"

#include <algorithm>
#include <bit>
#include <fstream>
#include <map>
#include <span>
#include <sstream>

#include "store/Compact.h"
#include "store/jet/catalog/Database.h"
#include "store/jet/page/Rc4.h"

namespace orv::test {
namespace {

using Pages = std::vector<std::size_t>;

constexpr std::size_t kPageSize = 2048;
const std::string kLongValues = "LVAL";  // the owner of pages of memos and pictures

/// What hides the header from 0x18 on, the same in all files.
constexpr unsigned char kMask[] = {
    0xb5, 0x6f, 0x03, 0x62, 0x61, 0x08, 0xc2, 0x55, 0xeb, 0xa9, 0x67, 0x72, 0x43, 0x3f, 0x00, 0x9c,
    0x7a, 0x9f, 0x90, 0xff, 0x80, 0x9a, 0x31, 0xc5, 0x79, 0xba, 0xed, 0x30, 0xbc, 0xdf, 0xcc, 0x9d,
    0x63, 0xd9, 0xe4, 0xc3, 0x7b, 0x42, 0xfb, 0x8a, 0xbc, 0x4e, 0x86, 0xfb, 0xec, 0x37, 0x5d, 0x44,
    0x9c, 0xfa, 0xc6, 0x5e, 0x28, 0xe6, 0x13, 0xb6, 0x8a, 0x60, 0x54, 0x94, 0x7b, 0x36, 0xf5, 0x72};
/// The key bytes of A to Z.
constexpr std::string_view kLetters =
    "\x60\x61\x62\x64\x66\x67\x68\x69\x6a\x6b\x6c\x6d\x6f\x70\x72\x73\x74\x75\x76\x77\x78\x7a\x7b"
    "\x7c\x7d\x7e";
/// Bytes in a row by type; 0 for columns of variable length, and for yes/no, which is a bit.
constexpr std::size_t kSizes[] = {0, 0, 1, 2, 4, 8, 4, 8, 8, 0, 0, 0, 0, 0, 0, 16, 17};

bool isVariable(const Jet3Column& column) {
  return column.type != 1 && kSizes[column.type] == 0;
}
bool isLongValue(const Jet3Column& column) {
  return column.type == 11 || column.type == 12;
}

std::string littleEndian(std::uint64_t number, std::size_t size) {
  std::string bytes;
  for (std::size_t i = 0; i < size; ++i) bytes += static_cast<char>(i < 8 ? number >> 8 * i : 0);
  return bytes;
}

std::string bigEndian(std::uint64_t number, std::size_t size) {
  std::string bytes = littleEndian(number, size);
  std::ranges::reverse(bytes);
  return bytes;
}

std::string nameOf(const std::string& name, std::size_t lengthSize) {
  return littleEndian(name.size(), lengthSize) + name;
}

void put(std::string& bytes, std::size_t at, const std::string& content) {
  bytes.replace(at, content.size(), content);
}

std::size_t numberAt(const std::string& bytes, std::size_t at) {
  return static_cast<unsigned char>(bytes[at]) |
         static_cast<std::size_t>(static_cast<unsigned char>(bytes[at + 1])) << 8;
}

void setBits(std::string& bytes, std::size_t begin, const Pages& bits) {
  for (const std::size_t bit : bits) {
    bytes[begin + bit / 8] = static_cast<char>(bytes[begin + bit / 8] | 1 << bit % 8);
  }
}

std::string keyOf(const Jet3Column& column, const std::optional<std::string>& cell,
                  bool descending) {
  std::string key = cell ? "\x7f" : std::string(1, '\0');
  if (cell && column.type == 4) {
    key.append(cell->rbegin(), cell->rend());
    key[1] = static_cast<char>(key[1] ^ 0x80);
  } else if (cell) {
    for (const char c : *cell) key += c == ' ' ? '\x11' : kLetters[(c & 31U) - 1U];
    key += '\0';
  }
  for (char& c : key) c = static_cast<char>(descending ? ~c : c);
  return key;
}

/// The columns of variable length and the table of where they begin, backwards: low bytes, then for
/// each 256 bytes of the row the first column that begins behind them.
void addVariable(std::string& row, const std::vector<std::string>& parts, std::size_t maskSize) {
  std::vector<std::size_t> offsets{row.size()};
  for (const std::string& part : parts) offsets.push_back((row += part).size());
  const std::size_t rest = row.size() + offsets.size() + maskSize;  // all but jumps and count
  std::size_t jumps = 0;
  while (jumps < (rest + jumps) / 256) ++jumps;
  for (std::size_t i = offsets.size(); i-- > 0;) row += littleEndian(offsets[i], 1);
  for (; jumps > 0; --jumps) {
    const auto first = std::ranges::lower_bound(offsets, 256 * jumps) - offsets.begin();
    row += first == std::ssize(offsets) ? '\xff' : static_cast<char>(first);
  }
  row += littleEndian(parts.size(), 1);
}

std::string textIn(const std::string& cell) {
  std::string bytes;
  if (cell.starts_with("letters:")) {
    bytes.resize(std::stoul(cell.substr(8)));
    for (std::size_t i = 0; i < bytes.size(); ++i)
      bytes[i] = static_cast<char>('A' + (i * 7 + i / 26) % 26);
    return bytes;
  }
  for (std::size_t i = 0; i < cell.size(); ++i) {
    const bool isByte = cell[i] == '%';
    bytes += isByte ? static_cast<char>(std::stoi(cell.substr(i + 1, 2), nullptr, 16)) : cell[i];
    i += isByte ? 2 : 0;
  }
  return bytes;
}

Jet3Row rowIn(const Jet3Table& table, const std::string& line) {
  Jet3Row row;
  std::istringstream cells(line + '|');
  for (std::string cell; std::getline(cells, cell, '|');) {
    const unsigned type = table.columns[row.size()].type;
    if (cell == "~") {
      row.push_back(std::nullopt);
    } else if (type == 6) {
      row.emplace_back(littleEndian(std::bit_cast<std::uint32_t>(std::stof(cell)), 4));
    } else if (type == 7 || type == 8) {
      row.emplace_back(littleEndian(std::bit_cast<std::uint64_t>(std::stod(cell)), 8));
    } else if (type >= 2 && type <= 5) {
      row.emplace_back(littleEndian(static_cast<std::uint64_t>(std::stoll(cell)), kSizes[type]));
    } else {
      row.emplace_back(textIn(cell));
    }
  }
  return row;
}

/// Hides who owns or may use things by another mask than new files do.
void hideIds(store::jet::Table& table, std::string_view column) {
  const std::size_t at = table.definition().findColumn(column).value();
  for (store::jet::TableScan scan = table.scan(); scan.next();) {
    std::vector<store::Value> values;
    for (const auto& each : table.definition().columns) values.push_back(scan.row().value(each));
    store::Bytes id = *values[at].getIf<store::Bytes>();
    id[0] ^= 0x5a;
    values[at] = id;
    table.update(scan.rowId(), values);
  }
}

class Jet3Writer {
 public:
  std::string write(const std::vector<Jet3Table>& tables, const Jet3Header& header) {
    pages_.assign(2 + tables.size(), std::string(kPageSize, '\0'));
    writeHeader(header);
    Pages freeMap{1};
    startRows(1, littleEndian(0, 4));
    for (std::size_t i = 0; i < tables.size(); ++i) writeTable(tables[i], i + 2);
    addRow(freeMap, littleEndian(0, 4), mapRow({newPage("\1\1")}));
    std::string file = pages_[0];
    for (std::uint32_t i = 1; i < pages_.size(); ++i) {
      const std::span page(reinterpret_cast<std::uint8_t*>(pages_[i].data()), kPageSize);
      if (header.encodingKey != 0) store::jet::applyRc4(header.encodingKey ^ i, page);
      file += pages_[i];
    }
    return file;
  }

 private:
  std::size_t newPage(const std::string& begin) {
    pages_.push_back(begin + std::string(kPageSize - begin.size(), '\0'));
    return pages_.size() - 1;
  }

  void writeHeader(const Jet3Header& header) {
    std::string& page = pages_[0];
    put(page, 0, std::string("\0\1\0\0Standard Jet DB", 19));
    put(page, 0x3a, littleEndian(header.language, 2) + littleEndian(header.codePage, 2));
    put(page, 0x3e, littleEndian(header.encodingKey, 4) + header.password);
    for (std::size_t i = 0; i < std::size(kMask); ++i) {
      page[0x18 + i] = static_cast<char>(page[0x18 + i] ^ kMask[i]);
    }
  }

  void startRows(std::size_t page, const std::string& owner) {
    put(pages_[page], 0, "\1\1" + littleEndian(kPageSize - 10, 2) + owner);
  }

  /// Puts a row on the last of the pages, or on a new one. Gives the pointer to it.
  std::size_t addRow(Pages& pages, const std::string& owner, const std::string& row,
                     std::size_t flags = 0) {
    if (pages.empty() || numberAt(pages_[pages.back()], 2) < row.size() + 2) {
      pages.push_back(newPage(""));
      startRows(pages.back(), owner);
    }
    std::string& page = pages_[pages.back()];
    const std::size_t count = numberAt(page, 8);
    const std::size_t end = count == 0 ? kPageSize : numberAt(page, 8 + 2 * count) & 0x1fff;
    const std::size_t begin = end - row.size();
    put(page, begin, row);
    put(page, 10 + 2 * count, littleEndian(begin | flags, 2));
    put(page, 8, littleEndian(count + 1, 2));
    put(page, 2, littleEndian(begin - 12 - 2 * count, 2));
    return pages.back() << 8 | count;
  }

  /// A map of pages whose bits begin about the first one's.
  static std::string mapRow(Pages pages) {
    const std::size_t first = pages.empty() ? 0 : *std::ranges::min_element(pages) / 8 * 8;
    for (std::size_t& page : pages) page -= first;
    std::string row = '\0' + littleEndian(first, 4) + std::string(128, '\0');
    setBits(row, 5, pages);
    return row;
  }

  /// Gives the pointer to a map of pages.
  std::string addMap(const Pages& pages, bool withPageOfBits = false) {
    std::string row = mapRow(pages);
    if (withPageOfBits) {
      const std::size_t bits = newPage("\5\1");
      setBits(pages_[bits], 4, pages);
      row = '\1' + littleEndian(bits, 4) + std::string(128, '\0');
    }
    return littleEndian(addRow(maps_, littleEndian(0, 4), row), 4);
  }

  /// Gives what the row has of a memo or picture, of which the rest goes to the pages.
  std::string longValue(const std::string& value, Pages& pages) {
    constexpr std::size_t kPart = kPageSize - 16;
    const std::size_t size = value.size();
    if (size <= 64) return littleEndian(size | 0x80000000, 4) + std::string(8, '\0') + value;
    std::size_t next = 0;
    if (size <= kPart + 4) {
      next = addRow(pages, kLongValues, value);
      return littleEndian(size | 0x40000000, 4) + littleEndian(next, 8);
    }
    for (std::size_t i = (size + kPart - 1) / kPart; i-- > 0;) {
      next = addRow(pages, kLongValues, littleEndian(next, 4) + value.substr(i * kPart, kPart));
    }
    return littleEndian(size, 4) + littleEndian(next, 8);
  }

  std::string rowOf(const Jet3Table& table, const Jet3Row& cells,
                    std::map<std::size_t, Pages>& longPages) {
    std::string row = littleEndian(cells.size(), 1);
    std::string mask((cells.size() + 7) / 8, '\0');
    std::vector<std::string> parts;
    for (std::size_t i = 0; i < cells.size(); ++i) {
      const Jet3Column& column = table.columns[i];
      if (cells[i]) setBits(mask, 0, {i});
      std::string stored = cells[i].value_or("");
      if (cells[i] && isLongValue(column)) stored = longValue(stored, longPages[i]);
      stored.resize(isVariable(column) ? stored.size() : kSizes[column.type]);
      isVariable(column) ? void(parts.push_back(stored)) : void(row += stored);
    }
    if (!parts.empty()) addVariable(row, parts, mask.size());
    return row + mask;
  }

  /// Pages 3 are nodes, 4 leaves, the entries of which lack what all of them begin with.
  std::size_t indexPage(char kind, std::size_t table, const std::vector<std::string>& entries) {
    std::size_t prefix = 0;
    if (kind == 4 && entries.size() > 1) {
      const auto parting = std::ranges::mismatch(entries.front(), entries.back());
      prefix = static_cast<std::size_t>(parting.in1 - entries.front().begin());
    }
    std::string content;
    Pages ends;
    for (const std::string& entry : entries) {
      content += entry.substr(content.empty() ? 0 : prefix);
      ends.push_back(content.size());
    }
    const std::size_t number = newPage(std::string{kind, 1});
    std::string& page = pages_[number];
    put(page, 2, littleEndian(1800 - content.size(), 2) + littleEndian(table, 4));
    put(page, 20, littleEndian(prefix, 1) + std::string(1, kind == 3 ? 1 : 0));
    setBits(page, 22, ends);
    put(page, 248, content);
    return number;
  }

  /// Leaves of a hundred entries and a node over them where there are several. Gives the pages, the
  /// root at last.
  Pages writeTree(std::size_t table, std::vector<std::string> entries) {
    constexpr std::ptrdiff_t kEntries = 100;
    std::ranges::sort(entries);
    Pages pages;
    std::vector<std::string> children;
    for (std::ptrdiff_t at = 0; at == 0 || at < std::ssize(entries); at += kEntries) {
      const std::ptrdiff_t end = std::min(at + kEntries, std::ssize(entries));
      pages.push_back(indexPage(4, table, {entries.begin() + at, entries.begin() + end}));
      if (end > at) children.push_back(entries.begin()[end - 1] + bigEndian(pages.back(), 4));
    }
    for (std::size_t i = 1; i < pages.size(); ++i) {
      put(pages_[pages[i]], 8, littleEndian(pages[i - 1], 4));
      put(pages_[pages[i - 1]], 12, littleEndian(pages[i], 4));
    }
    if (pages.size() > 1) {
      children.pop_back();
      const std::size_t root = indexPage(3, table, children);
      put(pages_[root], 16, littleEndian(pages.back(), 4));
      pages.push_back(root);
    }
    return pages;
  }

  void writeTable(const Jet3Table& table, std::size_t number) {
    const std::string owner = littleEndian(number, 4);
    Pages pages, others, places;
    std::map<std::size_t, Pages> longPages;
    if (table.worn) addRow(pages, owner, "deleted", 0xc000);
    for (const auto& cells : table.rows) {
      const std::string row = rowOf(table, cells, longPages);
      if (table.worn && places.size() == 1) {
        const std::size_t moved = addRow(others, owner, row, 0x8000);
        places.push_back(addRow(pages, owner, littleEndian(moved, 4), 0x4000));
      } else {
        places.push_back(addRow(pages, owner, row));
      }
    }
    const Pages room(pages.end() - (pages.empty() ? 0 : 1), pages.end());
    pages.insert(pages.end(), others.begin(), others.end());
    std::string definition(12, '\0');
    definition += littleEndian(table.rows.size(), 4) + littleEndian(table.lastNumber, 4);
    addCounts(definition, table, number < 6 ? 'S' : 'N');
    definition += addMap(pages, table.worn) + addMap(room);
    for (std::size_t i = 0; i < table.indexes.size(); ++i) {
      definition += littleEndian(table.rows.size() << 32, 8);
    }
    addColumns(definition, table);
    addIndexes(definition, table, number, places);
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
      if (!isLongValue(table.columns[i])) continue;
      definition += littleEndian(i, 2) + addMap(longPages[i]) + addMap({});
    }
    writeDefinition(number, definition + "\xff\xff");
  }

  static void addCounts(std::string& definition, const Jet3Table& table, char kind) {
    const auto& columns = table.columns;
    const auto deleted = std::ranges::count(columns, true, &Jet3Column::deleted);
    const auto variable = std::ranges::count_if(columns, isVariable);
    definition += kind + littleEndian(columns.size(), 2) +
                  littleEndian(static_cast<std::size_t>(variable), 2) +
                  littleEndian(columns.size() - static_cast<std::size_t>(deleted), 2) +
                  littleEndian(table.indexes.size(), 4) + littleEndian(table.indexes.size(), 4);
  }

  static void addColumns(std::string& definition, const Jet3Table& table) {
    std::string names;
    std::size_t fixed = 0, variable = 0;
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
      const Jet3Column& column = table.columns[i];
      const std::size_t size = std::max(column.size, kSizes[column.type]);
      if (!column.deleted) {
        definition += littleEndian(column.type, 1) + littleEndian(i, 2) +
                      littleEndian(variable, 2) + littleEndian(i, 2) + littleEndian(1, 2) +
                      littleEndian(column.language, 2) + littleEndian(column.codePage, 2) +
                      littleEndian(column.flags | (isVariable(column) ? 2 : 3), 1) +
                      littleEndian(isVariable(column) ? 0 : fixed, 2) + littleEndian(size, 2);
        names += nameOf(column.name, 1);
      }
      isVariable(column) ? ++variable : fixed += kSizes[column.type];
    }
    definition += names;
  }

  void addIndexes(std::string& definition, const Jet3Table& table, std::size_t number,
                  const Pages& places) {
    std::string names, uses;
    for (std::size_t i = 0; i < table.indexes.size(); ++i) {
      const Jet3Index& index = table.indexes[i];
      std::vector<std::string> entries;
      for (std::size_t row = 0; row < places.size(); ++row) {
        std::string key;
        bool hasValue = (index.flags & 2) == 0;
        for (const int at : index.columns) {
          const auto column = static_cast<std::size_t>(std::abs(at)) - 1;
          key += keyOf(table.columns[column], table.rows[row][column], at < 0);
          hasValue |= table.rows[row][column].has_value();
        }
        if (hasValue) entries.push_back(key + bigEndian(places[row], 4));
      }
      for (std::size_t k = 0; k < 10; ++k) {
        const int at = k < index.columns.size() ? index.columns[k] : 0;
        definition += littleEndian(static_cast<std::size_t>(std::abs(at)) - 1, 2) +
                      std::string(1, at > 0 ? 1 : 0);
      }
      const Pages pages = writeTree(number, std::move(entries));
      definition += addMap(pages) + littleEndian(pages.back(), 4) + littleEndian(index.flags, 1);
      uses +=
          littleEndian(i, 4) + littleEndian(i, 4) + index.relation + littleEndian(index.kind, 1);
      names += nameOf(index.name, 1);
    }
    definition += uses + names;
  }

  /// Puts a definition on its page and, what does not fit, on others.
  void writeDefinition(std::size_t page, std::string definition) {
    put(definition, 8, littleEndian(definition.size(), 4));
    for (std::size_t at = 8;; at += kPageSize - 8) {
      put(pages_[page], 0, "\2\1VC");
      put(pages_[page], 8, definition.substr(at, kPageSize - 8));
      if (at + kPageSize - 8 >= definition.size()) return;
      const std::size_t next = newPage("");
      put(pages_[page], 4, littleEndian(next, 4));
      page = next;
    }
  }

  std::vector<std::string> pages_;
  Pages maps_;
};

}  // namespace

std::vector<Jet3Table> jet3Sample() {
  std::vector<Jet3Table> tables;
  std::ifstream in(ORV_SOURCE_DIR "/tests/store/jet3/tables.txt");
  for (std::string line; std::getline(in, line);) {
    std::istringstream words(line);
    std::string what;
    words >> what;
    if (what == "table") {
      Jet3Table& table = tables.emplace_back();
      words >> table.name >> table.lastNumber >> table.worn;
    } else if (what == "column") {
      Jet3Column& column = tables.back().columns.emplace_back();
      words >> column.name >> column.type >> column.size >> column.flags >> column.codePage >>
          column.deleted;
    } else if (what == "index") {
      Jet3Index& index = tables.back().indexes.emplace_back();
      words >> index.name >> index.flags >> index.kind >> index.relation;
      index.relation = textIn(index.relation);
      for (int column = 0; words >> column;) index.columns.push_back(column);
    } else if (what == "row") {
      tables.back().rows.push_back(rowIn(tables.back(), line.substr(4)));
    }
  }
  return tables;
}

std::string jet3File(const std::vector<Jet3Table>& tables, const Jet3Header& header) {
  return Jet3Writer().write(tables, header);
}

void makeConvertedFile(const std::filesystem::path& path) {
  const std::string old = path.string() + "-97";
  std::ofstream(old, std::ios::binary) << jet3File(jet3Sample());
  store::convertFile(old, "", path.string(), store::Losses::accept);
  std::filesystem::remove(old);
  const auto database = store::jet::Database::open(path.string(), "");
  store::jet::Transaction transaction(database->pager());
  const auto panes = database->table("Panes");
  while (panes->rowCount() > 90) {
    store::jet::TableScan scan = panes->scan();
    scan.next();
    panes->erase(scan.rowId());
  }
  hideIds(*database->table("MSysObjects"), "Owner");
  hideIds(*database->table("MSysACEs"), "SID");
  transaction.commit();
}

}  // namespace orv::test
