// Who uses each page of the file.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "store/jet/check/CheckLog.h"
#include "store/jet/check/RowLedger.h"
#include "store/jet/page/Pager.h"
#include "store/jet/page/RowId.h"

namespace orv::store::jet {

/// Pages are claimed by what is found to use them. A page that is claimed twice is a fault, and
/// so is, at the end, one that is claimed and listed as free.
class PageLedger {
 public:
  /// Something that uses pages.
  using User = std::uint32_t;

  PageLedger(Pager& pager, CheckLog& log, const CheckProgress& progress);

  /// A user, of which `text` says what it is of its table ("the rows").
  User addUser(const CheckPlace& place, std::string text);
  /// Claims a page; false, with a fault, when the file has no such page or another uses it.
  bool claim(User user, PageNumber page);
  /// Claims the row in which a usage map of `user` is kept, and the pages that the map adds.
  /// False, with a fault, when the map cannot be read or is another's.
  bool claimMap(User user, RowId map);
  /// The table defined on a page has as many rows on its pages as it says.
  void setComplete(PageNumber definition) { complete_.insert(definition); }
  bool isClaimedBy(User user, PageNumber page) const {
    return page < users_.size() && users_[page] == user;
  }
  template <class Visitor>
  void forEachPageOf(User user, Visitor visit) const {
    for (PageNumber page = 0; page < users_.size(); ++page) {
      if (users_[page] == user) {
        visit(page);
      }
    }
  }

  /// Compares with the map of free pages, and reports what is left over.
  void finish(CheckReport& report);

 private:
  struct Description {
    CheckPlace place;
    std::string text;
  };

  void claimFreeMap();
  void compareWithFreePages(CheckReport& report);
  std::string describe(User user) const;
  void reportShared(User user, PageNumber page);
  void reportUnused(PageNumber page);
  void noteUnused();

  static constexpr User kNobody = 0;

  Pager& pager_;
  CheckLog& log_;
  const CheckProgress& progress_;
  std::vector<Description> descriptions_;  ///< by user
  std::vector<User> users_;                ///< by page
  std::size_t claimed_ = 0;
  User fileUser_ = kNobody;
  User mapRows_ = kNobody;  ///< pages on which maps are kept, several users' on one
  RowLedger maps_;
  std::set<PageNumber> complete_;  ///< definitions
  std::map<PageType, std::vector<PageNumber>> unused_;
};

}  // namespace orv::store::jet
