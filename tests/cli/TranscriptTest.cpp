// Calls of the program with all that they write, as the files of `transcripts` show them.
//
// Behind "$ " stands a line for the shell. Its folder has a database db.mdb, the files a.txt and
// b.txt of the panes in it, the examples, and of the databases full.mdb, old.mdb (of
// version 2.0.1), few.mdb (of that version without the tables of shadings' data), glazing.mdb,
// optics5.mdb, secret.mdb (with the password "Sesame 7"), linked.mdb and front.mdb (with linked
// tables) and access97.mdb those that the transcript names. Below it stand the standard output, the
// standard error with "! " before each line, and the exit status in brackets, where it is not 0;
// "FOLDER" stands for the folder.
#include <algorithm>
#include <sstream>

#include "cli/CliTest.h"
#include "store/Jet3File.h"
#include "store/jet/catalog/CatalogWriter.h"
#include "support/EncodedFile.h"

namespace orv::test {
namespace {

const std::filesystem::path kTranscripts = ORV_SOURCE_DIR "/tests/cli/transcripts";

std::vector<std::string> filesWith(const std::string& extension) {
  std::vector<std::string> names;
  for (const auto& file : std::filesystem::directory_iterator(kTranscripts)) {
    if (file.path().extension() == extension) names.push_back(file.path().stem().string());
  }
  return names;
}

/// Adds a table to the catalogue whose rows are in another database, or in none that has a name.
void link(const store::Connection& connection, const char* name, const char* database) {
  const auto objects = connection.database().table("MSysObjects");
  objects->insert(store::jet::systemRow(
      *objects, {{"Id", -2147483000 - static_cast<int>(std::string(name).size())},
                 {"ParentId", store::jet::kTablesContainer},
                 {"Name", name},
                 {"Type", 6},
                 {"Flags", 2097152},
                 {"Database", database},
                 {"ForeignName", "Origin"}}));
}

class TranscriptTest : public CliTest, public ::testing::WithParamInterface<std::string> {
 protected:
  void SetUp() override {
    setenv("LC_ALL", "C", 1);
    std::filesystem::create_directory_symlink(ORV_SOURCE_DIR "/examples",
                                              folder.path() / "examples");
    makeDatabase();
  }

  /// Makes the databases that a text names, but for db.mdb.
  void makeSources(const std::string& text) const {
    const auto isNamed = [&](const char* name) { return text.find(name) != std::string::npos; };
    if (isNamed("full.mdb") || isNamed("old.mdb")) {
      const auto full = makeFullDatabase(folder / "full.mdb");
      makeVersion2Of(*full, folder / "old.mdb");
      const NewNames missing{{"Shading_spectral_data", ""}, {"Shading_integrated_data_temp", ""}};
      if (isNamed("few.mdb")) makeVersion2Of(*full, folder / "few.mdb", missing);
    }
    if (isNamed("secret.mdb")) {
      std::filesystem::copy_file(folder / "db.mdb", folder / "secret.mdb");
      setPassword(folder / "secret.mdb", "Sesame 7");
    }
    if (isNamed("optics5.mdb")) makeGlazingDatabase(folder / "optics5.mdb");
    if (isNamed("glazing.mdb")) {
      makeGlazingDatabase(folder / "glazing.mdb");
      setPassword(folder / "glazing.mdb", commands::kIgdbPassword);
    }
    if (isNamed("access97.mdb")) folder.write("access97.mdb", jet3File(jet3Sample()));
    if (isNamed("linked.mdb")) {
      const auto dc = database::CreateEmptyDatabase(folder / "linked.mdb");
      link(*dc, "Remarks", "C:\\data\\shared.mdb");
      link(*dc, "Ledger", "");
    }
    if (isNamed("front.mdb")) {
      link(*store::Connection::create(folder / "front.mdb"), "ORVdata_version", "back.mdb");
    }
  }

  /// What a line of the shell gives, as a transcript has it.
  std::string given(const std::string& line) {
    const Ended run = shell(line);
    std::string text = run.out;
    std::istringstream errors(run.err);
    for (std::string error; std::getline(errors, error);) text += "! " + error + "\n";
    if (run.exit != 0) text += "[" + std::to_string(run.exit) + "]\n";
    return folder.hiddenIn(text);
  }
};

TEST_P(TranscriptTest, IsWhatTheProgramWrites) {
  const std::string shown = readFile(kTranscripts / (GetParam() + ".txt"));
  makeSources(shown);
  std::istringstream lines(shown);
  std::string written;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("$ ")) written += line + "\n" + given(line.substr(2));
  }
  EXPECT_EQ(written, shown);
}

INSTANTIATE_TEST_SUITE_P(All, TranscriptTest, ::testing::ValuesIn(filesWith(".txt")),
                         [](const auto& info) { return info.param; });

/// Each line has arguments, the exit status, and the error without the advice of the library.
class RefusalTest : public TranscriptTest {};

TEST_P(RefusalTest, IsToldAndNothingIsWritten) {
  const std::string shown = readFile(kTranscripts / (GetParam() + ".tsv"));
  makeSources(shown);
  std::istringstream lines(shown);
  for (std::string line; std::getline(lines, line);) {
    const std::string arguments = line.substr(0, line.find('\t'));
    Ended run = orv(arguments);
    if (const auto advice = run.err.find("Run with --help"); advice != std::string::npos) {
      run.err.resize(advice);
    }
    std::ranges::replace(run.err, '\n', ' ');
    EXPECT_EQ(fmt::format("{}\t{}\t{}", arguments, run.exit, folder.hiddenIn(run.err)), line + " ");
    EXPECT_EQ(run.out, "") << arguments;
  }
}

INSTANTIATE_TEST_SUITE_P(All, RefusalTest, ::testing::ValuesIn(filesWith(".tsv")),
                         [](const auto& info) { return info.param; });

}  // namespace
}  // namespace orv::test
