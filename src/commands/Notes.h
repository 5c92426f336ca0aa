// What a command tells of records besides their failures.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace orv::commands {

/// A text that holds for some records, which are named in the order in which it was said of them.
struct Note {
  std::string text;
  std::vector<std::string> records;

  /// "the comment is not kept: a.txt, b.txt"; of more records than `most` the first, and how many
  /// more there are.
  std::string line(std::size_t most = SIZE_MAX) const;
};

/// Notes, those of the same words put together.
class Notes {
 public:
  /// The same words about the same record are told once.
  void add(const std::string& text, const std::string& record);
  /// All of others.
  void add(const Notes& others);
  const std::vector<Note>& list() const { return notes_; }
  /// "comment (2), date (1)": each with the number of its records; empty when there are none.
  std::string counts() const;

 private:
  std::vector<Note> notes_;
};

}  // namespace orv::commands
