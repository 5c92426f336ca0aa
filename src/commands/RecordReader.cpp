#include "commands/RecordReader.h"

#include <charconv>

#include "commands/RecordKind.h"
#include "database/DatabaseErrors.h"
#include "database/Fields.h"
#include "database/Lookups.h"

namespace orv::commands {

namespace DataType = sources::DataType;

namespace {

/// Spectra of any direction are read.
constexpr std::int32_t kAnyDirection = 0;

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

std::vector<std::int16_t> RecordReader::angles(const std::string& identifier) const {
  switch (node_->DataType()) {
    case DataType::orv2Panes:
      return session_.database.RetrieveAnglesOfPaneDataORV_20(recordNumber(identifier),
                                                              connection());
    case DataType::orv3Panes:
      return session_.database.RetrieveAnglesOfPaneDataORV_30(recordNumber(identifier),
                                                              connection());
    default:
      return {0};
  }
}

std::shared_ptr<GlazingData> RecordReader::pane(const std::string& identifier,
                                                std::int16_t angle) const {
  const auto& database = session_.database;
  switch (node_->DataType()) {
    case DataType::orv2Panes:
      return found(database.RetrievePaneORV_20(connection(), recordNumber(identifier), "", angle,
                                               kAnyDirection));
    case DataType::orv3Panes:
      return found(database.RetrievePaneORV_30(connection(), recordNumber(identifier), "", "",
                                               angle, kAnyDirection));
    case DataType::optics5Panes:
      return found(database.RetrievePaneIGDB(connection(), identifier));
    case DataType::textFolder:
      if (recordKind(*node_) == RecordKind::panes) {
        return found(session_.textFiles.ParseSpectralFile(node_->Folder(), identifier));
      }
      [[fallthrough]];
    default:
      raiseWrongKind("panes");
  }
}

std::shared_ptr<FrameDataClass> RecordReader::frame(const std::string& identifier) const {
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
  switch (node_->DataType()) {
    case DataType::orv2Shadings:
    case DataType::orv3Shadings:
      return found(session_.database.RetrieveShading(connection(), recordNumber(identifier)));
    case DataType::textFolder:
      if (recordKind(*node_) == RecordKind::shadings) {
        return found(session_.textFiles.ParseSpectralFileShading(node_->Folder(), identifier));
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
  if (row->eof()) return {};
  return database::GroupNameById(database::FieldToLong(row->value(std::size_t{0})), connection());
}

}  // namespace orv::commands
