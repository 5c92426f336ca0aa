#include "productfile/Meaning.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>

#include "errors/Error.h"
#include "model/Text.h"

namespace orv::productfile {

namespace {

/// The words that forms have for codes, in lower case and with "-" for "_" and blanks. The first
/// word of a code is the one that is written, in capitals.
constexpr std::array kTypes{
    CodeName{kMonolithic, "monolithic"},
    CodeName{kCoated, "coated"},
    CodeName{kCoated, "coated-glass"},
    CodeName{kAppliedFilm, "applied-film"},
    CodeName{kFilm, "film"},
    CodeName{kLaminate, "laminate"},
    CodeName{kInterlayer, "interlayer"},
};

constexpr std::array kSides{
    CodeName{kFrontSide, "front"},     CodeName{kBackSide, "back"},
    CodeName{kBothSides, "both"},      CodeName{kNeitherSide, "na"},
    CodeName{kNeitherSide, "neither"}, CodeName{kNeitherSide, "n/a"},
    CodeName{kUnknownSide, "unknown"},
};

std::string plain(const std::string& word) {
  std::string text = lowerCase(trimmed(word));
  std::ranges::replace(text, '_', '-');
  std::ranges::replace(text, ' ', '-');
  return text;
}

OrderedJson wordOf(std::span<const CodeName> words, std::int32_t code) {
  const auto name = nameOf(words, code);
  if (!name) return nullptr;
  std::string word = upperCase(*name);
  std::ranges::replace(word, '-', '_');
  return word;
}

/// A type that nobody here knows is told as one that is not known.
void readType(const Item& item, GlazingData& pane) {
  const std::int32_t type = codeOf(kTypes, plain(item.text())).value_or(kUnknownType);
  pane.GlazingType(type);
  pane.single_layer(type == kMonolithic);
  pane.use_estimation(type != kMonolithic);
}

void readSide(const Item& item, GlazingData& pane) {
  const std::string word = plain(item.text());
  if (word.empty()) return;
  const auto side = codeOf(kSides, word);
  if (!side) {
    item.refuse(kInvalidCall, "No side of a pane. It is one of Front, Back, Both, Neither");
  }
  pane.CoatedSide(*side);
}

void readUnitSystem(const Item& item, GlazingData& pane) {
  const std::string word = lowerCase(item.text());
  if (word != "si" && word != "ip") {
    item.refuse(kInvalidCall, "No system of units. It is SI or IP");
  }
  pane.unit(word == "si" ? kSI : kIP);
}

void readFrontEmissivity(const Item& item, GlazingData& pane) {
  if (item.isNull()) return pane.ResetEf();
  pane.ef(item.quantity());
  pane.ef_source(kTextFileSource);
  pane.ORV_Emissivity_front(pane.ef());
}

void readBackEmissivity(const Item& item, GlazingData& pane) {
  if (item.isNull()) return pane.ResetEb();
  pane.eb(item.quantity());
  pane.eb_source(kTextFileSource);
  pane.ORV_Emissivity_back(pane.eb());
}

/// A record that comes from a database has its emissivity in the property that databases fill;
/// there 0 stands for none.
OrderedJson emissivityOf(float value, double inDatabase) {
  if (value >= 0) return numberOf(value);
  if (inDatabase > 0) return numberOf(static_cast<float>(inDatabase));
  return nullptr;
}

void readId(const Item& item, GlazingData& pane) {
  const std::int32_t id = item.whole();
  if (id < 0) item.refuse(kInvalidCall, "No id is negative");
  pane.id(id);
}

}  // namespace

const Meaning kId{readId, [](const GlazingData& pane) {
                    return pane.id() < 0 ? OrderedJson() : OrderedJson(pane.id());
                  }};
const Meaning kFrontEmissivity{readFrontEmissivity, [](const GlazingData& pane) {
                                 return emissivityOf(pane.ef(), pane.ORV_Emissivity_front());
                               }};
const Meaning kBackEmissivity{readBackEmissivity, [](const GlazingData& pane) {
                                return emissivityOf(pane.eb(), pane.ORV_Emissivity_back());
                              }};
const Meaning kInfrared{[](const Item& item, GlazingData& pane) {
                          pane.TfIR(item.quantity());
                          pane.TbiR(pane.TfIR());
                        },
                        [](const GlazingData& pane) { return numberOf(pane.TfIR()); }};
const Meaning kBackInfrared = kQuantity<&GlazingData::TbiR>;
const Meaning kType{readType,
                    [](const GlazingData& pane) { return wordOf(kTypes, pane.GlazingType()); }};
const Meaning kCoatedSide{
    readSide, [](const GlazingData& pane) { return wordOf(kSides, pane.CoatedSide()); }};
const Meaning kUnitSystem{readUnitSystem, nullptr};

void readKeys(std::span<const Key> keys, const Item& product, GlazingData& pane) {
  for (const Key& key : keys) {
    if (const auto item = product.find(key.pointer)) key.meaning.read(*item, pane);
  }
}

OrderedJson numberOf(float value) {
  const std::string text = fmt::format("{}", value);
  double number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

}  // namespace orv::productfile
