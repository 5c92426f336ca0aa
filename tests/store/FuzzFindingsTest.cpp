// Inputs that fuzzing has found, and that the store did not bear.

#include <gtest/gtest.h>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/Creation.h"
#include "support/MemoryFiles.h"

namespace orv::store::jet {
namespace {

constexpr const char* kFile = "found.mdb";

class FuzzFindings : public testing::Test {
 protected:
  FuzzFindings() { createDatabase(kFile); }

  void overwrite(std::uint64_t place, const Bytes& bytes) {
    files_.open(kFile, FileSystem::Open::existing)->write(place, bytes.data(), bytes.size());
  }

 private:
  test::MemoryFiles files_;
};

// The header's date masks the password; this one is far beyond all dates.
TEST_F(FuzzFindings, PasswordMaskedByAnImpossibleDate) {
  overwrite(0x79, {0x2a, 0xff, 0x19, 0x2a});
  try {
    Database::open(kFile, "");
  } catch (const Error& error) {
    EXPECT_EQ(error.number(), kNotAuthenticated) << error.what();
  }
}

}  // namespace
}  // namespace orv::store::jet
