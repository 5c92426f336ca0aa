// Calls that change a file fail: with an input or output error, for want of space, in part.
#include <gtest/gtest.h>

#include "outside/FileCall.h"
#include "outside/Work.h"
#include "support/Corpus.h"

namespace orv::test {
namespace {

struct Failure {
  const char* name;
  const char* word;
  std::uint64_t count;
  std::uint64_t offset;  ///< of the calls of the sample, so that each failure has its own
};

constexpr std::uint64_t kAllThatFollow = 1'000'000'000;
constexpr Failure kFailures[] = {
    {"an input or output error", kInputOutputError, 1, 0},
    {"two errors", kInputOutputError, 2, 1},
    {"one refusal for want of space", kNoSpace, 1, 2},
    {"a disk that stays full", kNoSpace, kAllThatFollow, 3},
    {"a write in part, then a full disk", kShortWrite, kAllThatFollow, 4}};

class FailingCalls : public testing::TestWithParam<std::string> {
 protected:
  void SetUp() override {
    if (needsCorpus(GetParam())) ORV_NEEDS_CORPUS();
  }

  static void tryAt(const Rehearsal& rehearsal, const Failure& failure, std::uint64_t call) {
    SCOPED_TRACE(std::string(failure.name) + " at call " + std::to_string(call) + " of " +
                 std::to_string(rehearsal.calls()));
    const TemporaryFolder folder;
    rehearsal.begin(folder.path());
    const Ended ended = rehearsal.disturbed(folder.path(), {failure.word, call, failure.count});
    SCOPED_TRACE("it printed: " + ended.out + ended.err);
    ASSERT_GE(ended.exit, 0) << "It crashed.";
    // The summary, not the progress display, which counts records that failed too.
    rehearsal.judge(folder.path(), reportedBy(ended.out));
    if (ended.exit == 0) {
      EXPECT_EQ(difference(rehearsal.after(), contentOf(folder / kDatabase)), "")
          << "It says that all went well.";
    } else {
      EXPECT_NE(ended.err.find(kDatabase), std::string::npos) << "It does not name the file.";
    }
    rehearsal.complete(folder.path());
  }
};

TEST_P(FailingCalls, AreToldAndLeaveNothingHalfDone) {
  const Rehearsal rehearsal(workNamed(GetParam()));
  for (const Failure& failure : kFailures) {
    for (const std::uint64_t number : sampled(rehearsal.calls(), 2)) {
      const std::uint64_t call = isLongRun() ? number : number + failure.offset;
      if (call <= rehearsal.calls()) tryAt(rehearsal, failure, call);
      if (HasFailure() && !isLongRun()) return;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Works, FailingCalls, testing::ValuesIn(workNames()),
                         [](const auto& info) { return info.param; });

}  // namespace
}  // namespace orv::test
