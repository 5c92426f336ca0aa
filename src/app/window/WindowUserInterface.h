// The commands' user interface in windows.
#pragma once

#include <QPointer>
#include <QStringList>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>

#include "app/dialogs/ProgressDialog.h"
#include "commands/UserInterface.h"
#include "store/Waiting.h"

namespace orv::app {

/// Message boxes, an input box and a progress display over the main window.
class WindowUserInterface : public commands::UserInterface, public store::Waiter {
 public:
  WindowUserInterface() { store::Waiter::setCurrent(this); }
  ~WindowUserInterface() override {
    if (store::Waiter::current() == this) store::Waiter::setCurrent(nullptr);
  }

  /// The main window, and where it shows status texts. Boxes have no parent before.
  void attach(QWidget* window, std::function<void(const QString&)> showStatus);

  /// Collects the failures of records from here on. `work` names the command in the box of a
  /// failure: "Don't ask again for this paste".
  void collectFailures(const QString& work);
  /// The failures collected, in order.
  const QStringList& failures() const { return failures_; }

  /// Whether a long work is being shown.
  bool isWorking() const { return progress_ != nullptr || waiting_ != nullptr; }

  void status(const std::string& text) override;
  void beginProgress(const std::string& text) override;
  void progressText(const std::string& text) override;
  void progressSteps(int done, int total) override;
  void endProgress() override;
  bool cancelled() override;
  /// Says what is waited for, in the display of the work or in one of its own, and lets the user
  /// end that.
  bool wait(const std::string& holder) override;
  void done() override;
  void message(commands::MessageKind kind, const std::string& text,
               const std::string& title) override;
  void list(const std::string& heading, const std::vector<std::string>& parts,
            const std::string& title) override;
  commands::IfThere recordExists(const std::string& text, const std::string& title) override;
  commands::Answer ask(const commands::Question& question) override;
  std::string input(const commands::InputRequest& request) override;

 private:
  /// The window that a box is shown over.
  QWidget* owner() const;
  void recordFailure(const QString& text, const QString& title);

  QPointer<QWidget> window_;
  std::function<void(const QString&)> showStatus_ = [](const QString&) {};
  std::unique_ptr<ProgressDialog> progress_;
  std::unique_ptr<ProgressDialog> waiting_;  ///< while the store waits and no work is shown
  QString work_;
  QStringList failures_;
  bool failuresQuiet_ = false;
  std::optional<commands::IfThere> ifThere_;  ///< for all further records of this work
};

}  // namespace orv::app
