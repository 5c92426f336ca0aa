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

  /// The angles, in degrees, at which a pane has data. One, 0, for a pane of a source that does
  /// not know angles.
  std::vector<std::int16_t> angles(const std::string& identifier) const;

  std::shared_ptr<GlazingData> pane(const std::string& identifier, std::int16_t angle) const;
  std::shared_ptr<FrameDataClass> frame(const std::string& identifier) const;
  std::shared_ptr<ShadingDataClass> shading(const std::string& identifier) const;

  /// Gives a record that was read the group in which a database of version 3.0.0 has it. The
  /// operations above do not, since who copies a record names its group anew.
  template <class Record>
  void tellGroup(const std::string& identifier, Record& record) const {
    const std::string group = storedGroup(identifier);
    if (!group.empty()) record.group(group);
  }

 private:
  /// Empty where there is none to tell.
  std::string storedGroup(const std::string& identifier) const;
  store::Connection& connection() const { return *node_->ADOConnection(); }

  Session& session_;
  std::shared_ptr<sources::datasource> node_;
};

/// The number that an identifier of a database's record is. Raises kTypeMismatch.
std::int32_t recordNumber(const std::string& identifier);

}  // namespace orv::commands
