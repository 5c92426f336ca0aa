// Several processes with one file at a time.
#include <chrono>
#include <future>

#include "outside/Work.h"

namespace orv::test {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

/// A program that was run again and again.
struct Again {
  int runs = 0;
  std::string failures;
};

/// Runs a program as long as there is time, each time with arguments of its own.
Again runUntil(Clock::time_point end, const std::filesystem::path& folder,
               const std::function<Command(int run)>& command) {
  Again again;
  for (; Clock::now() < end; ++again.runs) {
    const Ended ended = run(command(again.runs), {.folder = folder, .isWatched = false});
    if (ended.exit != 0)
      again.failures += ended.err + "(exit " + std::to_string(ended.exit) + ")\n";
  }
  return again;
}

std::string groupOf(int writer, int run) {
  return "W" + std::to_string(writer) + "x" + std::to_string(run);
}

/// Four that write and three that read, for a minute in a long run.
TEST(Crowd, OfWritersAndReadersGetsOn) {
  constexpr int kWriters = 4;
  const TemporaryFolder folder;
  const Work copy = works().front();
  prepare(copy, folder.path());
  std::vector<std::function<Command(int)>> programs;
  for (int writer = 0; writer < kWriters; ++writer) {
    programs.emplace_back([&, writer](int run) {
      Command command = copy.command;
      command.back() = groupOf(writer, run);
      return command;
    });
  }
  for (const Command& reader :
       {Command{"list", kDatabase}, Command{"check", kDatabase},
        Command{"sql", kDatabase, "SELECT COUNT(*) FROM Pane_spectral_data"}}) {
    programs.emplace_back([reader](int) { return orv(reader); });
  }
  const auto end = Clock::now() + (isLongRun() ? 60s : 1s);
  std::vector<std::future<Again>> running;
  for (const auto& program : programs) {
    running.push_back(std::async(std::launch::async, runUntil, end, folder.path(), program));
  }

  std::vector<Again> ended;
  for (std::future<Again>& program : running) {
    const bool isWriter = ended.size() < kWriters;
    ended.push_back(program.get());
    EXPECT_EQ(ended.back().failures, "") << (isWriter ? "A writer" : "A reader") << " failed.";
    EXPECT_GT(ended.back().runs, 0) << "One never got its turn.";
  }
  EXPECT_EQ(run(orv({"check", kDatabase}), {.folder = folder.path()}).exit, 0);
  const Content content = contentOf(folder / kDatabase);
  EXPECT_TRUE(content.strays.empty()) << *content.strays.begin();
  const auto sizeOf = [&](const std::string& group) {
    const auto found = content.records.find("Pane lowe_4_infrared.txt of " + group);
    return found != content.records.end() ? found->second.begin()->size() : 0;
  };
  const std::size_t whole = sizeOf(groupOf(0, 0));
  std::size_t expected = 2;
  for (int writer = 0; writer < kWriters; ++writer) {
    for (int i = 0; i < ended[writer].runs; ++i, expected += 5) {
      const std::size_t nameLength = groupOf(writer, i).size() - groupOf(0, 0).size();
      EXPECT_EQ(sizeOf(groupOf(writer, i)), whole + nameLength) << groupOf(writer, i);
    }
  }
  EXPECT_EQ(recordCount(content), expected);
  RecordProperty("panes", static_cast<int>(expected));
}

}  // namespace
}  // namespace orv::test
