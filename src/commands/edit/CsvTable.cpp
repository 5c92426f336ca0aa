#include "commands/edit/CsvTable.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "errors/Error.h"

namespace orv::commands::edit {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// The bytes of the character of UTF-8 that a text begins with; 0 where it begins with none.
std::size_t characterSize(std::string_view text) {
  const auto at = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char first = at(0);
  if (first < 0x80) return 1;
  const std::size_t size = first >= 0xC2 && first <= 0xDF   ? 2
                           : first >= 0xE0 && first <= 0xEF ? 3
                           : first >= 0xF0 && first <= 0xF4 ? 4
                                                            : 0;
  if (size == 0 || size > text.size()) return 0;
  const bool isLongForm = (first == 0xE0 && at(1) < 0xA0) || (first == 0xF0 && at(1) < 0x90);
  const bool isNone = (first == 0xED && at(1) > 0x9F) || (first == 0xF4 && at(1) > 0x8F);
  for (std::size_t i = 1; i < size; ++i) {
    if ((at(i) & 0xC0) != 0x80) return 0;
  }
  return isLongForm || isNone ? 0 : size;
}

/// Raises kInvalidCall, with the line, for what is no UTF-8: letters would be lost.
void requireUtf8(std::string_view text) {
  constexpr const char* kAdvice = " Save it as UTF-8.";
  if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF")) {
    throw Error(kInvalidCall, std::string("The file is in UTF-16.") + kAdvice);
  }
  int line = 1;
  while (!text.empty()) {
    const std::size_t size = characterSize(text);
    if (size == 0) {
      throw Error(kInvalidCall, "Line " + std::to_string(line) + " is not in UTF-8." + kAdvice);
    }
    if (text.front() == '\n') ++line;
    text.remove_prefix(size);
  }
}

/// Goes through a text cell by cell.
class CsvReader {
 public:
  CsvReader(std::string_view text, char separator, EmptyLines emptyLines)
      : text_(text), separator_(separator), emptyLines_(emptyLines) {}

  CsvRows read() {
    while (at_ < text_.size()) readRow();
    return std::move(rows_);
  }

 private:
  void readRow() {
    std::vector<std::string> cells;
    do {
      cells.push_back(readCell());
    } while (takes(separator_));
    takes('\r');
    takes('\n');
    ++line_;
    const bool isEmpty = cells.size() == 1 && cells.front().empty();
    if (!isEmpty || emptyLines_ == EmptyLines::kept) rows_.push_back(std::move(cells));
  }

  std::string readCell() {
    std::string cell;
    if (takes('"')) cell = readQuoted();
    while (at_ < text_.size() && !isEnd(text_[at_])) cell += text_[at_++];
    return cell;
  }

  std::string readQuoted() {
    std::string cell;
    const int begin = line_;
    while (at_ < text_.size()) {
      const char c = text_[at_++];
      if (c == '"' && !takes('"')) return cell;
      if (c == '\n') ++line_;
      cell += c;
    }
    throw Error(kInvalidCall,
                "The quotation mark in line " + std::to_string(begin) + " does not end.");
  }

  bool isEnd(char c) const { return c == separator_ || c == '\n' || c == '\r'; }
  bool takes(char c) {
    if (at_ >= text_.size() || text_[at_] != c) return false;
    ++at_;
    return true;
  }

  std::string_view text_;
  char separator_;
  EmptyLines emptyLines_;
  std::size_t at_ = 0;
  int line_ = 1;
  CsvRows rows_;
};

}  // namespace

CsvRows readCsv(std::string_view text, char separator, EmptyLines emptyLines) {
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  return CsvReader(text, separator, emptyLines).read();
}

char separatorOf(std::string_view text) {
  const std::string_view line = text.substr(0, text.find('\n'));
  return std::ranges::max({'\t', ';', ','}, {},
                          [&](char c) { return std::ranges::count(line, c); });
}

CsvRows readCsvFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file || std::filesystem::is_directory(path))
    throw Error(kFileNotFound, "\"" + path + "\" cannot be read.");
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  requireUtf8(text);
  return readCsv(text, separatorOf(text));
}

}  // namespace orv::commands::edit
