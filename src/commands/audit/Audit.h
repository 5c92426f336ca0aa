// The search for faults in the data of a source.
#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "commands/Session.h"
#include "commands/audit/Finding.h"
#include "commands/audit/Rule.h"
#include "sources/RecordSelection.h"

namespace orv::commands::audit {

struct AuditOptions {
  std::vector<std::string> rules = {};    ///< only these; all when none is named
  std::vector<std::string> without = {};  ///< not these
  Severity least = Severity::note;        ///< only findings of this severity or above
};

struct AuditResult {
  int records = 0;                ///< that were looked at
  std::array<int, 3> found = {};  ///< by severity
  bool cancelled = false;         ///< ended by the user; rules on all records were not asked then

  int count(Severity severity) const { return found[static_cast<std::size_t>(severity)]; }
  /// "6000 records: 1 error, 12 warnings, no notes."
  std::string summary() const;
};

using EachFinding = std::function<void(const Finding&)>;

/// Looks at all records of a database or folder, or at those of one kind, and gives each finding to
/// `each` as soon as it is known. Nothing is changed. A record that cannot be read is a finding.
///
/// Raises kInvalidCall for a rule that there is not, for one that is named but cannot find anything
/// so, and for a source that has no records of the kind, and what the store raises.
AuditResult auditSource(Session& session, const std::shared_ptr<sources::datasource>& source,
                        std::optional<RecordKind> kind, const AuditOptions& options,
                        const EachFinding& each);

/// The same of some records of one record set. What rules say of all records is said of these, and
/// nothing of groups, makers and types that nothing uses, and of rows that belong to nothing.
AuditResult auditRecords(Session& session, const sources::RecordSelection& records,
                         const AuditOptions& options, const EachFinding& each);

}  // namespace orv::commands::audit
