// Files of Jet 3 are read as they are, and converted hold what they did.

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <regex>

#include "model/Raised.h"
#include "store/Check.h"
#include "store/Compact.h"
#include "store/FileContent.h"
#include "store/Jet3File.h"
#include "store/StoreError.h"
#include "store/jet/catalog/SavedQuery.h"
#include "support/Corpus.h"
#include "support/ReadFile.h"
#include "support/TemporaryFolder.h"

namespace orv::test {
namespace {

namespace fs = std::filesystem;
using namespace store;

constexpr const char* kNow = "\\|20[2-9].-[^|]*";

/// All that a file says of itself, but for its header and times of this test.
std::string wholeOf(const std::string& file, const std::string& password = "") {
  std::string text = textOf(expectSound(file, password));
  for (const auto& [subject, lines] : contentOf(file, password)) {
    const bool isList = subject.ends_with(" numbers") || subject.find(" index ") != subject.npos;
    if (subject == "header") continue;
    text += fmt::format("{}:{}{}\n", subject, isList ? " " : "\n  ",
                        fmt::join(lines, isList ? " " : "\n  "));
  }
  const auto database = jet::Database::open(file, password);
  for (const jet::CatalogEntry& entry : std::vector(database->entries())) {
    if (entry.kind != jet::CatalogEntry::Kind::query) continue;
    text += jet::SavedQuery(entry.name, database->queryParts(entry)).sql() + '\n';
  }
  return std::regex_replace(text, std::regex(kNow), "|now");
}

/// The lines of content.txt with a mark: what is said or held where that mark stands for.
std::string expected(char mark) {
  std::string text;
  std::ifstream in(ORV_SOURCE_DIR "/tests/store/jet3/content.txt");
  for (std::string line; std::getline(in, line);) {
    const bool isBoth = line[0] == ' ' && (mark == '-' || mark == '+');
    if (isBoth || line[0] == mark) text += line.substr(1) + '\n';
  }
  return text;
}

/// What a user may know of a file.
Content usersContent(const fs::path& file) {
  Content content = contentOf(file);
  std::erase_if(content, [](const auto& entry) {
    const std::string& subject = entry.first;
    return subject == "header" || subject.starts_with("MSys") || subject.ends_with(" numbers") ||
           subject.find(" index ") != std::string::npos;
  });
  return content;
}

class Conversion : public testing::Test {
 protected:
  void write(const std::vector<Jet3Table>& tables, const Jet3Header& header = {}) {
    std::ofstream(old_, std::ios::binary) << jet3File(tables, header);
  }
  /// What is said of losses where they are refused, and then where they are accepted.
  std::string told(const std::string& password = "") {
    fs::remove(new_);
    const Raised raised = raisedBy([&] { convertFile(old_, password, new_, Losses::refuse); });
    EXPECT_FALSE(raised.number == kNotSupported && fs::exists(new_));
    fs::remove(new_);
    std::string text =
        raised.number == 0 ? "" : fmt::format("{}: {}\n", raised.number, raised.description);
    std::string progress;
    text += textOf(convertFile(
        old_, password, new_, Losses::accept,
        [&](std::size_t done, std::size_t all) { progress += fmt::format(" {}/{}", done, all); }));
    text += progress + '\n';
    return std::regex_replace(text, std::regex("/[^ ]*/"), "");
  }

