// The records of the shown node for the grid.
#pragma once

#include <QAbstractTableModel>
#include <QStringList>
#include <QTimer>
#include <functional>
#include <memory>
#include <string>
#include <unordered_set>

#include "commands/RecordView.h"
#include "commands/edit/Field.h"

namespace orv::app {

class RecordEdits;

/// Shows a RecordView without keeping rows of its own. The first rows are there at once; the
/// others follow in the time that the user leaves idle, up to some hundred thousand, and beyond
/// that as the user scrolls.
class RecordModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  explicit RecordModel(QObject* parent = nullptr);

  /// Replaces all that is shown; null shows nothing. Raises what reading the first rows raises,
  /// with nothing shown then.
  void show(std::unique_ptr<commands::RecordView> view);
  /// The same with the records of the same record set, read anew: those that were not there before
  /// stand in bold.
  void reload(std::unique_ptr<commands::RecordView> view);

  /// The format under which rows are dragged: the identifiers of the records, a line each. It
  /// names the process, since another one knows nothing of where they come from.
  static QString mimeType();

  const std::vector<commands::RecordColumn>& recordColumns() const;
  /// The text that identifies the record of a row to the commands.
  std::string identifier(int row) const;
  /// The rows of records, in their order; those that are not shown are left out. Looks at the rows
  /// from `first` on before it looks at all, and reads on as far as it has to.
  std::vector<int> rowsOf(const std::vector<std::string>& identifiers, int first);
  /// Rows of the table read so far, whether they pass the filters or not.
  qlonglong rowsRead() const { return view_ ? static_cast<qlonglong>(view_->rowsRead()) : 0; }
  /// Fields of a block of rows; `asShown`: with the digits that are shown, else with all.
  QList<QStringList> cells(int firstRow, int lastRow, const QList<int>& columns,
                           bool asShown) const;
  /// The headings of columns, with their units.
  QStringList headings(const QList<int>& columns) const;

  void filter(const QStringList& texts);
  bool isFiltered() const { return view_ && view_->isFiltered(); }
  void sortBy(const std::vector<commands::SortColumn>& columns);
  void digits(int value);
  /// The first field from a place on that contains a text; invalid when there is none.
  QModelIndex find(const QString& text, const QModelIndex& from, bool forward);

  /// Reads everything there is to read, so that the file is not needed until the next show().
  /// Raises what reading raises.
  void complete();
  /// The same, but what reading raises is told by readingFailed().
  void readOn();
  bool isComplete() const { return !view_ || view_->isComplete(); }

  /// Has fields be edited, and shows what they are to become; null where they cannot be edited.
  /// The edits outlive what is shown.
  void editBy(RecordEdits* edits);
  RecordEdits* edits() const { return edits_; }
  /// The field that a column stands for; null for one that cannot be edited.
  const commands::edit::EditField* editField(int column) const;
  /// The names that a field can have.
  QStringList choices(int column) const;
  /// What an editor of a field begins with: what it is to become, or what the database has now.
  QString editText(const QModelIndex& index) const;
  /// What a field is to become, or what the grid knows it to be; as an editor has it.
  QString fieldText(int row, int column) const;
  /// What people call the record of a row.
  QString recordName(int row) const;
  /// Whether a field is to become another.
  bool isChanged(const QModelIndex& index) const { return changedValue(index) != nullptr; }

  /// Fills the fields that take long, in the time that the user leaves idle.
  void fill();
  void stopFilling();
  bool isFilling() const { return filling_.isActive(); }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  bool canFetchMore(const QModelIndex& parent) const override;
  void fetchMore(const QModelIndex& parent) override;
  QStringList mimeTypes() const override;
  QMimeData* mimeData(const QModelIndexList& indexes) const override;

 signals:
  /// More rows are there, or all are.
  void rowsCounted();
  /// A row cannot be read. Those before it stay; nothing is read on before the next beginning.
  void readingFailed(const QString& description, bool isDamage);
  /// Fields of so many rows are filled; `ended` when all are, or filling was stopped.
  void filled(qlonglong rows, bool ended);

 private:
  /// The rows from one on, where they are those of just these records; else none.
  std::vector<int> followingRows(const std::vector<std::string>& identifiers, int first) const;
  void readAhead();
  void fillOn();
  /// Takes a step that reads, and tells of its error: no user's click may raise one.
  void reading(const std::function<void()>& step);
  void advance(int rows);
  void announce();
  void withdrawRows();
  void restart();
  const store::Value* changedValue(const QModelIndex& index) const;
  /// As it is to become, or as it is.
  store::Value value(int row, int column) const;
  QString changeText(const QModelIndex& index) const;

  std::unique_ptr<commands::RecordView> view_;
  int shown_ = 0;                          ///< rows that the grid knows of
  bool failed_ = false;                    ///< reading on has failed
  std::unordered_set<std::string> known_;  ///< records of before; empty where none is new
  RecordEdits* edits_ = nullptr;
  QTimer idle_;
  QTimer filling_;
};

}  // namespace orv::app
