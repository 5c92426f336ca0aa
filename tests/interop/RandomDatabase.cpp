// Makes a database by random changes and writes what it should hold, for foreign readers:
//   random_database DATABASE ROWS_JSON SEED CHANGES KEY
// With a KEY that is not 0 the pages of the database are encoded.
#include <fmt/chrono.h>
#include <fmt/format.h>

#include <chrono>
#include <cmath>
#include <fstream>
#include <iostream>
#include <utility>

#include "errors/Error.h"
#include "store/RandomTables.h"
#include "support/EncodedFile.h"
#include "support/MemoryFiles.h"

namespace {

using namespace orv::store;

std::string quoted(const std::string& text) {
  std::string json = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') {
      json += '\\';
      json += c;
    } else if (static_cast<unsigned char>(c) < 0x20) {
      json += fmt::format("\\u{:04x}", static_cast<int>(c));
    } else {
      json += c;
    }
  }
  return json + '"';
}

std::string dateText(Date date) {
  const std::chrono::seconds sinceDayZero(std::llround(date.days * 86400));
  const std::chrono::sys_days dayZero{std::chrono::year{1899} / 12 / 30};
  return fmt::format("{:%Y-%m-%d %H:%M:%S}", dayZero + sinceDayZero);
}

std::string json(const Value& value) {
  if (value.isNull()) {
    return "null";
  }
  if (const bool* flag = value.getIf<bool>()) {
    return *flag ? "true" : "false";
  }
  if (const Bytes* bytes = value.getIf<Bytes>()) {
    return fmt::format("\"{:02X}\"", fmt::join(*bytes, ""));
  }
  if (const float* single = value.getIf<float>()) {
    return fmt::format("{}", *single);
  }
  if (const double* number = value.getIf<double>()) {
    return fmt::format("{}", *number);
  }
  if (const Date* date = value.getIf<Date>()) {
    return quoted(dateText(*date));
  }
  if (value.getIf<std::int32_t>() != nullptr) {
    return value.toText();
  }
  return quoted(value.toText());
}

void writeRows(const orv::test::ModelledTable& model, std::ostream& out) {
  const auto& columns = model.table->definition().columns;
  const char* separator = "\n";
  for (const auto& [id, values] : model.rows) {
    out << std::exchange(separator, ",\n") << '{';
    for (std::size_t i = 0; i < values.size(); ++i) {
      out << (i == 0 ? "" : ", ") << quoted(columns[i].name) << ": " << json(values[i]);
    }
    out << '}';
  }
}

void make(const std::string& database, const std::string& rows, unsigned seed, std::size_t changes,
          std::uint32_t key) {
  orv::test::MemoryFiles files;
  orv::test::RandomTables tables("random.mdb", seed);
  tables.change(changes);
  if (key != 0) {
    orv::test::encodePages(*files.open("random.mdb", jet::FileSystem::Open::existing), key);
  }
  files.save("random.mdb", database);
  std::ofstream out(rows);
  const char* separator = "{";
  for (const orv::test::ModelledTable& model : tables.tables()) {
    out << std::exchange(separator, "],\n") << quoted(model.table->name()) << ": [";
    writeRows(model, out);
  }
  out << "]}\n";
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 6) {
    std::cerr << "usage: random_database DATABASE ROWS_JSON SEED CHANGES KEY\n";
    return 1;
  }
  try {
    make(arguments[1], arguments[2], static_cast<unsigned>(std::stoul(arguments[3])),
         std::stoul(arguments[4]), static_cast<std::uint32_t>(std::stoul(arguments[5])));
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
  }
}
