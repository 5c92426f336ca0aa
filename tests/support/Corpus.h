// Files of other programs' making that tests read where they are present.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

namespace orv::test {

/// The folder of such files: the environment variable ORV_CORPUS, or the shared folder beside
/// the project.
inline std::filesystem::path corpusFolder() {
  const char* folder = std::getenv("ORV_CORPUS");
  return folder != nullptr ? std::filesystem::path(folder)
                           : std::filesystem::path(ORV_SOURCE_DIR) / "../shared/corpus";
}

inline bool haveCorpus() {
  return std::filesystem::is_directory(corpusFolder());
}

}  // namespace orv::test

/// Skips the test, saying so, where the corpus is absent.
#define ORV_NEEDS_CORPUS()                                                \
  if (!orv::test::haveCorpus()) {                                         \
    GTEST_SKIP() << "the corpus of foreign files is not on this machine"; \
  }
