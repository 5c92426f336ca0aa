#include "commands/RecordReader.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <set>

#include "commands/CopyRules.h"
#include "commands/ErrorText.h"
#include "commands/GivenColumns.h"
#include "commands/RecordKind.h"
#include "commands/RecordList.h"
#include "commands/RecordNames.h"
#include "database/DatabaseErrors.h"
#include "database/Directions.h"
#include "database/Fields.h"
#include "database/Lookups.h"
#include "database/Recordsets.h"
#include "model/IntegratedColumns.h"
#include "textfile/GivenEntries.h"
#include "textfile/TextFile.h"

namespace orv::commands {

namespace DataType = sources::DataType;
using productfile::ProductName;

namespace {

template <class Record>
std::shared_ptr<Record> found(std::shared_ptr<Record> record) {
  if (!record) {
    throw Error(database::kRetrievalFailed, "This record was not found in its data source.");
  }
  return record;
}

[[noreturn]] void raiseWrongKind(const char* kind) {
  throw Error(database::kRetrievalFailed,
              std::string("This data source does not hold ") + kind + ".");
}

}  // namespace

std::int32_t recordNumber(const std::string& identifier) {
  std::int32_t number = 0;
  const char* end = identifier.data() + identifier.size();
  const auto [last, error] = std::from_chars(identifier.data(), end, number);
  if (error != std::errc() || last != end) {
    throw Error(kTypeMismatch, "\"" + identifier + "\" is not the number of a record.");
  }
  return number;
}

bool RecordReader::isThere(const std::string& identifier) const {
  if (!node_->ADOConnection()) {
    const std::filesystem::path folder(node_->Folder());
    return std::filesystem::exists(folder / (productfile::isProduct(identifier)
                                                 ? ProductName::of(identifier).file
                                                 : identifier));
  }
  const bool isName = node_->DataType() == DataType::optics5Panes;
  if (isName) requireUsableName("file name", identifier);
  const std::string column = identifierColumn(node_->DataType());
  const std::string value =
      isName ? "'" + identifier + "'" : std::to_string(recordNumber(identifier));
  return !connection()
              .openRecordset("SELECT [" + column + "] FROM [" + node_->RecordSetName() +
                             "] WHERE [" + column + "] = " + value)
              ->eof();
}

std::vector<std::int16_t> RecordReader::angles(const std::string& identifier) const {
  switch (node_->DataType()) {
    case DataType::orv2Panes:
      return session_.database.RetrieveAnglesOfPaneDataORV_20(recordNumber(identifier),
                                                              connection());
    case DataType::orv3Panes:
      return session_.database.RetrieveAnglesOfPaneDataORV_30(recordNumber(identifier),
                                                              connection());
    case DataType::textFolder:
      return anglesOfFile(identifier);
    default:
      return {0};
  }
}

std::vector<std::int16_t> RecordReader::spectralAngles(const std::string& identifier) const {
  if (!isOrvPanes()) return {};
  const std::int32_t id = recordNumber(identifier);
  if (!isVersion3()) {
    return rowsOf("Pane_spectral_data", id)->eof() ? std::vector<std::int16_t>{}
                                                   : std::vector<std::int16_t>{0};
  }
  const auto rows = connection().openRecordset(
      "SELECT DISTINCT angle FROM Pane_spectral_data WHERE PaneID = " + std::to_string(id) +
      " ORDER BY angle");
  std::vector<std::int16_t> angles;
  for (; !rows->eof(); rows->moveNext()) {
    angles.push_back(database::fieldToInteger(rows->value(std::size_t{0})));
  }
  return angles;
}

std::vector<std::int16_t> RecordReader::dataAngles(const std::string& identifier) const {
  auto all = angles(identifier);
  // In version 2.0.1 the spectrum is that of each angle.
  if (!all.empty() && !isVersion3()) return all;
  for (const std::int16_t angle : spectralAngles(identifier)) {
    if (std::ranges::find(all, angle) == all.end()) all.push_back(angle);
  }
  return all;
}

std::vector<std::int32_t> RecordReader::directions(const std::string& identifier,
                                                   std::int16_t angle) const {
  if (!isVersion3()) return {};
  const auto rows = connection().openRecordset(
      "SELECT DISTINCT direction FROM Pane_spectral_data WHERE PaneID = " +
      std::to_string(recordNumber(identifier)) + " AND angle = " + std::to_string(angle));
  std::set<std::int32_t> directions;
  for (; !rows->eof(); rows->moveNext()) {
    directions.insert(database::FieldToLong(rows->value(std::size_t{0})));
  }
  return {directions.begin(), directions.end()};
}

std::vector<std::int32_t> RecordReader::otherDirections(const std::string& identifier,
                                                        const GlazingData& pane) const {
  if (pane.ORV_Direction() == database::kAnyDirection) return {};
  auto others = directions(identifier, pane.ORV_Angle());
  std::erase(others, pane.ORV_Direction());
  return others;
}

std::shared_ptr<GlazingData> RecordReader::pane(const std::string& identifier, std::int16_t angle,
                                                std::int32_t direction) const {
  const auto state = holdState();
  switch (node_->DataType()) {
    case DataType::orv2Panes:
    case DataType::orv3Panes:
      if (direction == database::kAnyDirection)
        direction = database::directionToUse(directions(identifier, angle));
      return orvPane(recordNumber(identifier), angle, direction);
    case DataType::optics5Panes:
      requireUsableName("file name", identifier);
      return found(session_.database.RetrievePaneIGDB(connection(), identifier));
    case DataType::textFolder:
      if (recordKind(*node_) == RecordKind::panes) {
        return productfile::isProduct(identifier) ? product(identifier, angle).pane
                                                  : textPane(identifier);
      }
      [[fallthrough]];
    default:
      raiseWrongKind("panes");
  }
}

const std::string& RecordReader::folderOf(const std::string& file) const {
  const std::string& folder = node_->Folder();
  if (folder == session_.inputFolder &&
      !std::filesystem::exists(std::filesystem::path(folder) / file)) {
    throw Error(kFileNotFound, "There is no file '" + file + "' in the standard input");
  }
  return folder;
}

std::shared_ptr<GlazingData> RecordReader::textPane(const std::string& file) const {
  const std::string& folder = folderOf(file);
  if (!session_.tolerant.isAllowedIn(folder)) {
    return session_.textFiles.ParseSpectralFile(folder, file);
  }
  std::string repairs;
  auto pane = session_.textFiles.ParseSpectralFile(folder, file, &repairs);
  session_.tolerant.told(folder, file, repairs);
  return pane;
}

/// That a product cannot be read is told where it is read.
std::vector<std::int16_t> RecordReader::anglesOfFile(const std::string& identifier) const {
  const ProductName name = ProductName::of(identifier);
  if (!productfile::isProduct(identifier)) return {0};
  try {
    return productFile(name).angles(name.pointer);
  } catch (const Error&) {
    return {0};
  }
}

const productfile::ProductFile& RecordReader::productFile(const ProductName& name) const {
  return session_.products.at(textfile::requireFile(folderOf(name.file), name.file));
}

productfile::Product RecordReader::product(const std::string& identifier,
                                           std::int16_t angle) const {
  const ProductName name = ProductName::of(identifier);
  return productFile(name).product(name.pointer, angle);
}

bool RecordReader::isShadingProduct(const std::string& identifier) const {
  const bool isProduct =
      node_->DataType() == DataType::textFolder && productfile::isProduct(identifier);
  if (!isProduct) return false;
  try {
    const ProductName name = ProductName::of(identifier);
    return productFile(name).isShading(name.pointer);
  } catch (const Error&) {
    return false;
  }
}

std::vector<std::string> RecordReader::remarks(const std::string& identifier,
                                               std::int16_t angle) const {
  const bool isProduct =
      node_->DataType() == DataType::textFolder && productfile::isProduct(identifier);
  return isProduct ? product(identifier, angle).notes : std::vector<std::string>();
}

std::set<std::string> RecordReader::entriesOf(const std::string& file) const {
  const std::string& folder = folderOf(file);
  return textfile::givenEntries(textfile::requireFile(folder, file),
                                session_.tolerant.isAllowedIn(folder));
}

std::set<std::string> RecordReader::columnsNotGiven(const std::string& identifier,
                                                    const GlazingData& pane) const {
  if (isOrvPanes()) return {};
  auto missing = commands::columnsNotGiven(pane);
  if (node_->DataType() != DataType::textFolder) return missing;
  if (!productfile::isProduct(identifier)) {
    missing.merge(commands::columnsNotGiven(pane, entriesOf(identifier)));
    return missing;
  }
  for (const std::string& column : product(identifier, pane.ORV_Angle()).notGiven) {
    missing.insert("Pane." + column);
  }
  return missing;
}

std::set<std::string> RecordReader::columnsNotGiven(const std::string& identifier,
                                                    const ShadingDataClass& shading) const {
  if (node_->DataType() != DataType::textFolder) return {};
  return commands::columnsNotGiven(shading, entriesOf(identifier));
}

std::vector<std::shared_ptr<GlazingData>> RecordReader::dataSets(
    const std::string& identifier) const {
  const auto state = holdState();
  std::vector<std::shared_ptr<GlazingData>> sets;
  for (const std::int16_t angle : angles(identifier)) {
    const auto known = directions(identifier, angle);
    if (known.size() < 2) {
      sets.push_back(pane(identifier, angle));
      continue;
    }
    for (const std::int32_t direction : known) {
      if (direction != database::kAnyDirection) sets.push_back(pane(identifier, angle, direction));
    }
  }
  return sets;
}

std::shared_ptr<GlazingData> RecordReader::orvPane(std::int32_t id, std::int16_t angle,
                                                   std::int32_t direction) const {
  const auto& database = session_.database;
  auto pane =
      found(isVersion3() ? database.RetrievePaneORV_30(connection(), id, "", "", angle, direction)
                         : database.RetrievePaneORV_20(connection(), id, "", angle, direction));
  if (!hasIntegratedData(*pane)) requireWholeAngle(id, *pane);
  if (!isVersion3() && pane->SpectralData()) {
    pane->SpectralData()->MixesAngles(angles(std::to_string(id)).size() > 1);
  }
  return pane;
}

/// Angles are whole numbers to the retrieval, which finds no row of any other.
void RecordReader::requireWholeAngle(std::int32_t id, const GlazingData& pane) const {
  for (const auto rows = rowsOf("Pane_integrated_data", id); !rows->eof(); rows->moveNext()) {
    const store::Value angle = rows->value("angle");
    if (angle.isNull() || std::nearbyint(angle.toDouble()) != pane.ORV_Angle()) continue;
    if (angle.toDouble() == pane.ORV_Angle()) return;
    throw Error(kTypeMismatch, "The pane \"" + pane.filename() + "\" has data at " +
                                   angle.toText() +
                                   " degrees, and only whole degrees can be read. Change the angle "
                                   "in Pane_integrated_data and Pane_spectral_data.");
  }
}

std::unique_ptr<store::Recordset> RecordReader::rowsOf(const char* table, std::int32_t id) const {
  return connection().openRecordset(std::string("SELECT * FROM ") + table + " WHERE " +
                                    identifierColumn(node_->DataType()) + " = " +
                                    std::to_string(id));
}

std::vector<std::string> RecordReader::unreadColumns(const std::string& identifier,
                                                     const GlazingData& pane) const {
  if (!isOrvPanes()) return {};
  std::vector<std::string> unread;
  const std::int32_t id = recordNumber(identifier);
  const auto holdsSomething = [](const store::Recordset& row, const char* column) {
    const auto field = database::findField(row, column);
    return field && database::FieldToDouble(row.value(*field)) != 0;
  };
  if (holdsSomething(*rowsOf("Pane", id), "Ra")) unread.emplace_back(kColourRendering);
  if (!pane.HasSubstrate()) return unread;
  for (const auto row = rowsOf("Pane_spectral_data", id); !row->eof(); row->moveNext()) {
    if (!holdsSomething(*row, "reflection_sub")) continue;
    unread.emplace_back("reflectance of the substrate (its transmittance takes its place)");
    break;
  }
  return unread;
}

std::string RecordReader::readReferences(const std::string& identifier,
                                         const std::shared_ptr<GlazingData>& pane) const {
  std::string failure;
  if (node_->DataType() == DataType::textFolder && !productfile::isProduct(identifier)) {
    const bool isInput = node_->Folder() == session_.inputFolder;
    try {
      session_.textFiles.FillFileReferences(isInput ? "." : node_->Folder(), pane);
    } catch (const Error& error) {
      failure = describe(error);
    }
  }
  const bool hasCurve = pane->HasSubstrate() && pane->SubstrateReference()->SpectralData();
  if (hasCurve) pane->with_and_without_film(true);
  return failure;
}

std::shared_ptr<void> RecordReader::holdState() const {
  const auto& connection = node_->ADOConnection();
  return connection ? connection->holdState() : nullptr;
}

std::shared_ptr<FrameDataClass> RecordReader::frame(const std::string& identifier) const {
  const auto state = holdState();
  const auto& database = session_.database;
  switch (node_->DataType()) {
    case DataType::orv2Frames:
      return found(database.RetrieveFrameORV_20(connection(), recordNumber(identifier), ""));
    case DataType::orv3Frames:
      return found(database.RetrieveFrameORV_30(connection(), recordNumber(identifier), "", ""));
    default:
      raiseWrongKind("frames");
  }
}

std::shared_ptr<ShadingDataClass> RecordReader::shading(const std::string& identifier) const {
  const auto state = holdState();
  switch (node_->DataType()) {
    case DataType::orv2Shadings:
    case DataType::orv3Shadings:
      return found(session_.database.RetrieveShading(connection(), recordNumber(identifier)));
    case DataType::textFolder:
      if (recordKind(*node_) == RecordKind::shadings) {
        return found(session_.textFiles.ParseSpectralFileShading(folderOf(identifier), identifier));
      }
      [[fallthrough]];
    default:
      raiseWrongKind("shadings");
  }
}

std::string RecordReader::storedGroup(const std::string& identifier) const {
  std::string statement;
  switch (node_->DataType()) {
    case DataType::orv3Panes:
      statement = "SELECT groupID FROM Pane WHERE PaneID = ";
      break;
    case DataType::orv3Frames:
      statement = "SELECT groupID FROM Frame WHERE FrameID = ";
      break;
    case DataType::orv3Shadings:
      statement = "SELECT groupnameID FROM Shading WHERE Shading_id = ";
      break;
    default:
      return {};
  }
  const auto row = connection().openRecordset(statement + std::to_string(recordNumber(identifier)));
  return database::GroupNameById(database::FieldToLong(row->value(std::size_t{0})), connection());
}

}  // namespace orv::commands
