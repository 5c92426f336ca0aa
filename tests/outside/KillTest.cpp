// The programs are killed at calls that change a file.
#include <gtest/gtest.h>

#include "outside/FileCall.h"
#include "outside/Work.h"
#include "support/Corpus.h"

namespace orv::test {
namespace {

class Killed : public testing::TestWithParam<std::string> {
 protected:
  void SetUp() override {
    if (needsCorpus(GetParam())) ORV_NEEDS_CORPUS();
  }
};

Plan killAt(std::uint64_t call, bool before) {
  return {.word = before ? kKillBefore : kKillAfter, .first = call};
}

/// Whether to kill before the call, after it, or each in its turn.
std::vector<bool> momentsAt(std::uint64_t call) {
  return isLongRun() ? std::vector{true, false} : std::vector{call % 4 < 2};
}

TEST_P(Killed, AtACallNothingIsHalfDoneOrLost) {
  const Rehearsal rehearsal(workNamed(GetParam()));
  ASSERT_GT(rehearsal.calls(), 0U);
  for (const std::uint64_t call : sampled(rehearsal.calls(), 3)) {
    for (const bool before : momentsAt(call)) {
      SCOPED_TRACE(std::string("killed ") + (before ? "before" : "after") + " call " +
                   std::to_string(call) + " of " + std::to_string(rehearsal.calls()));
      const TemporaryFolder folder;
      rehearsal.begin(folder.path());
      const Ended ended = rehearsal.disturbed(folder.path(), killAt(call, before));
      ASSERT_TRUE(ended.killed) << ended.err;
      rehearsal.judge(folder.path(), reportedBy(ended.out + ended.err));
      rehearsal.complete(folder.path());
      if (HasFailure() && !isLongRun()) return;
    }
  }
}

/// The program that opens the file after a kill is killed too.
TEST_P(Killed, InRecoveryNothingIsHalfDoneOrLost) {
  const Rehearsal rehearsal(workNamed(GetParam()));
  int recoveries = 0;
  for (const std::uint64_t call : sampled(rehearsal.calls(), 2)) {
    const TemporaryFolder left;
    rehearsal.begin(left.path());
    const Ended ended = rehearsal.disturbed(left.path(), killAt(call, false));
    const std::uint64_t reported = reportedBy(ended.out + ended.err);
    if (!std::filesystem::exists(left / kDatabase)) continue;
    const Rehearsal recovery(rehearsal, left.path(), orv({"list", kDatabase}));
    recoveries += recovery.calls() > 0 ? 1 : 0;
    for (const std::uint64_t second : sampled(recovery.calls(), 2)) {
      SCOPED_TRACE("killed after call " + std::to_string(call) + ", and the recovery at call " +
                   std::to_string(second) + " of " + std::to_string(recovery.calls()));
      const TemporaryFolder folder;
      recovery.begin(folder.path());
      ASSERT_TRUE(recovery.disturbed(folder.path(), killAt(second, second % 2 == 0)).killed);
      recovery.judge(folder.path(), reported);
      recovery.complete(folder.path());
      if (HasFailure() && !isLongRun()) return;
    }
  }
  EXPECT_TRUE(recoveries > 0 || rehearsal.work().writesAnew) << "No kill left a recovery to do.";
}

INSTANTIATE_TEST_SUITE_P(Works, Killed, testing::ValuesIn(workNames()),
                         [](const auto& info) { return info.param; });

}  // namespace
}  // namespace orv::test
