#include "fuzz/Specimens.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "store/Connection.h"

namespace orv::fuzz {
namespace {

namespace fs = std::filesystem;
using namespace store;

constexpr const char* kOwn = "own.mdb";
constexpr const char* kCopy = "copy.mdb";
constexpr std::size_t kLargestSpecimen = 300'000;  // larger ones take too long to read whole
constexpr std::size_t kLongestPatch = 16;

TableInfo tableOfEveryType() {
  TableInfo table{
      .name = "Everything",
      .columns = {{.name = "ID", .type = ColumnType::longInteger, .autoNumber = true},
                  {.name = "Yes", .type = ColumnType::boolean},
                  {.name = "Byte", .type = ColumnType::byte},
                  {.name = "Integer", .type = ColumnType::integer},
                  {.name = "Money", .type = ColumnType::currency},
                  {.name = "Single", .type = ColumnType::single},
                  {.name = "Double", .type = ColumnType::double_},
                  {.name = "When", .type = ColumnType::dateTime},
                  {.name = "Bits", .type = ColumnType::binary, .size = 20},
                  {.name = "Name", .type = ColumnType::text, .size = 60},
                  {.name = "Picture", .type = ColumnType::ole},
                  {.name = "Note", .type = ColumnType::memo},
                  {.name = "Guid", .type = ColumnType::guid},
                  {.name = "Decimal", .type = ColumnType::numeric, .precision = 18, .scale = 3}}};
  table.indexes = {{.name = "Key", .columns = {{"ID"}}, .primary = true, .unique = true},
                   {.name = "ByName", .columns = {{"Name"}}, .ignoreNulls = true},
                   {.name = "ByNumbers", .columns = {{"Integer", false}, {"Double"}}},
                   {.name = "ByDate", .columns = {{"When", false}, {"Name"}}},
                   {.name = "ByGuid", .columns = {{"Guid"}}, .unique = true, .ignoreNulls = true}};
  return table;
}

void fill(Connection& database) {
  const auto rows = database.openRecordset("Everything", CursorType::keyset, LockType::optimistic);
  for (int i = 0; i < 8; ++i) {
    rows->addNew();
    rows->setValue("Yes", i % 2 == 0);
    rows->setValue("Integer", i % 3);
    rows->setValue("Money", Currency{i * 10'000});
    rows->setValue("Double", i / 7.0);
    rows->setValue("When", Date{36'526.25 + i});
    rows->setValue("Name", i == 3 ? Value() : Value("Näme " + std::to_string(i)));
    rows->setValue("Picture", Bytes(static_cast<std::size_t>(i) * 700, 0x2a));
    rows->setValue("Note", std::string(static_cast<std::size_t>(i) * 300, 'n'));
    rows->setValue("Decimal", Decimal::fromText("12.5", 18, 3));
    rows->update();
  }
  const auto types = database.openRecordset("Types", CursorType::keyset, LockType::optimistic);
  for (const char* name : {"Monolithic", "Laminate", "Film"}) {
    types->addNew();
    types->setValue("Name", name);
    types->update();
  }
}

void makeOwn() {
  const auto database = Connection::create(kOwn);
  database->createTable(tableOfEveryType());
  database->createTable(
      {.name = "Types",
       .columns = {{.name = "TypeID", .type = ColumnType::longInteger, .autoNumber = true},
                   {.name = "Name", .type = ColumnType::text, .size = 50, .required = true}},
       .indexes = {{.name = "Key", .columns = {{"TypeID"}}, .primary = true, .unique = true}}});
  database->createQuery(
      {.name = "Named",
       .outputs = {{"Everything.ID"}, {"Types.Name", "TypeName"}},
       .tables = {"Everything", "Types"},
       .joins = {{JoinKind::left, "Everything", "Types", "Everything.Integer = Types.TypeID"}},
       .where = "Everything.Double < 2",
       .orderBy = {{"Everything.Name", true}}});
  fill(*database);
}

}  // namespace

Specimens::Specimens() {
  makeOwn();
  specimens_.push_back({kOwn, "", static_cast<std::size_t>(files_.size(kOwn))});
  addCorpus();
}

void Specimens::addCorpus() {
  const char* folder = std::getenv("ORV_CORPUS");
  if (folder == nullptr) {
    return;
  }
  std::error_code absent;  // then there are none
  for (const auto& file : fs::directory_iterator(fs::path(folder) / "access", absent)) {
    const std::string name = file.path().filename().string();
    if (file.path().extension() == ".mdb" && file.file_size() <= kLargestSpecimen) {
      files_.load(file.path(), name);
      specimens_.push_back(
          {name, name.starts_with("password") ? "password" : "", file.file_size()});
    }
  }
  // The same order everywhere, so that an input means the same file.
  std::sort(specimens_.begin() + 1, specimens_.end(),
            [](const Specimen& a, const Specimen& b) { return a.path < b.path; });
}

Specimens::Copy Specimens::copyOf(const Specimen& specimen) {
  files_.copy(specimen.path, kCopy);
  return {kCopy, specimen.password};
}

Specimens::Copy Specimens::own() {
  return copyOf(specimens_.front());
}

Specimens::Copy Specimens::damaged(Input& input, std::size_t mostPatches) {
  const Specimen& specimen = specimens_[input.below(specimens_.size())];
  Copy copy = copyOf(specimen);
  const auto file = files_.open(copy.path, store::jet::FileSystem::Open::existing);
  for (std::size_t i = input.below(mostPatches + 1); i > 0; --i) {
    const std::size_t place = input.below(specimen.size);
    const std::string patch = input.text(1 + input.below(kLongestPatch));
    const std::size_t length = std::min(patch.size(), specimen.size - place);
    file->write(place, reinterpret_cast<const std::uint8_t*>(patch.data()), length);
    copy.damaged = true;
  }
  return copy;
}

Specimens& specimens() {
  static Specimens all;
  return all;
}

}  // namespace orv::fuzz
