// A database of our own with something of each kind that a file holds, for tests of whole files.
#pragma once

#include <filesystem>

namespace orv::test {

/// Writes it to `path`: 40 panes with an index by key, by name and by group (with a Null); 6000
/// rows of spectra whose index has two levels; frames, of which the second has a picture of several
/// parts; rows that have moved; a saved query.
void makeSampleFile(const std::filesystem::path& path);

}  // namespace orv::test
