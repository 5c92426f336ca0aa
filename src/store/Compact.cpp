#include "store/Compact.h"

#include "store/jet/compact/Compaction.h"
#include "store/jet/convert/Conversion.h"
#include "store/jet/file/NewFile.h"
#include "store/jet/repair/Repair.h"

namespace orv::store {

CompactReport compactFile(const std::string& path, const std::string& password,
                          const std::string& target, const CompactProgress& progress) {
  return jet::Compaction(path, password, progress).writeTo(target);
}

CompactReport repairFile(const std::string& path, const std::string& password,
                         const std::string& target, const CompactProgress& progress) {
  return jet::Repair(path, password, progress).writeTo(target);
}

CompactReport convertFile(const std::string& path, const std::string& password,
                          const std::string& target, Losses losses,
                          const CompactProgress& progress) {
  return jet::Conversion(path, password, progress).writeTo(target, losses);
}

CompactReport compactInPlace(const std::string& path, const std::string& password,
                             const std::string& backup, const CompactProgress& progress) {
  return jet::Compaction(path, password, progress).replace(backup);
}

void removeUnfinishedFiles() noexcept {
  jet::NewFile::removeAll();
}

}  // namespace orv::store
