// Runs statements that somebody mistyped, and the saved queries of damaged files.

#include <memory>

#include "fuzz/Specimens.h"
#include "fuzz/TryTo.h"
#include "store/Connection.h"

namespace {

using namespace orv::store;
using orv::fuzz::tryTo;

constexpr std::size_t kLongestStatement = 400;
constexpr int kMostRows = 2'000;

void readAll(Recordset& rows) {
  for (int i = 0; i < kMostRows && !rows.eof(); ++i, rows.moveNext()) {
    for (std::size_t field = 0; field < rows.fields().size(); ++field) {
      rows.value(field);
    }
  }
}

void runStatement(const std::string& text) {
  const auto file = orv::fuzz::specimens().own();
  const auto database = Connection::openFile(file.path);
  tryTo([&] { readAll(*database->openRecordset("SELECT " + text)); });
  tryTo([&] {
    const auto rows = database->openRecordset("Everything", CursorType::keyset);
    rows->find(text);
  });
}

void runSavedQueries(orv::fuzz::Input& input) {
  const auto file = orv::fuzz::specimens().damaged(input, 40);
  const auto database = Connection::openFile(file.path, file.password);
  for (const std::string& name : database->queryNames()) {
    tryTo([&] { readAll(*database->openRecordset(name)); });
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  orv::fuzz::Input input(bytes, size);
  tryTo([&] {
    // Printable first bytes, so that a dictionary and plain texts are statements.
    if (input.byte() < 0x80) {
      runStatement(input.text(kLongestStatement));
    } else {
      runSavedQueries(input);
    }
  });
  return 0;
}
