#include "store/jet/check/CheckLog.h"

#include <fmt/format.h>

#include <algorithm>

namespace orv::store::jet {
namespace {

/// Findings of one table or index that are listed; a broken one can have one a row.
constexpr std::size_t kMostListed = 25;

constexpr const char* kRebuild =
    "Compact the file in Access, or copy its records into a new database.";

std::string adviceFor(Harm harm) {
  switch (harm) {
    case Harm::header:
      return "The file as a whole cannot be relied on. Work with a copy from before the damage.";
    case Harm::table:
      return "Rows of the table cannot be reached. Take the table from a copy of the file from "
             "before the damage.";
    case Harm::rows:
      return "What these rows held is lost or wrong. Take them from a copy of the file from before "
             "the damage, and copy the other records into a new database.";
    case Harm::longValue:
      return "The memo or picture is lost or wrong; the rest of its row is not. Enter it anew, or "
             "take it from a copy of the file from before the damage.";
    case Harm::index:
      return fmt::format(
          "No row is lost, but searches and sorting by the index can miss rows or show wrong ones. "
          "{}",
          kRebuild);
    case Harm::counts:
      return fmt::format("No row is lost. {}", kRebuild);
    case Harm::freePages:
      return "Nothing is lost, and this program takes no page that the map names. Another program "
             "that writes to the file will overwrite what is there: copy its records into a new "
             "database before that.";
    case Harm::sharing:
      return "One use overwrites the other. Do not write to the file: copy its records into a new "
             "database, and compare them with a copy from before the damage.";
    case Harm::catalogue:
      break;
  }
  return "The object is missing or incomplete. Take it from a copy of the file from before the "
         "damage.";
}

CheckFinding makeFinding(const CheckPlace& place, std::string what, std::string advice) {
  return {std::string(place.table), std::string(place.index), place.page, place.row,
          std::move(what),          std::move(advice)};
}

std::pair<std::string, std::string> ownerOf(const CheckPlace& place) {
  return {std::string(place.table), std::string(place.index)};
}

}  // namespace

void CheckLog::fault(const CheckPlace& place, Harm harm, std::string what) {
  ++report_.faultCount;
  if (faults_[ownerOf(place)]++ < kMostListed) {
    report_.faults.push_back(makeFinding(place, std::move(what), adviceFor(harm)));
  }
}

void CheckLog::remark(const CheckPlace& place, std::string what) {
  ++report_.remarkCount;
  if (remarks_[ownerOf(place)]++ < kMostListed) {
    report_.remarks.push_back(makeFinding(place, std::move(what), ""));
  }
}

void CheckLog::remarkOnce(const CheckPlace& place, std::string what) {
  const bool known = std::ranges::any_of(report_.remarks, [&](const CheckFinding& remark) {
    return remark.table == place.table && remark.index == place.index && remark.what == what;
  });
  if (!known) {
    remark(place, std::move(what));
  }
}

void CheckLog::report(const CheckPlace& place, Harm harm, const DamagedPage& damage) {
  if (place.page == 0) {
    fault(place.onPage(damage.page()), harm, damage.fault());
  } else if (damage.page() == place.page) {
    fault(place, harm, damage.fault());
  } else {
    fault(place, harm, fmt::format("it leads to page {}: {}", damage.page(), damage.fault()));
  }
}

void CheckLog::close() {
  const auto addRest = [](std::vector<CheckFinding>& list, const Counts& counts,
                          std::string_view what) {
    for (const auto& [owner, count] : counts) {
      if (count > kMostListed) {
        list.push_back(makeFinding({owner.first, owner.second},
                                   fmt::format("{} more {}", count - kMostListed, what),
                                   "They are of the kinds listed above."));
      }
    }
  };
  addRest(report_.faults, faults_, "faults");
  addRest(report_.remarks, remarks_, "remarks");
}

}  // namespace orv::store::jet
