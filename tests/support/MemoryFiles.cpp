#include "support/MemoryFiles.h"

#include <algorithm>
#include <fstream>
#include <iterator>

#include "errors/Error.h"
#include "store/StoreError.h"

namespace orv::test {

using store::Bytes;
using store::jet::FileStatus;
using store::jet::LockKind;

class MemoryFile final : public store::jet::File {
 public:
  MemoryFile(MemoryFiles& files, std::shared_ptr<MemoryFiles::Node> node)
      : files_(files), node_(std::move(node)) {}

  FileStatus status() override {
    return {.device = 1,
            .inode = node_->number,
            .links = node_->isRemoved ? 0U : 1U,
            .size = node_->content.size(),
            .modified = node_->modified};
  }

  void read(std::uint64_t offset, std::uint8_t* bytes, std::size_t length) override {
    if (offset + length > node_->content.size()) {
      throw Error(store::kStoreFailure, "the file ends too early");
    }
    std::copy_n(node_->content.begin() + static_cast<std::ptrdiff_t>(offset), length, bytes);
  }

  void write(std::uint64_t offset, const std::uint8_t* bytes, std::size_t length) override {
    files_.count("write");
    const std::uint64_t end = offset + length;
    files_.checkSpace(end > size() ? end - size() : 0);
    change({offset, Bytes(bytes, bytes + length)});
  }

  void truncate(std::uint64_t size) override {
    files_.count("truncate");
    change({size, {}, true});
  }

  void sync() override {
    files_.count("sync");
    node_->synced = node_->content;
    node_->unsynced.clear();
  }

  bool readOnly() const override { return false; }
  bool tryLock(LockKind, bool) override { return true; }
  void unlock(LockKind) override {}
  bool isFree(LockKind) override { return true; }
  std::string lockHolder(LockKind) override { return "nobody"; }

 private:
  void change(MemoryFiles::Change change) {
    MemoryFiles::apply(node_->content, change);
    node_->unsynced.push_back(std::move(change));
    node_->modified = ++files_.clock_;
  }

