#include "store/jet/page/Text.h"

#include <unicode/ucnv.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <memory>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/file/Bytes.h"
#include "store/jet/page/Pager.h"

namespace orv::store::jet {
namespace {

constexpr char32_t kReplacement = 0xfffd;

void appendUtf8(std::string& out, char32_t c) {
  if (c < 0x80) {
    out += static_cast<char>(c);
  } else if (c < 0x800) {
    out += static_cast<char>(0xc0 | c >> 6);
    out += static_cast<char>(0x80 | (c & 0x3f));
  } else if (c < 0x10000) {
    out += static_cast<char>(0xe0 | c >> 12);
    out += static_cast<char>(0x80 | (c >> 6 & 0x3f));
    out += static_cast<char>(0x80 | (c & 0x3f));
  } else {
    out += static_cast<char>(0xf0 | c >> 18);
    out += static_cast<char>(0x80 | (c >> 12 & 0x3f));
    out += static_cast<char>(0x80 | (c >> 6 & 0x3f));
    out += static_cast<char>(0x80 | (c & 0x3f));
  }
}

/// Takes UTF-16 units one by one and appends whole characters.
class Utf16Reader {
 public:
  explicit Utf16Reader(std::string& out) : out_(out) {}
  ~Utf16Reader() { flush(); }

  void add(char16_t unit) {
    if (unit >= 0xdc00 && unit < 0xe000 && high_ != 0) {
      appendUtf8(out_, 0x10000 + ((char32_t{high_} - 0xd800) << 10) + (unit - 0xdc00));
      high_ = 0;
      return;
    }
    flush();
    if (unit >= 0xd800 && unit < 0xdc00) {
      high_ = unit;
    } else {
      appendUtf8(out_, unit >= 0xdc00 && unit < 0xe000 ? kReplacement : char32_t{unit});
    }
  }

 private:
  void flush() {
    if (high_ != 0) {
      appendUtf8(out_, kReplacement);
      high_ = 0;
    }
  }

  std::string& out_;
  char16_t high_ = 0;
};

constexpr std::uint8_t kCompressedMark[] = {0xff, 0xfe};

bool isCompressed(std::span<const std::uint8_t> bytes) {
  return bytes.size() >= 2 && bytes[0] == kCompressedMark[0] && bytes[1] == kCompressedMark[1];
}

}  // namespace

std::string utf8FromUtf16(std::span<const std::uint8_t> bytes) {
  std::string out;
  out.reserve(bytes.size() / 2);
  {
    Utf16Reader reader(out);
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
      reader.add(load16(&bytes[i]));
    }
  }
  return out;
}

std::u16string utf16FromUtf8(std::string_view text) {
  const auto converted = icu::UnicodeString::fromUTF8({text.data(), static_cast<int>(text.size())});
  return {converted.getBuffer(), static_cast<std::size_t>(converted.length())};
}

Bytes utf16Bytes(std::string_view text) {
  Bytes out;
  for (char16_t unit : utf16FromUtf8(text)) {
    out.push_back(static_cast<std::uint8_t>(unit));
    out.push_back(static_cast<std::uint8_t>(unit >> 8));
  }
  return out;
}

std::string decodeUnicodeText(std::span<const std::uint8_t> bytes) {
  if (!isCompressed(bytes)) {
    return utf8FromUtf16(bytes);
  }
  std::string out;
  out.reserve(bytes.size());
  {
    Utf16Reader reader(out);
    bool single = true;
    for (std::size_t i = 2; i < bytes.size();) {
      if (bytes[i] == 0) {
        single = !single;
        ++i;
      } else if (single) {
        reader.add(bytes[i++]);
      } else if (i + 1 < bytes.size()) {
        reader.add(load16(&bytes[i]));
        i += 2;
      } else {
        break;
      }
    }
  }
  return out;
}

Bytes encodeUnicodeText(std::string_view text, bool compress) {
  const std::u16string units = utf16FromUtf8(text);
  const bool shorter = units.size() > 2;
  const bool possible =
      compress && shorter &&
      std::all_of(units.begin(), units.end(), [](char16_t u) { return u > 0 && u < 0x100; });
  if (!possible) {
    return utf16Bytes(text);
  }
  Bytes out(std::begin(kCompressedMark), std::end(kCompressedMark));
  for (char16_t unit : units) {
    out.push_back(static_cast<std::uint8_t>(unit));
  }
  return out;
}

std::string decodeCodePageText(std::uint16_t codePage, std::span<const std::uint8_t> bytes) {
  struct Close {
    void operator()(UConverter* converter) const { ucnv_close(converter); }
  };
  static std::map<std::uint16_t, std::unique_ptr<UConverter, Close>> converters;
  auto& converter = converters[codePage];
  if (converter == nullptr) {
    const std::string name = "windows-" + std::to_string(codePage == 0 ? 1252 : codePage);
    UErrorCode status = U_ZERO_ERROR;
    converter.reset(ucnv_open(name.c_str(), &status));
    if (U_FAILURE(status)) {
      throw Error(kNotSupported, "The text of the file is in code page " +
                                     std::to_string(codePage) + ", which is not known here.");
    }
  }
  UErrorCode status = U_ZERO_ERROR;
  const icu::UnicodeString text(reinterpret_cast<const char*>(bytes.data()),
                                static_cast<int>(bytes.size()), converter.get(), status);
  std::string out;
  text.toUTF8String(out);
  return out;
}

std::string decodeText(const Pager& pager, std::span<const std::uint8_t> bytes) {
  const Format& format = pager.format();
  return format.unicodeText
             ? decodeUnicodeText(bytes)
             : decodeCodePageText(load16(&pager.header()[format.header.codePage]), bytes);
}

std::string foldName(std::string_view name) {
  std::string out;
  const auto isAscii = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
  if (std::ranges::all_of(name, isAscii)) {
    // Nearly every name is, and names are looked up for every statement and row.
    std::ranges::transform(name, std::back_inserter(out), [](char c) {
      return 'A' <= c && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return out;
  }
  icu::UnicodeString::fromUTF8({name.data(), static_cast<int>(name.size())})
      .foldCase()
      .toUTF8String(out);
  return out;
}

}  // namespace orv::store::jet
