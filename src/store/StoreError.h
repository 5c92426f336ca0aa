// The numbers of the errors that the store raises: those of OLE DB and ADO, which programs that
// read Access files through other engines know.
#pragma once

#include <cstdint>

namespace orv::store {

inline constexpr std::int32_t kStoreFailure =
    -2147467259;  ///< 0x80004005: cannot open, read, write or lock
inline constexpr std::int32_t kCorruptFile =
    -2147217895;  ///< 0x80040E19: the file's content is malformed
inline constexpr std::int32_t kSyntaxError =
    -2147217900;  ///< 0x80040E14: SQL or a criterion cannot be understood
inline constexpr std::int32_t kObjectNotFound =
    -2147217865;  ///< 0x80040E37: no such table or query
inline constexpr std::int32_t kDuplicateKey =
    -2147217873;  ///< 0x80040E2F: a unique index or required column refuses the row
inline constexpr std::int32_t kObjectExists =
    -2147217857;  ///< 0x80040E3F: a table, index or query has the name already
inline constexpr std::int32_t kInvalidDesign =
    -2147024809;  ///< 0x80070057: a table, index or query cannot be made as asked for
inline constexpr std::int32_t kNotAuthenticated =
    -2147217843;  ///< 0x80040E4D: wrong or missing password
inline constexpr std::int32_t kReadOnlyStore =
    -2147217911;  ///< 0x80040E09: the file or record set cannot be changed
inline constexpr std::int32_t kNotSupported =
    -2147217837;  ///< 0x80040E53: valid, but this store cannot do it
inline constexpr std::int32_t kDatabaseFull =
    -2147217830;  ///< 0x80040E5A: the file would pass its size limit
inline constexpr std::int32_t kNoCurrentRecord = 3021;  ///< at the end, or the row was deleted
inline constexpr std::int32_t kItemNotFound = 3265;     ///< no field of that name or position
inline constexpr std::int32_t kObjectClosed = 3704;     ///< used after Close

}  // namespace orv::store