  MemoryFiles& files_;
  std::shared_ptr<MemoryFiles::Node> node_;
};

void MemoryFiles::load(const std::filesystem::path& file, const std::string& name) {
  std::ifstream stream(file, std::ios::binary);
  auto node = newNode();
  node->content.assign(std::istreambuf_iterator<char>(stream), {});
  node->synced = node->content;
  node->creationSynced = true;
  files_[name] = std::move(node);
}

void MemoryFiles::copy(const std::string& from, const std::string& to) {
  const Node& source = *files_.at(from);
  if (files_.count(to) == 0) files_[to] = newNode();
  Node& node = *files_.at(to);
  node.content = node.synced = source.content;
  node.unsynced.clear();
  node.creationSynced = true;
  node.modified = ++clock_;
}

std::shared_ptr<MemoryFiles::Node> MemoryFiles::newNode() {
  auto node = std::make_shared<Node>();
  node->number = ++lastNumber_;
  return node;
}

void MemoryFiles::save(const std::string& name, const std::filesystem::path& file) const {
  const Bytes& content = files_.at(name)->content;
  std::ofstream stream(file, std::ios::binary);
  stream.write(reinterpret_cast<const char*>(content.data()),
               static_cast<std::streamsize>(content.size()));
}

void MemoryFiles::count(const std::string& what) {
  const std::size_t call = calls_++;
  if ((call >= failAt_ && call < failEnd_) || call >= powerOffAt_) {
    throw Error(store::kStoreFailure, what + " was made to fail");
  }
}

void MemoryFiles::checkSpace(std::uint64_t more) const {
  std::uint64_t used = more;
  for (const auto& [name, node] : files_) used += node->content.size();
  if (more > 0 && used > space_) throw Error(store::kStoreFailure, "no space left on the device");
}

void MemoryFiles::apply(Bytes& content, const Change& change) {
  if (change.truncates) {
    content.resize(static_cast<std::size_t>(change.offset));
    return;
  }
  content.resize(std::max<std::size_t>(content.size(), change.offset + change.bytes.size()));
  std::copy(change.bytes.begin(), change.bytes.end(),
            content.begin() + static_cast<std::ptrdiff_t>(change.offset));
}

void MemoryFiles::restart(unsigned seed) {
  constexpr std::size_t kSector = 512;
  std::mt19937 random(seed);
  auto heads = [&] { return random() % 2 == 0; };
  for (auto& [name, node] : removedUnsynced_) {
    if (heads() && files_.emplace(name, node).second) node->isRemoved = false;
  }
  removedUnsynced_.clear();
  for (const auto& [to, from] : renamedUnsynced_) {
    if (files_.count(to) != 0 && heads()) {
      files_[from] = files_.at(to);
      files_.erase(to);
    }
  }
  renamedUnsynced_.clear();
  for (auto at = files_.begin(); at != files_.end();) {
    Node& node = *at->second;
    if (!node.creationSynced && heads()) {
      at = files_.erase(at);
      continue;
    }
    Bytes content = node.synced;
    for (const Change& change : node.unsynced) {
      if (change.truncates) {
        if (heads()) apply(content, change);
        continue;
      }
      for (std::size_t from = 0; from < change.bytes.size(); from += kSector) {
        const std::size_t to = std::min(change.bytes.size(), from + kSector);
        if (heads()) {
          apply(content, {change.offset + from,
                          Bytes(change.bytes.begin() + static_cast<std::ptrdiff_t>(from),
                                change.bytes.begin() + static_cast<std::ptrdiff_t>(to))});
        }
      }
    }
    node.content = node.synced = std::move(content);
    node.unsynced.clear();
    ++at;
  }
  failAt_ = powerOffAt_ = SIZE_MAX;
}

std::unique_ptr<store::jet::File> MemoryFiles::open(const std::string& path, Open mode) {
  auto found = files_.find(path);
  if (found == files_.end()) {
    if (mode != Open::newOnly) throw Error(store::kStoreFailure, "there is no file " + path);
    count("create");
    found = files_.emplace(path, newNode()).first;
  } else if (mode == Open::newOnly) {
    throw Error(store::kStoreFailure, "the file is there already: " + path);
  }
  return std::make_unique<MemoryFile>(*this, found->second);
}

std::int64_t MemoryFiles::size(const std::string& path) const {
  const auto found = files_.find(path);
  return found == files_.end() ? -1 : static_cast<std::int64_t>(found->second->content.size());
}

std::optional<FileStatus> MemoryFiles::status(const std::string& path) {
  const auto found = files_.find(path);
  return found == files_.end() ? std::nullopt
                               : std::optional(MemoryFile(*this, found->second).status());
}

std::unique_ptr<store::jet::File> MemoryFiles::openCompanion(const std::string& path) {
  return files_.count(path) == 0 ? nullptr : open(path, Open::existing);
}

std::unique_ptr<store::jet::File> MemoryFiles::createCompanion(const std::string& path,
                                                               const std::string&) {
  return open(path, Open::newOnly);
}

void MemoryFiles::remove(const std::string& path) {
  count("remove");
  if (const auto found = files_.find(path); found != files_.end()) {
    removedUnsynced_[path] = found->second;
    found->second->isRemoved = true;
    files_.erase(found);
  }
}

bool MemoryFiles::rename(const std::string& from, const std::string& to) {
  count("rename");
  if (files_.count(to) != 0) return false;
  files_[to] = files_.at(from);
  files_.erase(from);
  renamedUnsynced_[to] = from;
  return true;
}

void MemoryFiles::replace(const std::string& from, const std::string& to) {
  count("replace");
  files_[to] = files_.at(from);
  files_.erase(from);
}

void MemoryFiles::syncFolder(const std::string&) {
  count("syncFolder");
  removedUnsynced_.clear();
  renamedUnsynced_.clear();
  for (auto& [name, node] : files_) node->creationSynced = true;
}

}  // namespace orv::test
