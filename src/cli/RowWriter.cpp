#include "cli/RowWriter.h"

#include <algorithm>

#include "cli/ValueText.h"
#include "commands/CsvText.h"
#include "model/ShownText.h"

namespace orv::cli {

namespace {

/// Longer bytes are not spelled out in a table.
constexpr std::size_t kLongestBytes = 16;
/// So many rows tell how wide the columns of a table are: neither the first row waits for the last
/// one, nor does memory grow with the rows.
constexpr std::size_t kMeasuredRows = 1000;

/// Keeps the first rows until it knows how wide the columns are. A later cell that is wider moves
/// the rest of its line.
class TableWriter : public RowWriter {
 public:
  TableWriter(std::vector<std::string> columns, std::ostream& out)
      : columns_(std::move(columns)),
        out_(out),
        widths_(columns_.size()),
        holdsNumbers_(columns_.size(), true) {
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      columns_[i] = shown(columns_[i]);
      widths_[i] = characterCount(columns_[i]);
    }
  }

  void row(const std::vector<store::Value>& values) override {
    std::vector<std::string> cells;
    for (const store::Value& value : values) cells.push_back(textOf(value));
    if (isMeasured_) return write(cells);
    for (std::size_t i = 0; i < values.size(); ++i) {
      widths_[i] = std::max(widths_[i], characterCount(cells[i]));
      holdsNumbers_[i] = holdsNumbers_[i] && (values[i].isNull() || isNumber(values[i]));
    }
    measured_.push_back(std::move(cells));
    if (measured_.size() == kMeasuredRows) writeMeasured();
  }

  void end() override {
    if (!isMeasured_) writeMeasured();
  }

 private:
  void writeMeasured() {
    std::vector<std::string> line;
    for (const std::size_t width : widths_) line.emplace_back(width, '-');
    write(columns_);
    write(line);
    for (const auto& cells : measured_) write(cells);
    measured_ = {};
    isMeasured_ = true;
  }

  /// One line, whatever the value holds.
  static std::string textOf(const store::Value& value) {
    const auto* bytes = value.getIf<store::Bytes>();
    if (bytes && bytes->size() > kLongestBytes) {
      return "(" + std::to_string(bytes->size()) + " bytes)";
    }
    std::string text = cellText(value);
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r' || c == '\t'; }, ' ');
    return shown(text);
  }

  void write(const std::vector<std::string>& cells) {
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i) {
      const std::string padding(widths_[i] - std::min(widths_[i], characterCount(cells[i])), ' ');
      if (i > 0) line += "  ";
      line += holdsNumbers_[i] ? padding + cells[i] : cells[i] + padding;
    }
    line.erase(line.find_last_not_of(' ') + 1);
    out_ << line << '\n';
  }

  std::vector<std::string> columns_;
  std::ostream& out_;
  std::vector<std::size_t> widths_;
  std::vector<bool> holdsNumbers_;
  std::vector<std::vector<std::string>> measured_;
  bool isMeasured_ = false;
};

std::string escapedForTsv(const std::string& text) {
  std::string result;
  for (const char c : text) {
    switch (c) {
      case '\t':
        result += "\\t";
        break;
      case '\n':
        result += "\\n";
        break;
      case '\r':
        result += "\\r";
        break;
      case '\\':
        result += "\\\\";
        break;
      default:
        result += c;
    }
  }
  return result;
}

/// A line a row, with a character between the cells.
class SeparatedWriter : public RowWriter {
 public:
  using Spelling = std::string (*)(const std::string& text);

  SeparatedWriter(const std::vector<std::string>& columns, char separator, Spelling spelling,
                  std::ostream& out)
      : separator_(separator), spelling_(spelling), out_(out) {
    row({columns.begin(), columns.end()});
  }

  void row(const std::vector<store::Value>& values) override {
    for (std::size_t i = 0; i < values.size(); ++i) {
      if (i > 0) out_ << separator_;
      out_ << spelling_(cellText(values[i]));
    }
    out_ << '\n';
  }

  void end() override {}

 private:
  char separator_;
  Spelling spelling_;
  std::ostream& out_;
};

class JsonWriter : public RowWriter {
 public:
  JsonWriter(const std::vector<std::string>& columns, std::ostream& out) : out_(out) {
    for (const std::string& column : columns) names_.push_back(jsonString(column));
    out_ << "[";
  }

  void row(const std::vector<store::Value>& values) override {
    out_ << (first_ ? "\n  {" : ",\n  {");
    first_ = false;
    for (std::size_t i = 0; i < values.size(); ++i) {
      out_ << (i > 0 ? ", " : "") << names_[i] << ": " << jsonValue(values[i]);
    }
    out_ << "}";
  }

  void end() override { out_ << (first_ ? "]\n" : "\n]\n"); }

 private:
  std::ostream& out_;
  std::vector<std::string> names_;
  bool first_ = true;
};

}  // namespace

std::unique_ptr<RowWriter> makeRowWriter(Format format, std::vector<std::string> columns,
                                         std::ostream& out) {
  switch (format) {
    case Format::tsv:
      return std::make_unique<SeparatedWriter>(columns, '\t', escapedForTsv, out);
    case Format::csv:
      return std::make_unique<SeparatedWriter>(columns, ',', commands::csvCell, out);
    case Format::json:
      return std::make_unique<JsonWriter>(columns, out);
    default:
      return std::make_unique<TableWriter>(std::move(columns), out);
  }
}

}  // namespace orv::cli
