// The questions that the insertion of a pane puts to the user.
#pragma once

#include <string>

namespace orv::database {

/// Whoever shows windows or prompts answers through this.
class PaneQuestions {
 public:
  virtual ~PaneQuestions() = default;

  /// Asks with Yes and No buttons; true for Yes.
  virtual bool confirm(const std::string& text, const std::string& caption) = 0;
};

}  // namespace orv::database
