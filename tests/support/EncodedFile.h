// Encoded files and files with passwords, of which there are no samples.
#pragma once

#include <filesystem>
#include <string>

#include "store/jet/file/Bytes.h"
#include "store/jet/file/File.h"
#include "store/jet/page/Format.h"
#include "store/jet/page/Rc4.h"

namespace orv::test {

/// Changes the first page of a Jet 4 file, of which a part is masked.
template <class Change>
void changeHeader(store::jet::File& file, const Change& change) {
  using namespace store::jet;
  store::Bytes page(kJet4.pageSize);
  const auto masked = std::span(page).subspan(kJet4.header.masked, kJet4.header.maskedSize);
  file.read(0, page.data(), page.size());
  applyRc4(kHeaderKey, masked);
  change(page);
  applyRc4(kHeaderKey, masked);
  file.write(0, page.data(), page.size());
}

/// Encodes all pages of a Jet 4 file as the format has it: each by RC4 with the key that the
/// header names and its own number.
inline void encodePages(store::jet::File& file, std::uint32_t key) {
  using namespace store::jet;
  changeHeader(file, [&](auto& page) { store32(&page[kJet4.header.encodingKey], key); });
  store::Bytes page(kJet4.pageSize);
  for (std::uint32_t number = 1; number < file.size() / page.size(); ++number) {
    file.read(number * page.size(), page.data(), page.size());
    applyRc4(key ^ number, page);
    file.write(number * page.size(), page.data(), page.size());
  }
}

/// Gives a Jet 4 file that has none the password `password`, of no more than 20 ASCII characters.
inline void setPassword(const std::filesystem::path& path, const std::string& password) {
  using namespace store::jet;
  const auto file = FileSystem::system().open(path, FileSystem::Open::existing);
  changeHeader(*file, [&](auto& page) {
    for (std::size_t i = 0; i < password.size(); ++i) {
      page[kJet4.header.password + 2 * i] ^= static_cast<std::uint8_t>(password[i]);
    }
  });
}

}  // namespace orv::test
