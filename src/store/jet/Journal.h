// The rollback journal: what pages held before they are overwritten.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "store/jet/Bytes.h"
#include "store/jet/File.h"

namespace orv::store::jet {

/// A file beside the database ("NAME.mdb-journal") that holds the former contents of the pages
/// that a commit overwrites. It is complete and on the disk before the first page is overwritten,
/// and voided after the last one is on the disk. A journal found complete is of a commit that a
/// crash cut short: writing its pages back undoes that commit. One found incomplete is of a
/// commit that had not begun to overwrite: it is dropped.
///
/// A void journal has a header of zeros, or no content. The file keeps its size from one commit
/// to the next, which spares the disk work.
///
/// Layout: 8 bytes of magic, u32 page size, u32 page count of the file before, u32 number of
/// records, u32 of zero, u64 checksum of all that follows and precedes; then per record u32 page
/// number and the page. Little-endian.
class Journal {
 public:
  Journal(const std::string& databasePath, std::size_t pageSize);

  /// The path of the journal of the database at `databasePath`.
  static std::string pathFor(const std::string& databasePath) { return databasePath + "-journal"; }

  struct Record {
    PageNumber page;
    const std::uint8_t* bytes;
  };

  /// Writes a complete journal and waits until it is on the disk.
  void write(PageNumber pageCount, const std::vector<Record>& records);
  /// Voids the journal; when this returns the commit cannot be undone any more.
  void clear();

  /// Whether there is a journal that is not void.
  bool isPresent();
  /// Writes the pages of a complete journal back to `database`, cuts it to its former size and
  /// voids the journal.
  void rollBack(File& database);
  /// Removes the file if this has opened it and it is void. Nobody may be writing a journal
  /// meanwhile.
  void removeVoidFile();

 private:
  File& file();

  std::string path_;
  std::size_t pageSize_;
  std::unique_ptr<File> file_;
  std::string identity_;  ///< of the open file
};

}  // namespace orv::store::jet
