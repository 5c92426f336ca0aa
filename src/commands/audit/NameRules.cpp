// Rules on the names of records, makers and groups.
#include <fmt/format.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <map>
#include <tuple>
#include <unordered_map>

#include "commands/audit/SourceRules.h"
#include "model/Codes.h"
#include "model/Text.h"

namespace orv::commands::audit {

namespace {

std::string utf8(const icu::UnicodeString& text) {
  std::string result;
  text.toUTF8String(result);
  return result;
}

/// Of names of at least this many letters and digits one letter more, less or another is a slip.
constexpr std::int32_t kLeastLength = 6;

/// What makes a name itself: letters and digits without case and accents, and the signs that tell
/// 3.2 from 32, and Low-E from Low-E+.
struct Core {
  icu::UnicodeString text;
  std::vector<bool> maySlip;  ///< at each code unit, whether another letter there is a slip
};

icu::UnicodeString folded(const std::string& name) {
  UErrorCode error = U_ZERO_ERROR;
  const icu::Normalizer2* const normalizer = icu::Normalizer2::getNFKDInstance(error);
  auto text = icu::UnicodeString::fromUTF8(name);
  if (U_SUCCESS(error)) text = normalizer->normalize(text, error);
  return text.foldCase();
}

bool isKept(const icu::UnicodeString& text, std::int32_t i) {
  const UChar32 sign = text.char32At(i);
  if (u_isalnum(sign) || sign == '+') return true;
  const bool isPoint = sign == '.' || sign == ',';
  return isPoint && i > 0 && u_isdigit(text.char32At(i - 1)) && u_isdigit(text.char32At(i + 1));
}

/// Short words and Roman numerals tell series, places and kinds apart: "UK", "Glass A", "VIII".
bool maySlipIn(const icu::UnicodeString& word) {
  constexpr std::int32_t kLongestMark = 3;
  const icu::UnicodeString numerals = u"ivxlcdm";
  bool isNumeral = true;
  std::int32_t letters = 0;
  for (std::int32_t i = 0; i < word.length(); ++i) {
    if (u_isalpha(word.char32At(i))) ++letters;
    if (numerals.indexOf(word.char32At(i)) < 0) isNumeral = false;
  }
  return letters > kLongestMark && !isNumeral;
}

Core coreOf(const std::string& name) {
  const auto text = folded(name);
  Core core;
  icu::UnicodeString word;
  const auto endWord = [&] {
    const bool maySlip = maySlipIn(word);
    core.text.append(word);
    for (std::int32_t i = 0; i < word.length(); ++i) {
      core.maySlip.push_back(maySlip && u_isalpha(word.char32At(i)));
    }
    word.remove();
  };
  for (std::int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1)) {
    const UChar32 sign = text.char32At(i);
    if (isKept(text, i)) {
      word.append(sign);
    } else if (u_charType(sign) != U_NON_SPACING_MARK) {  // an accent, which stands in a word
      endWord();
    }
  }
  endWord();
  return core;
}

/// A name that occurs, and the record at which it was met first.
struct UsedName {
  std::string name;
  const RecordFacts* first;
  int uses;
};

/// What is left of a core when one letter is taken away, once for each that may be a slip, with the
/// place of the letter.
std::vector<std::string> shortened(const Core& core) {
  std::vector<std::string> results;
  if (core.text.length() < kLeastLength) return results;
  for (std::int32_t i = 0; i < core.text.length(); ++i) {
    if (!core.maySlip[static_cast<std::size_t>(i)]) continue;
    icu::UnicodeString rest = core.text;
    rest.remove(i, 1);
    results.push_back(utf8(rest) + '\0' + std::to_string(i));
  }
  return results;
}

class SimilarNames {
 public:
  explicit SimilarNames(const char* field) : field_(field) {}

  /// The names are told that come later.
  std::vector<PlacedFault> find(const std::vector<UsedName>& names) {
    for (const UsedName& used : names) {
      const auto core = coreOf(used.name);
      if (const auto like = known(core)) tell(used.name, *used.first, *like);
      remember(used.name, core);
    }
    return std::move(faults_);
  }

