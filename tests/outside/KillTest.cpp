// The programs are killed at calls that change a file.
#include "outside/Work.h"

namespace orv::test {
namespace {

using Killed = WorkTest;

Plan killAt(std::uint64_t call, bool before) {
  return {.word = before ? kKillBefore : kKillAfter, .first = call};
}

/// Whether to kill before the call, after it, or each in its turn.
std::vector<bool> momentsAt(std::uint64_t call) {
  return isLongRun() ? std::vector{true, false} : std::vector{call % 4 < 2};
}

TEST_P(Killed, AtACallNothingIsHalfDoneOrLost) {
  const Rehearsal rehearsal(GetParam());
  ASSERT_GT(rehearsal.calls(), 0U);
  for (const std::uint64_t call : sampled(rehearsal.calls(), 3)) {
    for (const bool before : momentsAt(call)) {
      SCOPED_TRACE(std::string("killed ") + (before ? "before" : "after") + " call " +
                   std::to_string(call) + " of " + std::to_string(rehearsal.calls()));
      const TemporaryFolder folder;
      const Ended ended = rehearsal.disturbed(folder.path(), killAt(call, before));
      ASSERT_TRUE(ended.killed) << ended.err;
      rehearsal.judge(folder.path(), reportedBy(ended.out + ended.err));
      if (HasFailure() && !isLongRun()) return;
    }
  }
}

/// The program that opens the file after a kill is killed too.
TEST_P(Killed, InRecoveryNothingIsHalfDoneOrLost) {
  const Rehearsal rehearsal(GetParam());
  int recoveries = 0;
  for (const std::uint64_t call : sampled(rehearsal.calls(), 2)) {
    const TemporaryFolder left;
    const Ended ended = rehearsal.disturbed(left.path(), killAt(call, false));
    const std::uint64_t reported = reportedBy(ended.out + ended.err);
    if (!std::filesystem::exists(left / kDatabase)) continue;
    const Rehearsal recovery(rehearsal, left.path(), orv({"list", kDatabase}));
    recoveries += recovery.calls() > 0 ? 1 : 0;
    for (const std::uint64_t second : sampled(recovery.calls(), 2)) {
      SCOPED_TRACE("killed after call " + std::to_string(call) + ", and the recovery at call " +
                   std::to_string(second) + " of " + std::to_string(recovery.calls()));
      const TemporaryFolder folder;
      ASSERT_TRUE(recovery.disturbed(folder.path(), killAt(second, second % 2 == 0)).killed);
      recovery.judge(folder.path(), reported);
      if (HasFailure() && !isLongRun()) return;
    }
  }
  EXPECT_TRUE(recoveries > 0 || GetParam().marks.contains("anew"))
      << "No kill left a recovery to do.";
}

INSTANTIATE_TEST_SUITE_P(Works, Killed, testing::ValuesIn(works()),
                         testing::PrintToStringParamName());

}  // namespace
}  // namespace orv::test
