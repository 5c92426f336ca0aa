#include "commands/edit/PendingEdits.h"

#include <fmt/format.h>

#include <algorithm>
#include <ranges>

#include "errors/Error.h"

namespace orv::commands::edit {

namespace {

/// As many as people read.
std::string firstReasons(const std::vector<std::string>& reasons) {
  constexpr std::size_t kMost = 3;
  std::string text;
  for (const std::string& reason : reasons | std::views::take(kMost)) {
    text += (text.empty() ? "" : "\n") + reason;
  }
  if (reasons.size() > kMost) text += fmt::format("\n... and {} more.", reasons.size() - kMost);
  return text;
}

}  // namespace

std::vector<Change> PendingEdits::changes() const {
  std::vector<Change> list;
  for (const auto& [key, after] : after_) {
    list.push_back({key.record, key.field, key.angle, before_.at(key), after});
  }
  return list;
}

const store::Value* PendingEdits::find(std::int32_t record, const std::string& field,
                                       std::optional<std::int16_t> angle) const {
  const auto found = after_.find({record, field, angle});
  return found == after_.end() ? nullptr : &found->second;
}

std::string PendingEdits::name(std::int32_t record) const {
  const auto found = names_.find(record);
  return found == names_.end() ? std::string() : found->second;
}

std::size_t PendingEdits::type(const std::vector<TypedValue>& values) {
  const Draft draft = editor_.draft(values);
  if (!draft.refusals.empty()) throw Error(kInvalidCall, firstReasons(draft.refusals));
  std::map<Key, Wanted> targets;
  for (const TypedValue& typed : values) {
    targets[{typed.record, typed.place.field->name, typed.place.angle}] = std::nullopt;
  }
  for (std::size_t i = 0; i < draft.changes.size(); ++i) {
    const Change& change = draft.changes[i];
    const Key key = keyOf(change);
    targets[key] = change.after;
    names_.try_emplace(change.record, draft.names[i]);
    // What somebody else has changed since the first edit is told, not passed over.
    if (!after_.contains(key)) before_[key] = change.before;
  }
  Step step;
  for (const auto& [key, target] : targets) {
    if (wanted(key) != target) step.push_back({key, wanted(key), target});
  }
  if (step.empty()) return 0;
  apply(step, true);
  if (const std::string refusal = refusalOf(step); !refusal.empty()) {
    apply(step, false);
    throw Error(kInvalidCall, refusal);
  }
  const std::size_t count = step.size();
  take(std::move(step));
  return count;
}

void PendingEdits::drop(const std::vector<Change>& changes) {
  Step step;
  for (const Change& change : changes) {
    const Key key = keyOf(change);
    if (const Wanted earlier = wanted(key)) step.push_back({key, earlier, std::nullopt});
  }
  if (step.empty()) return;
  apply(step, true);
  take(std::move(step));
}

void PendingEdits::undo() {
  Step step = std::move(done_.back());
  done_.pop_back();
  apply(step, false);
  undone_.push_back(std::move(step));
}

void PendingEdits::redo() {
  Step step = std::move(undone_.back());
  undone_.pop_back();
  apply(step, true);
  done_.push_back(std::move(step));
}

void PendingEdits::overrideOthers() {
  const std::vector<Change> all = changes();
  for (const Refusal& refusal : review_.refusals) {
    if (!refusal.present) continue;
    const Key key = keyOf(all[refusal.change]);
    before_[key] = *refusal.present;
    put(key, wanted(key));
  }
  lookAgain();
}

void PendingEdits::leaveToOthers() {
  drop(changedByOthers());
}

Review PendingEdits::save() {
  Review result = editor_.save(changes());
  if (result.isFine()) {
    clear();
  } else {
    review_ = result;
  }
  return result;
}

void PendingEdits::clear() {
  after_.clear();
  before_.clear();
  names_.clear();
  done_.clear();
  undone_.clear();
  review_ = {};
}

PendingEdits::Wanted PendingEdits::wanted(const Key& key) const {
  const auto found = after_.find(key);
  return found == after_.end() ? Wanted() : found->second;
}

void PendingEdits::put(const Key& key, const Wanted& value) {
  if (value && *value != before_.at(key)) {
    after_[key] = *value;
  } else {
    after_.erase(key);
  }
}

void PendingEdits::apply(const Step& step, bool forward) {
  for (const Part& part : step) put(part.key, forward ? part.later : part.earlier);
  lookAgain();
}

void PendingEdits::take(Step step) {
  done_.push_back(std::move(step));
  undone_.clear();
}

std::string PendingEdits::refusalOf(const Step& step) const {
  const std::vector<Change> all = changes();
  std::vector<std::string> reasons;
  for (const Refusal& refusal : review_.refusals) {
    const Key key = keyOf(all[refusal.change]);
    if (!refusal.present && std::ranges::find(step, key, &Part::key) != step.end()) {
      reasons.push_back(refusal.reason);
    }
  }
  return firstReasons(reasons);
}

std::vector<Change> PendingEdits::changedByOthers() const {
  const std::vector<Change> all = changes();
  std::vector<Change> list;
  for (const Refusal& refusal : review_.refusals) {
    if (refusal.present) list.push_back(all[refusal.change]);
  }
  return list;
}

}  // namespace orv::commands::edit
