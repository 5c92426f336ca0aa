// Makes a database by random changes and writes what it should hold, for foreign readers:
//   random_database DATABASE ROWS_JSON SEED CHANGES KEY
// With a KEY that is not 0 the pages of the database are encoded.
#include <fstream>
#include <iostream>

#include "interop/RowsJson.h"
#include "store/RandomTables.h"
#include "support/EncodedFile.h"
#include "support/MemoryFiles.h"

namespace {

using namespace orv::store;

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
  orv::test::writeRows(tables.tables(), out);
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
