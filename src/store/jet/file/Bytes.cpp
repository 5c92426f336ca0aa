#include "store/jet/file/Bytes.h"

#include "store/StoreError.h"

namespace orv::store::jet {

namespace {
thread_local const std::string* damagedFile = nullptr;
}

DamagedFileScope::DamagedFileScope(const std::string& path) : outer_(damagedFile) {
  damagedFile = &path;
}

DamagedFileScope::~DamagedFileScope() {
  damagedFile = outer_;
}

DamagedPage::DamagedPage(PageNumber page, std::string what, const std::string& file)
    : Error(kCorruptFile, file + " is damaged at page " + std::to_string(page) + ": " + what +
                              ". Check the file to see what is affected, and work with a copy "
                              "from before the damage."),
      page_(page),
      fault_(std::move(what)) {}

void raiseDamaged(PageNumber page, const std::string& what) {
  throw DamagedPage(page, what,
                    damagedFile != nullptr ? "'" + *damagedFile + "'" : "The database file");
}

}  // namespace orv::store::jet
