#include "outside/Disk.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <stdexcept>

#include "support/ReadFile.h"

namespace orv::test {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kPiece = 512;

std::uint64_t numberOf(const fs::path& file) {
  struct stat status {};
  if (::stat(file.c_str(), &status) != 0) throw std::runtime_error("no file " + file.string());
  return status.st_ino;
}

}  // namespace

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

/// What happens to each thing that was not synced.
class Disk::Outcome {
 public:
  Outcome(Luck luck, std::uint32_t seed)
      : luck_(luck), random_(seed), share_(std::uniform_int_distribution(1, 9)(random_)) {}

  bool isThere() {
    if (luck_ != Luck::mixed) return luck_ == Luck::good;
    return std::uniform_int_distribution(0, 9)(random_) < share_;
  }

  std::string contentOf(const File& file) {
    std::string content = file.certain;
    for (const Write& write : file.pending) {
      if (write.isResize) {
        if (isThere()) perform(content, write);
        continue;
      }
      std::uint64_t offset = write.offset;
      for (std::size_t done = 0; done < write.data.size();) {
        const std::size_t length =
            std::min<std::size_t>(kPiece - offset % kPiece, write.data.size() - done);
        if (isThere()) perform(content, {offset, write.data.substr(done, length), false});
        done += length;
        offset += length;
      }
    }
    return content;
  }

 private:
  Luck luck_;
  std::mt19937 random_;
  int share_;  ///< in tenths
};

Disk::Disk(const fs::path& folder) {
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    if (!entry.is_regular_file()) continue;
    auto file = std::make_shared<File>();
    file->certain = readFile(entry.path());
    files_[numberOf(entry.path())] = file;
    certainNames_[entry.path().filename().string()] = std::move(file);
  }
}

Disk::Disk(const Disk& other)
    : files_(other.files_), certainNames_(other.certainNames_), pendingNames_(other.pendingNames_) {
  std::map<FilePointer, FilePointer> copies;
  const auto replace = [&](FilePointer& file) {
    FilePointer& copy = copies[file];
    if (copy == nullptr) copy = std::make_shared<File>(*file);
    file = copy;
  };
  for (auto& [number, file] : files_) replace(file);
  for (auto& [name, file] : certainNames_) replace(file);
  for (NameChange& change : pendingNames_) replace(change.file);
}

const Disk::FilePointer& Disk::fileOf(const Call& call) {
  const auto found = files_.find(call.file);
  if (found == files_.end()) {
    throw std::runtime_error("'" + call.name + "' was changed, but its making was not recorded");
  }
  return found->second;
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
void Disk::perform(std::map<std::string, FilePointer>& names, const NameChange& change) {
  const auto old = names.find(change.removed);
  if (old != names.end() && old->second == change.file) names.erase(old);
  if (!change.added.empty()) names[change.added] = change.file;
}

void Disk::apply(const Call& call) {
  switch (call.kind) {
    case CallKind::create:
      files_[call.file] = std::make_shared<File>();
      pendingNames_.push_back({"", call.name, files_[call.file]});
      break;
    case CallKind::write:
      fileOf(call)->pending.push_back({call.offset, call.data, false});
      break;
    case CallKind::resize:
      fileOf(call)->pending.push_back({call.offset, "", true});
      break;
    case CallKind::sync: {
      File& file = *fileOf(call);
      for (const Write& write : file.pending) perform(file.certain, write);
      file.pending.clear();
      break;
    }
    case CallKind::syncFolder:
      for (const NameChange& change : pendingNames_) perform(certainNames_, change);
      pendingNames_.clear();
      break;
    case CallKind::rename:
      pendingNames_.push_back({call.name, call.other, fileOf(call)});
      break;
    case CallKind::remove:
      pendingNames_.push_back({call.name, "", fileOf(call)});
      break;
    case CallKind::report:
      break;
  }
}

void Disk::leaveIn(const fs::path& folder, Luck luck, std::uint32_t seed) const {
  Outcome outcome(luck, seed);
  std::map<std::string, FilePointer> names = certainNames_;
  for (const NameChange& change : pendingNames_) {
    if (outcome.isThere()) perform(names, change);
  }
  std::map<const File*, std::string> contents;  // a file with two names has one content
  for (const auto& [name, file] : names) {
    if (!contents.contains(file.get())) contents[file.get()] = outcome.contentOf(*file);
    const std::string& content = contents[file.get()];
    std::ofstream(folder / name, std::ios::binary)
        .write(content.data(), static_cast<std::streamsize>(content.size()));
  }
}

}  // namespace orv::test
