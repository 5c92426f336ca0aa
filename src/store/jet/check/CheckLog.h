// Collects what a check finds.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "errors/Error.h"
#include "store/CheckReport.h"
#include "store/StoreError.h"
#include "store/jet/file/Bytes.h"
#include "store/jet/page/RowId.h"

namespace orv::store::jet {

/// Where a check is looking. The names belong to definitions that live as long as the check.
struct CheckPlace {
  std::string_view table{};
  std::string_view index{};
  PageNumber page = 0;
  int row = -1;

  CheckPlace onPage(PageNumber number) const { return {table, index, number, -1}; }
  CheckPlace at(RowId id) const { return {table, index, id.page, id.row}; }
};

/// What a fault does harm to: decides the advice that goes with it.
enum class Harm {
  header,     ///< the file as a whole
  table,      ///< a table's definition or pages: its rows are out of reach
  rows,       ///< single rows
  longValue,  ///< a memo or picture
  index,      ///< searches by an index
  counts,     ///< bookkeeping from which nothing is read
  freePages,  ///< the map of free pages: other programs may take pages that are in use
  sharing,    ///< a place with two uses, of which one will overwrite the other
  catalogue,  ///< what the file says it holds
};

class CheckLog {
 public:
  explicit CheckLog(CheckReport& report) : report_(report) {}

  void fault(const CheckPlace& place, Harm harm, std::string what);
  /// Something that harms nothing: how another program leaves its files.
  void remark(const CheckPlace& place, std::string what);

  /// Does `work`, and makes a fault of the damage that it comes upon, and a remark of what the
  /// store cannot read. Whether it was done to the end.
  template <class Work>
  bool guard(const CheckPlace& place, Harm harm, Work&& work) {
    try {
      std::forward<Work>(work)();
      return true;
    } catch (const DamagedPage& damage) {
      report(place, harm, damage);
    } catch (const Error& error) {
      if (error.number() != kNotSupported) {
        throw;
      }
      std::string why = error.description();
      if (why.ends_with('.')) why.pop_back();
      remarkOnce(place, "not compared: " + why);
    }
    return false;
  }

  /// Adds the numbers of findings that were too many to be listed. To be called at the end.
  void close();

 private:
  /// Numbers of findings by table and index.
  using Counts = std::map<std::pair<std::string, std::string>, std::size_t>;

  void report(const CheckPlace& place, Harm harm, const DamagedPage& damage);
  void remarkOnce(const CheckPlace& place, std::string what);

  CheckReport& report_;
  Counts faults_{};
  Counts remarks_{};
};

}  // namespace orv::store::jet
