#include "commands/compare/Record.h"

namespace orv::commands::compare {

namespace {

template <class T>
void rearrange(std::vector<T>& values, const std::vector<std::size_t>& order) {
  if (values.empty()) return;
  std::vector<T> arranged;
  arranged.reserve(order.size());
  for (const std::size_t i : order) arranged.push_back(values[i]);
  values = std::move(arranged);
}

}  // namespace

void Samples::compact() {
  if (isZero_) {
    singles_ = {};
    doubles_ = {};
  }
  singles_.shrink_to_fit();
  doubles_.shrink_to_fit();
}

void Samples::expand(std::size_t count) {
  if (!isZero_) return;
  isSingle_ ? singles_.resize(count) : doubles_.resize(count);
}

void Samples::arrange(const std::vector<std::size_t>& order) {
  rearrange(singles_, order);
  rearrange(doubles_, order);
}

Grid Grids::of(std::vector<double> wavelengths) {
  const auto found = known_.find(wavelengths);
  if (found != known_.end()) return found->second;
  auto grid = std::make_shared<const std::vector<double>>(wavelengths);
  return known_.emplace(std::move(wavelengths), std::move(grid)).first->second;
}

}  // namespace orv::commands::compare
