#include "commands/Notes.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

namespace orv::commands {

std::string Note::line() const {
  return fmt::format("{}: {}", text, fmt::join(records, ", "));
}

void Notes::add(const std::string& text, const std::string& record) {
  auto note = std::ranges::find(notes_, text, &Note::text);
  if (note == notes_.end()) note = notes_.insert(note, {text, {}});
  if (note->records.empty() || note->records.back() != record) note->records.push_back(record);
}

}  // namespace orv::commands
