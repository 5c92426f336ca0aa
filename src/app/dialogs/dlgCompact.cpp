#include "app/dialogs/dlgCompact.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "app/Help.h"
#include "app/Text.h"

namespace orv::app {

namespace {

QLabel* plainLabel(const QString& text) {
  auto* label = new QLabel(text);
  label->setTextFormat(Qt::PlainText);
  return label;
}

}  // namespace

dlgCompact::dlgCompact(Work work, const QString& path, QWidget* parent)
    : QDialog(parent),
      work_(work),
      path_(path),
      target_(new PathEdit("compactTarget", PathEdit::File::made, tr("New file"),
                           tr("The file to make; one that is there is never replaced"))),
      start_(new QPushButton(work == Work::repair ? tr("&Repair") : tr("&Compact"))) {
  setObjectName("dlgCompact");
  setModal(true);
  explain(start_, work == Work::repair ? tr("Take what can be read into the new file")
                                       : tr("Write the database anew"));
  auto* layout = new QVBoxLayout(this);
  work == Work::repair ? addRepair(*layout) : addCompaction(*layout);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
  buttons->button(QDialogButtonBox::Cancel)->setAutoDefault(false);
  buttons->addButton(start_, QDialogButtonBox::AcceptRole);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(target_, &PathEdit::changed, this, &dlgCompact::update);
  layout->addSpacing(fontMetrics().lineSpacing() / 2);
  layout->addWidget(buttons);
  start_->setDefault(true);
  damaged_ != nullptr ? damaged_->setFocus() : inPlace_->setFocus();
  proposeTarget();
}

void dlgCompact::addCompaction(QVBoxLayout& layout) {
  setWindowTitle(tr("Compact Database"));
  const QFileInfo file(path_);
  inPlace_ = new QRadioButton(tr("In the &place of the file"));
  keepOld_ = new QCheckBox(
      tr("&Keep the old file as %1").arg(shownText(file.fileName() + ".bak").replace("&", "&&")));
  auto* elsewhere = new QRadioButton(tr("Into a &new file"));
  explain(inPlace_, tr("The new file takes the place of the old one, after it was checked"));
  explain(keepOld_, tr("The old file stays beside the new one, under another name"));
  explain(elsewhere, tr("The old file stays as it is"));
  target_->line().setAccessibleName(tr("New file"));
  inPlace_->setChecked(true);
  keepOld_->setChecked(true);
  connect(inPlace_, &QRadioButton::toggled, this, &dlgCompact::update);

  layout.addWidget(
      plainLabel(tr("%1, %2, is written anew, without the space that deletions have "
                    "left.")
                     .arg(shownText(file.fileName()),
                          qt(commands::sizeText(static_cast<std::uint64_t>(file.size()))))));
  layout.addSpacing(fontMetrics().lineSpacing() / 2);
  layout.addWidget(inPlace_);
  auto* indented = new QFormLayout;
  indented->setContentsMargins(fontMetrics().lineSpacing(), 0, 0, 0);
  indented->addRow(keepOld_);
  layout.addLayout(indented);
  layout.addWidget(elsewhere);
  auto* place = new QVBoxLayout;
  place->setContentsMargins(fontMetrics().lineSpacing(), 0, 0, 0);
  place->addWidget(target_);
  layout.addLayout(place);
}

void dlgCompact::addRepair(QVBoxLayout& layout) {
  setWindowTitle(tr("Repair Database"));
  damaged_ = new PathEdit("compactDamaged", PathEdit::File::existing, tr("Damaged database"),
                          tr("The database of which what can be read is taken"));
  damaged_->path(path_);
  connect(damaged_, &PathEdit::changed, this, &dlgCompact::proposeTarget);
  layout.addWidget(
      plainLabel(tr("What can be read of a damaged database is taken into a new file; "
                    "the damaged one stays as it is.")));
  layout.addSpacing(fontMetrics().lineSpacing() / 2);
  auto* form = new QFormLayout;
  for (const auto& [text, edit] :
       {std::pair(tr("&Damaged file:"), damaged_), std::pair(tr("&New file:"), target_)}) {
    form->addRow(text, edit);
    static_cast<QLabel*>(form->labelForField(edit))->setBuddy(&edit->line());
  }
  layout.addLayout(form);
}

/// A name beside the old file that no other has, as long as the user has not given another.
void dlgCompact::proposeTarget() {
  const QString path = damaged_ != nullptr ? damaged_->path() : path_;
  if (!path.isEmpty() && target_->path() == proposed_) {
    const QFileInfo file(path);
    const QString name =
        file.completeBaseName() + (work_ == Work::repair ? "-repaired" : "-compacted");
    proposed_ = file.dir().filePath(name + ".mdb");
    for (int number = 2; QFileInfo::exists(proposed_); ++number) {
      proposed_ = file.dir().filePath(QStringLiteral("%1-%2.mdb").arg(name).arg(number));
    }
    target_->path(proposed_);
  }
  update();
}

void dlgCompact::update() {
  const bool isInPlace = inPlace_ != nullptr && inPlace_->isChecked();
  if (keepOld_ != nullptr) keepOld_->setEnabled(isInPlace);
  target_->setEnabled(!isInPlace);
  const bool hasFile = damaged_ == nullptr || !damaged_->path().isEmpty();
  start_->setEnabled(hasFile && (isInPlace || !target_->path().isEmpty()));
}

std::optional<commands::CompactRequest> dlgCompact::choose() {
  if (exec() != Accepted) return std::nullopt;
  const bool isInPlace = inPlace_ != nullptr && inPlace_->isChecked();
  commands::CompactRequest request;
  request.path = (damaged_ != nullptr ? damaged_->path() : path_).toStdString();
  request.target = isInPlace ? "" : target_->path().toStdString();
  request.keepsBackup = keepOld_ == nullptr || keepOld_->isChecked();
  request.work = work_;
  return request;
}

}  // namespace orv::app

#include "moc_dlgCompact.cpp"
