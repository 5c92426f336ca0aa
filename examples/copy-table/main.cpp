// Copies a table of an Access file, with its indexes, into a new Access file.
#include <cstdio>

#include "errors/Error.h"
#include "store/Connection.h"

using namespace orv::store;

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fprintf(stderr, "usage: copy-table SOURCE.mdb TABLE NEW.mdb\n");
    return 2;
  }
  try {
    const auto source = Connection::openFile(argv[1]);
    const auto rows = source->openRecordset(argv[2]);
    TableInfo design = source->table(argv[2]);
    // Relations stay behind, and so do the indexes that are kept for them.
    std::erase_if(design.indexes, [](const IndexInfo& index) { return index.ofRelation; });

    // The new file appears with all rows in it, or not at all.
    const auto target = Connection::create(argv[3], [&](Connection& database) {
      database.createTable(design);
      const auto copies = database.openRecordset(argv[2], CursorType::keyset, LockType::optimistic);
      for (; !rows->eof(); rows->moveNext()) {
        copies->addNew();
        for (std::size_t field = 0; field < rows->fields().size(); ++field) {
          copies->setValue(field, rows->value(field));
        }
        copies->update();
      }
    });
    std::printf("%lld rows copied.\n", static_cast<long long>(target->table(argv[2]).rowCount));
  } catch (const orv::Error& error) {
    std::fprintf(stderr, "copy-table: %s\n", error.what());
    return 1;
  }
}
