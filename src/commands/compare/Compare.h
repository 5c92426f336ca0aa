// The differences of two sources, as a list.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "commands/RecordKind.h"
#include "commands/Session.h"
#include "store/Value.h"

namespace orv::commands::compare {

/// By what the records of two sources are put together.
enum class Match {
  name,      ///< name and group; the name alone where one of the sources has no groups
  id,        ///< the identifier in the source
  filename,  ///< the name without its extension, whatever the group
  spectrum,  ///< the curves; records without any, and frames, by name and group
};

struct CompareOptions {
  Match match = Match::name;
  /// Names of fields: only these, where there are any, and not these.
  std::vector<std::string> fields = {};
  std::vector<std::string> ignored = {};
  /// How far apart numbers may be that count as the same.
  double tolerance = 0;
  std::optional<RecordKind> kind = {};  ///< only records of this kind
  /// Only records of B that are in this group, and those of A as if they were in it, too.
  std::optional<std::string> group = {};
  /// Leaves out what copying A into B cannot make the same: what a copy has no place for, computes
  /// itself, or lets stand; a remark names it.
  bool isForCopy = false;
};

enum class State { same, added, removed, changed };

/// "added"
std::string_view nameOf(State state);

/// What became of a record from A to B.
struct ComparedPair {
  RecordKind kind = RecordKind::panes;
  State state = State::same;
  /// In A and in B; none where it is only in the other. Several where files hold an angle each.
  std::vector<std::string> a = {};
  std::vector<std::string> b = {};
  std::string name;
  std::string groupA = {};  ///< empty where the source has no groups
  std::string groupB = {};
  /// Several records of a source have this name and group, so that nobody knows which is which.
  bool isAmbiguous = false;
  bool isWithoutData =
      false;  ///< that in A: a pane with data at no angle, of which a copy has nothing

  bool operator==(const ComparedPair&) const = default;
};

/// A line of the list. For a record that is only in one source there is one, without a field.
struct Difference {
  std::size_t pair = 0;  ///< position among the pairs
  std::optional<double> angle = {};
  std::string field = {};
  store::Value a = {};
  store::Value b = {};
  /// Where on the curve the values are; nm. Of spectra the place of the largest difference.
  std::optional<double> wavelength = {};

  bool operator==(const Difference&) const = default;
};

struct Comparison {
  std::vector<ComparedPair> pairs = {};
  std::vector<Difference> differences = {};
  /// What was not compared, or not surely put together; sentences.
  std::vector<std::string> remarks = {};
  /// "NAME cannot be read: WHY". Such records are in no pair.
  std::vector<std::string> failures = {};

  std::size_t count(State state) const;
  bool isEqual() const { return differences.empty(); }
  /// Whether another comparison has found the same.
  bool hasSameLines(const Comparison& other) const {
    return pairs == other.pairs && differences == other.differences;
  }
  /// "12 records are the same, 1 added, 2 removed, 3 changed."
  std::string summary() const;
};

/// Compares databases, folders, or record sets of them, of any kinds; nothing is changed. Of each
/// kind of record that both have, records are told in the order of A, then those only in B. Numbers
/// are compared as they are stored, in single precision where one of them is; keys are not
/// compared, names of suppliers and groups are. An empty field is the same as 0, no, and an empty
/// text; a coating class has no case.
///
/// Raises kInvalidCall for a field that there is not and for sources that have no records of one
/// kind, Cancelled where the user ends the work, and what the store raises.
Comparison compareSources(Session& session, const std::shared_ptr<sources::datasource>& a,
                          const std::shared_ptr<sources::datasource>& b,
                          const CompareOptions& options = {});

/// The record set of a source, or the node itself where it is one, that holds records of a kind;
/// null where there is none.
std::shared_ptr<sources::datasource> partOf(const std::shared_ptr<sources::datasource>& node,
                                            RecordKind kind);

}  // namespace orv::commands::compare
