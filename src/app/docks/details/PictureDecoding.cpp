#include "app/docks/details/PictureDecoding.h"

#include <QBuffer>
#include <QImageReader>
#include <QtEndian>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

#include "app/docks/details/OleObject.h"

namespace orv::app {

namespace {

using Bytes = std::span<const std::uint8_t>;

// The start of the files that programs wrap into objects.
constexpr std::array<std::string_view, 4> kSignatures{"\x89PNG\r\n\x1a\n", "\xff\xd8\xff", "BM",
                                                      "GIF8"};
constexpr qint64 kMostPoints = 32 << 20;  ///< of a picture: what Qt takes memory for
constexpr int kMostFinds = 16;  ///< of what begins like a picture of one kind within a field
constexpr std::size_t kFileHeaderSize = 14;    ///< of a bitmap file
constexpr std::uint32_t kInfoHeaderSize = 40;  ///< least size of a bitmap's own header
constexpr std::uint32_t kBitFields = 3;        ///< compression: three masks follow the header

QByteArray viewOf(Bytes bytes) {
  return QByteArray::fromRawData(reinterpret_cast<const char*>(bytes.data()),
                                 static_cast<qsizetype>(bytes.size()));
}

DecodedPicture decodeFile(QByteArray data) {
  QBuffer buffer(&data);
  buffer.open(QIODevice::ReadOnly);
  QImageReader reader(&buffer);
  reader.setAutoTransform(true);
  // By what the data are; the name of a format alone must not make text of them.
  reader.setDecideFormatFromContent(true);
  const QString format = QString::fromLatin1(reader.format()).toUpper();
  const QSize size(reader.size().width(), std::abs(reader.size().height()));  // bitmaps: or < 0
  if (qint64{size.width()} * size.height() > kMostPoints) return {QImage(), format, size};
  return {reader.read(), format, {}};
}

std::uint32_t long32(Bytes bytes, std::size_t offset) {
  return qFromLittleEndian<std::uint32_t>(bytes.data() + offset);
}

/// A bitmap as it lies in memory gets the file header that it lacks.
DecodedPicture decodeBitmap(Bytes bytes) {
  if (bytes.size() < kInfoHeaderSize) return {};
  const std::uint32_t headerSize = long32(bytes, 0);
  if (headerSize < kInfoHeaderSize || headerSize > bytes.size()) return {};
  const auto bits = qFromLittleEndian<std::uint16_t>(bytes.data() + 14);
  const std::uint32_t masks =
      headerSize == kInfoHeaderSize && long32(bytes, 16) == kBitFields ? 12 : 0;
  const std::uint32_t used = long32(bytes, 32);
  const std::uint32_t colours = used != 0 ? std::min(used, 256U) : bits <= 8 ? 1U << bits : 0;

  QByteArray file(kFileHeaderSize, '\0');
  file[0] = 'B';
  file[1] = 'M';
  const auto size = static_cast<std::uint32_t>(kFileHeaderSize + bytes.size());
  const auto pixels =
      static_cast<std::uint32_t>(kFileHeaderSize) + headerSize + masks + colours * 4;
  qToLittleEndian(size, file.data() + 2);
  qToLittleEndian(pixels, file.data() + 10);
  return decodeFile(file + viewOf(bytes));
}

/// The first place where a picture file lies in the bytes and can be decoded.
DecodedPicture searchFile(Bytes bytes) {
  const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  for (const std::string_view signature : kSignatures) {
    int finds = 0;
    for (auto at = text.find(signature); at != std::string_view::npos && finds < kMostFinds;
         at = text.find(signature, at + 1)) {
      auto picture = decodeFile(viewOf(bytes.subspan(at)));
      if (!picture.image.isNull()) return picture;
      finds += picture.format.isEmpty() ? 0 : 1;
    }
  }
  return {};
}

DecodedPicture decodeBytes(Bytes bytes) {
  DecodedPicture refused;
  for (const auto decode :
       {+[](Bytes each) { return decodeFile(viewOf(each)); }, &decodeBitmap, &searchFile}) {
    auto picture = decode(bytes);
    if (!picture.image.isNull()) return picture;
    if (refused.refused.isEmpty() && !picture.refused.isEmpty()) refused = picture;
  }
  return refused;
}

}  // namespace

DecodedPicture decodePicture(std::span<const std::uint8_t> field) {
  if (field.empty()) return {};
  const auto object = readOleObject(field);
  if (!object) return decodeBytes(field);
  DecodedPicture picture = decodeBytes(object->data);
  if (picture.image.isNull() && picture.refused.isEmpty()) {
    picture.format = QString::fromStdString(object->className);
  }
  return picture;
}

}  // namespace orv::app
