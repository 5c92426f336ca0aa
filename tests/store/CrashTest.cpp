// Whatever fails, and whenever the power goes: the file holds the commits that returned.

#include <gtest/gtest.h>

#include <cstdlib>

#include "errors/Error.h"
#include "model/Raised.h"
#include "store/CrashScenario.h"
#include "store/FileContent.h"
#include "store/StoreError.h"
#include "support/MemoryFiles.h"

namespace orv::store::jet {
namespace {

constexpr int kMostFailures = 5;  // of calls one after the other
constexpr const char* kPrepared = "prepared.mdb";

/// Every call and several outcomes of each are tried in a long run (ORV_LONG_TESTS=1), some
/// thirty calls and one outcome of each otherwise.
bool isLongRun() {
  return std::getenv("ORV_LONG_TESTS") != nullptr;
}

class Crash : public testing::TestWithParam<test::CrashScenario (*)()> {
 protected:
  void SetUp() override {
    scenario_.prepare(kPrepared);
    startAnew();
    const std::size_t before = files_.calls();
    {
      const auto database = Database::open(test::kFile, "");
      states_.push_back(test::describe(*database));
      for (const auto& commit : scenario_.commits) {
        commit(*database);
        states_.push_back(test::describe(*database));
        EXPECT_NE(states_.back(), states_[states_.size() - 2]);
      }
    }
    calls_ = files_.calls() - before;
    EXPECT_EQ(calls_, scenario_.calls);
    test::expectBytes(test::kFile, scenario_.sum);
    step_ = isLongRun() ? 1 : calls_ / 30 + 1;
  }

  void startAnew() {
    files_.remove(std::string(test::kFile) + "-log");
    files_.copy(kPrepared, test::kFile);
  }

  /// The commits one after the other, ended by a failure or not; gives the number of those that
  /// returned.
  std::size_t run() {
    std::size_t returned = 0;
    const test::Raised raised = test::raisedBy([&] {
      const auto database = Database::open(test::kFile, "");
      for (; returned < scenario_.commits.size(); ++returned) {
        scenario_.commits[returned](*database);
      }
    });
    EXPECT_TRUE(raised.number == 0 || raised.number == kStoreFailure) << raised.description;
    return returned;
  }

  /// What `work` gives once the calls that fail are over.
  template <class Work>
  static auto insist(const Work& work) {
    for (int failures = 0;; ++failures) {
      try {
        return work();
      } catch (const Error& error) {
        EXPECT_EQ(error.number(), kStoreFailure) << error.what();
        if (failures == kMostFailures) throw;
      }
    }
  }

  /// The same run, in which each commit that fails is tried again, while the file stays open.
  /// When only one call has failed, the commit is undone; when undoing failed too, it may be
  /// there whole. In the end the file is closed, or the power goes.
  void runWithFurtherTries(int failures, bool endsWell, const std::string& when) {
    const auto database = insist([] { return Database::open(test::kFile, ""); });
    const auto other = insist([] { return Database::open(test::kFile, ""); });
    for (std::size_t i = 0; i < scenario_.commits.size();) {
      const test::Raised raised = test::raisedBy([&] { scenario_.commits[i++](*database); });
      if (raised.number == 0) continue;
      EXPECT_EQ(raised.number, kStoreFailure) << raised.description;
      const std::string found = insist([&] { return test::describe(*other); });
      EXPECT_EQ(insist([&] { return test::describe(*database); }), found);
      const bool isThere = failures > 1 && found == states_[i];
      ASSERT_TRUE(isThere || found == states_[i - 1]) << when << ", commit " << i - 1;
      if (!isThere) --i;
    }
    if (!endsWell) files_.losePowerAt(0);
  }

  /// The file holds the commits that returned, and perhaps the one under way, and is sound.
  void expectWholeState(std::size_t returned, const std::string& when) {
    const std::string found = test::describe(*Database::open(test::kFile, ""));
    EXPECT_TRUE(found == states_[returned] ||
                (returned + 1 < states_.size() && found == states_[returned + 1]))
        << when << ", " << returned << " commits had returned";
    test::expectSound(test::kFile);
  }

  test::MemoryFiles files_;
  test::CrashScenario scenario_ = GetParam()();
  std::vector<std::string> states_;  ///< after each commit of a run without failures
  std::size_t calls_ = 0;            ///< calls to the disk in such a run
  std::size_t step_ = 1;             ///< from one call that is tried to the next
};

TEST_P(Crash, LossOfPowerAtEveryCallLosesNoCommit) {
  const unsigned outcomes = isLongRun() ? 8 : 1;
  for (std::size_t call = 0; call < calls_; call += step_) {
    for (unsigned seed = 0; seed < outcomes && !HasFailure(); ++seed) {
      startAnew();
      files_.losePowerAt(call);
      const std::size_t returned = run();
      files_.restart(seed + static_cast<unsigned>(call) * 8);
      expectWholeState(returned, "power lost at call " + std::to_string(call));
    }
  }
  RecordProperty("calls", static_cast<int>(calls_));
}

/// Whoever opens the file after a loss of power loses the power too, at any call of recovery.
TEST_P(Crash, LossOfPowerDuringRecoveryLosesNoCommit) {
  const std::size_t step = isLongRun() ? 1 : calls_ / 4 + 1;
  for (std::size_t call = 1; call < calls_ && !HasFailure(); call += step) {
    bool recovered = false;
    for (std::size_t second = 0; !recovered; second += isLongRun() ? 1 : 1 + 2 * second) {
      startAnew();
      files_.losePowerAt(call);
      const std::size_t returned = run();
      files_.restart(static_cast<unsigned>(call));
      files_.losePowerAt(second);
      recovered = test::raisedBy([] { Database::open(test::kFile, ""); }).number == 0;
      files_.restart(static_cast<unsigned>(second));
      expectWholeState(returned, "power lost at call " + std::to_string(call) + " and at call " +
                                     std::to_string(second) + " of recovery");
    }
  }
}

/// Of calls that fail for a while some may be those that undo. In a short run the number of those
/// that fail goes round.
TEST_P(Crash, FailureOfAnyCallsIsUndoneAndTheNextTrySucceeds) {
  constexpr int kFailures[] = {1, 2, kMostFailures};
  for (std::size_t call = 0; call < calls_; call += step_) {
    for (const int& failures : kFailures) {
      const auto place = static_cast<std::size_t>(&failures - kFailures);
      if (!isLongRun() && call / step_ % std::size(kFailures) != place) continue;
      const std::string when =
          std::to_string(failures) + " calls failed from call " + std::to_string(call);
      startAnew();
      files_.failAt(call, static_cast<std::size_t>(failures));
      runWithFurtherTries(failures, call / step_ % 2 == 0, when);
      files_.restart(static_cast<unsigned>(call));
      expectWholeState(scenario_.commits.size(), when);
      if (HasFailure()) return;
    }
  }
}

TEST_P(Crash, FullDiskUndoesTheCommitAndTheNextOneSucceedsWithRoom) {
  startAnew();
  files_.remove(kPrepared);
  files_.limitSpace(static_cast<std::uint64_t>(files_.size(test::kFile)) + 9000);
  const std::size_t returned = run();
  EXPECT_LT(returned, states_.size() - 1);
  files_.limitSpace(UINT64_MAX);
  expectWholeState(returned, "disk full");
}

INSTANTIATE_TEST_SUITE_P(Runs, Crash,
                         testing::Values(test::changesOfRows, test::newTablesAndIndexes,
                                         test::growthOfMaps, test::joinsOfIndexPages),
                         [](const auto& info) { return info.param().name; });

}  // namespace
}  // namespace orv::store::jet
