#include "outside/Disk.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <stdexcept>

#include "support/ReadFile.h"

namespace orv::test {

namespace fs = std::filesystem;

std::vector<Call> readRecording(const fs::path& recording) {
  const std::string bytes = readFile(recording);
  std::vector<Call> calls;
  std::size_t at = 0;
  const auto take = [&](std::size_t length) {
    at += length;
    return bytes.substr(at - length, length);
  };
  while (bytes.size() - at >= sizeof(CallHeader)) {
    CallHeader header;
    std::memcpy(&header, take(sizeof header).data(), sizeof header);
    Call call{header.kind,
              take(header.nameLength),
              take(header.otherLength),
              take(header.dataLength),
              header.file,
              header.offset};
    calls.push_back(std::move(call));
  }
  return calls;
}

Disk::Disk(const fs::path& folder) {
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    struct stat status {};
    if (!entry.is_regular_file() || ::stat(entry.path().c_str(), &status) != 0) continue;
    certainNames_[entry.path().filename().string()] = add(status.st_ino, readFile(entry.path()));
  }
}

std::size_t Disk::add(std::uint64_t number, std::string content) {
  files_.push_back({std::move(content)});
  return places_[number] = files_.size() - 1;
}

void Disk::perform(std::string& content, const Write& write) {
  if (write.isResize) {
    content.resize(write.offset);
    return;
  }
  content.resize(std::max<std::size_t>(content.size(), write.offset + write.data.size()));
  content.replace(write.offset, write.data.size(), write.data);
}

/// A name goes only where the file still has it.
void Disk::perform(Names& names, const NameChange& change) {
  const auto old = names.find(change.removed);
  if (old != names.end() && old->second == change.file) names.erase(old);
  if (!change.added.empty()) names[change.added] = change.file;
}

void Disk::apply(const Call& call) {
  constexpr std::size_t kPiece = 512;
  if (call.kind == CallKind::report) return;
  if (call.kind == CallKind::syncFolder) {
    for (const NameChange& change : pendingNames_) perform(certainNames_, change);
    pendingNames_.clear();
    return;
  }
  if (call.kind == CallKind::create) {
    pendingNames_.push_back({"", call.name, add(call.file, "")});
    return;
  }
  const auto place = places_.find(call.file);
  if (place == places_.end()) {
    throw std::runtime_error("'" + call.name + "' was changed, but its making was not recorded");
  }
  File& file = files_[place->second];
  if (call.kind == CallKind::write) {
    for (std::size_t at = 0, length = 0; at < call.data.size(); at += length) {
      length = std::min(kPiece - (call.offset + at) % kPiece, call.data.size() - at);
      file.pending.push_back({call.offset + at, call.data.substr(at, length)});
    }
  } else if (call.kind == CallKind::resize) {
    file.pending.push_back({call.offset, "", true});
  } else if (call.kind == CallKind::sync) {
    for (const Write& write : file.pending) perform(file.certain, write);
    file.pending.clear();
  } else {  // a renaming, or a removal, after which there is no other name
    pendingNames_.push_back({call.name, call.other, place->second});
  }
}

std::map<std::string, std::string> Disk::left(Luck luck, std::uint32_t seed) const {
  std::mt19937 random(seed);
  const int share = std::uniform_int_distribution(1, 9)(random);  // in tenths
  const auto isThere = [&] {
    if (luck != Luck::mixed) return luck == Luck::good;
    return std::uniform_int_distribution(0, 9)(random) < share;
  };
  Names names = certainNames_;
  for (const NameChange& change : pendingNames_) {
    if (isThere()) perform(names, change);
  }
  std::map<std::size_t, std::string> contents;  // a file with two names has one content
  std::map<std::string, std::string> files;
  for (const auto& [name, file] : names) {
    const auto [content, isNew] = contents.try_emplace(file, files_[file].certain);
    for (const Write& write : files_[file].pending) {
      if (isNew && isThere()) perform(content->second, write);
    }
    files[name] = content->second;
  }
  return files;
}

void Disk::leaveIn(const fs::path& folder, Luck luck, std::uint32_t seed) const {
  for (const auto& [name, content] : left(luck, seed)) {
    std::ofstream(folder / name, std::ios::binary) << content;
  }
}

}  // namespace orv::test