 private:
  /// The name that is like this one.
  std::optional<std::string> known(const Core& core) const {
    const std::string key = utf8(core.text);
    if (const auto same = cores_.find(key); same != cores_.end()) return same->second;
    if (core.text.length() < kLeastLength) return std::nullopt;
    // One letter less than a known name, one more, or another.
    if (const auto longer = withoutPlace_.find(key); longer != withoutPlace_.end()) {
      return longer->second;
    }
    for (const std::string& rest : shortened(core)) {
      if (const auto shorter = cores_.find(rest.substr(0, rest.find('\0')));
          shorter != cores_.end() && core.text.length() > kLeastLength) {
        return shorter->second;
      }
      if (const auto other = rests_.find(rest); other != rests_.end()) return other->second;
    }
    return std::nullopt;
  }

  void remember(const std::string& name, const Core& core) {
    cores_.emplace(utf8(core.text), name);
    for (const std::string& rest : shortened(core)) {
      rests_.emplace(rest, name);
      withoutPlace_.emplace(rest.substr(0, rest.find('\0')), name);
    }
  }

  void tell(const std::string& name, const RecordFacts& record, const std::string& like) {
    faults_.push_back(at(record, {.field = field_,
                                  .value = name,
                                  .expected = like,
                                  .message = fmt::format("The {} \"{}\" is nearly \"{}\", which "
                                                         "is there, too",
                                                         field_, name, like)}));
  }

  const char* field_;
  std::unordered_map<std::string, std::string> cores_;
  std::unordered_map<std::string, std::string> rests_;  ///< with the place of the letter
  std::unordered_map<std::string, std::string> withoutPlace_;
  std::vector<PlacedFault> faults_;
};

/// The most used first.
std::vector<UsedName> namesIn(const SourceFacts& source, std::string RecordFacts::*member) {
  std::map<std::string, UsedName> known;
  for (const RecordFacts& record : source.records) {
    const std::string& name = record.*member;
    if (!name.empty()) ++known.emplace(name, UsedName{name, &record, 0}).first->second.uses;
  }
  std::vector<UsedName> names;
  for (auto& [name, used] : known) names.push_back(std::move(used));
  std::ranges::stable_sort(names, std::ranges::greater(), &UsedName::uses);
  return names;
}

}  // namespace

std::vector<Fault> emptyName(const RecordFacts& record) {
  if (!trimmed(record.name).empty()) return {};
  return {{.field = "name", .message = "The name is empty"}};
}

std::vector<Fault> unknownMaker(const RecordFacts& record) {
  if (!record.knowsMaker) return {};
  const auto maker = trimmed(record.supplier);
  if (!maker.empty() && !equalIgnoringCase(maker, kUnknown)) return {};
  return {{.field = "supplier", .value = record.supplier, .message = "Nobody knows who makes it"}};
}

std::vector<PlacedFault> sameNames(const SourceFacts& source) {
  std::map<std::tuple<RecordKind, std::string, std::string, std::int16_t>, const RecordFacts*>
      first;
  std::vector<PlacedFault> faults;
  for (const RecordFacts& record : source.records) {
    if (trimmed(record.name).empty()) continue;
    const auto [known, isNew] =
        first.emplace(std::tuple(record.kind, lowerCase(trimmed(record.name)),
                                 lowerCase(record.group), record.angle),
                      &record);
    if (isNew) continue;
    const std::string where = record.group.empty() ? "" : " in the group " + record.group;
    faults.push_back(at(record, {.field = "name",
                                 .value = record.name,
                                 .message = fmt::format("The name is that of the record {}, too{}",
                                                        known->second->identifier, where)}));
  }
  return faults;
}

std::vector<PlacedFault> similarMakers(const SourceFacts& source) {
  return SimilarNames("supplier").find(namesIn(source, &RecordFacts::supplier));
}

std::vector<PlacedFault> similarGroups(const SourceFacts& source) {
  return SimilarNames("group").find(namesIn(source, &RecordFacts::group));
}

}  // namespace orv::commands::audit
