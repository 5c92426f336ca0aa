// Whether changes can be made.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "commands/Session.h"
#include "commands/edit/Change.h"
#include "commands/edit/StoredRecords.h"

namespace orv::commands::edit {

/// Looks at a list of changes as a whole: each by itself, and the records as they would be
/// afterwards.
class ChangeReview {
 public:
  /// All outlive it.
  ChangeReview(const Session& session, store::Connection& database, EditSet set,
               const std::vector<EditField>& fields, StoredRecords& records)
      : session_(session), database_(database), set_(set), fields_(fields), records_(records) {}

  Review of(const std::vector<Change>& changes);

 private:
  /// What makes a record one of its kind: its name, of panes and frames with its group.
  struct Identity {
    std::string name;
    std::string group;
  };

  void lookAt(const std::vector<Change>& changes, std::size_t at);
  std::string nameRefusal(const EditField& field, const std::string& name) const;
  void refuseDoubles(const std::vector<Change>& changes);
  std::map<std::int32_t, Identity> identities();

  const Session& session_;
  store::Connection& database_;
  EditSet set_;
  const std::vector<EditField>& fields_;
  StoredRecords& records_;
  Review review_;
};

/// The field of this name, of fields that have one of it.
const EditField& fieldNamed(const std::vector<EditField>& fields, const std::string& name);

/// What the changes make untrue elsewhere, a sentence each.
std::vector<std::string> remarksOn(const std::vector<Change>& changes, EditSet set,
                                   const std::vector<EditField>& fields,
                                   store::Connection& database, StoredRecords& records);

}  // namespace orv::commands::edit
