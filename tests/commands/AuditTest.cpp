// Each rule of an audit finds its fault at its record, and nothing else is said of the good ones.
#include <gmock/gmock.h>

#include <cmath>

#include "commands/AuditFixture.h"
#include "support/CaseFile.h"

namespace orv::test {
namespace {

/// A pane file, made of statements that are parted by ";", one after the other:
///
///   glass 9               smooth curves from 300 to 2500 nm, others for each number
///   ramp                  curves that rise evenly; a further number is the step, in nm, else 5
///   metal                 lets less and less through beyond the visible, and throws it back
///   points 50 90 5 1 0 0  from 50 to 90 nm a point every 5 nm: T, Rf and Rb
///   450-600: T=0.7 Rf*2   changes there; "655" is one point, "860-" all from there on
///   without 601 619       no points there
///   swap 20 40, repeat 50, reverse, noise
///   thickness=0.25        an entry of the header
class Draft {
 public:
  explicit Draft(const std::string& statements) {
    std::istringstream all(statements);
    for (std::string each; std::getline(all >> std::ws, each, ';');) {
      const auto colon = each.find(':');
      const auto sign = each.find('=');
      if (colon != std::string::npos) {
        change(each.substr(0, colon), each.substr(colon + 1));
      } else if (sign != std::string::npos) {
        entries_[each.substr(0, sign)] = each.substr(sign + 1);
      } else {
        take(each);
      }
    }
  }

  std::string text() const {
    const auto entry = [&](const char* name) { return entries_.at(name); };
    std::string text = fmt::format(
        "SI {} {} {}\nTIR=0\nEmis= {} {}\n{{ Manufacturer: {} }}\n{{ Type: {} }}\n"
        "{{ Coated Side: {} }}\n",
        entry("unit"), entry("thickness"), entry("conductivity"), entry("front"), entry("back"),
        entry("maker"), entry("type"), entry("side"));
    for (const Point& at : points_) text += fmt::format("{} {} {} {}\n", at.nm, at.T, at.Rf, at.Rb);
    return text;
  }

 private:
  template <class Curves>
  void append(double first, double last, double step, Curves curves) {
    for (double nm = first; nm <= last; nm += step) points_.push_back(curves(nm));
  }

  void take(const std::string& statement) {
    std::istringstream words(statement);
    std::string what;
    words >> what;
    const std::vector<double> n(std::istream_iterator<double>(words), {});
    if (what == "glass") {
      std::ranges::copy(glass(static_cast<int>(n.at(0)), n.size() > 1 ? n[1] : 5),
                        std::back_inserter(points_));
    } else if (what == "ramp") {
      append(300, 2500, n.empty() ? 5 : n[0], [](double nm) {
        return Point{nm, 0.5 + nm / 1e5, 0.1 + nm / 1e5, 0.2 + nm / 1e5};
      });
    } else if (what == "metal") {
      append(300, 2500, 5, [](double nm) {
        const double T = 0.8 / (1 + std::pow(nm / 1200, 4));
        return Point{nm, T, 0.85 - T, 0.9 - T};
      });
      entries_.insert_or_assign("type", "Coated");
      entries_.insert_or_assign("side", "Back");
      entries_.insert_or_assign("back", "0.05");
    } else if (what == "points") {
      append(n.at(0), n.at(1), n.at(2), [&](double nm) { return Point{nm, n[3], n[4], n.at(5)}; });
    } else if (what == "without") {
      std::erase_if(points_, [&](const Point& at) { return at.nm >= n.at(0) && at.nm <= n.at(1); });
    } else if (what == "swap") {
      std::swap(points_.at(static_cast<std::size_t>(n.at(0))),
                points_.at(static_cast<std::size_t>(n.at(1))));
    } else if (what == "repeat") {
      const auto at = points_.begin() + static_cast<int>(n.at(0));
      points_.insert(at, Point(*at));
    } else if (what == "reverse") {
      std::ranges::reverse(points_);
    } else if (what == "noise") {
      for (Point& at : points_) at.T += 4e-4 * std::sin(at.nm * at.nm);
    } else {
      FAIL() << "no statement: " << statement;
    }
  }

