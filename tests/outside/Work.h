// Works that the programs are to do to a database, rehearsed once without disturbance and then
// judged after each disturbance.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "outside/Content.h"
#include "outside/Disk.h"
#include "outside/Program.h"
#include "support/Corpus.h"
#include "support/TemporaryFolder.h"

namespace orv::test {

/// The name of the database in the folder of each work.
inline constexpr const char* kDatabase = "glass.mdb";

struct Work {
  std::string name;
  std::set<std::string> marks;          ///< what is special about it; see works.txt
  std::vector<Command> beginning = {};  ///< makes what is in the folder before
  Command command = {};
  Command completion = {};  ///< what completes the work that was cut short
};

inline void PrintTo(const Work& work, std::ostream* out) {
  *out << work.name;
}

/// The works of works.txt.
std::vector<Work> works();

/// Makes what is in the folder before a work.
void prepare(const Work& work, const std::filesystem::path& folder);

/// How many records a program has reported as done, by its progress display or at its end.
std::uint64_t reportedBy(const std::string& printed);

/// A work, its beginning and what it comes to.
class Rehearsal {
 public:
  explicit Rehearsal(const Work& work);
  /// A work that begins in a folder as it is, and comes to what `of` comes to.
  Rehearsal(const Rehearsal& of, const std::filesystem::path& start, const Command& command);

  std::uint64_t calls() const { return calls_; }
  /// With the reports between the calls.
  const std::vector<Call>& recording() const { return recording_; }
  /// What a disk holds before the first call.
  const Disk& disk() const { return *disk_; }

  /// Puts the beginning into a folder and does the work there, disturbed.
  Ended disturbed(const std::filesystem::path& folder, const Plan& plan) const;

  /// Expects that the folder is as a work may leave it that was cut short: the check clean, every
  /// record whole or absent, as many done as were reported; and that the work can be completed from
  /// there, and comes to what it should; that it has come to that already where `isDone`.
  void judge(const std::filesystem::path& folder, std::uint64_t reported,
             bool isDone = false) const;

  /// How many folders were judged in this test.
  static inline int judged = 0;

 private:
  void rehearse();
  void complete(const std::filesystem::path& folder, const Content& left) const;

  Work work_;
  TemporaryFolder start_;
  Content before_;
  Content after_;
  std::uint64_t calls_ = 0;
  std::vector<Call> recording_;
  std::optional<Disk> disk_;
};

/// Whether every call is tried (ORV_LONG_TESTS=1), or some.
bool isLongRun();
/// Numbers from 1 to `last`: all, or about `count` of them in the short form.
std::vector<std::uint64_t> sampled(std::uint64_t last, std::uint64_t count);

/// A test that is made with each work.
class WorkTest : public testing::TestWithParam<Work> {
 protected:
  void SetUp() override {
    Rehearsal::judged = 0;
    if (GetParam().marks.contains("corpus")) ORV_NEEDS_CORPUS();
  }
};

}  // namespace orv::test
