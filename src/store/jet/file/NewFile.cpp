#include "store/jet/file/NewFile.h"

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

}  // namespace

NewFile::NewFile(std::string path) : path_(std::move(path)), written_(nameWhileMade(path_)) {
  if (FileSystem::current().status(path_)) {
    refuseToReplace(path_);
  }
  file_ = FileSystem::current().open(written_, FileSystem::Open::newOnly);
}

NewFile NewFile::beside(const std::string& former, std::string path) {
  if (FileSystem::current().status(path)) {
    refuseToReplace(path);
  }
  return {std::move(path), former};
}

NewFile::NewFile(std::string path, const std::string& former)
    : path_(std::move(path)),
      written_(nameWhileMade(path_)),
      file_(FileSystem::current().createCompanion(written_, former)) {}

NewFile::~NewFile() {
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
  written_ = path_;  // Until this is durable, a failure takes it back.
  FileSystem::current().syncFolder(path_);
  written_.clear();
}

void NewFile::replace() {
  FileSystem::current().replace(written_, path_);
  written_.clear();
  FileSystem::current().syncFolder(path_);
}

}  // namespace orv::store::jet