  /// Changes curves, or the wavelengths, of the points that `where` has.
  void change(const std::string& where, const std::string& changes) {
    double first = 0, last = 1e9;
    const bool isRange = std::sscanf(where.c_str(), "%lf-%lf", &first, &last) == 2;
    if (!isRange && !where.ends_with('-')) last = first;
    std::istringstream words(changes);
    for (std::string word; words >> word;) {
      const std::size_t sign = word.find_first_of("=+-*");
      const std::string name = word.substr(0, sign);
      const double by = std::stod(word.substr(sign + 1));
      for (Point& at : points_) {
        if (at.nm < first || at.nm > last) continue;
        double& value = name == "nm" ? at.nm : name == "T" ? at.T : name == "Rf" ? at.Rf : at.Rb;
        value = word[sign] == '=' ? by : word[sign] == '*' ? value * by : value + by;
        if (word[sign] == '-') value -= 2 * by;
      }
    }
  }

  Points points_;
  std::map<std::string, std::string> entries_{{"unit", "Nanometers"}, {"thickness", "4"},
                                              {"conductivity", "1"},  {"front", "0.84"},
                                              {"back", "0.84"},       {"type", "Monolithic"},
                                              {"side", "Neither"},    {"maker", "Kestrel Bay"}};
};

class AuditTest : public AuditFixture {
 protected:
  /// Panes, each made of the statements of a line: a.txt, b.txt and so on, beside three good ones.
  Node panes(const Lines& drafts) {
    std::vector<std::pair<std::string, std::string>> files{{"good1.txt", Draft("glass 1").text()},
                                                           {"good2.txt", Draft("glass 2").text()},
                                                           {"metal.txt", Draft("metal").text()}};
    for (char name = 'a'; const std::string& draft : drafts) {
      files.emplace_back(std::string(1, name++) + ".txt", Draft(draft).text());
    }
    return texts(commands::TextFileKind::panes, files);
  }

  /// What is found of panes; before them "only RULE" may say what is asked for.
  Lines foundIn(const Lines& lines) {
    const bool isOne = lines.front().starts_with("only ");
    AuditOptions options;
    if (isOne) options.rules = {lines.front().substr(5)};
    return whole(audit(panes({lines.begin() + (isOne ? 1 : 0), lines.end()}), options));
  }

  /// Whether a rule finds a fault of a pane that lies by itself.
  bool finds(const std::string& rule, const std::string& draft) {
    const Node pane = texts(commands::TextFileKind::panes, {{"a.txt", Draft(draft).text()}});
    return !audit(pane, {.rules = {rule}}).empty();
  }
};

TEST_F(AuditTest, GoodPanesHaveNoFindings) {
  EXPECT_THAT(audit(panes({})), ::testing::IsEmpty());
  EXPECT_EQ(result.summary(), "3 records: no errors, no warnings, no notes.");
}

TEST_F(AuditTest, EachFaultOfAPaneIsFoundByItsRuleOnly) {
  const std::string expected = readFile(ORV_SOURCE_DIR "/tests/commands/audited-panes.txt");
  EXPECT_EQ(retold(expected, [&](const Lines& lines) { return foundIn(lines); }), expected);
}

TEST_F(AuditTest, AFaultBeginsBeyondItsBound) {
  for (const auto& cells : casesOf("commands/audit-bounds.tsv", 3)) {
    EXPECT_FALSE(finds(cells[0], cells[1])) << cells[0] << ": " << cells[1];
    EXPECT_TRUE(finds(cells[0], cells[2])) << cells[0] << ": " << cells[2];
  }
}

/// Published measurements have few findings.
TEST_F(AuditTest, MeasuredPanesAndTheExamplesAreGood) {
  ORV_NEEDS_CORPUS();
  EXPECT_THAT(linesOf(audit(opener.openAny((corpusFolder() / "panes").string()))),
              ::testing::ElementsAre("detector-step CLEAR5.LOF"));
  audit(opener.openAny((corpusFolder() / "products").string()), {.without = {"unreadable"}});
  EXPECT_EQ(result.summary(), "9 records: no errors, 2 warnings, 2 notes.");
}

}  // namespace
}  // namespace orv::test
