#include "outside/Work.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>
#include <regex>
#include <stdexcept>

#include "support/Corpus.h"
#include "support/ReadFile.h"

namespace orv::test {

namespace fs = std::filesystem;

namespace {

fs::path examples() {
  return fs::path(ORV_SOURCE_DIR) / "examples";
}

/// A folder with some of the examples.
fs::path makeFolder(const fs::path& path, const fs::path& from,
                    const std::vector<const char*>& names) {
  fs::create_directory(path);
  for (const char* name : names) fs::copy_file(from / name, path / name);
  return path;
}

Command copyOf(std::vector<std::string> sources, std::vector<std::string> more) {
  std::vector<std::string> arguments = {"copy"};
  arguments.insert(arguments.end(), sources.begin(), sources.end());
  arguments.emplace_back(kDatabase);
  arguments.insert(arguments.end(), more.begin(), more.end());
  arguments.insert(arguments.end(), {"--group", "Tried"});
  return orv(arguments);
}

std::string foreignDatabase() {
  return (corpusFolder() / "sources" / "orvdata-3.0.0.mdb").string();
}

/// Raises when the recorded calls do not explain what is in the folder: then the preload library
/// does not know a call that the program makes.
void expectWholeRecording(Disk disk, const std::vector<Call>& recording, const fs::path& folder) {
  const TemporaryFolder replayed;
  for (const Call& call : recording) disk.apply(call);
  disk.leaveIn(replayed.path(), Disk::Luck::good, 0);
  const auto filesIn = [&](const fs::path& path) {
    std::map<std::string, std::string> files;
    for (const fs::directory_entry& entry : fs::directory_iterator(path)) {
      files[entry.path().filename().string()] = readFile(entry.path());
    }
    return files;
  };
  if (filesIn(replayed.path()) != filesIn(folder)) {
    throw std::runtime_error("The recording does not hold all changes of files.");
  }
}

struct Entry {
  const char* name;
  bool needsCorpus;
  Work (*make)();
};

Work withOneCommand(std::function<void(const fs::path&)> prepare, Command command) {
  Work work;
  work.prepare = std::move(prepare);
  work.command = work.completion = std::move(command);
  return work;
}

Work writtenAnew(Work work) {
  work.writesAnew = true;
  return work;
}

const Entry kEntries[] = {
    // Panes with spectra of different lengths, one with a substrate that is read besides.
    {"copyOfTexts", false,
     [] {
       return withOneCommand(prepareDatabase, copyOf({(sourceFolder() / "panes").string()}, {}));
     }},
    // A pane with three angles, one without a spectrum, and two others.
    {"copyOfPanes", true,
     [] {
       return withOneCommand(prepareDatabase, copyOf({foreignDatabase()}, {"3", "4", "5", "6"}));
     }},
    // Frames; one has a picture over several pages.
    {"copyOfFrames", true,
     [] {
       return withOneCommand(prepareDatabase, copyOf({foreignDatabase()}, {"--set", "frames"}));
     }},
    {"copyOfShadings", false,
     [] {
       Work work =
           withOneCommand(prepareDatabase, copyOf({(sourceFolder() / "shadings").string()}, {}));
       work.repeats = true;
       return work;
     }},
    {"deletion", false,
     [] {
       return withOneCommand(
           [](const fs::path& folder) {
             prepareDatabase(folder);
             mustRun(folder, copyOf({(sourceFolder() / "panes").string()}, {}));
           },
           orv({"delete", kDatabase, "2", "3", "5", "--yes"}));
     }},
    {"newDatabase", false,
     [] {
       return writtenAnew(withOneCommand([](const fs::path&) {}, orv({"new", kDatabase})));
     }},
    {"compact", false,
     [] {
       return writtenAnew(withOneCommand(
           [](const fs::path& folder) {
             prepareDatabase(folder);
             fs::rename(folder / kDatabase, folder / "large.mdb");
           },
           orv({"compact", "large.mdb", kDatabase})));
     }},
    {"compactInPlace", false,
     [] {
       Work work =
           writtenAnew(withOneCommand(prepareDatabase, orv({"compact", kDatabase, "--in-place"})));
       work.keepsContent = true;
       return work;
     }},
};

}  // namespace

std::vector<std::string> workNames() {
  std::vector<std::string> names;
  for (const Entry& entry : kEntries) names.emplace_back(entry.name);
  return names;
}

Work workNamed(const std::string& name) {
  const auto* entry =
      std::ranges::find_if(kEntries, [&](const Entry& each) { return each.name == name; });
  Work work = entry->make();
  work.name = name;
  return work;
}

bool needsCorpus(const std::string& workName) {
  return std::ranges::any_of(
      kEntries, [&](const Entry& entry) { return entry.name == workName && entry.needsCorpus; });
}

fs::path sourceFolder() {
  static const TemporaryFolder folder;
  static const bool isMade = [] {
    makeFolder(folder / "two", examples() / "panes", {"clear_6.txt", "grey_6.txt"});
    makeFolder(
        folder / "panes", examples() / "panes",
        {"clear_4.txt", "film_mist.txt", "lowe_4.txt", "lowe_4_infrared.txt", "ripple_4.txt"});
    makeFolder(folder / "shadings", examples() / "shadings",
               {"screen_5.txt", "venetian_25.txt", "vertical_89.txt"});
    return true;
  }();
  return isMade ? folder.path() : fs::path();
}

void mustRun(const fs::path& folder, const Command& command) {
  const Ended ended = run(command, {.folder = folder});
  if (ended.exit != 0) {
    std::string text = command.program.string();
    for (const std::string& argument : command.arguments) text += " " + argument;
    throw std::runtime_error(text + " ended with " + std::to_string(ended.exit) + ": " + ended.err);
  }
}

void prepareDatabase(const fs::path& folder) {
  static const TemporaryFolder made;
  static const bool isMade = [] {
    mustRun(made.path(), orv({"new", kDatabase}));
    mustRun(made.path(),
            orv({"copy", (sourceFolder() / "two").string(), kDatabase, "--group", "There"}));
    return true;
  }();
  if (isMade) fs::copy_file(made / kDatabase, folder / kDatabase);
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

Rehearsal::Rehearsal(Work work) : work_(std::move(work)) {
  work_.prepare(start_.path());
  before_ = contentOf(start_ / kDatabase);
  rehearse();
  if (difference(before_, after_).empty() != work_.keepsContent)
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
  const std::string recording = notes_ / "recording";
  begin(folder.path());
  disk_ = std::make_unique<Disk>(folder.path());
  std::ofstream(recording).flush();
  const Ended ended =
      run(work_.command, {.folder = folder.path(), .plan = {}, .recording = recording});
  if (ended.exit != 0) throw std::runtime_error(work_.name + " fails undisturbed: " + ended.err);
  calls_ = ended.calls;
  recording_ = readRecording(recording);
  after_ = contentOf(folder / kDatabase);
  expectWholeRecording(*disk_, recording_, folder.path());
}

void Rehearsal::begin(const fs::path& folder) const {
  fs::copy(start_.path(), folder);
}

Ended Rehearsal::disturbed(const fs::path& folder, const Plan& plan) const {
  return run(work_.command, {.folder = folder, .plan = plan});
}

namespace {

/// Notes in the test's record how many folders were judged in it.
void countJudged() {
  static const testing::TestInfo* counting = nullptr;
  static int judged = 0;
  const testing::TestInfo* current = testing::UnitTest::GetInstance()->current_test_info();
  if (counting != current) judged = 0;
  counting = current;
  testing::Test::RecordProperty("judged", ++judged);
}

}  // namespace

std::uint64_t Rehearsal::judge(const fs::path& folder, std::uint64_t reported) const {
  countJudged();
  const bool isThere = fs::exists(folder / kDatabase);
  if (isThere) {
    const Ended check = run(orv({"check", kDatabase}), {.folder = folder});
    EXPECT_EQ(check.exit, 0) << check.out << check.err;
  } else {
    EXPECT_TRUE(before_.records.empty()) << "The database is gone.";
  }
  std::string faults;
  const std::uint64_t done = progress(before_, after_, contentOf(folder / kDatabase), faults);
  EXPECT_EQ(faults, "") << "These are neither whole nor absent.";
  if (!work_.keepsContent) {
    EXPECT_GE(done, reported) << "Something is lost that was reported as done.";
  }
  return done;
}

void Rehearsal::complete(const fs::path& folder) const {
  Content expected = after_;
  if (work_.repeats) {
    const Content already = contentOf(folder / kDatabase);
    for (const auto& [title, parts] : already.records) {
      const auto first = before_.records.find(title);
      if (first == before_.records.end())
        expected.records[title].insert(parts.begin(), parts.end());
    }
  }
  const Ended ended = run(work_.completion, {.folder = folder});
  EXPECT_GE(ended.exit, 0) << ended.err;
  EXPECT_EQ(difference(expected, contentOf(folder / kDatabase)), "")
      << "This is not what the work comes to when it is done again: " << ended.err;
  const Ended check = run(orv({"check", kDatabase}), {.folder = folder});
  EXPECT_EQ(check.exit, 0) << check.out << check.err;
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
