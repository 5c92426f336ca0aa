#include "textfile/repairs/Repairs.h"

#include "textfile/repairs/Repair.h"

namespace orv::textfile {

namespace {

/// In the order in which they see the text: numbers are found when units and separators are gone.
std::vector<RepairPtr> allRepairs() {
  std::vector<RepairPtr> repairs;
  for (RepairPtr (*make)() :
       {makeEndOfFileMark, makeNoBreakSpaces, makeUnits, makeSeparators, makeExponents, makePercent,
        makeHeadings, makeDescendingWavelengths}) {
    repairs.push_back(make());
  }
  return repairs;
}

}  // namespace

std::string repair(std::string& text) {
  SpectralText pieces(text);
  std::string done;
  for (const RepairPtr& each : allRepairs()) {
    const std::string what = each->mend(pieces);
    if (what.empty()) continue;
    done += (done.empty() ? "" : ", ") + what;
    pieces.findParts();
  }
  if (!done.empty()) text = pieces.text();
  return done;
}

}  // namespace orv::textfile
