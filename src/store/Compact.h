// Compacting a database file: writing all that it holds into a new one without free space.
#pragma once

#include <string>

#include "store/CompactReport.h"

namespace orv::store {

/// Writes the database at `path` into a new file at `target`: its tables with their rows, indexes,
/// properties and last automatic numbers, its saved queries, relations and all other objects, its
/// permissions and password. Rows, texts, memos and pictures have the same bytes there; pages stand
/// in order, indexes are made anew, nothing is free. The file appears whole or not at all.
///
/// Needs about 40 bytes of memory for each row and index of the largest table.
///
/// Raises kStoreFailure where a file stands at `target`, kNotAuthenticated, kNotSupported for a
/// file of a format that is not written, kCorruptFile for a damaged one.
CompactReport compactFile(const std::string& path, const std::string& password,
                          const std::string& target, const CompactProgress& progress = {});

/// Writes what can be read of a damaged database into a new file at `target`: each row that can be
/// decoded, also those on pages that no map names any more where the table lacks rows; memos and
/// pictures up to where they break; all indexes anew. The report says what is lost. The new file
/// has no fault.
///
/// Raises kStoreFailure for a file that does not even begin as a database, besides what
/// compactFile() raises, but not kCorruptFile.
CompactReport repairFile(const std::string& path, const std::string& password,
                         const std::string& target, const CompactProgress& progress = {});

/// Writes a database of format Jet 3 (of Access 97) into a new file of format Jet 4 at `target`:
/// its tables with their rows, properties, indexes and last automatic numbers, its relations and
/// saved queries, the password. Texts are Unicode there, and indexes have the order of Jet 4. What
/// cannot be kept (forms, reports, macros, modules; an index in an order that is not known) is
/// listed as lost; unless `losses` accepts that, it raises kNotSupported, which names it, and no
/// file is made.
///
/// Raises what compactFile() raises, and kNotSupported for a file that is not of format Jet 3.
CompactReport convertFile(const std::string& path, const std::string& password,
                          const std::string& target, Losses losses,
                          const CompactProgress& progress = {});

/// The same as compactFile(), after which the new file takes the place of the old one, in one
/// moment; `backup`, if it is not empty, is where a copy of the old one is then, and must be free.
/// Nobody can change the file meanwhile; programs that have it open notice that it was replaced.
/// The new file is checked before. Raises kReadOnlyStore besides.
CompactReport compactInPlace(const std::string& path, const std::string& password,
                             const std::string& backup, const CompactProgress& progress = {});

/// Removes the files that the above have begun, for a program that is ended while they are at work:
/// a handler of signals may call it.
void removeUnfinishedFiles() noexcept;

}  // namespace orv::store
