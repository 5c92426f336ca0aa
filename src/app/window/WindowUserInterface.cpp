#include "app/window/WindowUserInterface.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCompleter>
#include <QGridLayout>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <utility>

#include "app/Help.h"
#include "app/Pointers.h"
#include "app/Text.h"
#include "app/dialogs/ReportDialog.h"

namespace orv::app {

using commands::Answer;
using commands::Buttons;
using commands::MessageKind;

namespace {

QMessageBox::StandardButtons standardButtons(Buttons buttons) {
  switch (buttons) {
    case Buttons::yesNo:
      return QMessageBox::Yes | QMessageBox::No;
    case Buttons::yesNoCancel:
      return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    case Buttons::abortRetryIgnore:
      return QMessageBox::Abort | QMessageBox::Retry | QMessageBox::Ignore;
  }
  return QMessageBox::Ok;
}

struct AnswerButton {
  Answer answer;
  QMessageBox::StandardButton button;
};

constexpr AnswerButton kAnswerButtons[] = {
    {Answer::yes, QMessageBox::Yes},       {Answer::no, QMessageBox::No},
    {Answer::cancel, QMessageBox::Cancel}, {Answer::abort, QMessageBox::Abort},
    {Answer::retry, QMessageBox::Retry},   {Answer::ignore, QMessageBox::Ignore},
};

QMessageBox::StandardButton buttonFor(Answer answer) {
  for (const AnswerButton& each : kAnswerButtons) {
    if (each.answer == answer) return each.button;
  }
  return QMessageBox::NoButton;
}

/// The button that the escape key and the close box press.
QMessageBox::StandardButton escapeButton(Buttons buttons) {
  switch (buttons) {
    case Buttons::yesNo:
      return QMessageBox::No;
    case Buttons::yesNoCancel:
      return QMessageBox::Cancel;
    case Buttons::abortRetryIgnore:
      return QMessageBox::Abort;
  }
  return QMessageBox::NoButton;
}

/// Offers texts to choose from. What is typed lists those that contain it, and stays as it is.
void offer(QInputDialog& box, const std::vector<std::string>& choices) {
  QStringList texts;
  for (const std::string& choice : choices) texts << qt(choice);
  box.setComboBoxEditable(true);
  box.setComboBoxItems(texts);
  auto* list = box.findChild<QComboBox*>();
  list->setInsertPolicy(QComboBox::NoInsert);
  list->completer()->setCompletionMode(QCompleter::PopupCompletion);
  list->completer()->setFilterMode(Qt::MatchContains);
}

/// The toolkit gives these none.
void giveKeys(QMessageBox& box) {
  for (const auto& [which, text] : {std::pair(QMessageBox::Abort, QWidget::tr("&Abort")),
                                    std::pair(QMessageBox::Retry, QWidget::tr("&Retry")),
                                    std::pair(QMessageBox::Ignore, QWidget::tr("&Ignore"))}) {
    if (QAbstractButton* button = box.button(which)) button->setText(text);
  }
}

/// Texts come from files: nothing in them is markup.
class Box : public QMessageBox {
 public:
  Box(Icon icon, const QString& title, const QString& text, QWidget* parent)
      : QMessageBox(icon, title, text, NoButton, parent) {
    setTextFormat(Qt::PlainText);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  }

  void details(const QString& text) {
    setInformativeText(text);
    if (auto* label = findChild<QLabel*>("qt_msgbox_informativelabel")) {
      label->setTextFormat(Qt::PlainText);
    }
  }

