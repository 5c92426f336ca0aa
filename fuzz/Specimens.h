// Sound database files in memory, and damaged copies of them.
#pragma once

#include <string>
#include <vector>

#include "fuzz/Input.h"
#include "support/MemoryFiles.h"

namespace orv::fuzz {

/// Sound files: one with a column and an index of every kind, and those small ones of the corpus
/// (environment variable ORV_CORPUS), if it is there. While it lives, the store's files are in
/// memory.
class Specimens {
 public:
  /// A copy of a specimen that the input chooses, to be changed as one likes.
  struct Copy {
    std::string path;
    std::string password;
    bool damaged = false;
  };

  Specimens();

  /// A copy of the specimen that the store itself has made.
  Copy own();
  /// A copy of any specimen, with up to `mostPatches` places overwritten.
  Copy damaged(Input& input, std::size_t mostPatches);

 private:
  struct Specimen {
    std::string path;
    std::string password;
    std::size_t size;
  };

  void addCorpus();
  Copy copyOf(const Specimen& specimen);

  test::MemoryFiles files_;
  std::vector<Specimen> specimens_;
};

/// The specimens of this process.
Specimens& specimens();

}  // namespace orv::fuzz
