#include "app/docks/details/DetailsDock.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSplitter>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

#include "app/Help.h"
#include "app/docks/details/DetailsTree.h"
#include "app/docks/details/PictureView.h"
#include "app/docks/details/SlatDrawing.h"
#include "app/theme/Icons.h"

namespace orv::app {

DetailsDock::DetailsDock(QWidget* parent) : QDockWidget(tr("Details"), parent) {
  setObjectName(QStringLiteral("DetailsDock"));
  setAccessibleName(tr("Details"));
  setWhatsThis(
      tr("All fields of the selected record, with the picture of a frame or a drawing of "
         "the slats of a shading. Several records stand beside each other; where they differ, the "
         "values have a colour and the names are bold."));
  pages_ = new QStackedWidget(this);
  pages_->addWidget(buildTextPage());
  pages_->addWidget(buildRecordPage());
  setWidget(pages_);
  clear();
}

DetailsDock::~DetailsDock() = default;

QWidget* DetailsDock::buildTextPage() {
  auto* page = new QWidget(pages_);
  text_ = new QLabel(page);
  text_->setObjectName(QStringLiteral("detailsEmptyText"));
  text_->setAlignment(Qt::AlignCenter);
  text_->setWordWrap(true);
  text_->setMargin(12);
  text_->setForegroundRole(QPalette::PlaceholderText);
  text_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  refresh_ = new QPushButton(tr("&Refresh"), page);
  refresh_->setObjectName(QStringLiteral("cmdDetailsRefresh"));
  explain(refresh_, tr("Read the data source shown again"));
  connect(refresh_, &QPushButton::clicked, this, &DetailsDock::refreshWanted);
  auto* layout = new QVBoxLayout(page);
  layout->addStretch();
  layout->addWidget(text_);
  layout->addWidget(refresh_, 0, Qt::AlignHCenter);
  layout->addStretch();
  return page;
}

QWidget* DetailsDock::buildRecordPage() {
  auto* page = new QWidget(pages_);
  filter_ = new QLineEdit(page);
  filter_->setPlaceholderText(tr("Search fields"));
  filter_->setClearButtonEnabled(true);
  filter_->addAction(icon("find"), QLineEdit::LeadingPosition);
  filter_->setAccessibleName(tr("Search fields"));
  explain(filter_, tr("Lists only the fields with this text in their name or value"));
  angle_ = new QComboBox(page);
  explain(angle_, tr("Angle of incidence of the values that are shown"));
  angle_->setAccessibleName(tr("Angle of incidence"));
  differences_ = new QToolButton(page);
  differences_->setObjectName(QStringLiteral("cmdOnlyDifferences"));
  differences_->setIcon(icon("difference"));
  differences_->setCheckable(true);
  differences_->setAutoRaise(true);
  differences_->setAccessibleName(tr("Only differences"));
  explain(differences_, tr("Lists only the fields in which the records differ"));
  splitter_ = new QSplitter(Qt::Vertical, page);
  tree_ = new DetailsTree(splitter_);
  drawings_ = new QStackedWidget(splitter_);
  picture_ = new PictureView(drawings_);
  slats_ = new SlatDrawing(drawings_);
  drawings_->addWidget(picture_);
  drawings_->addWidget(slats_);
  splitter_->addWidget(tree_);
  splitter_->addWidget(drawings_);
  splitter_->setStretchFactor(0, 3);
  splitter_->setStretchFactor(1, 2);
  splitter_->setCollapsible(0, false);

  auto* top = new QHBoxLayout;
  top->addWidget(filter_, 1);
  top->addWidget(angle_);
  top->addWidget(differences_);
  auto* layout = new QVBoxLayout(page);
  layout->setContentsMargins(4, 4, 4, 4);
  layout->setSpacing(4);
  layout->addLayout(top);
  layout->addWidget(splitter_, 1);

  filter_->installEventFilter(this);
  connect(filter_, &QLineEdit::textChanged, tree_, &DetailsTree::setFilter);
  connect(differences_, &QToolButton::toggled, tree_, &DetailsTree::showOnlyDifferences);
  connect(angle_, &QComboBox::activated, this, &DetailsDock::showAngle);
  return page;
}

/// The keys of the search: Esc empties it, Down goes to the fields.
bool DetailsDock::eventFilter(QObject* /*watched*/, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return false;
  switch (static_cast<QKeyEvent*>(event)->key()) {
    case Qt::Key_Escape:
      filter_->clear();
      return true;
    case Qt::Key_Down:
    case Qt::Key_Return:
    case Qt::Key_Enter:
      tree_->focusFirst();
      return true;
    default:
      return false;
  }
}

void DetailsDock::showPane(std::vector<std::shared_ptr<const GlazingData>> angles) {
  if (angles.empty()) return clear();
  showRecords({{{}, std::move(angles), {}}});
}

void DetailsDock::showRecords(std::vector<DetailsRecord> records) {
  fill(std::move(records));
  showRecord(nullptr);
}

void DetailsDock::fill(std::vector<DetailsRecord> records) {
  records_ = std::move(records);
  fillAngles();
  showAngle();
}

/// Those of any of the panes.
void DetailsDock::fillAngles() {
  const QVariant chosen = angle_->currentData();
  angle_->clear();
  for (const DetailsRecord& record : records_) {
    for (const auto& pane : record.panes) {
      const QPoint place(pane->ORV_Angle(), pane->ORV_Direction());
      if (angle_->findData(place) >= 0) continue;
      const QString angle = tr("%1°").arg(place.x());
      angle_->addItem(place.y() == 0 ? angle : tr("%1, direction %2").arg(angle).arg(place.y()),
                      place);
    }
  }
  angle_->setCurrentIndex(std::max(angle_->findData(chosen), 0));
  angle_->setVisible(angle_->count() > 1);
}

std::vector<commands::DetailField> DetailsDock::fieldsAt(const DetailsRecord& record,
                                                         const QPoint& place) const {
  if (record.panes.empty()) return record.fields;
  const auto found = std::ranges::find_if(record.panes, [&](const auto& pane) {
    return QPoint(pane->ORV_Angle(), pane->ORV_Direction()) == place;
  });
  return commands::paneDetails(found == record.panes.end() ? *record.panes.front() : **found);
}

void DetailsDock::showAngle() {
  QStringList titles;
  std::vector<std::vector<commands::DetailField>> columns;
  for (const DetailsRecord& record : records_) {
    titles << record.title;
    columns.push_back(fieldsAt(record, angle_->currentData().toPoint()));
  }
  differences_->setVisible(columns.size() > 1);
  tree_->showFields(titles, columns);
}

void DetailsDock::showFrame(const std::shared_ptr<const FrameDataClass>& frame) {
  fill({{{}, {}, commands::frameDetails(*frame)}});
  picture_->showPicture(frame->picture());
  showRecord(picture_);
}

void DetailsDock::showShading(const std::shared_ptr<const ShadingDataClass>& shading) {
  fill({{{}, {}, commands::shadingDetails(*shading)}});
  slats_->showShading(shading);
  showRecord(SlatDrawing::canDraw(*shading) ? slats_ : nullptr);
}

void DetailsDock::clear() {
  showText(tr("Select a record to see its fields here."));
}

void DetailsDock::showText(const QString& text) {
  text_->setText(text);
  refresh_->hide();
  pages_->setCurrentIndex(0);
}

void DetailsDock::showGone() {
  showText(tr("This record is no longer in the data source."));
  refresh_->show();
}

void DetailsDock::showRecord(QWidget* drawing) {
  if (drawing) drawings_->setCurrentWidget(drawing);
  drawings_->setVisible(drawing != nullptr);
  pages_->setCurrentIndex(1);
}

}  // namespace orv::app

#include "moc_DetailsDock.cpp"
