// The system's files: what is done where a call fails, and who may have a file when.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>

#include "model/Raised.h"
#include "store/StoreError.h"
#include "store/SystemCalls.h"
#include "store/Waiting.h"
#include "store/jet/catalog/Creation.h"
#include "store/jet/file/File.h"
#include "store/jet/file/FileLocks.h"
#include "store/jet/file/NewFile.h"
#include "store/jet/history/HistoryFile.h"
#include "support/CaseFile.h"
#include "support/ReadFile.h"
#include "support/TemporaryFolder.h"

namespace orv::store::jet {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::UnorderedElementsAre;
using Open = FileSystem::Open;

class SystemFile : public testing::Test, protected test::SystemCalls {
 protected:
  SystemFile() { std::ofstream(path_) << "0123456789"; }

  std::unique_ptr<File> open() { return files_.open(path_, Open::existing); }
  /// The error of a work, with ~ for the folder; none where it has no error, and calls that were
  /// not made where there are such.
  template <class Work>
  std::string told(const Work& work) {
    const test::Raised raised = test::raisedBy(work);
    EXPECT_TRUE(raised.number == 0 || raised.number == kStoreFailure) << raised.number;
    std::string text =
        std::regex_replace(raised.description, std::regex(folder_.path().string()), "~");
    for (const auto& [call, left] : ends) text += " (not made: " + call + ")";
    ends.clear();
    return text;
  }
  void make(File& file, const std::string& call, const std::string& a, const std::string& b);
  std::string content(const std::string& name) { return test::readFile(folder_ / name); }

