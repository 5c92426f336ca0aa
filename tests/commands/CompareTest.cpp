// The differences of two sources: which records belong together, and what is told of them.
#include "commands/CommandsTest.h"
#include "commands/CompactDatabase.h"
#include "commands/ExportRecords.h"
#include "commands/IgdbPassword.h"
#include "commands/compare/Compare.h"
#include "commands/compare/CopyChanges.h"
#include "model/Raised.h"
#include "support/CaseFile.h"
#include "support/EncodedFile.h"

namespace orv::test {
namespace {

using commands::RecordKind;
using commands::compare::CompareOptions;
using commands::compare::Comparison;
using commands::compare::Match;
using Lines = std::vector<std::string>;

/// "a|b" as a list.
Lines partsOf(const std::string& text) {
  Lines list;
  std::istringstream parts(text);
  for (std::string each; std::getline(parts, each, '|');) list.push_back(each);
  return list;
}

class CompareTest : public CommandsTest {
 protected:
  CompareTest() { begin(); }

  void begin() {
    ++databases;
    a = newDatabase(fmt::format("a{}.mdb", databases));
    b = newDatabase(fmt::format("b{}.mdb", databases));
  }

  /// "state set id_a id_b name angle field a b", parted by "|".
  Lines compare(const Node& a, const Node& b, const CompareOptions& options = {}) {
    result = commands::compare::compareSources(session, a, b, options);
    Lines lines;
    for (const auto& each : result.differences) {
      const auto& pair = result.pairs[each.pair];
      lines.push_back(fmt::format(
          "{}|{}|{}|{}|{}|{}|{}|{}|{}", nameOf(pair.state), commands::setName(pair.kind),
          fmt::join(pair.a, ","), fmt::join(pair.b, ","), pair.name,
          each.angle ? fmt::format("{}", *each.angle) : "", each.field,
          each.a.isNull() ? "" : each.a.toText(), each.b.isNull() ? "" : each.b.toText()));
    }
    return lines;
  }

  /// "pane NAME, group=NAME, angle=DEGREES, T=VALUE", "made without NAMES", "single COLUMN" for an
  /// empty database with such a column, or what `changeTable` does; after a number so many times.
  void change(Node& node, const std::string& statement) {
    if (const int times = std::atoi(statement.c_str()); times > 0) {
      for (int i = 0; i < times; ++i) change(node, statement.substr(statement.find(' ') + 1));
      return;
    }
    if (statement.starts_with("single ")) {
      node = changedDatabase(fmt::format("single{}.mdb", databases), [&](auto& table) {
        for (auto& column : table.columns) {
          if (column.name == statement.substr(7)) column.type = store::ColumnType::single;
        }
      });
      return;
    }
    if (statement.starts_with("made without ")) {
      node = remade(node, statement.substr(13));
      return;
    }
    auto& dc = *node->ADOConnection();
    if (!statement.starts_with("pane ")) return changeTable(dc, statement);
    const auto values = valuesOf(statement.substr(5));
    const auto pane = makePane(values.front().first);
    for (const auto& [name, value] : values) {
      if (name == "group") pane->group(value.toText());
      if (name == "angle") pane->ORV_Angle(static_cast<std::int16_t>(value.toLong()));
      if (name == "T") pane->SpectralData()->Tf(3, static_cast<float>(value.toDouble()));
    }
    session.database.InsertPane(*pane, dc);
  }

  /// What "compare" and "pairs" give with options: "back", "copy", "match=id; fields=a|b; ...".
  Lines compared(const std::string& statement) {
    CompareOptions options;
    bool isBack = false;
    std::istringstream words(statement.substr(statement.find(' ') + 1));
    for (std::string each; std::getline(words >> std::ws, each, ';');) {
      const std::size_t sign = each.find('=');
      const std::string name = each.substr(0, sign);
      const std::string value = sign == std::string::npos ? "" : each.substr(sign + 1);
      if (name == "back") isBack = true;
      if (name == "copy") options.isForCopy = true;
      if (name == "fields") options.fields = partsOf(value);
      if (name == "ignored") options.ignored = partsOf(value);
      if (name == "tolerance") options.tolerance = std::stod(value);
      if (name == "group") options.group = value;
      if (name == "kind") options.kind = RecordKind::shadings;
      if (name == "match") {
        options.match = value == "id"         ? Match::id
                        : value == "filename" ? Match::filename
                        : value == "spectrum" ? Match::spectrum
                                              : Match::name;
      }
    }
    Lines lines;
    const Raised raised =
        raisedBy([&] { lines = compare(isBack ? b : a, isBack ? a : b, options); });
    if (raised.number != 0) return {raised.description};
    if (statement.starts_with("pairs")) lines = {pairs()};
    std::ranges::copy(result.remarks, std::back_inserter(lines));
    std::ranges::copy(result.failures, std::back_inserter(lines));
    if (options.isForCopy) {
      const auto copied = commands::compare::copyablePairs(result);
      for (const std::string& remark : copied.remarks()) lines.push_back("Copied: " + remark);
    }
    lines.push_back(result.summary());
    return lines;
  }

