#include "database/RecordCommit.h"

#include <exception>

#include "errors/Error.h"
#include "store/StoreError.h"

namespace orv::database {

namespace {

/// Whether not the record but the file is at fault, so that nothing can be kept in it.
bool isOfFile(const Error& error) {
  switch (error.number()) {
    case store::kStoreFailure:
    case store::kDatabaseFull:
    case store::kCorruptFile:
      return true;
    default:
      return false;
  }
}

}  // namespace

void commitRecord(store::Connection& dc, const std::function<void()>& changes) {
  std::exception_ptr refusal;
  dc.inOneCommit([&] {
    try {
      changes();
    } catch (const Error& error) {
      if (isOfFile(error)) throw;
      refusal = std::current_exception();
    }
  });
  if (refusal) std::rethrow_exception(refusal);
}

}  // namespace orv::database
