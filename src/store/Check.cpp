#include "store/Check.h"

#include "store/jet/check/FileCheck.h"

namespace orv::store {

CheckReport checkFile(const std::string& path, const std::string& password,
                      const CheckProgress& progress) {
  return jet::FileCheck(path, password, progress).run();
}

}  // namespace orv::store
