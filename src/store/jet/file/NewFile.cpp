#include "store/jet/file/NewFile.h"

#include <array>
#include <atomic>
#include <cstdio>
#include <random>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/file/Log.h"

namespace orv::store::jet {
namespace {

constexpr std::size_t kLargestPage = 4096;

[[noreturn]] void refuseToReplace(const std::string& path) {
  throw Error(kStoreFailure, "The file '" + path +
                                 "' exists already and is left as it is. Choose another name, "
                                 "or remove it first.");
}

std::string nameWhileMade(const std::string& path) {
  std::random_device device;
  return path + "-new-" + std::to_string(device());
}

/// The names of the files that are being made, where the handler of a signal finds them; more than
/// these at a time are not found.
std::array<std::atomic<const char*>, 4> beingMade{};

std::size_t remember(const char* name) {
  for (std::size_t slot = 0; slot < beingMade.size(); ++slot) {
    const char* none = nullptr;
    if (beingMade[slot].compare_exchange_strong(none, name)) return slot;
  }
  return beingMade.size();
}

}  // namespace

NewFile::NewFile(std::string path) : path_(std::move(path)), written_(nameWhileMade(path_)) {
  if (FileSystem::current().status(path_)) {
    refuseToReplace(path_);
  }
  try {
    file_ = FileSystem::current().open(written_, FileSystem::Open::newOnly);
  } catch (const Error& error) {
    // People know it by the name that it is to have.
    std::string text = error.description();
    const std::size_t at = text.find(written_);
    if (at != std::string::npos) text.replace(at, written_.size(), path_);
    throw Error(error.number(), text);
  }
  slot_ = remember(written_.c_str());
}

NewFile NewFile::beside(const std::string& former, std::string path) {
  if (FileSystem::current().status(path)) {
    refuseToReplace(path);
  }
  return {std::move(path), former, Mode::writable};
}

NewFile::NewFile(std::string path, const std::string& former, Mode mode)
    : path_(std::move(path)),
      written_(nameWhileMade(path_)),
      file_(FileSystem::current().createCompanion(written_, former)),
      slot_(remember(written_.c_str())) {
  if (mode == Mode::writable) file_->letOwnerWrite();
}

NewFile::~NewFile() {
  forget();
  if (written_.empty()) {
    return;
  }
  try {
    FileSystem::current().remove(written_);
  } catch (const Error&) {  // What made it useless is the failure to be told.
  }
}

std::vector<std::string> NewFile::attributesLacking() const {
  return FileSystem::current().attributesLacking(written_, path_);
}

void NewFile::putInPlace() {
  if (Log former(path_, kLargestPage); former.look() != Log::Found::absent) {
    former.setAside();  // It is of a database that was here before.
  }
  if (!FileSystem::current().rename(written_, path_)) {
    refuseToReplace(path_);
  }
  forget();
  written_ = path_;  // Until this is durable, a failure takes it back.
  FileSystem::current().syncFolder(path_);
  written_.clear();
}

void NewFile::replace() {
  FileSystem::current().replace(written_, path_);
  forget();
  written_.clear();
  FileSystem::current().syncFolder(path_);
}

void NewFile::forget() noexcept {
  if (slot_ < beingMade.size()) beingMade[slot_] = nullptr;
  slot_ = beingMade.size();
}

void NewFile::removeAll() noexcept {
  for (const auto& slot : beingMade) {
    if (const char* name = slot) std::remove(name);
  }
}

}  // namespace orv::store::jet
