#include "commands/FileTable.h"

#include <algorithm>

#include "commands/ErrorText.h"
#include "commands/RecordKind.h"
#include "commands/RecordList.h"
#include "commands/RecordReader.h"

namespace orv::commands {

namespace {

using Values = std::vector<store::Value>;

struct FileColumn {
  const char* name;
  bool isNumber = false;
};

/// The first identifies the file; the others are in the order in which they are read.
constexpr FileColumn kPaneColumns[] = {{"Filename"},
                                       {"name"},
                                       {"product_name"},
                                       {"SupplierName"},
                                       {"thickness", true},
                                       {"conduction", true},
                                       {"emission_IR_outdoor", true},
                                       {"emission_IR_indoor", true},
                                       {"transmission_IR_outdoor", true},
                                       {"transmission_IR_indoor", true},
                                       {"angle", true},
                                       {"acceptance"},
                                       {"info"}};
constexpr FileColumn kShadingColumns[] = {{"Filename"},
                                          {"name"},
                                          {"productname"},
                                          {"SupplierName"},
                                          {"typeID", true},
                                          {"thickness", true},
                                          {"conduction", true},
                                          {"slat_length", true},
                                          {"slat_distance", true},
                                          {"angle", true},
                                          {"permeability", true},
                                          {"appearance"},
                                          {"Info"}};

Values fieldsOf(const GlazingData& pane) {
  return {pane.filename(),
          pane.productname(),
          pane.supplier(),
          pane.ConvertedThickness(kSI),
          pane.ConvertedConductivity(kSI),
          pane.ORV_Emissivity_front(),
          pane.ORV_Emissivity_back(),
          pane.TfIR(),
          pane.TbiR(),
          std::int32_t{pane.ORV_Angle()},
          pane.Acceptance(),
          pane.description().empty() ? pane.Appearance() : pane.description()};
}

Values fieldsOf(const ShadingDataClass& shading) {
  return {shading.name(),         shading.productname(),   shading.supplier(),
          shading.typeID(),       shading.thickness(),     shading.conduction(),
          shading.slat_length(),  shading.slat_distance(), shading.angle(),
          shading.permeability(), shading.appearance(),    shading.Info()};
}

class FileTable : public RecordTable {
 public:
  FileTable(Session& session, const std::shared_ptr<sources::datasource>& node,
            std::vector<std::string>& failures)
      : reader_(session, node),
        arePanes_(recordKind(*node) != RecordKind::shadings),
        names_(recordIdentifiers(*node)),
        failures_(failures) {
    const auto add = [this](const FileColumn& column) {
      columns_.push_back(recordColumn(column.name, column.isNumber));
    };
    if (arePanes_) {
      for (const FileColumn& column : kPaneColumns) add(column);
    } else {
      for (const FileColumn& column : kShadingColumns) add(column);
    }
  }

  void readTo(std::size_t rows) override {
    while (rows_.size() < std::min(rows, names_.size()))
      rows_.push_back(read(names_[rows_.size()]));
  }
  std::size_t rowsRead() const override { return rows_.size(); }
  bool isComplete() const override { return rows_.size() == names_.size(); }
  store::Value value(std::size_t row, std::size_t column) const override {
    if (column == 0) return names_[row];
    return rows_[row].empty() ? store::Value() : rows_[row][column - 1];
  }

 private:
  Values read(const std::string& name) {
    try {
      return arePanes_ ? fieldsOf(*reader_.pane(name, reader_.angles(name).front()))
                       : fieldsOf(*reader_.shading(name));
    } catch (const Error& error) {
      failures_.push_back(name + " cannot be read: " + describe(error));
      return {};
    }
  }

  RecordReader reader_;
  bool arePanes_;
  std::vector<std::string> names_;
  std::vector<Values> rows_;  ///< without the names; empty for what cannot be read
  std::vector<std::string>& failures_;
};

}  // namespace

std::unique_ptr<RecordTable> openFieldTable(Session& session,
                                            const std::shared_ptr<sources::datasource>& node,
                                            std::vector<std::string>& failures) {
  if (node->DataType() != sources::DataType::textFolder) return openRecordTable(node);
  return std::make_unique<FileTable>(session, node, failures);
}

}  // namespace orv::commands
