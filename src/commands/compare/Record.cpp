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

void Samples::begin() {
  isZero_ = false;
  isSingle_ ? singles_.resize(zeros_) : doubles_.resize(zeros_);
}

void Samples::compact() {
  singles_.shrink_to_fit();
  doubles_.shrink_to_fit();
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
