#include "store/jet/file/LogFormat.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace orv::store::jet {
namespace {

constexpr std::array<std::uint8_t, 8> kMagic = {'O', 'R', 'V', 'R', 'E', 'D', 'O', '1'};
constexpr std::uint32_t kRecordMagic = 0x54494d43;  // "CMIT"
constexpr std::size_t kHeaderSum = kPieceSize - 8;  // where the header's checksum stands
constexpr std::size_t kRecordSum = LogRecord::kHeadSize - 8;
constexpr std::size_t kPageHeadSize = 8;

std::size_t entrySize(std::size_t pageSize) {
  return kPageHeadSize + pageSize / kPieceSize * 8 + pageSize;
}

/// Of all of a record but the place of its checksum.
std::uint64_t checksumOfRecord(std::span<const std::uint8_t> record) {
  return checksumOf(record.first(kRecordSum)) ^
         std::rotl(checksumOf(record.subspan(LogRecord::kHeadSize)), 1);
}

}  // namespace

std::uint64_t checksumOf(std::span<const std::uint8_t> bytes) {
  constexpr std::uint64_t kPrime = 0x9e3779b97f4a7c15;
  const auto mixed = [](std::uint64_t lane, const std::uint8_t* word) {
    return (std::rotl(lane, 29) ^ load64(word)) * kPrime;
  };
  // Four lanes, so that the processor need not wait for one multiplication after the other.
  std::uint64_t a = kPrime, b = ~kPrime, c = kPrime << 1, d = kPrime >> 1;
  const std::uint8_t* word = bytes.data();
  std::size_t words = bytes.size() / 8;
  for (; words >= 4; words -= 4, word += 32) {
    a = mixed(a, word);
    b = mixed(b, word + 8);
    c = mixed(c, word + 16);
    d = mixed(d, word + 24);
  }
  for (; words > 0; --words, word += 8) a = mixed(a, word);
  std::uint64_t sum = bytes.size();
  for (const std::uint64_t lane : {a, b, c, d}) {
    sum = (std::rotl(sum, 31) ^ lane ^ lane >> 32) * kPrime;
  }
  return sum ^ sum >> 29;
}

std::array<std::uint8_t, kPieceSize> LogHeader::encode() const {
  std::array<std::uint8_t, kPieceSize> bytes{};
  std::copy(kMagic.begin(), kMagic.end(), bytes.begin());
  store32(&bytes[8], pageSize);
  store64(&bytes[16], origin);
  store64(&bytes[24], generation);
  store64(&bytes[32], number);
  store64(&bytes[kHeaderSum], checksumOf(std::span(bytes).first(kHeaderSum)));
  return bytes;
}

std::optional<LogHeader> LogHeader::decode(std::span<const std::uint8_t> bytes) {
  if (bytes.size() < kPieceSize || !std::equal(kMagic.begin(), kMagic.end(), bytes.begin()) ||
      load64(&bytes[kHeaderSum]) != checksumOf(bytes.first(kHeaderSum))) {
    return std::nullopt;
  }
  return LogHeader{load32(&bytes[8]), load64(&bytes[16]), load64(&bytes[24]), load64(&bytes[32])};
}

std::array<std::uint8_t, kPieceSize> LogState::encode() const {
  std::array<std::uint8_t, kPieceSize> bytes{};
  store64(&bytes[0], generation);
  store64(&bytes[8], number);
  store64(&bytes[16], end);
  store64(&bytes[24], busy ? 1 : 0);
  store64(&bytes[32], databaseSize);
  store64(&bytes[40], static_cast<std::uint64_t>(databaseModified));
  return bytes;
}

LogState LogState::decode(std::span<const std::uint8_t> bytes) {
  return {load64(&bytes[0]),  load64(&bytes[8]),
          load64(&bytes[16]), load64(&bytes[24]) != 0,
          load64(&bytes[32]), static_cast<std::int64_t>(load64(&bytes[40]))};
}

std::uint64_t LogRecord::sizeFor(std::size_t pages, std::size_t pageSize) {
  const std::uint64_t size = kHeadSize + std::uint64_t{pages} * entrySize(pageSize);
  return (size + kPieceSize - 1) / kPieceSize * kPieceSize;
}

Bytes LogRecord::encode(Head head, std::span<const LoggedPage> pages, std::size_t pageSize) {
  head.pages = static_cast<std::uint32_t>(pages.size());
  head.size = sizeFor(pages.size(), pageSize);
  Bytes bytes(head.size);
  store32(&bytes[0], kRecordMagic);
  store32(&bytes[4], head.pages);
  store64(&bytes[8], head.generation);
  store64(&bytes[16], head.number);
  store32(&bytes[24], head.pageCountBefore);
  store32(&bytes[28], head.pageCountAfter);
  store64(&bytes[32], head.size);
  store64(&bytes[40], head.companion);
  std::uint8_t* at = &bytes[kHeadSize];
  for (const LoggedPage& page : pages) {
    store32(at, page.number);
    at += kPageHeadSize;
    for (std::size_t piece = 0; piece < pageSize; piece += kPieceSize, at += 8) {
      if (page.before != nullptr) {
        store64(at, checksumOf({page.before + piece, kPieceSize}));
      }
    }
    std::memcpy(at, page.after, pageSize);
    at += pageSize;
  }
  store64(&bytes[kRecordSum], checksumOfRecord(bytes));
  return bytes;
}

std::optional<LogRecord::Head> LogRecord::decodeHead(std::span<const std::uint8_t> bytes,
                                                     std::size_t pageSize) {
  if (bytes.size() < kHeadSize || load32(&bytes[0]) != kRecordMagic) {
    return std::nullopt;
  }
  const Head head{load32(&bytes[4]),  load64(&bytes[8]),         load64(&bytes[16]),
                  load32(&bytes[24]), load32(&bytes[28]),        load64(&bytes[32]),
                  load64(&bytes[40]), load64(&bytes[kRecordSum])};
  const bool canBe =
      head.size == sizeFor(head.pages, pageSize) && head.pageCountBefore <= head.pageCountAfter;
  return canBe ? std::optional(head) : std::nullopt;
}

std::optional<std::vector<LogRecord::Page>> LogRecord::decode(std::span<const std::uint8_t> record,
                                                              const Head& head,
                                                              std::size_t pageSize) {
  if (record.size() != head.size || checksumOfRecord(record) != head.checksum) {
    return std::nullopt;
  }
  std::vector<Page> pages;
  std::uint32_t added = 0;
  for (std::size_t i = 0; i < head.pages; ++i) {
    const auto entry = record.subspan(kHeadSize + i * entrySize(pageSize), entrySize(pageSize));
    const PageNumber number = load32(entry.data());
    if (number >= head.pageCountAfter) {
      return std::nullopt;
    }
    added += number >= head.pageCountBefore ? 1 : 0;
    pages.push_back(
        {number, entry.subspan(kPageHeadSize, pageSize / kPieceSize * 8), entry.last(pageSize)});
  }
  // A file grows by pages that the record has, so that no record makes it grow without content.
  return added == head.pageCountAfter - head.pageCountBefore ? std::optional(pages) : std::nullopt;
}

}  // namespace orv::store::jet
