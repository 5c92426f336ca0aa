// Calls that change a file fail: with an input or output error, for want of space, in part.
#include "outside/Work.h"

namespace orv::test {
namespace {

struct Failure {
  const char* name;
  const char* word;
  std::uint64_t count;
};

constexpr std::uint64_t kAllThatFollow = 1'000'000'000;
constexpr Failure kFailures[] = {
    {"an input or output error", kInputOutputError, 1},
    {"two errors", kInputOutputError, 2},
    {"one refusal for want of space", kNoSpace, 1},
    {"a disk that stays full", kNoSpace, kAllThatFollow},
    {"a write in part, then a full disk", kShortWrite, kAllThatFollow}};

class FailingCalls : public WorkTest {
 protected:
  /// All calls; in a short run one for every other failure, which are others in other works.
  static std::vector<std::uint64_t> callsFor(const Failure& failure, std::uint64_t calls) {
    if (isLongRun()) return sampled(calls, calls);
    const auto part = static_cast<std::uint64_t>(&failure - kFailures);
    if ((part + GetParam().name.size()) % 2 != 0) return {};
    return {1 + calls * part / std::size(kFailures)};
  }

  static void tryAt(const Rehearsal& rehearsal, const Failure& failure, std::uint64_t call) {
    SCOPED_TRACE(std::string(failure.name) + " at call " + std::to_string(call) + " of " +
                 std::to_string(rehearsal.calls()));
    const TemporaryFolder folder;
    const Ended ended = rehearsal.disturbed(folder.path(), {failure.word, call, failure.count});
    SCOPED_TRACE("it printed: " + ended.out + ended.err);
    ASSERT_GE(ended.exit, 0) << "It crashed.";
    if (ended.exit != 0) {
      EXPECT_NE(ended.err.find(kDatabase), std::string::npos) << "It does not name the file.";
    }
    // The summary, not the progress display, which counts records that failed too.
    rehearsal.judge(folder.path(), reportedBy(ended.out), ended.exit == 0);
  }
};

TEST_P(FailingCalls, AreToldAndLeaveNothingHalfDone) {
  const Rehearsal rehearsal(GetParam());
  for (const Failure& failure : kFailures) {
    for (const std::uint64_t call : callsFor(failure, rehearsal.calls())) {
      tryAt(rehearsal, failure, call);
      if (HasFailure() && !isLongRun()) return;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Works, FailingCalls, testing::ValuesIn(works()),
                         testing::PrintToStringParamName());

}  // namespace
}  // namespace orv::test
