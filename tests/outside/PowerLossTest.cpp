// The power goes: from a recording of a program's calls, folders as a disk may hold them.
#include <numeric>

#include "outside/Work.h"

namespace orv::test {
namespace {

constexpr std::uint32_t kSeeds = 8;  ///< outcomes of each loss in a long run

using PowerLoss = WorkTest;

Disk::Luck luckOf(std::uint32_t seed) {
  return seed % kSeeds == 0   ? Disk::Luck::bad
         : seed % kSeeds == 1 ? Disk::Luck::good
                              : Disk::Luck::mixed;
}

std::vector<std::uint32_t> seedsAt(std::uint64_t call) {
  const auto number = static_cast<std::uint32_t>(call);
  if (!isLongRun()) return {number + number / kSeeds};
  std::vector<std::uint32_t> seeds(kSeeds);
  std::iota(seeds.begin(), seeds.end(), number * kSeeds);
  return seeds;
}

/// The disk after so many counted calls, and what was printed until the next one.
std::pair<Disk, std::string> after(const Rehearsal& rehearsal, std::uint64_t calls) {
  Disk disk = rehearsal.disk();
  std::string printed;
  for (const Call& call : rehearsal.recording()) {
    if (call.kind == CallKind::report) {
      printed += call.data;
    } else if (calls-- == 0) {
      break;
    } else {
      disk.apply(call);
    }
  }
  return {disk, printed};
}

/// The recovery from a loss, cut short by another.
void loseAgain(const Rehearsal& rehearsal, const std::filesystem::path& left,
               std::uint64_t reported, std::uint32_t seed) {
  const Rehearsal recovery(rehearsal, left, orv({"list", kDatabase}));
  for (const std::uint64_t call : sampled(recovery.calls(), 2)) {
    SCOPED_TRACE("again in the recovery after call " + std::to_string(call) + " of " +
                 std::to_string(recovery.calls()));
    const TemporaryFolder folder;
    after(recovery, call).first.leaveIn(folder.path(), luckOf(seed + 2), seed);
    recovery.judge(folder.path(), reported);
  }
}

TEST_P(PowerLoss, LeavesNothingHalfDoneAndAllThatWasReported) {
  const Rehearsal rehearsal(GetParam());
  for (const std::uint64_t call : sampled(rehearsal.calls(), 3)) {
    for (const std::uint32_t seed : seedsAt(call)) {
      SCOPED_TRACE("the power goes after call " + std::to_string(call) + " of " +
                   std::to_string(rehearsal.calls()) + ", seed " + std::to_string(seed));
      const auto [disk, printed] = after(rehearsal, call);
      const TemporaryFolder folder;
      disk.leaveIn(folder.path(), luckOf(seed), seed);
      const std::uint64_t reported = reportedBy(printed);
      const bool again = std::filesystem::exists(folder / kDatabase) && seed % 4 == 2;
      if (again) loseAgain(rehearsal, folder.path(), reported, seed);
      rehearsal.judge(folder.path(), reported);
      if (HasFailure() && !isLongRun()) return;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Works, PowerLoss, testing::ValuesIn(works()),
                         testing::PrintToStringParamName());

}  // namespace
}  // namespace orv::test
