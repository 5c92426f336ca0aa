#include "app/grid/ChangePlan.h"

#include <algorithm>
#include <map>
#include <utility>

#include "app/grid/RecordEdits.h"
#include "errors/Error.h"
#include "model/Text.h"

namespace orv::app {

using commands::edit::Change;
using commands::edit::Draft;
using commands::edit::fieldText;
using commands::edit::Refusal;
using commands::edit::TypedValue;

namespace {

/// Record and field: what the grid shows has no angle.
using FieldKey = std::pair<std::int32_t, std::string>;

FieldKey keyOf(const Change& change) {
  return {change.record, change.field};
}
FieldKey keyOf(const PlannedChange& planned) {
  return {planned.typed.record, planned.typed.place.field->name};
}

class PlanJudge {
 public:
  PlanJudge(const RecordEdits& edits, ChangePlan plan) : edits_(edits), plan_(std::move(plan)) {}

  ChangePlan judge() {
    for (const Change& change : edits_.pending().changes()) changes_[keyOf(change)] = change;
    refuseWrongTexts();
    draft();
    std::erase_if(plan_, [](const PlannedChange& each) {
      return each.refusal.empty() && each.after == each.before;
    });
    review();
    return std::move(plan_);
  }

 private:
  /// By themselves: that is quick, and each gets its own reason.
  void refuseWrongTexts() {
    for (PlannedChange& each : plan_) {
      if (trimmed(each.typed.text).empty() && each.before.empty()) continue;
      try {
        commands::edit::fieldValue(*each.typed.place.field, each.typed.text);
      } catch (const Error& error) {
        if (error.number() != kInvalidCall) throw;
        each.refusal = error.description();
      }
    }
  }

  void draft() {
    std::vector<TypedValue> values;
    for (const PlannedChange& each : plan_) {
      if (each.refusal.empty()) values.push_back(each.typed);
    }
    Draft all = edits_.editor().draft(values);
    if (!all.refusals.empty()) all = draftEach();
    std::map<FieldKey, Change> drafted;
    for (Change& change : all.changes) drafted.insert_or_assign(keyOf(change), std::move(change));
    for (PlannedChange& each : plan_) {
      if (each.refusal.empty()) merge(each, drafted);
    }
  }

  /// One at a time, where it is not known which of them is refused.
  Draft draftEach() {
    Draft all;
    for (PlannedChange& each : plan_) {
      if (!each.refusal.empty()) continue;
      const Draft one = edits_.editor().draft({each.typed});
      if (!one.refusals.empty()) each.refusal = one.refusals.front();
      all.changes.insert(all.changes.end(), one.changes.begin(), one.changes.end());
    }
    return all;
  }

  /// Puts what a text has come to among all changes. A field that was edited before is compared
  /// with what is stored, as it was then; another must be what the user sees.
  void merge(PlannedChange& planned, const std::map<FieldKey, Change>& drafted) {
    const FieldKey key = keyOf(planned);
    const auto found = drafted.find(key);
    const auto edited = changes_.find(key);
    if (found == drafted.end()) {
      planned.after = edited == changes_.end() ? planned.before : fieldText(edited->second.before);
      changes_.erase(key);
      return;
    }
    const Change& change = found->second;
    planned.after = fieldText(change.after);
    if (edited != changes_.end()) {
      edited->second.after = change.after;
    } else if (fieldText(change.before) != planned.before) {
      planned.refusal = changedMeanwhile(change);
    } else {
      changes_[key] = change;
    }
  }

  /// What contradicts other changes is found when those that are wrong by themselves are gone.
  void review() {
    std::map<FieldKey, PlannedChange*> planned;
    for (PlannedChange& each : plan_) planned[keyOf(each)] = &each;
    for (bool isFine = false; !isFine;) {
      std::vector<Change> list;
      for (const auto& [key, change] : changes_) list.push_back(change);
      const auto review = edits_.editor().review(list);
      isFine = review.isFine();
      for (const Refusal& refusal : review.refusals) {
        const FieldKey key = keyOf(list[refusal.change]);
        changes_.erase(key);
        if (const auto found = planned.find(key); found != planned.end() && !refusal.present) {
          found->second->refusal = refusal.reason;
        }
      }
    }
  }

  const RecordEdits& edits_;
  ChangePlan plan_;
  std::map<FieldKey, Change> changes_;  ///< all that are to be, those of before among them
};

}  // namespace

ChangePlan judged(const RecordEdits& edits, ChangePlan plan) {
  return PlanJudge(edits, std::move(plan)).judge();
}

std::string changedMeanwhile(const Change& change) {
  return "It is \"" + fieldText(change.before) +
         "\" in the database now. Read the records again first (F5).";
}

}  // namespace orv::app
