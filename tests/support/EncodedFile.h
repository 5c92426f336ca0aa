// Encoded files and files with passwords, of which there are no samples.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>

#include "store/jet/file/Bytes.h"
#include "store/jet/file/File.h"
#include "store/jet/page/Format.h"
#include "store/jet/page/Rc4.h"

namespace orv::test {

/// Encodes all pages of a Jet 4 file as the format has it: each by RC4 with the key that the
/// header names and its own number.
inline void encodePages(store::jet::File& file, std::uint32_t key) {
  using namespace store::jet;
  const Format& format = kJet4;
  store::Bytes page(format.pageSize);
  for (std::uint64_t at = 0; at < file.size(); at += format.pageSize) {
    file.read(at, page.data(), page.size());
    if (at == 0) {
      const auto hidden = std::span(page).subspan(format.header.masked, format.header.maskedSize);
      applyRc4(kHeaderKey, hidden);
      store32(&page[format.header.encodingKey], key);
      applyRc4(kHeaderKey, hidden);
    } else {
      applyRc4(key ^ static_cast<std::uint32_t>(at / format.pageSize), page);
    }
    file.write(at, page.data(), page.size());
  }
}

/// Gives a Jet 4 file that has none the password `password`, of no more than 20 ASCII characters.
inline void setPassword(const std::filesystem::path& path, const std::string& password) {
  using namespace store::jet;
  const auto& header = kJet4.header;
  std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
  store::Bytes page(kJet4.pageSize);
  auto* bytes = reinterpret_cast<char*>(page.data());
  file.read(bytes, static_cast<std::streamsize>(page.size()));
  const auto hidden = std::span(page).subspan(header.masked, header.maskedSize);
  applyRc4(kHeaderKey, hidden);
  for (std::size_t i = 0; i < password.size(); ++i) {
    page[header.password + 2 * i] ^= static_cast<std::uint8_t>(password[i]);
  }
  applyRc4(kHeaderKey, hidden);
  file.seekp(0);
  file.write(bytes, static_cast<std::streamsize>(page.size()));
}

}  // namespace orv::test
