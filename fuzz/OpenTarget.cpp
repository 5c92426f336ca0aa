// Opens damaged files and reads what is in their catalogues.

#include "fuzz/Specimens.h"
#include "fuzz/TryTo.h"
#include "store/Connection.h"

using orv::fuzz::tryTo;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  orv::fuzz::Input input(bytes, size);
  const auto file = orv::fuzz::specimens().damaged(input, 40);
  tryTo([&] {
    const auto database = orv::store::Connection::openFile(file.path, file.password);
    tryTo([&] {
      for (const std::string& name : database->tableNames()) {
        tryTo([&] { database->table(name); });
      }
    });
    tryTo([&] {
      for (const std::string& name : database->queryNames()) {
        tryTo([&] { database->querySql(name); });
      }
    });
    tryTo([&] { database->relations(); });
  });
  return 0;
}
