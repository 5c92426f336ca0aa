// The rules that a glazing record must meet before it is written.
#include <fmt/format.h>

#include "errors/Error.h"
#include "model/GlazingData.h"
#include "model/Text.h"

namespace orv {

namespace {

/// Gathers the rules that a record breaks, so that one error can report them all.
class BrokenRules {
 public:
  void refuse(bool broken, const char* text) {
    if (broken) {
      texts_.emplace_back(text);
    }
  }

  void raiseIfAny() const {
    if (!texts_.empty()) {
      throw Error(kInvalidCall, fmt::format("{}", fmt::join(texts_, "\r\n")));
    }
  }

 private:
  std::vector<std::string> texts_;
};

template <class TextProperty>
void fillIfEmpty(TextProperty& property, std::string_view marker) {
  if (property().empty()) {
    property(std::string(marker));
  }
}

/// A coating, or none, on a coated pane, on a pane that may carry one, or on any other.
void checkCoatingName(GlazingData& pane, BrokenRules& rules) {
  const bool coated = pane.GlazingType() == kCoated;
  const bool mayBeCoated = pane.GlazingType() != kMonolithic && pane.CoatedSide() != kNeitherSide;
  fillIfEmpty(pane.CoatingName, coated || mayBeCoated ? kUnknown : kNotApplicable);

  const bool notApplicable = pane.CoatingName() == kNotApplicable;
  if (coated) {
    rules.refuse(notApplicable, "Coated glazing's CoatingName can't be N/A");
  } else if (mayBeCoated) {
    rules.refuse(notApplicable, "Coating name can't be N/A");
  } else {
    rules.refuse(pane.CoatingName() == kUnknown,
                 "Monolithic glazing or non-coated glazing can't have an unknown coatingname");
  }
}

void checkCoatedSide(GlazingData& pane, BrokenRules& rules) {
  const auto type = pane.GlazingType();
  const bool needsSide = type == kCoated || type == kFilm || type == kAppliedFilm;
  rules.refuse(
      needsSide && pane.CoatedSide() == kNeitherSide,
      "Coated, Filmed and Applied Filmed glazings may not have a neither entry for coated side!");
  if (pane.CoatedSide() == kSideNotSet) {
    pane.CoatedSide(type == kMonolithic ? kNeitherSide : kUnknownSide);
  }
  rules.refuse(type == kMonolithic && pane.CoatedSide() == kUnknownSide,
               "Monolithic glazing can't have an unknown Coatedside");
  rules.refuse(needsSide && pane.CoatedSide() == kNeitherSide,
               "CoatedSide can't be neither for a coated, film, or applied film glazing");
}

void checkComponents(GlazingData& pane, BrokenRules& rules) {
  const auto type = pane.GlazingType();
  const bool hasFilm = type == kAppliedFilm;
  fillIfEmpty(pane.FilmFilename, hasFilm ? kUnknown : kNotApplicable);
  rules.refuse(hasFilm && pane.FilmFilename() == kNotApplicable,
               "Applied Film can't have FilmFilename set to N/A");

  const bool hasSubstrate = type == kCoated || type == kAppliedFilm;
  fillIfEmpty(pane.SubstrateFilename, hasSubstrate ? kUnknown : kNotApplicable);
  rules.refuse(hasSubstrate && pane.SubstrateFilename() == kNotApplicable,
               "Coated and Applied Film glazings can't have N/A SubstrateFilename");

  const bool hasMaterial = type == kMonolithic;
  fillIfEmpty(pane.material, hasMaterial ? kUnknown : kNotApplicable);
  rules.refuse(hasMaterial && equalIgnoringCase(pane.material(), kNotApplicable),
               "Monolithic glazing can't have N/A material");
}

}  // namespace

void GlazingData::EnforceSemantics() {
  BrokenRules rules;
  rules.refuse(filename().empty(), "Filename must not be empty");
  fillIfEmpty(supplier, kUnknown);
  checkCoatingName(*this, rules);
  checkCoatedSide(*this, rules);
  checkComponents(*this, rules);
  rules.refuse(ef_source() == kUnknownSource, "ef_source can't have an unknown source");
  rules.refuse(eb_source() == kUnknownSource, "eb_source can't have an unknown source");
  rules.raiseIfAny();
}

}  // namespace orv
