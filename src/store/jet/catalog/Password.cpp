#include "store/jet/catalog/Password.h"

#include <bit>
#include <cmath>

#include "store/jet/page/Text.h"

namespace orv::store::jet {

Bytes passwordField(const Format& format, const Bytes& header) {
  const auto* begin = &header[format.header.password];
  Bytes password(begin, begin + format.header.passwordSize);
  if (format.header.passwordMaskedByDate) {
    const double date = std::bit_cast<double>(load64(&header[format.header.creationDate]));
    constexpr double kEndOfDates = 2'958'466;  // 1 January 10000
    const auto days = std::abs(date) < kEndOfDates ? static_cast<std::int32_t>(date) : 0;
    for (std::size_t i = 0; i < password.size(); ++i) {
      password[i] ^= static_cast<std::uint8_t>(days >> (8 * (i % 4)));
    }
  }
  return password;
}

std::string passwordIn(const Format& format, const Bytes& header) {
  const Bytes password = passwordField(format, header);
  const std::string text =
      format.unicodeText
          ? utf8FromUtf16(password)
          : decodeCodePageText(static_cast<std::uint16_t>(load16(&header[format.header.codePage])),
                               password);
  return text.substr(0, text.find('\0'));
}

}  // namespace orv::store::jet
