#include "app/dialogs/CompareDialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <filesystem>

#include "app/Help.h"
#include "app/Text.h"
#include "commands/NodeContent.h"
#include "commands/RecordKind.h"

namespace orv::app {

using commands::compare::Match;

namespace {

/// The file or folder of a source, without those above it.
std::filesystem::path fileOf(const sources::datasource& source) {
  const std::filesystem::path path(commands::nodeTitle(&source));
  const auto file = path.has_filename() ? path.filename() : path.parent_path().filename();
  return file.empty() ? path : file;
}

bool isFile(const sources::datasource& node) {
  const auto parent = node.Parent();
  return parent && parent->DataType() == sources::DataType::textFolder;
}

}  // namespace

QString sourceName(const sources::DataSources& registry, const sources::datasource& node) {
  if (const auto parent = node.Parent()) {
    return QStringLiteral("%1, %2").arg(sourceName(registry, *parent), shownText(node.text()));
  }
  const auto file = fileOf(node);
  const auto hasSameName = [&](const auto& other) {
    return other->key() != node.key() && fileOf(*other) == file;
  };
  const QString name = shownText(file.string());
  if (std::none_of(registry.begin(), registry.end(), hasSameName)) return name;
  return CompareDialog::tr("%1 (%2)").arg(name, shownText(commands::nodeTitle(&node)));
}

CompareDialog::CompareDialog(const sources::DataSources& registry, const std::string& left,
                             const std::string& right, QWidget* parent)
    : QDialog(parent), registry_(registry) {
  setObjectName("CompareDialog");
  setWindowTitle(tr("Compare"));
  setWhatsThis(tr("The two sources or record sets that are compared. Nothing is changed."));
  left_ = makeSide("cboLeft", tr("What is compared; records are copied from here"));
  right_ = makeSide("cboRight", tr("With what it is compared; records are copied to here"));
  match_ = new QComboBox;
  match_->setObjectName("cboMatch");
  match_->addItem(tr("Name and group"), static_cast<int>(Match::name));
  match_->addItem(tr("Identifier"), static_cast<int>(Match::id));
  match_->addItem(tr("Name without its extension"), static_cast<int>(Match::filename));
  match_->addItem(tr("Spectrum"), static_cast<int>(Match::spectrum));
  explain(match_, tr("What records have in common that are compared with each other"));
  tolerance_ = new QDoubleSpinBox;
  tolerance_->setObjectName("spnTolerance");
  tolerance_->setDecimals(6);
  tolerance_->setSingleStep(0.001);
  explain(tolerance_, tr("How far apart numbers may be that count as the same"));
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
  compare_ = buttons->addButton(tr("&Compare"), QDialogButtonBox::AcceptRole);
  compare_->setDefault(true);
  explain(compare_, tr("Compare the two"));
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  buttons->button(QDialogButtonBox::Cancel)->setAutoDefault(false);
  auto* form = new QFormLayout;
  form->addRow(tr("&Left:"), left_);
  form->addRow(tr("&Right:"), right_);
  form->addRow(tr("&Put together by:"), match_);
  form->addRow(tr("&Tolerance:"), tolerance_);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(form);
  layout->addWidget(buttons);
  propose(left, right);
}

QComboBox* CompareDialog::makeSide(const char* name, const QString& help) {
  auto* side = new QComboBox;
  side->setObjectName(name);
  explain(side, help);
  for (const auto& node : registry_) addNode(*side, *node, 0);
  connect(side, &QComboBox::currentIndexChanged, this, &CompareDialog::follow);
  return side;
}

void CompareDialog::addNode(QComboBox& side, const sources::datasource& node, int depth) const {
  if (isFile(node)) return;
  side.addItem(QString(2 * depth, u' ') + sourceName(registry_, node), qt(node.key()));
  for (const auto& child : node.DataSources()) addNode(side, *child, depth + 1);
}

void CompareDialog::propose(const std::string& left, const std::string& right) {
  left_->setCurrentIndex(std::max(left_->findData(qt(left)), 0));
  const Node first = registry_.findByKey(left);
  std::string second = right;
  for (const auto& source : registry_) {
    if (!first || !second.empty() || source == first || source == first->Parent()) continue;
    const auto kind = first->Parent() ? commands::recordKind(*first) : std::nullopt;
    const Node part = kind ? commands::compare::partOf(source, *kind) : source;
    if (part) second = part->key();
  }
  right_->setCurrentIndex(std::max(right_->findData(qt(second)), 0));
  follow();
}

void CompareDialog::follow() {
  if (compare_ != nullptr) compare_->setEnabled(left_->currentData() != right_->currentData());
}

std::optional<CompareDialog::Choice> CompareDialog::choose() {
  if (exec() != QDialog::Accepted) return std::nullopt;
  const auto nodeOf = [&](const QComboBox& side) {
    return registry_.findByKey(side.currentData().toString().toStdString());
  };
  return Choice{.left = nodeOf(*left_),
                .right = nodeOf(*right_),
                .options = {.match = static_cast<Match>(match_->currentData().toInt()),
                            .tolerance = tolerance_->value()}};
}

}  // namespace orv::app

#include "moc_CompareDialog.cpp"
