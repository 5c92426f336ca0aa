// Works that the programs are to do to a database, rehearsed once without disturbance and then
// judged after each disturbance.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "outside/Content.h"
#include "outside/Disk.h"
#include "outside/Program.h"
#include "support/TemporaryFolder.h"

namespace orv::test {

/// The name of the database in the folder of each work.
inline constexpr const char* kDatabase = "glass.mdb";

struct Work {
  std::string name;
  /// Makes what is in the folder before.
  std::function<void(const std::filesystem::path& folder)> prepare;
  Command command;
  /// What completes the work that was cut short.
  Command completion;
  /// Whether completing does again what was done already (shadings have no names of their own).
  bool repeats = false;
  /// Whether a file is written under another name until it is whole, so that there is nothing to
  /// recover; and whether the content is what it was before.
  bool writesAnew = false;
  bool keepsContent = false;
};

/// The works by their names; see the table in Work.cpp. Some need the corpus.
std::vector<std::string> workNames();
Work workNamed(const std::string& name);
bool needsCorpus(const std::string& workName);

/// A folder with panes as text files, made once; and such a folder for each other source.
std::filesystem::path sourceFolder();

/// Puts a database with two panes into a folder.
void prepareDatabase(const std::filesystem::path& folder);

/// Runs `orv`, and raises when it does not succeed.
void mustRun(const std::filesystem::path& folder, const Command& command);

/// How many records a program has reported as done, by its progress display or at its end.
std::uint64_t reportedBy(const std::string& printed);

/// A work, its beginning and what it comes to.
class Rehearsal {
 public:
  explicit Rehearsal(Work work);
  /// A work that begins in a folder as it is, and comes to what `of` comes to.
  Rehearsal(const Rehearsal& of, const std::filesystem::path& start, const Command& command);

  const Work& work() const { return work_; }
  const Content& before() const { return before_; }
  const Content& after() const { return after_; }
  std::uint64_t calls() const { return calls_; }
  /// With the reports between the calls.
  const std::vector<Call>& recording() const { return recording_; }
  /// What a disk holds before the first call.
  const Disk& disk() const { return *disk_; }

  /// Puts the beginning into a folder.
  void begin(const std::filesystem::path& folder) const;
  /// The work in such a folder, disturbed.
  Ended disturbed(const std::filesystem::path& folder, const Plan& plan) const;

  /// Expects that the folder is as a work may leave it that was cut short: the check clean, every
  /// record whole or absent, as many done as were reported. Gives how many are done.
  std::uint64_t judge(const std::filesystem::path& folder, std::uint64_t reported) const;
  /// Expects that the work can be completed from there, and comes to what it should.
  void complete(const std::filesystem::path& folder) const;

 private:
  void rehearse();

  Work work_;
  TemporaryFolder start_;
  TemporaryFolder notes_;
  Content before_;
  Content after_;
  std::uint64_t calls_ = 0;
  std::vector<Call> recording_;
  std::unique_ptr<Disk> disk_;
};

/// Whether every call is tried (ORV_LONG_TESTS=1), or some.
bool isLongRun();
/// Numbers from 1 to `last`: all, or about `count` of them in the short form.
std::vector<std::uint64_t> sampled(std::uint64_t last, std::uint64_t count);

}  // namespace orv::test