  test::TemporaryFolder folder_;
  std::string path_ = folder_ / "file", other_ = folder_ / "other";
  FileSystem& files_ = FileSystem::system();
};

TEST_F(SystemFile, GoesOnWhereACallIsInterruptedOrMadeInPart) {
  const auto file = open();
  ends["pwrite"] = {EINTR, kInPart, EINTR, kInPart};
  const std::string text = "abcdefgh";
  file->write(4, reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
  ends["pread"] = {EINTR, kInPart, EINTR, kInPart};
  std::string read(10, ' ');
  file->read(2, reinterpret_cast<std::uint8_t*>(read.data()), read.size());
  EXPECT_EQ(read, "23abcdefgh");
  EXPECT_EQ(content("file"), "0123abcdefgh");
  EXPECT_TRUE(ends.empty());
}

/// A call of a file or of the file system, with names in the folder.
void SystemFile::make(File& file, const std::string& call, const std::string& a,
                      const std::string& b) {
  std::uint8_t byte = 0;
  if (call == "open") files_.open(a[0] == '/' ? a : folder_ / a, Open::existing);
  if (call == "new") files_.open(folder_ / a, Open::newOnly);
  if (call == "newFile") NewFile(folder_ / a);
  if (call == "companion") files_.openCompanion(folder_ / a);
  if (call == "newCompanion") files_.createCompanion(folder_ / a, folder_ / b);
  if (call == "remove") files_.remove(folder_ / a);
  if (call == "rename") files_.rename(folder_ / a, folder_ / b);
  if (call == "replace") files_.replace(folder_ / a, folder_ / b);
  if (call == "syncFolder") files_.syncFolder(folder_ / a);
  if (call == "read") file.read(std::stoul(a), &byte, 1);
  if (call == "write") file.write(0, &byte, 1);
  if (call == "truncate") file.truncate(1);
  if (call == "sync") file.sync();
  if (call == "letOwnerWrite") file.letOwnerWrite();
  if (call == "lock") file.tryLock(LockKind::turn, true);
}

/// Lines of a file: calls of the system that fail, the call that needs them, and what it tells.
TEST_F(SystemFile, TellsWhatFailedAndWhy) {
  std::ofstream(other_) << "other";
  std::filesystem::create_directory(folder_ / "folder");
  ASSERT_EQ(::mkfifo((folder_ / "pipe").c_str(), 0600), 0);
  std::filesystem::create_symlink(path_, folder_ / "link");
  std::filesystem::create_hard_link(other_, folder_ / "second");
  const std::map<std::string, int> errors{
      {"EACCES", EACCES}, {"EBUSY", EBUSY},   {"EDQUOT", EDQUOT}, {"EFBIG", EFBIG},
      {"EINTR", EINTR},   {"EINVAL", EINVAL}, {"EIO", EIO},       {"EMFILE", EMFILE},
      {"ENOLCK", ENOLCK}, {"ENOSPC", ENOSPC}, {"ENOSYS", ENOSYS}, {"EPERM", EPERM},
      {"EROFS", EROFS},   {"ESTALE", ESTALE}, {"EXDEV", EXDEV}};
  const auto file = open();
  for (const auto& [call, failure] : test::examplesOf("store/failures.txt", 30)) {
    std::istringstream words(call);
    std::string word, a, b;
    while (words >> word && word.find('=') != std::string::npos) {
      const std::size_t at = word.find('=');
      ends[word.substr(0, at)].push_back(errors.at(word.substr(at + 1)));
    }
    words >> a >> b;
    EXPECT_EQ(told([&] { make(*file, word, a, b); }), failure) << call;
  }
  EXPECT_FALSE(std::filesystem::exists(folder_ / "new"));
  EXPECT_EQ(content("other"), "other");
  EXPECT_EQ(files_.openCompanion(folder_ / "none"), nullptr);
  EXPECT_EQ(files_.status(folder_ / "none"), std::nullopt);
  EXPECT_TRUE(files_.status(other_)->links == 2 && files_.status(other_)->size == 5);
}

TEST_F(SystemFile, IsOpenedForReadingWhereWritingIsRefused) {
  for (const int refusal : {0, EACCES, EROFS, EPERM}) {
    for (const bool isCompanion : {false, true}) {
      ends["open"] = {refusal};
      const auto file = isCompanion ? files_.openCompanion(path_) : open();
      EXPECT_EQ(file->readOnly(), refusal != 0);
      EXPECT_EQ(file->size(), 10U);
    }
  }
}

TEST_F(SystemFile, AHistoryThatIsReadOnlyIsNotWritten) {
  const HistoryRecord record{.work = 5, .time = 1, .title = "work"};
  EXPECT_TRUE(HistoryFile(path_, 7).append(record, true));
  const std::string before = content("file.orv-history");
  ends["open"] = {EACCES};
  EXPECT_EQ(told([&] { HistoryFile(path_, 7).append(record, true); }),
            "'~/file.orv-history' cannot be written: it is read-only for this user.");
  EXPECT_EQ(content("file.orv-history"), before);
}

TEST_F(SystemFile, ADatabaseThatIsReadOnlySaysSo) {
  const std::string path = folder_ / "new.mdb";
  createDatabase(path);
  ends["open"] = {EROFS};
  EXPECT_EQ(Database::open(path, "")->pager().whyReadOnly(),
            "'" + path +
                "' cannot be changed: the file is read-only. Give yourself permission to "
                "write it, or work on a copy.");
}

TEST_F(SystemFile, GetsANewNameThatNothingHas) {
  for (const int missing : {0, EINVAL, ENOSYS}) {
    std::ofstream(other_) << "other";
    ends["renameat2"] = {missing, missing};
    EXPECT_FALSE(files_.rename(path_, other_));
    EXPECT_EQ(content("other") + content("file"), "other0123456789");
    files_.remove(other_);
    EXPECT_TRUE(files_.rename(path_, other_));
    EXPECT_FALSE(std::filesystem::exists(path_));
    EXPECT_TRUE(files_.rename(other_, path_));
  }
  files_.replace(path_, other_);
  EXPECT_EQ(content("other"), "0123456789");
}

/// Of more than four the last ones are not found by who ends the program.
TEST_F(SystemFile, NewFilesAreRemovedWhenTheProgramIsEnded) {
  const auto there = [&] {
    return std::ranges::count_if(
        std::filesystem::directory_iterator(folder_.path()),
        [](const auto& entry) { return entry.path().string().find("-new-") != std::string::npos; });
  };
  std::vector<std::unique_ptr<NewFile>> made;
  for (int i = 0; i < 6; ++i) {
    made.push_back(std::make_unique<NewFile>(folder_ / std::to_string(i)));
  }
  made.erase(made.begin() + 1);
  EXPECT_EQ(there(), 5);
  made.push_back(std::make_unique<NewFile>(folder_ / "7"));
  NewFile::removeAll();
  EXPECT_EQ(there(), 2);
  // What another has made under the name meanwhile stays.
  std::ofstream(folder_ / "5") << "of another";
  EXPECT_EQ(told([&] { made[4]->putInPlace(); }),
            "The file '~/5' exists already and is left as it is. Choose another name, or remove it "
            "first.");
  EXPECT_EQ(content("5"), "of another");
  made.clear();
  EXPECT_EQ(there(), 0);
}

/// An access control list of the owner, the owning group, what it grants at most, and others.
std::string listWithGroupRights(char rights) {
  std::string list("\2\0\0\0", 4);
  for (const auto& [tag, granted] :
       {std::pair{'\1', '\6'}, {'\4', rights}, {'\20', '\6'}, {'\40', '\4'}}) {
    list += std::string{tag, '\0', granted, '\0', '\xff', '\xff', '\xff', '\xff'};
  }
  return list;
}

TEST_F(SystemFile, ACompanionBelongsToWhomItsDatabaseBelongs) {
  const std::string list = "system.posix_acl_access", origin = "user.origin";
  const auto put = [&](const std::string& name, const std::string& value) {
    return ::setxattr(path_.c_str(), name.c_str(), value.data(), value.size(), 0);
  };
  if (put(origin, "Labor 7") != 0 || put(list, listWithGroupRights('\4')) != 0) {
    GTEST_SKIP() << "the file system of the temporary folder has no attributes";
  }
  struct stat there {};
  ASSERT_EQ(::stat(path_.c_str(), &there), 0);
  const std::string group = std::to_string(there.st_gid);
  const std::string owner = "owner " + std::to_string(there.st_uid) + " " + group;
  EXPECT_THAT(files_.attributesLacking(path_, path_), ElementsAre());
  files_.createCompanion(other_, path_);
  EXPECT_THAT(made, UnorderedElementsAre("without " + list, owner, "mode 664", "attribute " + list,
                                         "attribute " + origin));
  EXPECT_THAT(files_.attributesLacking(other_, path_), ElementsAre());
  // Of what cannot be kept the rights of the group are, and no more of them.
  made.clear();
  ends = {{"fchown", {EPERM, EPERM}}, {"fsetxattr", {EPERM, EPERM}}};
  const std::string third = folder_ / "third";
  files_.createCompanion(third, path_);
  EXPECT_THAT(made, UnorderedElementsAre("without " + list, owner, "owner -1 " + group, "mode 664",
                                         "attribute " + list, "mode 644", "attribute " + origin));
  EXPECT_TRUE(ends.empty());
  EXPECT_THAT(files_.attributesLacking(third, path_),
              UnorderedElementsAre(list, origin, "rights of the group"));
  EXPECT_THAT(files_.attributesLacking(folder_ / "none", path_),
              UnorderedElementsAre(list, origin));
  EXPECT_THAT(files_.attributesLacking(path_, folder_ / "none"), ElementsAre());
  ends = {{"fsetxattr", {EPERM, EPERM}}};
  EXPECT_EQ(NewFile::inPlaceOf(path_).attributesLacking().size(), 3U);
  ASSERT_EQ(put(origin, "Labor 8"), 0);
  EXPECT_THAT(files_.attributesLacking(other_, path_), ElementsAre(origin));
  if (::geteuid() == 0) {
    ASSERT_EQ(::chown(path_.c_str(), 1234, 1235), 0);
    EXPECT_THAT(files_.attributesLacking(other_, path_), ElementsAre(origin, "owner", "group"));
  }
}

class Locks : public SystemFile, public Waiter {
 protected:
  Locks() { Waiter::setCurrent(this); }
  ~Locks() override { Waiter::setCurrent(nullptr); }
  bool wait(const std::string& holder) override {
    holders_.push_back(holder);
    return holders_.size() < patience_;
  }
  void done() override { ++dones_; }

  const std::string busy_ =
      "'~/file' is in use by another program. Wait until it has finished or "
      "close the file there, then try again.";
  std::unique_ptr<File> mine_ = open(), theirs_ = open(), thirds_ = open();
  FileLocks locks_{*mine_, path_}, others_{*theirs_, path_}, third_{*thirds_, path_};
  std::vector<std::string> holders_;
  std::size_t patience_ = SIZE_MAX;
  int dones_ = 0;
};

TEST_F(Locks, AreWaitedForAsLongAsIsWorthwhile) {
  const std::tuple<LockKind, std::function<void()>, std::chrono::seconds> cases[] = {
      {LockKind::readers, [&] { locks_.enterShared(); }, 30s},
      {LockKind::queue, [&] { locks_.enterShared(); }, 30s},
      {LockKind::readers, [&] { locks_.enterExclusive(); }, 30s},
      {LockKind::writer, [&] { locks_.enterWriter(); }, 3s},
      {LockKind::turn, [&] { locks_.enterWriter(); }, 3s},
      {LockKind::presence, [&] { locks_.joinOthers(); }, 3s}};
  for (const auto& [kind, enter, longest] : cases) {
    EXPECT_TRUE(theirs_->tryLock(kind, true));
    const auto start = time;
    slept = [&, most = longest] {
      // Most of the time passes at once: who holds the lock is looked for at each try.
      if (time > start + 100ms) time = std::max<std::chrono::nanoseconds>(time, start + most - 4ms);
    };
    EXPECT_EQ(told(enter), busy_);
    EXPECT_TRUE(time - start >= longest && time - start < longest + 4ms);
    theirs_->unlock(kind);
    EXPECT_TRUE(thirds_->isFree(LockKind::queue) && thirds_->isFree(LockKind::turn));
    EXPECT_EQ(told(enter), "");
    for (const LockKind each : {LockKind::readers, LockKind::queue, LockKind::writer,
                                LockKind::turn, LockKind::presence}) {
      mine_->unlock(each);
    }
  }
  sleeps.resize(9);
  EXPECT_THAT(sleeps, ElementsAre(50us, 100us, 200us, 400us, 800us, 1600us, 3200us, 4ms, 4ms));
  EXPECT_EQ(dones_, 6);
  EXPECT_EQ(holders_.front(), "'" + path_ + "' is in use by another program");
  ends["fcntl"] = {EACCES, EAGAIN};
  EXPECT_FALSE(mine_->tryLock(LockKind::turn, true) || mine_->tryLock(LockKind::turn, true));
  ends["fcntl"] = {EIO};
  EXPECT_FALSE(mine_->isFree(LockKind::turn));
}

TEST_F(Locks, AreGivenUpWhereTheUserDoesNotWait) {
  others_.enterShared();
  patience_ = 1;
  EXPECT_EQ(told([&] { locks_.enterExclusive(); }), busy_);
  EXPECT_TRUE(time > 150ms && time < 155ms) << time.count();
  // Nobody is told of a moment.
  holders_.clear();
  slept = [&, until = time + 140ms] {
    if (time > until) others_.leaveShared();
  };
  EXPECT_EQ(told([&] { locks_.enterExclusive(); }), "");
  EXPECT_TRUE(holders_.empty() && dones_ == 1);
}

/// Changes wait for those who read or write, and fail as a whole where these do not end.
TEST_F(Locks, AreTakenByEveryChange) {
  files_.remove(path_);
  createTable(*createDatabase(path_), {.name = "T", .columns = {{"n", ColumnType::longInteger}}});
  const auto database = Database::open(path_, "");
  const auto table = database->table("T");
  const auto file = open();
  FileLocks others(*file, path_);
  patience_ = 0;
  for (int n = 1; n < 4; ++n) {  // the first makes the log
    others.enterShared();
    EXPECT_EQ(told([&] { table->insert(std::vector<Value>{n}); }), busy_);
    EXPECT_EQ(told([&] { EXPECT_EQ(table->rowCount(), static_cast<unsigned>(n - 1)); }), "");
    others.leaveShared();
    others.enterWriter();
    EXPECT_EQ(told([&] { table->insert(std::vector<Value>{n}); }), busy_);
    others.leaveWriter();
    table->insert(std::vector<Value>{n});
    others.enterExclusive();
    EXPECT_EQ(told([&] { table->rowCount(); }), busy_);
    others.leaveExclusive();
    others.leaveShared();
  }
}

TEST_F(Locks, AWriterComesBeforeWhoeverReadsNext) {
  locks_.enterShared();
  others_.enterShared();
  EXPECT_FALSE(locks_.isWaitedFor());
  slept = [&] {
    EXPECT_TRUE(others_.isWaitedFor() && Waiting::isUnderWay() == !holders_.empty());
    if (time < 155ms) return;
    EXPECT_FALSE(thirds_->tryLock(LockKind::queue, false));
    others_.leaveShared();
  };
  locks_.enterExclusive();
  slept = [] {};
  EXPECT_FALSE(Waiting::isUnderWay());
  EXPECT_FALSE(thirds_->isFree(LockKind::readers) || thirds_->isFree(LockKind::queue));
  EXPECT_FALSE(theirs_->tryLock(LockKind::readers, false));
  locks_.leaveExclusive();
  EXPECT_TRUE(theirs_->tryLock(LockKind::readers, false));
  EXPECT_TRUE(thirds_->isFree(LockKind::queue));
  locks_.enterWriter();
  EXPECT_TRUE(thirds_->isFree(LockKind::turn) && !thirds_->isFree(LockKind::writer));
  locks_.leaveWriter();
  EXPECT_TRUE(thirds_->isFree(LockKind::writer));

  EXPECT_TRUE(locks_.enterAlone());
  patience_ = holders_.size() + 1;
  EXPECT_EQ(told([&] { others_.enterAlone(); }), busy_);
  locks_.joinOthers();
  EXPECT_FALSE(others_.enterAlone());
  EXPECT_FALSE(locks_.isLast());
  theirs_->unlock(LockKind::presence);
  ends["open"] = {EACCES};
  const auto reading = open();
  FileLocks reader(*reading, path_);
  EXPECT_FALSE(reader.enterAlone());
  reading->unlock(LockKind::presence);
  EXPECT_TRUE(locks_.isLast());
  mine_->unlock(LockKind::presence);
  EXPECT_TRUE(reader.enterAlone());
  EXPECT_FALSE(reader.isLast());
}

}  // namespace
}  // namespace orv::store::jet
