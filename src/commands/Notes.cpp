#include "commands/Notes.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

namespace orv::commands {

std::string Note::line(std::size_t most) const {
  const std::size_t shown = std::min(most, records.size());
  const auto end = records.begin() + static_cast<std::ptrdiff_t>(shown);
  std::string line = fmt::format("{}: {}", text, fmt::join(records.begin(), end, ", "));
  if (shown < records.size()) line += fmt::format(" and {} more", records.size() - shown);
  return line;
}

std::string Notes::counts() const {
  std::vector<std::string> texts;
  for (const Note& note : notes_) {
    texts.push_back(fmt::format("{} ({})", note.text, note.records.size()));
  }
  return fmt::format("{}", fmt::join(texts, ", "));
}

void Notes::add(const std::string& text, const std::string& record) {
  auto note = std::ranges::find(notes_, text, &Note::text);
  if (note == notes_.end()) note = notes_.insert(note, {text, {}});
  if (note->records.empty() || note->records.back() != record) note->records.push_back(record);
}

void Notes::add(const Notes& others) {
  for (const Note& note : others.list()) {
    for (const std::string& record : note.records) add(note.text, record);
  }
}

}  // namespace orv::commands
