// What makes pane files of laboratories files of the format.
#pragma once

#include <memory>
#include <string>

#include "textfile/repairs/SpectralText.h"
#include "textfile/repairs/Words.h"

namespace orv::textfile {

/// One way in which files differ from the format, and its mending.
class Repair {
 public:
  virtual ~Repair() = default;

  /// Mends the text. Says what was done, in a few words; nothing where there is nothing to mend,
  /// or where more than one reading is possible.
  virtual std::string mend(SpectralText& text) const = 0;
};

using RepairPtr = std::unique_ptr<Repair>;

RepairPtr makeEndOfFileMark();  ///< a Ctrl-Z at the end
RepairPtr makeNoBreakSpaces();  ///< blanks of other kinds
RepairPtr makeUnits();          ///< "nm", "µm", "4.0 mm"
RepairPtr makeSeparators();     ///< semicolons and commas between columns, decimal commas
RepairPtr makeExponents();      ///< "1.0D-3"
RepairPtr makePercent();        ///< values of 0 to 100; looks at the headings, too
RepairPtr makeHeadings();       ///< lines of words and of "#" before the numbers
RepairPtr makeDescendingWavelengths();

}  // namespace orv::textfile