  const TemporaryFolder folder_;
  const std::string old_ = folder_ / "old.mdb";
  const std::string new_ = folder_ / "new.mdb";
};

TEST_F(Conversion, KeepsAllThatTheSampleHolds) {
  write(jet3Sample());
  EXPECT_EQ(told(), expected('!'));
  EXPECT_EQ(wholeOf(old_), expected('-'));
  EXPECT_EQ(wholeOf(new_), expected('+'));
  expectBytes(new_, 0xbf7477ca8d05fd0);
}

TEST_F(Conversion, NamesTheIndexesAndRelationsThatCannotBeKept) {
  std::vector<Jet3Table> tables = jet3Sample();
  for (Jet3Table& table : tables) {
    for (Jet3Column& column : table.columns) {
      if (table.name == "Makers" || column.name == "Maker") column.language = 0x40c;  // French
    }
  }
  std::string text;
  const auto convert = [&] {
    write(tables, {.language = 0x407});
    text += told();
    const Content content = contentOf(new_);
    for (const char* subject : {"Makers indexes", "Panes indexes", "relation MakersPanes"}) {
      text += fmt::format("{}\n", fmt::join(content.at(subject), "\n"));
    }
    EXPECT_EQ(content.at("Panes rows"), contentOf(old_).at("Panes rows"));
  };
  convert();
  // One in the middle, and a relation with a table that is not converted.
  for (const std::size_t table : {5, 6}) {
    for (Jet3Column& column : tables[table].columns) column.language = 0x409;
  }
  tables[6].columns[0].language = 0x40c;
  tables[6].columns[2].language = 0x40c;
  convert();
  tables[6].indexes[3].relation[5] = 6;
  convert();
  EXPECT_EQ(text, expected('F'));
}

/// What users of a workgroup own and may do, objects without an owner, what the database itself
/// has.
TEST_F(Conversion, TellsWhatIsOfAWorkgroup) {
  std::string text;
  const std::string user(80, 'Z');
  const auto convert = [&](const auto& change) {
    std::vector<Jet3Table> tables = jet3Sample();
    std::erase_if(tables[0].rows, [](const auto& row) { return row[2] == "Entry"; });
    change(tables);
    write(tables);
    text += told();
    Content content = contentOf(new_);
    for (const char* table : {"MSysObjects", "MSysACEs", "MSysQueries"}) {
      const auto& rows = content.at(fmt::format("{} rows", table));
      const std::string all = fmt::format("{}", fmt::join(rows, "\n"));
      text += fmt::format("{}: {} {:x}\n", table, rows.size(),
                          sumOf(std::regex_replace(all, std::regex(kNow), "|now")));
    }
  };
  convert([&](auto& tables) {
    tables[0].rows[9][6] = user;
    tables[0].rows[10][6].reset();
    tables[1].rows.pop_back();
  });
  convert([&](auto& tables) {
    for (auto& row : tables[0].rows) row[6]->resize(2);
    tables[0].rows[12][6].reset();
    std::erase_if(tables[1].rows, [&](const auto& row) { return row[1] == user; });
    tables[1].rows[0][0].reset();
    tables[1].rows[1][1].reset();
  });
  convert([&](auto& tables) {
    std::erase_if(tables[0].rows, [](const auto& row) { return row[2] == "MSysDb"; });
    tables[2].columns[6].type = 4;
    for (auto& row : tables[2].rows) *row[6] += std::string(2, '\0');
  });
  convert([&](auto& tables) { tables[0].columns[14].name = "Other"; });
  EXPECT_EQ(text, expected('W'));
}

TEST_F(Conversion, ReadsTheCodePageThePasswordAndTheKey) {
  for (const auto& [codePage, password, text] :
       {std::tuple(1252U, "Tür zu 97, immer zu", "café|€ 5"),
        std::tuple(1251U, "Tьr zu 97, immer zu", "cafй|Ђ 5"),
        std::tuple(1253U, "Tόr zu 97, immer zu", "cafι|€ 5"),
        std::tuple(0U, "Tür zu 97, immer zu", "café|€ 5")}) {
    write(jet3Sample(), {codePage, 0x409, "T\xfcr zu 97, immer zu", 0x1badcafe});
    told(password);
    for (const std::string& file : {old_, new_}) {
      EXPECT_EQ(raisedBy([&] { contentOf(file); }).number, kNotAuthenticated);
      EXPECT_NE(contentOf(file, password).at("Types rows")[0].find(text), std::string::npos);
      EXPECT_EQ(readFile(file).find("Glas"), std::string::npos);
    }
  }
  write(jet3Sample(), {.codePage = 12345});
  EXPECT_EQ(raisedBy([&] { contentOf(old_); }).description,
            "The text of the file is in code page 12345, which is not known here.");
}

/// A row of more than 256 bytes needs a table of jumps, of more than 512 one of two entries.
TEST_F(Conversion, ReadsRowsOfAllLengthsAboutThoseThatNeedJumps) {
  std::vector<Jet3Table> tables = jet3Sample();
  Jet3Table& makers = *std::ranges::find(tables, "Makers", &Jet3Table::name);
  makers.indexes.clear();
  makers.rows.clear();
  for (std::size_t i = 0; i < 3; ++i) makers.columns[i].size = 255;
  std::vector<std::string> expected;
  for (std::size_t size : {225, 480}) {
    for (const std::size_t end = size + 30; size < end; ++size) {
      const std::size_t first = size / 3 - size % 7, second = size / 3;
      const std::string parts[] = {std::string(first, 'a'), std::string(second, 'b'),
                                   std::string(size - first - second, 'c')};
      makers.rows.push_back({parts[0], parts[1], parts[2], std::string("\7\0\0\0", 4)});
      expected.push_back(fmt::format("{}|{}|{}|7|", parts[0], parts[1], parts[2]));
    }
  }
  write(tables);
  told();
  for (const std::string& file : {old_, new_}) {
    EXPECT_EQ(contentOf(file).at("Makers rows"), expected);
  }
}

TEST_F(Conversion, CountsCharactersThatTheCodePageDoesNotHave) {
  std::vector<Jet3Table> tables = jet3Sample();
  tables[7].rows[0][9] = "\xd2";
  tables[7].rows[2][9] = "\xd2 and \xaa";
  tables[7].rows[2][12] = "\xd2";
  std::erase_if(tables[0].rows, [](const auto& row) { return row[2] == "Entry"; });
  for (auto& row : tables[0].rows) row[6] = row[6]->substr(0, 2);
  write(tables, {.codePage = 1253});
  EXPECT_EQ(told(), expected('G'));
}

TEST_F(Conversion, IsForSoundFilesOfJet3Only) {
  const std::string other = folder_ / "other.mdb";
  write(jet3Sample());
  told();
  std::string content = readFile(old_);
  std::string said;
  const auto add = [&](const Raised& raised) {
    said += fmt::format("{}: {}\n", raised.number, raised.description);
  };
  add(raisedBy([&] { convertFile(new_, "", other, Losses::accept); }));
  add(raisedBy([&] { convertFile(old_, "", new_, Losses::accept); }));
  add(raisedBy([&] { compactFile(old_, "", other); }));
  add(raisedBy([&] { repairFile(old_, "", other); }));
  content[8 * 2048] = 7;  // no definition of a table
  std::ofstream(old_, std::ios::binary) << content;
  add(raisedBy([&] { convertFile(old_, "", other, Losses::accept); }));
  EXPECT_EQ(std::regex_replace(said, std::regex("/[^ ]*/"), ""), expected('X'));
}

/// A byte of each page changed: of those that say what it is and has, of any, of the last ones,
/// where rows end.
TEST_F(Conversion, TellsEachDamage) {
  const std::string content = jet3File(jet3Sample());
  std::mt19937 random(97);
  std::string told;
  for (std::size_t i = 3; i < 3 * content.size() / 2048; ++i) {
    const std::size_t page = i / 3;
    const std::size_t at = i % 3 == 0   ? random() % (page < 12 ? 300 : 30)
                           : i % 3 == 1 ? random() % 2048
                                        : 2047 - random() % 300;
    std::string damaged = content;
    damaged[page * 2048 + at] ^= static_cast<char>(1 + random() % 255);
    std::ofstream(old_, std::ios::binary) << damaged;
    told += textOf(checkFile(old_, ""));
    const auto read = [&] {
      told += std::to_string(sumOf(describe(*jet::Database::open(old_, ""))));
    };
    told += std::regex_replace(raisedBy(read).description, std::regex("/[^ ]*/"), "") + '\n';
  }
  EXPECT_EQ(sumOf(told), 0x5bd780de70e69b0eu) << told;
}

TEST_F(Conversion, KeepsAllThatFilesOfAccess97Hold) {
  ORV_NEEDS_CORPUS();
  std::vector<fs::path> files = corpusFiles("access");
  std::erase_if(files, [](const fs::path& file) { return !file.string().ends_with("V1997.mdb"); });
  files.push_back(corpusFolder() / "foreign" / "nwind.mdb");
  for (const fs::path& file : files) {
    const std::string target = folder_ / file.filename().string();
    const CompactReport report = convertFile(file.string(), "", target, Losses::accept);
    EXPECT_EQ(report.sizeAfter, fs::file_size(target));
    EXPECT_EQ(report.lost.size(), file.stem() == "nwind" ? 44U : 0U) << file;
    EXPECT_EQ(expectSound(target).remarkCount, 0u) << file;
    EXPECT_EQ(difference(usersContent(file), usersContent(target)), "") << file;
  }
}

}  // namespace
}  // namespace orv::test