  /// "a-b", the identifiers of each pair, after a "?" where others would do as well.
  std::string pairs() const {
    std::string text;
    for (const auto& pair : result.pairs) {
      text += fmt::format("{}{}{}-{}", text.empty() ? "" : " ", pair.isAmbiguous ? "?" : "",
                          fmt::join(pair.a, ","), fmt::join(pair.b, ","));
    }
    return text;
  }

  /// Statements: "new", for two empty databases; "glazing", for A as a database of that kind, maybe
  /// with a change, and B with a copy of its panes; changes of "a", "b", or "ab"; a comparison.
  Lines told(const Lines& statements) {
    Lines lines;
    for (const std::string& statement : statements) {
      const std::string rest = statement.substr(statement.find(' ') + 1);
      if (statement == "new") begin();
      if (statement.starts_with("glazing")) copyGlazings(rest);
      if (statement.starts_with("a ") || statement.starts_with("ab ")) change(a, rest);
      if (statement.starts_with("b ") || statement.starts_with("ab ")) change(b, rest);
      if (statement.starts_with("compare") || statement.starts_with("pairs")) {
        lines = compared(statement);
      }
    }
    return lines;
  }

  void copyGlazings(const std::string& change) {
    const std::string path = folder / fmt::format("igdb{}.mdb", databases);
    const auto made = makeGlazingDatabase(path);
    if (change != "glazing") changeTable(*made, change);
    made->close();
    setPassword(path, commands::kIgdbPassword);
    a = opener.openAny(path);
    ui.answers.assign(9, commands::Answer::yes);  // to copy those without their substrate
    EXPECT_EQ(copyAll(recordSet(a, RecordKind::panes), b, {.integrateBy = std::nullopt}).failed, 0)
        << ::testing::PrintToString(messages());
  }

  Comparison result;
  Node a, b;
  int databases = 0;
};

TEST_F(CompareTest, RecordsOfAKindAreComparedWithThoseOfADatabaseAndChangesSinceAreSeen) {
  for (Node* node : {&a, &b}) change(*node, "pane same");
  compare(recordSet(a, RecordKind::panes), b);
  EXPECT_EQ(result.summary(), "1 record is the same, 0 added, 0 removed, 0 changed.");
  for (const char* thickness : {"9", "10"}) {
    const Comparison before = result;
    compare(a, b);
    EXPECT_TRUE(result.hasSameLines(before));
    change(b, fmt::format("Pane thickness={} where PaneID = 1", thickness));
    compare(a, b);
    EXPECT_FALSE(result.hasSameLines(before));
  }
  EXPECT_EQ(raisedBy([&] {
              compare(recordSet(a, RecordKind::frames), recordSet(b, RecordKind::panes));
            }).number,
            kInvalidCall);
}

TEST_F(CompareTest, WhatDiffersIsToldOnceAndKeysAreNot) {
  const std::string expected = readFile(ORV_SOURCE_DIR "/tests/commands/compared-records.txt");
  EXPECT_EQ(retold(expected, [&](const Lines& statements) { return told(statements); }), expected);
}

TEST_F(CompareTest, EveryFieldIsToldThatIsAnother) {
  const auto pane = fullPane();
  pane->SubstrateReference()->SpectralData(spectrumOfTwo(302.5F));
  session.database.InsertPane(*pane, *a->ADOConnection());
  auto frame = fullFrame();
  session.database.InsertFrame(frame, *a->ADOConnection());
  auto shading = fullShading();
  session.database.InsertShading(shading, *a->ADOConnection());
  b->ADOConnection()->close();
  std::filesystem::copy_file(folder.path() / "a1.mdb", folder.path() / "b1.mdb",
                             std::filesystem::copy_options::overwrite_existing);
  b = opener.openAny(folder / "b1.mdb");
  changeRows(b, [](store::Recordset& row) {
    for (std::size_t i = 0; i < row.fields().size(); ++i) {
      const auto& column = row.fields()[i];
      if (!isKept(column.name)) row.setValue(i, other(column, row.value(i)));
    }
  });
  const Lines all = compare(a, b);
  Lines lines = all;
  for (const RecordKind kind : {RecordKind::panes, RecordKind::shadings}) {
    const auto files = folder.path() / commands::setName(kind);
    std::filesystem::create_directory(files);
    commands::exportRecords(session, selectAll(recordSet(a, kind)), {files, false});
    for (std::string line : compare(opener.openAny(files.string()), b)) {
      const auto id = line.find(result.pairs.front().a.front());
      line.replace(id, result.pairs.front().a.front().size(), "1");
      if (std::ranges::find(all, line) == all.end()) lines.push_back("of a file: " + line);
    }
    std::ranges::copy(result.remarks, std::back_inserter(lines));
  }
  std::vector<std::vector<std::string>> cases;
  for (const std::string& line : lines) cases.push_back({line});
  EXPECT_EQ(cases, casesOf("commands/compared-fields.txt", 1));
}

}  // namespace
}  // namespace orv::test
