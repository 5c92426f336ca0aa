#include <gtest/gtest.h>

#include <QBuffer>
#include <vector>

#include "app/docks/details/PictureDecoding.h"

namespace orv::app {
namespace {

using Bytes = std::vector<std::uint8_t>;

QImage picture() {
  QImage image(13, 7, QImage::Format_RGB32);
  image.fill(Qt::darkGreen);
  image.setPixelColor(3, 2, Qt::red);
  return image;
}

Bytes encoded(const char* format) {
  QByteArray data;
  QBuffer buffer(&data);
  buffer.open(QIODevice::WriteOnly);
  picture().save(&buffer, format);
  return {data.begin(), data.end()};
}

void append(Bytes& bytes, std::uint32_t value, int size = 4) {
  for (int i = 0; i < size; ++i) bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}

void append(Bytes& bytes, const std::string& text) {
  append(bytes, static_cast<std::uint32_t>(text.size() + 1));
  bytes.insert(bytes.end(), text.begin(), text.end());
  bytes.push_back(0);
}

/// An object as a field holds it, with data of its own and something behind it.
Bytes wrapped(std::uint32_t format, const std::string& className, const Bytes& data) {
  Bytes field;
  append(field, 0x1C15, 2);
  append(field, 36, 2);
  field.resize(36, 0xAA);
  append(field, 0x0501);
  append(field, format);
  append(field, className);
  append(field, 0);
  append(field, 0);
  append(field, static_cast<std::uint32_t>(data.size()));
  field.insert(field.end(), data.begin(), data.end());
  field.resize(field.size() + 25, 0xBB);
  return field;
}

constexpr std::uint32_t kEmbedded = 2;
constexpr std::uint32_t kPresentation = 5;
constexpr int kFileHeader = 14;

TEST(PictureDecodingTest, DecodesPictureFiles) {
  for (const char* format : {"PNG", "BMP"}) {
    const auto decoded = decodePicture(encoded(format));
    EXPECT_EQ(decoded.format, format);
    EXPECT_EQ(decoded.image.convertToFormat(QImage::Format_RGB32), picture()) << format;
  }
  const auto jpeg = decodePicture(encoded("JPEG"));
  EXPECT_EQ(jpeg.format, "JPEG");
  EXPECT_EQ(jpeg.image.size(), picture().size());
}

TEST(PictureDecodingTest, DecodesWhatObjectsWrap) {
  const Bytes file = encoded("BMP");
  const Bytes bitmap(file.begin() + kFileHeader, file.end());
  Bytes package{2, 0, 'a', 0, 'C', ':', 0, 0, 0};
  const Bytes png = encoded("PNG");
  package.insert(package.end(), png.begin(), png.end());

  for (const Bytes& field :
       {wrapped(kEmbedded, "PBrush", file), wrapped(kPresentation, "DIB", bitmap),
        wrapped(kEmbedded, "Package", package), bitmap}) {
    const auto decoded = decodePicture(field);
    EXPECT_EQ(decoded.image.convertToFormat(QImage::Format_RGB32), picture());
  }
  const auto other = decodePicture(wrapped(kEmbedded, "Word.Document.8", Bytes(500, 7)));
  EXPECT_TRUE(other.image.isNull());
  EXPECT_EQ(other.format, "Word.Document.8") << "named where it cannot be shown";
}

TEST(PictureDecodingTest, TakesNothingFromDamagedFields) {
  EXPECT_TRUE(decodePicture({}).image.isNull());
  EXPECT_TRUE(decodePicture(Bytes(20000, 7)).image.isNull());
  const Bytes field = wrapped(kEmbedded, "PBrush", encoded("BMP"));
  for (std::size_t size = 0; size < field.size() - 25; ++size) {
    decodePicture(Bytes(field.begin(), field.begin() + static_cast<std::ptrdiff_t>(size)));
  }
  Bytes overlong = field;
  overlong[2] = 0xFF;
  overlong[3] = 0xFF;
  EXPECT_NO_THROW(decodePicture(overlong));
}

/// The picture as a bitmap file that claims another size.
Bytes claiming(std::int32_t width, std::int32_t height) {
  Bytes file = encoded("BMP");
  for (int i = 0; i < 4; ++i) {
    file[static_cast<std::size_t>(18 + i)] = static_cast<std::uint8_t>(width >> (8 * i));
    file[static_cast<std::size_t>(22 + i)] = static_cast<std::uint8_t>(height >> (8 * i));
  }
  return file;
}

TEST(PictureDecodingTest, RefusesWhatClaimsToBeHuge) {
  const Bytes huge = claiming(10'000, 10'000);
  const Bytes bitmap(huge.begin() + kFileHeader, huge.end());
  for (const Bytes& field :
       {huge, bitmap, claiming(10'000, -10'000), wrapped(kEmbedded, "PBrush", huge)}) {
    const auto decoded = decodePicture(field);
    EXPECT_TRUE(decoded.image.isNull());
    EXPECT_EQ(decoded.format, "BMP");
    EXPECT_EQ(decoded.refused.width(), 10'000);
  }
  EXPECT_TRUE(decodePicture(claiming(100'000, 100'000)).image.isNull());
}

}  // namespace
}  // namespace orv::app
