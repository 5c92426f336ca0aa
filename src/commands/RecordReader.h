// Reading of single records, whatever source they are in.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "commands/Session.h"

namespace orv::commands {

/// The records of one node: a record set of a database or a folder of text files. Each operation
/// raises what the source's reader raises, kTypeMismatch for an identifier that is no number where
/// records have numbers, and kRetrievalFailed for a record that is not there or a node that holds
/// no records of this kind.
class RecordReader {
 public:
  RecordReader(Session& session, std::shared_ptr<sources::datasource> node)
      : session_(session), node_(std::move(node)) {}

  /// Whether the record is in its source at this moment.
  bool isThere(const std::string& identifier) const;

  /// The angles, in degrees, at which a pane has data. One, 0, for a pane of a source that does
  /// not know angles.
  std::vector<std::int16_t> angles(const std::string& identifier) const;

  /// The angles at which a pane of a database has a spectrum, ascending, whether it has integrated
  /// values there or not; of one of version 2.0.1, which does not tell them apart, 0. None for
  /// other sources.
  std::vector<std::int16_t> spectralAngles(const std::string& identifier) const;

  /// All angles at which a pane has integrated values or a spectrum: `angles`, then what
  /// `spectralAngles` has besides.
  std::vector<std::int16_t> dataAngles(const std::string& identifier) const;

  /// The directions of incidence of a pane's spectra at an angle, ascending. None for a source
  /// that does not know directions.
  std::vector<std::int32_t> directions(const std::string& identifier, std::int16_t angle) const;

  /// A pane at an angle. Of the spectra of several directions at it, that of `direction`, or of
  /// the first; 0 leaves the choice to the reader. Raises kTypeMismatch for data at an angle that
  /// is no whole number, which `angle` stands for only in the list of angles.
  std::shared_ptr<GlazingData> pane(const std::string& identifier, std::int16_t angle,
                                    std::int32_t direction = 0) const;
  /// A pane once for each set of its data: at each angle, of each direction there.
  std::vector<std::shared_ptr<GlazingData>> dataSets(const std::string& identifier) const;

  std::shared_ptr<FrameDataClass> frame(const std::string& identifier) const;
  std::shared_ptr<ShadingDataClass> shading(const std::string& identifier) const;

  /// The directions besides that of a pane, which was read at its angle, in which there are spectra
  /// there; none where its rows are one spectrum.
  std::vector<std::int32_t> otherDirections(const std::string& identifier,
                                            const GlazingData& pane) const;

  /// Columns of a database's pane that reading it leaves behind though they hold something.
  std::vector<std::string> unreadColumns(const std::string& identifier,
                                         const GlazingData& pane) const;

  /// The columns of ORV databases for which a record that is in no such database has no value:
  /// "Table.column". None of a record that is in one.
  std::set<std::string> columnsNotGiven(const std::string& identifier,
                                        const GlazingData& pane) const;
  std::set<std::string> columnsNotGiven(const std::string& identifier,
                                        const ShadingDataClass& shading) const;

  /// What there is to say of a pane besides, which its record does not hold: what was left out of a
  /// product, and by which standard its integrated values are.
  std::vector<std::string> remarks(const std::string& identifier, std::int16_t angle) const;

  /// Whether what a file of products has here is a shading, which is not read as a pane. False
  /// where that cannot be told.
  bool isShadingProduct(const std::string& identifier) const;

  /// Reads the files that a pane of a folder names, its substrate and its layers; products hold all
  /// that there is of them. Those of a text from the standard input are looked for in the folder of
  /// the run. A pane of which a substrate was read has film. Why one cannot be read; empty where
  /// all can.
  std::string readReferences(const std::string& identifier,
                             const std::shared_ptr<GlazingData>& pane) const;

  /// Gives a record that was read the group in which a database of version 3.0.0 has it. The
  /// operations above do not, since who copies a record names its group anew.
  template <class Record>
  void tellGroup(const std::string& identifier, Record& record) const {
    const std::string group = storedGroup(identifier);
    if (!group.empty()) record.group(group);
  }

 private:
  std::shared_ptr<GlazingData> orvPane(std::int32_t id, std::int16_t angle,
                                       std::int32_t direction) const;
  std::shared_ptr<GlazingData> textPane(const std::string& file) const;
  std::set<std::string> entriesOf(const std::string& file) const;
  /// The folder of the files. Raises kFileNotFound where that is the hidden one of the standard
  /// input, and `file` is none of it.
  const std::string& folderOf(const std::string& file) const;
  std::vector<std::int16_t> anglesOfFile(const std::string& identifier) const;
  const productfile::ProductFile& productFile(const productfile::ProductName& name) const;
  productfile::Product product(const std::string& identifier, std::int16_t angle) const;
  void requireWholeAngle(std::int32_t id, const GlazingData& pane) const;
  bool isVersion3() const { return node_->DataType() == sources::DataType::orv3Panes; }
  bool isOrvPanes() const {
    return isVersion3() || node_->DataType() == sources::DataType::orv2Panes;
  }
  /// The rows of a pane in one of its tables, in no order.
  std::unique_ptr<store::Recordset> rowsOf(const char* table, std::int32_t id) const;
  /// Keeps the database, where the records are in one, as it is while the result lives.
  std::shared_ptr<void> holdState() const;
  /// Empty where there is none to tell.
  std::string storedGroup(const std::string& identifier) const;
  store::Connection& connection() const { return *node_->ADOConnection(); }

  Session& session_;
  std::shared_ptr<sources::datasource> node_;
};

/// The number that an identifier of a database's record is. Raises kTypeMismatch.
std::int32_t recordNumber(const std::string& identifier);

}  // namespace orv::commands
