// The program's version, as it speaks of it.
#pragma once

#include <QString>

namespace orv::app {

/// "Version " and the version's numbers.
inline QString versionText() {
  return QStringLiteral("Version " ORV_VERSION);
}

}  // namespace orv::app
