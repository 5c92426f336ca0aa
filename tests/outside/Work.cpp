#include "outside/Work.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace orv::test {

namespace fs = std::filesystem;

namespace {

/// The words of a line of works.txt.
Command wordsOf(const std::string& line) {
  std::istringstream stream(line);
  Command words(std::istream_iterator<std::string>(stream), {});
  for (std::string& word : words) {
    if (word.starts_with("examples/")) word = ORV_SOURCE_DIR "/" + word;
    if (word.starts_with("corpus/")) word = (corpusFolder() / word.substr(7)).string();
  }
  return words;
}

void expectSound(const fs::path& folder) {
  const Ended check = run(orv({"check", kDatabase}), {.folder = folder});
  EXPECT_EQ(check.exit, 0) << check.out << check.err;
}

}  // namespace

std::vector<Work> works() {
  std::vector<Work> works;
  bool isName = true;
  std::ifstream file(ORV_SOURCE_DIR "/tests/outside/works.txt");
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("#")) continue;
    const Command words = wordsOf(line);
    if (!words.empty() && isName) {
      works.push_back({.name = words[0], .marks = {words.begin() + 1, words.end()}});
    } else if (!words.empty()) {
      Work& work = works.back();
      if (!work.command.empty()) work.beginning.push_back(work.command);
      work.command = work.completion = orv(words);
    }
    isName = words.empty();
  }
  return works;
}

void prepare(const Work& work, const fs::path& folder) {
  for (const Command& command : work.beginning) {
    const Ended ended = run(command, {.folder = folder});
    if (ended.exit != 0) throw std::runtime_error(work.name + " cannot begin: " + ended.err);
  }
}

std::uint64_t reportedBy(const std::string& printed) {
  static const std::regex bar(R"(\] (\d+)/\d+ )");
  static const std::regex end(R"((\d+) records? (copied|deleted|pasted))");
  if (printed.find("Compact") != std::string::npos) {  // whose bar counts pages
    return printed.find("Compacted ") != std::string::npos ? 1 : 0;
  }
  std::uint64_t reported = printed.find("Made the empty") != std::string::npos ? 1 : 0;
  for (const std::regex* form : {&bar, &end}) {
    for (std::sregex_iterator at(printed.begin(), printed.end(), *form), none; at != none; ++at) {
      reported = std::max<std::uint64_t>(reported, std::stoul((*at)[1]));
    }
  }
  return reported;
}

Rehearsal::Rehearsal(const Work& work) : work_(work) {
  prepare(work_, start_.path());
  before_ = contentOf(start_ / kDatabase);
  rehearse();
  if (difference(before_, after_).empty() != work_.marks.contains("keeps"))
    throw std::runtime_error(work_.name + " does not do what it should");
}

Rehearsal::Rehearsal(const Rehearsal& of, const fs::path& start, const Command& command)
    : work_(of.work_), before_(of.before_) {
  fs::copy(start, start_.path());
  work_.command = command;
  rehearse();
  after_ = of.after_;
}

void Rehearsal::rehearse() {
  const TemporaryFolder folder;
  const TemporaryFolder notes;
  const std::string recording = notes / "recording";
  fs::copy(start_.path(), folder.path());
  disk_.emplace(folder.path());
  std::ofstream(recording).flush();
  const Ended ended =
      run(work_.command, {.folder = folder.path(), .plan = {}, .recording = recording});
  if (ended.exit != 0) throw std::runtime_error(work_.name + " fails undisturbed: " + ended.err);
  calls_ = ended.calls;
  recording_ = readRecording(recording);
  after_ = contentOf(folder / kDatabase);
  // Else the preload library does not know a call that the program makes.
  Disk changed = *disk_;
  for (const Call& call : recording_) changed.apply(call);
  if (changed.left(Disk::Luck::good, 0) != Disk(folder.path()).left(Disk::Luck::good, 0))
    throw std::runtime_error("The recording does not hold all changes of files.");
}

Ended Rehearsal::disturbed(const fs::path& folder, const Plan& plan) const {
  fs::copy(start_.path(), folder);
  return run(work_.command, {.folder = folder, .plan = plan});
}

void Rehearsal::judge(const fs::path& folder, std::uint64_t reported, bool isDone) const {
  testing::Test::RecordProperty("judged", ++judged);
  if (fs::exists(folder / kDatabase)) {
    expectSound(folder);
  } else {
    EXPECT_TRUE(before_.records.empty()) << "The database is gone.";
  }
  const Content left = contentOf(folder / kDatabase);
  std::string faults;
  const std::uint64_t done = progress(before_, after_, left, faults);
  EXPECT_EQ(faults, "") << "These are neither whole nor absent.";
  if (!work_.marks.contains("keeps")) {
    EXPECT_GE(done, reported) << "Something is lost that was reported as done.";
  }
  if (isDone) {
    EXPECT_EQ(difference(after_, left), "") << "It says that all went well.";
  }
  complete(folder, left);
}

void Rehearsal::complete(const fs::path& folder, const Content& left) const {
  Content expected = after_;
  for (const auto& [title, parts] : left.records) {
    if (work_.marks.contains("repeats") && !before_.records.contains(title))
      expected.records[title].insert(parts.begin(), parts.end());
  }
  const Ended ended = run(work_.completion, {.folder = folder});
  EXPECT_GE(ended.exit, 0) << ended.err;
  EXPECT_EQ(difference(expected, contentOf(folder / kDatabase)), "")
      << "This is not what the work comes to when it is done again: " << ended.err;
  expectSound(folder);
}

bool isLongRun() {
  return std::getenv("ORV_LONG_TESTS") != nullptr;
}

std::vector<std::uint64_t> sampled(std::uint64_t last, std::uint64_t count) {
  const std::uint64_t step = isLongRun() || last <= count ? 1 : last / count + 1;
  std::vector<std::uint64_t> numbers;
  for (std::uint64_t number = 1; number <= last; number += step) numbers.push_back(number);
  return numbers;
}

}  // namespace orv::test
