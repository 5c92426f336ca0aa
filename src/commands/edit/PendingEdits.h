// Changes that are collected before they are saved.
#pragma once

#include <compare>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "commands/edit/Editor.h"

namespace orv::commands::edit {

/// What a user has changed in the records of one set and not saved yet, with the way back, step by
/// step. Nothing is written before save().
class PendingEdits {
 public:
  /// The editor outlives it.
  explicit PendingEdits(Editor& editor) : editor_(editor) {}

  bool isEmpty() const { return after_.empty(); }
  /// In the order of the records and the names of the fields.
  std::vector<Change> changes() const;
  /// What a field is to become; null where it is not changed.
  const store::Value* find(std::int32_t record, const std::string& field,
                           std::optional<std::int16_t> angle = {}) const;
  /// What the record of a change was called when it was changed first.
  std::string name(std::int32_t record) const;
  /// What there is to say of the changes together.
  const Review& review() const { return review_; }
  /// Reviews them again, since others may have changed the records.
  void lookAgain() { review_ = editor_.review(changes()); }

  /// Brings typed values into their fields, as one step. How many fields become others; one that
  /// gets what is stored is not changed any more. Raises kInvalidCall with the reason when a value
  /// is refused; then none is taken.
  std::size_t type(const std::vector<TypedValue>& values);
  /// Drops changes, as one step.
  void drop(const std::vector<Change>& changes);

  bool canUndo() const { return !done_.empty(); }
  bool canRedo() const { return !undone_.empty(); }
  void undo();
  void redo();

  /// Of the changes whose fields somebody else has changed meanwhile: lets them stand against what
  /// is there now, or drops them.
  void overrideOthers();
  void leaveToOthers();

  /// Makes the changes in one commit, after which there are none. When one is refused, all stay.
  Review save();
  /// Drops everything, also the way back.
  void clear();

 private:
  struct Key {
    std::int32_t record;
    std::string field;
    std::optional<std::int16_t> angle;
    auto operator<=>(const Key&) const = default;
  };
  using Wanted = std::optional<store::Value>;  ///< none: as it is stored
  struct Part {
    Key key;
    Wanted earlier;
    Wanted later;
  };
  using Step = std::vector<Part>;

  static Key keyOf(const Change& change) { return {change.record, change.field, change.angle}; }
  Wanted wanted(const Key& key) const;
  void put(const Key& key, const Wanted& value);
  void apply(const Step& step, bool forward);
  void take(Step step);
  /// Why the changes of a step cannot be; empty when they can.
  std::string refusalOf(const Step& step) const;
  std::vector<Change> changedByOthers() const;

  Editor& editor_;
  std::map<Key, store::Value> after_;
  std::map<Key, store::Value> before_;  ///< as it was stored; kept for redo()
  std::map<std::int32_t, std::string> names_;
  Review review_;
  std::vector<Step> done_;
  std::vector<Step> undone_;
};

}  // namespace orv::commands::edit
