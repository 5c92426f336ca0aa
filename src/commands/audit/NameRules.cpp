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

/// The letters and digits of a name, without case and accents.
icu::UnicodeString coreOf(const std::string& name) {
  UErrorCode error = U_ZERO_ERROR;
  const icu::Normalizer2* const normalizer = icu::Normalizer2::getNFKDInstance(error);
  auto text = icu::UnicodeString::fromUTF8(name);
  if (U_SUCCESS(error)) text = normalizer->normalize(text, error);
  text.foldCase();
  icu::UnicodeString core;
  for (std::int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1)) {
    const UChar32 letter = text.char32At(i);
    if (u_isalnum(letter)) core.append(letter);
  }
  return core;
}

/// A name that occurs, and the record at which it was met first.
struct UsedName {
  std::string name;
  const RecordFacts* first;
  int uses;
};

/// Of names of at least this many letters and digits one letter more, less or another is a slip.
constexpr std::int32_t kLeastLength = 6;

/// What is left of a core when one letter is taken away, once for each letter that stands beside
/// another: single ones tell series apart, as in "Glass A", and so do digits.
std::vector<std::string> shortened(const std::string& name, const icu::UnicodeString& core) {
  std::vector<std::string> results;
  if (core.length() < kLeastLength) return results;
  for (std::int32_t i = 0; i < core.length(); ++i) {
    if (!u_isalpha(core.char32At(i))) continue;
    icu::UnicodeString rest = core;
    rest.remove(i, 1);
    results.push_back(utf8(rest) + '\0' + std::to_string(i));
  }
  const std::size_t space = name.find_last_of(" -_");
  const bool endsWithLetter = space != std::string::npos && space + 2 == name.size();
  if (endsWithLetter && !results.empty()) results.pop_back();
  return results;
}

class SimilarNames {
 public:
  explicit SimilarNames(const char* field) : field_(field) {}

  /// The names are told that come later.
  std::vector<PlacedFault> find(const std::vector<UsedName>& names) {
    for (const UsedName& used : names) {
      const auto core = coreOf(used.name);
      if (const auto like = known(used.name, core)) tell(used.name, *used.first, *like);
      remember(used.name, core);
    }
    return std::move(faults_);
  }

 private:
  /// The name that is like this one.
  std::optional<std::string> known(const std::string& name, const icu::UnicodeString& core) const {
    const std::string key = utf8(core);
    if (const auto same = cores_.find(key); same != cores_.end()) return same->second;
    if (core.length() < kLeastLength) return std::nullopt;
    // One letter less than a known name, one more, or another.
    if (const auto longer = withoutPlace_.find(key); longer != withoutPlace_.end()) {
      return longer->second;
    }
    for (const std::string& rest : shortened(name, core)) {
      if (const auto shorter = cores_.find(rest.substr(0, rest.find('\0')));
          shorter != cores_.end() && coreOf(shorter->second).length() >= kLeastLength) {
        return shorter->second;
      }
      if (const auto other = rests_.find(rest); other != rests_.end()) return other->second;
    }
    return std::nullopt;
  }

  void remember(const std::string& name, const icu::UnicodeString& core) {
    cores_.emplace(utf8(core), name);
    for (const std::string& rest : shortened(name, core)) {
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
