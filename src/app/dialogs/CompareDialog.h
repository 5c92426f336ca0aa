// Which two sources are to be compared, and how.
#pragma once

#include <QDialog>
#include <optional>
#include <string>

#include "commands/compare/Compare.h"
#include "sources/DataSources.h"

class QComboBox;
class QDoubleSpinBox;
class QPushButton;

namespace orv::app {

/// A source by the name of its file, with its whole path where another one has the same; a record
/// set by its source, too.
QString sourceName(const sources::DataSources& registry, const sources::datasource& node);

/// Asks for the two sides, databases, folders or record sets of those that are open.
class CompareDialog : public QDialog {
  Q_OBJECT

 public:
  using Node = std::shared_ptr<sources::datasource>;

  struct Choice {
    Node left;
    Node right;
    commands::compare::CompareOptions options = {};
  };

  /// Proposes these two nodes, by their keys; where the second is empty, another of their kind.
  CompareDialog(const sources::DataSources& registry, const std::string& left,
                const std::string& right, QWidget* parent = nullptr);

  /// Shows itself; none when the user does not want to.
  std::optional<Choice> choose();

 private:
  QComboBox* makeSide(const char* name, const QString& help);
  void addNode(QComboBox& side, const sources::datasource& node, int depth) const;
  void propose(const std::string& left, const std::string& right);
  void follow();

  const sources::DataSources& registry_;
  QComboBox* left_;
  QComboBox* right_;
  QComboBox* match_;
  QDoubleSpinBox* tolerance_;
  QPushButton* compare_ = nullptr;
};

}  // namespace orv::app
