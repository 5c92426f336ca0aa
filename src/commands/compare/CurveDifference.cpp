#include "commands/compare/CurveDifference.h"

#include <cmath>

#include "database/SameValues.h"

namespace orv::commands::compare {

namespace {

/// Keeps the point where two curves are furthest apart.
class Furthest {
 public:
  Furthest(const Samples& a, const Samples& b, double tolerance)
      : a_(a), b_(b), likeness_{tolerance, a.isSingle() || b.isSingle()} {}

  void look(double wavelength, std::size_t inA, std::size_t inB) {
    const double a = a_[inA];
    const double b = b_[inB];
    if (database::areSameNumbers(a, b, likeness_)) return;
    if (largest_ && std::abs(a - b) <= std::abs(largest_->a - largest_->b)) return;
    largest_ = {wavelength, a, b};
  }
  const std::optional<LargestDifference>& largest() const { return largest_; }

 private:
  const Samples& a_;
  const Samples& b_;
  database::Likeness likeness_;
  std::optional<LargestDifference> largest_;
};

}  // namespace

std::optional<LargestDifference> largestDifference(const Curves& a, const Curves& b,
                                                   std::size_t curve, double tolerance) {
  if (a.values[curve].isZero() && b.values[curve].isZero()) return std::nullopt;
  Furthest furthest(a.values[curve], b.values[curve], tolerance);
  const auto& inA = *a.grid;
  const auto& inB = *b.grid;
  if (a.grid == b.grid) {
    for (std::size_t i = 0; i < inA.size(); ++i) furthest.look(inA[i], i, i);
    return furthest.largest();
  }
  for (std::size_t i = 0, k = 0; i < inA.size() && k < inB.size();) {
    const double atA = inA[i];
    const double atB = inB[k];
    if (atA == atB) furthest.look(atA, i, k);
    if (atA <= atB) ++i;
    if (atB <= atA) ++k;
  }
  return furthest.largest();
}

bool areSameCurves(const Curves& a, const Curves& b, std::size_t count, double tolerance) {
  if (a.grid != b.grid) return false;
  for (std::size_t curve = 0; curve < count; ++curve) {
    const Samples& inA = a.values[curve];
    const Samples& inB = b.values[curve];
    const database::Likeness likeness{tolerance, inA.isSingle() || inB.isSingle()};
    for (std::size_t i = 0; i < a.grid->size(); ++i) {
      if (!database::areSameNumbers(inA[i], inB[i], likeness)) return false;
    }
  }
  return true;
}

}  // namespace orv::commands::compare
