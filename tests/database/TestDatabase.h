// An ORV database of its own for each test, and records to put into it.
#pragma once

#include <deque>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "database/ORV_DatabaseInterface.h"
#include "database/OrvSchema.h"
#include "store/History.h"
#include "support/FullRecords.h"
#include "textfile/Folder.h"

namespace orv::test {

/// Answers the questions of pane insertion in order, and keeps them. A question too many fails the
/// test and is answered No.
class ScriptedQuestions : public database::PaneQuestions {
 public:
  bool confirm(const std::string& text, const std::string& caption) override {
    asked.push_back(caption + ": " + text);
    if (answers.empty()) {
      ADD_FAILURE() << "unexpected question: " << text;
      return false;
    }
    const bool answer = answers.front();
    answers.pop_front();
    return answer;
  }

  std::deque<bool> answers;
  std::vector<std::string> asked;
};

using FieldValues = std::vector<std::pair<std::string, store::Value>>;

/// Adds a row with these values to a table.
inline void addRow(store::Connection& dc, const std::string& table, const FieldValues& values) {
  auto rows = dc.openRecordset(table, store::CursorType::dynamic, store::LockType::optimistic);
  rows->addNew();
  for (const auto& [column, value] : values) rows->setValue(column, value);
  rows->update();
}

inline store::Value valueOf(const std::string& text) {
  if (text == "True" || text == "False") return text == "True";
  if (text == "Null") return {};
  if (text.starts_with("bytes ")) return store::Bytes(text.begin() + 6, text.end());
  char* end = nullptr;
  const double number = std::strtod(text.c_str(), &end);
  return text.empty() || *end != '\0' ? store::Value(text) : store::Value(number);
}

/// "column=value, column=value"
inline FieldValues valuesOf(const std::string& text) {
  FieldValues values;
  std::istringstream parts(text);
  for (std::string each; std::getline(parts >> std::ws, each, ',');) {
    const std::size_t sign = each.find('=');
    values.emplace_back(each.substr(0, sign), valueOf(each.substr(sign + 1)));
  }
  return values;
}

/// Makes a change:
///
///   +TABLE COLUMN=VALUE, ...                   a row more
///   -TABLE CONDITION                           rows less
///   TABLE COLUMN=VALUE, ... where CONDITION    other values, in all rows without a condition;
///                                              "reflection_" stands for all columns whose names
///                                              begin so
inline void changeTable(store::Connection& dc, const std::string& change) {
  const std::size_t blank = change.find(' ');
  const std::string table = change.substr(0, blank);
  const std::string rest = change.substr(blank + 1);
  if (table.starts_with('+')) return addRow(dc, table.substr(1), valuesOf(rest));
  if (table.starts_with('-')) return dc.deleteRows(table.substr(1), rest);
  const std::size_t where = std::min(rest.find(" where "), rest.size());
  const auto rows = dc.openRecordset("SELECT * FROM " + table + rest.substr(where),
                                     store::CursorType::keyset, store::LockType::optimistic);
  ASSERT_FALSE(rows->eof()) << change;
  const auto values = valuesOf(rest.substr(0, where));
  for (; !rows->eof(); rows->moveNext()) {
    for (const auto& [name, value] : values) {
      if (!name.ends_with('_')) {
        rows->setValue(name, value);
        continue;
      }
      for (const auto& column : rows->fields()) {
        if (column.name.starts_with(name)) rows->setValue(column.name, value);
      }
    }
    rows->update();
  }
}

inline std::string textOf(const store::Value& value) {
  if (const auto* bytes = value.getIf<store::Bytes>()) return {bytes->begin(), bytes->end()};
  return value.isNull() ? "Null" : value.toText();
}

/// A row that was added, with +, or deleted, with -, or the columns that have become others.
inline std::string textOf(const store::HistoryChange& change) {
  const bool isAdded = change.before.empty();
  const bool isWhole = isAdded || change.after.empty();
  std::string text = change.table + (!isWhole ? "" : isAdded ? " +" : " -");
  for (std::size_t i = 0; i < change.columns.size(); ++i) {
    if (isWhole) {
      text += (i > 0 ? "|" : " ") + textOf((isAdded ? change.after : change.before)[i]);
    } else if (change.before[i] != change.after[i]) {
      text +=
          " " + change.columns[i] + " " + textOf(change.before[i]) + ">" + textOf(change.after[i]);
    }
  }
  return text;
}

/// The rows of a statement, fields parted by "|", rows by a blank.
inline std::string rowsOf(store::Connection& dc, const std::string& statement) {
  std::string text;
  for (auto rows = dc.openRecordset(statement); !rows->eof(); rows->moveNext()) {
    if (!text.empty()) text += ' ';
    for (std::size_t i = 0; i < rows->fields().size(); ++i) {
      text += (i > 0 ? "|" : "") + textOf(rows->value(i));
    }
  }
  return text;
}

/// A pane with a spectrum of five points from 300 nm in steps of 100 nm.
inline std::shared_ptr<GlazingData> makePane(const std::string& name, std::int16_t angle = 0) {
  auto pane = std::make_shared<GlazingData>();
  pane->filename(name);
  pane->productname("Product " + name);
  pane->supplier("Maker");
  pane->group("Demo");
  pane->Thickness(5.7F);
  pane->Conductivity(1);
  pane->TfIR(0.125F);
  pane->TbiR(0.25F);
  pane->ORV_Emissivity_front(0.84);
  pane->ORV_Emissivity_back(0.1);
  pane->ORV_Angle(angle);
  pane->spectral_pane(true);
  pane->Precalc_Rfsol(0.11F);
  pane->Precalc_RbSol(0.12F);
  pane->Precalc_Tfsol(0.13F);
  pane->Precalc_Tbsol(0.14F);
  pane->Precalc_Rfvis(0.15F);
  pane->Precalc_Rbvis(0.16F);
  pane->Precalc_Tfvis(0.17F);
  pane->Precalc_Tbvis(0.18F);
  pane->Precalc_Rfuv(0.19F);
  pane->Precalc_Rbuv(0.2F);
  pane->Precalc_Tfuv(0.21F);
  pane->Precalc_Tbuv(0.22F);
  std::vector<std::array<float, 5>> points;
  for (float i = 0; i < 5; ++i) {
    const float step = 0.01F * i;
    points.push_back({0.3F + 0.1F * i, 0.5F + step, 0.5F + step, 0.1F + step, 0.2F + step});
  }
  pane->SpectralData(spectrumOf(points));
  return pane;
}

/// Gives a pane a substrate whose spectrum has the same wavelengths.
inline std::shared_ptr<GlazingData> withSubstrate(std::shared_ptr<GlazingData> pane) {
  auto substrate = std::make_shared<GlazingData>();
  substrate->SpectralData(pane->SpectralData()->ShallowClone());
  for (std::int32_t i = 0; i < substrate->SpectralData()->count(); ++i) {
    substrate->SpectralData()->Tf(i, 0.7F);
    substrate->SpectralData()->Rf(i, 0.08F);
  }
  pane->SubstrateReference(substrate);
  pane->SubstrateFilename("substrate.txt");
  pane->with_and_without_film(true);
  return pane;
}

class DatabaseTest : public ::testing::Test {
 protected:
  std::shared_ptr<GlazingData> retrieve(std::int32_t id, std::int16_t angle = 0,
                                        std::int32_t direction = 0) {
    return database.RetrievePaneORV_30(*dc, id, "", "", angle, direction);
  }

  std::int64_t rowCount(const std::string& table) {
    return dc->openRecordset(table, store::CursorType::static_)->recordCount();
  }

  /// The rows that it writes, parted by "; ".
  std::string changesOf(const std::function<void()>& work) {
    store::History history(*dc);
    history.keep();
    const std::size_t known = history.works().size();
    {
      const store::History::Scope scope(*dc, "work");
      work();
    }
    std::string text;
    const auto works = history.works();
    for (std::size_t i = known; i < works.size(); ++i) {
      for (const auto& change : history.changes(works[i])) {
        text += (text.empty() ? "" : "; ") + textOf(change);
      }
    }
    return text;
  }

  Folder folder;
  std::string path = folder / "orvdata.mdb";
  std::shared_ptr<store::Connection> dc = database::CreateEmptyDatabase(path);
  ScriptedQuestions questions;
  database::ORV_DatabaseInterface database{questions};
};

}  // namespace orv::test
