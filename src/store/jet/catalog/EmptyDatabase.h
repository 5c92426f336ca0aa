// A database in which nothing is yet.
#pragma once

#include <cstdint>
#include <string>

#include "store/Value.h"

namespace orv::store::jet {

/// What the header page of a new file says.
struct FileSettings {
  std::string password{};         ///< empty for none
  std::uint32_t encodingKey = 0;  ///< of the pages; 0: they are not encoded
};

/// The content of a new, empty Jet 4 file: what the engine itself (through ADOX) makes, with the
/// four system tables, the containers and their permissions. What only the windows of Access use
/// (containers of forms, reports, modules and the like, MSysAccessObjects, and the permissions
/// of the workgroup's "Admins") is not in it: Access adds it when it first opens the file.
Bytes emptyDatabase(const FileSettings& settings = {});

}  // namespace orv::store::jet
