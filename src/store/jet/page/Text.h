// Text as the file holds it.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "store/Value.h"

namespace orv::store::jet {

class Pager;

/// UTF-8 of UTF-16LE bytes; an odd last byte is passed over, an unpaired surrogate becomes U+FFFD.
std::string utf8FromUtf16(std::span<const std::uint8_t> bytes);
/// UTF-16 of UTF-8; malformed bytes become U+FFFD.
std::u16string utf16FromUtf8(std::string_view text);
/// UTF-16LE bytes of UTF-8.
Bytes utf16Bytes(std::string_view text);

/// Jet 4 text: UTF-16LE, or, marked by FF FE at its start, stretches of one byte a character
/// that a zero byte parts from stretches of two.
std::string decodeUnicodeText(std::span<const std::uint8_t> bytes);
/// Jet 4 text in its shorter form, if `compress` allows one byte a character.
Bytes encodeUnicodeText(std::string_view text, bool compress);

/// Jet 3 text, in a Windows code page such as 1252.
std::string decodeCodePageText(std::uint16_t codePage, std::span<const std::uint8_t> bytes);

/// Text as the file's format has it.
std::string decodeText(const Pager& pager, std::span<const std::uint8_t> bytes);

/// The form of a name by which it is looked up: without regard to case.
std::string foldName(std::string_view name);
/// Whether two names have the same form.
bool sameName(std::string_view a, std::string_view b);

}  // namespace orv::store::jet
