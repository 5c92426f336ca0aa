// The editors of the grid's cells, and the look of changed cells.
#pragma once

#include <QPersistentModelIndex>
#include <QPointer>
#include <QStyledItemDelegate>
#include <functional>

class QAbstractItemView;
class QKeyEvent;
class QLabel;

namespace orv::app {

class RecordModel;

/// An editor for the type of a field: a list of names that takes new ones, yes and no, a line, or
/// several lines. It stays open while its text is no value of the field, and the reason stands
/// beside it.
class CellDelegate : public QStyledItemDelegate {
  Q_OBJECT

 public:
  /// Brings a text into a cell in which the user has seen another; says why not, or nothing.
  using Take =
      std::function<QString(const QModelIndex& cell, const QString& before, const QString& text)>;

  CellDelegate(QAbstractItemView& view, const RecordModel& model, Take take);

  /// Takes the text of an open editor and closes it. False when it is refused; the editor has the
  /// keyboard then.
  bool finish();

  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const override;
  void setEditorData(QWidget* editor, const QModelIndex& index) const override;
  void setModelData(QWidget* editor, QAbstractItemModel* model,
                    const QModelIndex& index) const override;
  void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const override;
  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

 private:
  bool pressed(QWidget& editor, const QKeyEvent& key);
  void leave(QWidget& editor);
  void close(QWidget& editor, EndEditHint hint);
  bool commit(QWidget& editor) const;
  void tellRefusal(const QWidget& editor, const QString& reason) const;

  QAbstractItemView& view_;
  const RecordModel& model_;
  Take take_;
  QLabel* refusal_;  ///< beside the editor
  mutable QPointer<QWidget> editor_;
  mutable QPersistentModelIndex index_;  ///< of the editor
  mutable QString text_;                 ///< that the editor had at first
};

}  // namespace orv::app