 protected:
  /// A box is as wide as its title: the text takes what it does not need, beside the picture.
  void showEvent(QShowEvent* event) override {
    if (auto* grid = qobject_cast<QGridLayout*>(layout())) {
      grid->setColumnStretch(grid->columnCount() - 1, 1);
    }
    QMessageBox::showEvent(event);
  }
};

}  // namespace

void WindowUserInterface::attach(QWidget* window, std::function<void(const QString&)> showStatus) {
  window_ = window;
  showStatus_ = std::move(showStatus);
}

void WindowUserInterface::collectFailures(const QString& work) {
  work_ = work;
  failures_.clear();
  failuresQuiet_ = false;
  ifThere_.reset();
}

void WindowUserInterface::status(const std::string& text) {
  showStatus_(shownText(text));
  if (progress_) progress_->status(shownText(text));
}

void WindowUserInterface::beginProgress(const std::string& text) {
  progress_ = std::make_unique<ProgressDialog>(qt(text), window_);
  progress_->show();
  progress_->breathe();
}

void WindowUserInterface::progressText(const std::string& text) {
  if (progress_) progress_->status(shownText(text));
}

void WindowUserInterface::progressSteps(int done, int total) {
  if (progress_) progress_->steps(done, total);
}

void WindowUserInterface::endProgress() {
  progress_.reset();
}

bool WindowUserInterface::cancelled() {
  return progress_ && progress_->isCancelled();
}

bool WindowUserInterface::wait(const std::string& holder) {
  const QString text = QWidget::tr("Waiting: %1").arg(shownText(holder));
  if (!progress_ && !waiting_) {
    waiting_ = std::make_unique<ProgressDialog>(QWidget::tr("Waiting for a file..."), window_);
    waiting_->show();
  }
  ProgressDialog& display = progress_ ? *progress_ : *waiting_;
  display.status(text);
  return !display.isCancelled();
}

void WindowUserInterface::done() {
  waiting_.reset();
}

void WindowUserInterface::message(MessageKind kind, const std::string& text,
                                  const std::string& title) {
  const OrdinaryPointer pointer;
  if (kind == MessageKind::recordFailure) {
    recordFailure(shownText(text), qt(title));
    return;
  }
  const auto icon =
      kind == MessageKind::critical ? QMessageBox::Critical : QMessageBox::Information;
  Box(icon, qt(title), shownText(text), owner()).exec();
}

void WindowUserInterface::list(const std::string& heading, const std::vector<std::string>& parts,
                               const std::string& title) {
  const OrdinaryPointer pointer;
  QStringList texts;
  for (const std::string& part : parts) texts << shownText(part);
  ReportDialog(qt(title), shownText(heading), texts, {}, owner()).exec();
}

void WindowUserInterface::recordFailure(const QString& text, const QString& title) {
  failures_ << text;
  if (failuresQuiet_) return;
  Box box(QMessageBox::Warning, title, text, owner());
  auto* quiet = new QCheckBox(QWidget::tr("&Don't ask again for this %1").arg(work_), &box);
  box.setCheckBox(quiet);
  box.exec();
  failuresQuiet_ = quiet->isChecked();
}

commands::IfThere WindowUserInterface::recordExists(const std::string& text,
                                                    const std::string& title) {
  using commands::IfThere;
  const OrdinaryPointer pointer;
  IfThere answer = IfThere::fail;
  if (ifThere_) {
    answer = *ifThere_;
  } else if (!failuresQuiet_) {
    Box box(QMessageBox::Warning, qt(title), shownText(text), owner());
    box.addButton(QMessageBox::Ok);
    const QAbstractButton* replace =
        box.addButton(QWidget::tr("&Replace"), QMessageBox::DestructiveRole);
    const QAbstractButton* skip = box.addButton(QWidget::tr("&Skip"), QMessageBox::ActionRole);
    box.setDefaultButton(QMessageBox::Ok);
    box.setEscapeButton(QMessageBox::Ok);
    auto* all = new QCheckBox(
        QWidget::tr("&Do the same for all records of this %1 that exist").arg(work_), &box);
    box.setCheckBox(all);
    box.exec();
    if (box.clickedButton() == replace) answer = IfThere::replace;
    if (box.clickedButton() == skip) answer = IfThere::skip;
    if (all->isChecked()) ifThere_ = answer;
  }
  if (answer == IfThere::fail) failures_ << shownText(text);
  return answer;
}

Answer WindowUserInterface::ask(const commands::Question& question) {
  const OrdinaryPointer pointer;
  const bool failure = question.buttons == Buttons::abortRetryIgnore;
  Box box(failure ? QMessageBox::Warning : QMessageBox::Question, qt(question.title),
          shownText(question.text), owner());
  box.details(shownText(question.details));
  box.setStandardButtons(standardButtons(question.buttons));
  giveKeys(box);
  box.setDefaultButton(buttonFor(question.defaultAnswer));
  box.setEscapeButton(escapeButton(question.buttons));
  const int pressed = box.exec();
  for (const AnswerButton& each : kAnswerButtons) {
    if (each.button == pressed) return each.answer;
  }
  return Answer::cancel;
}

std::string WindowUserInterface::input(const commands::InputRequest& request) {
  const OrdinaryPointer pointer;
  QInputDialog box(owner());
  box.setWindowTitle(qt(request.title));
  box.setLabelText(shownText(request.prompt));
  box.setTextEchoMode(request.isSecret ? QLineEdit::Password : QLineEdit::Normal);
  if (!request.choices.empty()) offer(box, request.choices);
  box.setTextValue(qt(request.preset));
  QWidget* edit = box.findChild<QComboBox*>();
  if (edit == nullptr) edit = box.findChild<QLineEdit*>();
  edit->setAccessibleName(box.labelText());
  explain(edit, qt(request.help));
  return box.exec() == QDialog::Accepted ? box.textValue().toStdString() : std::string();
}

QWidget* WindowUserInterface::owner() const {
  return progress_ ? progress_.get() : window_.data();
}

}  // namespace orv::app
