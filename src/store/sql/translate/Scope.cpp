#include "store/sql/translate/Scope.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "store/StoreError.h"

namespace orv::store::sql {

std::string Scope::Found::sql() const {
  return fmt::format("{}.c{}", member->sqlName, column);
}

void Scope::add(Member member, std::size_t at) {
  for (const Member& other : members_) {
    if (sameName(other.name, member.name)) {
      text_.fail(kSyntaxError,
                 fmt::format("FROM names \"{}\" twice: give one of them another name with AS",
                             member.name),
                 at);
    }
  }
  members_.push_back(std::move(member));
}

const Scope::Member& Scope::member(const std::string& name, std::size_t at) const {
  for (const Member& candidate : members_) {
    if (sameName(candidate.name, name)) {
      return candidate;
    }
  }
  text_.fail(kObjectNotFound, fmt::format("FROM has no table \"{}\"", name), at);
}

std::optional<Scope::Found> Scope::find(const std::vector<std::string>& path,
                                        std::size_t at) const {
  for (const Scope* scope = this; scope != nullptr; scope = scope->outer_) {
    if (auto found = scope->findHere(path, at)) {
      return found;
    }
  }
  return std::nullopt;
}

std::optional<Scope::Found> Scope::findHere(const std::vector<std::string>& path,
                                            std::size_t at) const {
  if (path.size() > 2) {
    return std::nullopt;
  }
  std::optional<Found> found;
  for (const Member& member : members_) {
    if (path.size() == 2 && !sameName(member.name, path.front())) {
      continue;
    }
    for (std::size_t column = 0; column < member.columns.size(); ++column) {
      if (!sameName(member.columns[column].info.name, path.back())) {
        continue;
      }
      if (found) {
        text_.fail(
            kSyntaxError,
            fmt::format("\"{}\" is a column of \"{}\" and of \"{}\": put the table before it",
                        path.back(), found->member->name, member.name),
            at);
      }
      found = Found{&member, column};
    }
  }
  return found;
}

void Scope::failUnknown(const std::vector<std::string>& path, std::size_t at) const {
  if (path.size() == 2) {
    for (const Scope* scope = this; scope != nullptr; scope = scope->outer_) {
      for (const Member& member : scope->members_) {
        if (sameName(member.name, path.front())) {
          text_.fail(kItemNotFound,
                     fmt::format("\"{}\" has no column \"{}\"", member.name, path.back()), at);
        }
      }
    }
    text_.fail(kObjectNotFound, fmt::format("FROM has no table \"{}\"", path.front()), at);
  }
  std::vector<std::string> names;
  for (const Scope* scope = this; scope != nullptr; scope = scope->outer_) {
    for (const Member& member : scope->members_) {
      names.push_back(fmt::format("\"{}\"", member.name));
    }
  }
  if (names.empty()) {
    names.emplace_back("a SELECT without FROM");
  }
  text_.fail(
      kItemNotFound,
      fmt::format("There is no column \"{}\" in {}", fmt::join(path, "."), fmt::join(names, ", ")),
      at);
}

}  // namespace orv::store::sql
