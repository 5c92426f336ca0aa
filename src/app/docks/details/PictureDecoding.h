#pragma once

#include <QImage>
#include <QString>
#include <cstdint>
#include <span>

namespace orv::app {

/// A picture out of a database field.
struct DecodedPicture {
  QImage image;    ///< null when the field holds none that can be shown
  QString format;  ///< "PNG", "JPEG", "BMP", ...; the class of an object that cannot be shown
  QSize refused;   ///< the size that a picture claims to have, where it is too large to be shown
};

/// Decodes the picture of a field: a picture file (PNG, JPEG, BMP, GIF), a device-independent
/// bitmap without its file header, or an OLE object that wraps one of these. Fields are of unknown
/// origin, so whatever they hold, a null image is the worst that comes of it: what claims to be
/// larger than any picture of a frame is refused before memory is taken for it.
DecodedPicture decodePicture(std::span<const std::uint8_t> field);

}  // namespace orv::app
