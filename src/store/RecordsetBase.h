// What all record sets have in common.
#pragma once

#include "store/Recordset.h"

namespace orv::store {

/// Finds fields, knows whether it is closed, and searches forward row by row.
class RecordsetBase : public Recordset {
 public:
  const std::vector<ColumnInfo>& fields() const override { return fields_; }
  std::size_t fieldIndex(std::string_view name) const override;
  void find(std::string_view criterion) override;
  void close() override;

 protected:
  explicit RecordsetBase(std::vector<ColumnInfo> fields) : fields_(std::move(fields)) {}

  /// Raises kObjectClosed after close().
  void needOpen() const;
  /// Raises kItemNotFound for a position that is no field's.
  void needField(std::size_t field) const;
  [[noreturn]] static void raiseNoCurrentRecord();

 private:
  std::vector<ColumnInfo> fields_;
  bool open_ = true;
};

}  // namespace orv::store
