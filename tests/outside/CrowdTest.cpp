// Several processes with one file at a time.
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <thread>

#include "outside/Work.h"

namespace orv::test {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

/// A program that is run again and again, each time with arguments of its own.
class Again {
 public:
  Again(fs::path folder, std::function<Command(int run)> command)
      : folder_(std::move(folder)), command_(std::move(command)) {}

  /// Starts the program when it does not run; notes how the last run ended.
  void keepUp(bool mayStart) {
    if (program_ && program_->hasEnded()) {
      const Ended ended = program_->end();
      program_.reset();
      if (ended.exit != 0) failures_ += ended.err + "(exit " + std::to_string(ended.exit) + ")\n";
      ++runs_;
    }
    if (!program_ && mayStart) {
      program_.emplace(command_(runs_), Surroundings{.folder = folder_, .isWatched = false});
    }
  }
  bool isRunning() const { return program_.has_value(); }
  int runs() const { return runs_; }
  const std::string& failures() const { return failures_; }

 private:
  fs::path folder_;
  std::function<Command(int)> command_;
  std::optional<Program> program_;
  int runs_ = 0;
  std::string failures_;
};

void keepUp(std::vector<Again>& programs, Clock::duration time) {
  const auto end = Clock::now() + time;
  bool isAnyRunning = true;
  while (isAnyRunning) {
    isAnyRunning = false;
    for (Again& program : programs) {
      program.keepUp(Clock::now() < end);
      isAnyRunning = isAnyRunning || program.isRunning();
    }
    std::this_thread::sleep_for(1ms);
  }
}

std::string groupOf(int writer, int run) {
  return "W" + std::to_string(writer) + "x" + std::to_string(run);
}

/// Four that write and three that read, for a minute in a long run.
void expectThatACrowdGetsOn(const fs::path& folder, Clock::duration time) {
  constexpr int kWriters = 4;
  prepareDatabase(folder);
  const std::string panes = (sourceFolder() / "panes").string();
  std::vector<Again> programs;
  for (int writer = 0; writer < kWriters; ++writer) {
    programs.emplace_back(folder, [=](int run) {
      return orv({"copy", panes, kDatabase, "--group", groupOf(writer, run)});
    });
  }
  programs.emplace_back(folder, [](int) { return orv({"list", kDatabase}); });
  programs.emplace_back(folder, [](int) { return orv({"check", kDatabase}); });
  programs.emplace_back(folder, [](int) {
    return orv({"sql", kDatabase, "SELECT COUNT(*) FROM Pane_spectral_data"});
  });
  keepUp(programs, time);

  std::size_t expected = 2;
  for (int i = 0; i < static_cast<int>(programs.size()); ++i) {
    EXPECT_EQ(programs[i].failures(), "") << (i < kWriters ? "A writer" : "A reader") << " failed.";
    EXPECT_GT(programs[i].runs(), 0) << "One never got its turn.";
    if (i < kWriters) expected += 5 * static_cast<std::size_t>(programs[i].runs());
  }
  EXPECT_EQ(run(orv({"check", kDatabase}), {.folder = folder}).exit, 0);
  const Content content = contentOf(folder / kDatabase);
  EXPECT_EQ(recordCount(content), expected);
  EXPECT_TRUE(content.strays.empty()) << *content.strays.begin();
  const auto partsOf = [&](const std::string& group) {
    const auto found = content.records.find("Pane lowe_4_infrared.txt of " + group);
    return found != content.records.end() ? found->second.begin()->size() : 0;
  };
  const std::size_t whole = partsOf(groupOf(0, 0));
  for (int writer = 0; writer < kWriters; ++writer) {
    for (int i = 0; i < programs[writer].runs(); ++i) {
      const std::size_t nameLength = groupOf(writer, i).size() - groupOf(0, 0).size();
      EXPECT_EQ(partsOf(groupOf(writer, i)), whole + nameLength) << groupOf(writer, i);
    }
  }
  testing::Test::RecordProperty("panes", static_cast<int>(expected));
}

TEST(Crowd, OfWritersAndReadersGetsOn) {
  const TemporaryFolder folder;
  expectThatACrowdGetsOn(folder.path(), isLongRun() ? 60s : 1s);
}

}  // namespace
}  // namespace orv::test
