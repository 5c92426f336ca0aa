#include "app/dialogs/PathEdit.h"

#include <QFileDialog>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>

#include "app/Help.h"

namespace orv::app {

namespace {

constexpr int kWidthInCharacters = 44;

}  // namespace

PathEdit::PathEdit(const QString& name, File file, const QString& title, const QString& help)
    : file_(file), title_(title), line_(new QLineEdit) {
  line_->setObjectName(name);
  line_->setMinimumWidth(fontMetrics().averageCharWidth() * kWidthInCharacters);
  explain(line_, help);
  setFocusProxy(line_);
  auto* browse = new QPushButton(tr("Browse..."));
  browse->setObjectName(name + "Browse");
  browse->setAutoDefault(false);
  explain(browse, tr("Choose the file in a dialog"));
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(line_, 1);
  layout->addWidget(browse);
  connect(line_, &QLineEdit::textChanged, this, &PathEdit::changed);
  connect(browse, &QPushButton::clicked, this, &PathEdit::browse);
}

QString PathEdit::path() const {
  return line_->text();
}

void PathEdit::path(const QString& value) {
  line_->setText(value);
}

void PathEdit::browse() {
  const QString filter = tr("Access databases (*.mdb);;All files (*)");
  const QString chosen =
      file_ == File::existing
          ? QFileDialog::getOpenFileName(window(), title_, path(), filter)
          : QFileDialog::getSaveFileName(window(), title_, path(), filter, nullptr,
                                         QFileDialog::DontConfirmOverwrite);
  if (!chosen.isEmpty()) path(chosen);
}

}  // namespace orv::app

#include "moc_PathEdit.cpp"
