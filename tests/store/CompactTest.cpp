// A compacted file holds what the old one does, and nothing else.

#include <gtest/gtest.h>
#include <sys/xattr.h>

#include <filesystem>
#include <iterator>

#include "model/Raised.h"
#include "store/Check.h"
#include "store/Compact.h"
#include "store/FileContent.h"
#include "store/Jet3File.h"
#include "store/SampleFile.h"
#include "store/StoreError.h"
#include "support/TemporaryFolder.h"

namespace orv::test {
namespace {

namespace fs = std::filesystem;
using namespace store;

void expectCompacted(const fs::path& before, const fs::path& after, const CompactReport& told) {
  const std::string password = passwordOf(before);
  EXPECT_EQ(difference(contentOf(before, password), contentOf(after, password)), "") << before;
  const CheckReport report = expectSound(after, password);
  EXPECT_EQ(report.lostPages + report.freePages, 0u) << before;
  const CheckReport former = checkFile(before.string(), password);
  EXPECT_EQ(told.tables, former.tables);
  EXPECT_EQ(told.rows, former.rows) << before;
  EXPECT_EQ(told.indexes, former.indexes) << before;
  EXPECT_EQ(told.sizeBefore, fs::file_size(before));
  EXPECT_EQ(told.sizeAfter, fs::file_size(after));
  EXPECT_LE(told.sizeAfter, told.sizeBefore) << before;
  EXPECT_TRUE(told.isWhole());
}

TEST(Compact, KeepsAllThatFilesHold) {
  const TemporaryFolder folder;
  makeSampleFile(folder / "sample.mdb");
  makeConvertedFile(folder / "converted.mdb");
  std::vector<fs::path> files{folder / "sample.mdb", folder / "converted.mdb"};
  for (const char* part : {"access", "foreign", "sources"}) {
    for (const fs::path& file : corpusFiles(part)) files.push_back(file);
  }
  std::size_t compacted = 0;
  for (const fs::path& file : files) {
    for (const CheckFinding& remark : expectSound(file, passwordOf(file)).remarks) {
      EXPECT_EQ(remark.what.find("not compared"), std::string::npos) << file << remark.toText();
    }
    const std::string target = folder / ("new-" + file.filename().string());
    const Raised raised = raisedBy([&] {
      expectCompacted(file, target, compactFile(file.string(), passwordOf(file), target));
      ++compacted;
    });
    EXPECT_TRUE(raised.number == 0 || raised.number == kNotSupported) << raised.description;
    EXPECT_EQ(fs::exists(target), raised.number == 0) << file;
  }
  expectBytes(folder / "sample.mdb", 0x44683441be7ddd1d);
  expectBytes(folder / "new-sample.mdb", 0xa9160ecb2c874d94);
  expectBytes(folder / "new-converted.mdb", 0x9a533994501af4a8);
  EXPECT_GE(compacted, files.size() == 2 ? 2u : 22u);
}

TEST(Compact, PutsTheNewFileInPlaceWithPermissionsAndAttributesOfTheOldOne) {
  const TemporaryFolder folder;
  const std::string file = folder / "data.mdb";
  makeSampleFile(file);
  fs::permissions(file, fs::perms(0600));
  const std::string backup = folder / "old.mdb";
  const std::string target = folder / "new.mdb";
  std::string progress;
  const CompactReport report =
      compactInPlace(file, "", backup, [&](std::size_t done, std::size_t all) {
        progress += std::to_string(done) + "/" + std::to_string(all) + " ";
      });
  EXPECT_EQ(progress, "64/462 128/462 154/462 218/462 282/462 372/462 436/462 439/462 ");
  EXPECT_LT(report.sizeAfter, report.sizeBefore);
  expectCompacted(backup, file, report);
  compactFile(file, "", target);
  for (const std::string& each : {file, backup, target}) {
    EXPECT_EQ(fs::status(each).permissions(), fs::perms(0600)) << each;
  }
  EXPECT_EQ(raisedBy([&] { compactInPlace(file, "", backup); }).number, kStoreFailure);
  EXPECT_EQ(raisedBy([&] { compactFile(file, "", target); }).number, kStoreFailure);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), {}), 3);
  fs::permissions(backup, fs::perms(0440));
  compactFile(backup, "", folder / "writable.mdb");
  EXPECT_EQ(fs::status(folder / "writable.mdb").permissions(), fs::perms(0640));

  if (setxattr(file.c_str(), "user.origin", "Labor 7", 7, 0) != 0) {
    GTEST_SKIP() << "the file system of the temporary folder has no attributes";
  }
  EXPECT_TRUE(compactInPlace(file, "", folder / "older.mdb").notes.empty());
  std::string origin(8, '\0');
  EXPECT_EQ(getxattr(file.c_str(), "user.origin", origin.data(), 8), 7);
  EXPECT_EQ(origin.c_str(), std::string("Labor 7"));
}

}  // namespace
}  // namespace orv::test
