// Integrated values as columns of a table of panes.
#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "commands/RecordReader.h"
#include "commands/RecordTable.h"
#include "optics/Integrator.h"

namespace orv::commands {

/// Which columns are added.
struct ValueChoice {
  bool stored = false;
  std::optional<optics::Standard> computedBy = {};
};

/// Adds to a table of panes the solar and visible values that the source stores, those that a
/// standard computes from the spectra, or both, of each pane at the first of its angles. They take
/// the reading of whole panes: fields are empty until fillNext() has come to their row, and where
/// there is no value or the pane cannot be read.
class ValueColumns : public RecordTable {
 public:
  /// The session outlives the table.
  ValueColumns(std::unique_ptr<RecordTable> table, Session& session,
               const std::shared_ptr<sources::datasource>& node, const ValueChoice& choice);

  void readTo(std::size_t rows) override { table_->readTo(rows); }
  std::size_t rowsRead() const override { return table_->rowsRead(); }
  bool isComplete() const override { return table_->isComplete(); }
  store::Value value(std::size_t row, std::size_t column) const override;

  bool fillNext() override;
  std::size_t rowsFilled() const override { return values_.size(); }

 private:
  static constexpr std::array kNames{"Tf_sol", "Rf_sol", "Tb_sol", "Rb_sol",
                                     "Tf_vis", "Rf_vis", "Tb_vis", "Rb_vis"};
  /// Those that are stored, then those that are computed, as far as they are wanted.
  using RowValues = std::vector<std::optional<double>>;

  void addColumns(const std::string& kind, std::string_view titleOfKind);

  RowValues valuesOf(const std::string& identifier);

  std::unique_ptr<RecordTable> table_;
  RecordReader reader_;
  bool showsStored_;
  std::optional<optics::Integrator> integrator_;
  std::vector<RowValues> values_;
};

}  // namespace orv::commands
