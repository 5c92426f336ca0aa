#include "store/jet/definition/Properties.h"

#include <algorithm>

#include "errors/Error.h"
#include "store/jet/page/Pager.h"
#include "store/jet/page/Text.h"

namespace orv::store::jet {
namespace {

constexpr std::size_t kMarkerSize = 4;
constexpr std::uint8_t kMarker[kMarkerSize] = {'M', 'R', '2', 0};

// A chunk: u32 length, u16 kind, content.
constexpr std::size_t kChunkHeader = 6;
constexpr std::uint16_t kNamesChunk = 0x80;
constexpr std::uint16_t kObjectChunk = 0x00;
constexpr std::uint16_t kColumnChunk = 0x01;

// A value: u16 length, u8 "defined by the engine", u8 type, u16 name, u16 value length, value.
constexpr std::size_t kValueHeader = 8;

std::string readName(const Pager& pager, const ByteView& view, std::size_t& at) {
  const std::size_t length = view.u16(at);
  const auto bytes = view.span(at + 2, length);
  at += 2 + length;
  return pager.format().unicodeText ? utf8FromUtf16(bytes) : decodeText(pager, bytes);
}

void readValues(const Pager& pager, const ByteView& chunk, const std::vector<std::string>& names,
                PropertyMap& map) {
  // The owner's name stands in a block of its own length.
  std::size_t at = chunk.u32(0);
  std::size_t nameAt = 4;
  std::vector<Property>& properties = map[readName(pager, chunk, nameAt)];
  while (at + kValueHeader <= chunk.size()) {
    const std::size_t length = chunk.u16(at);
    const std::size_t name = chunk.u16(at + 4);
    const auto value = chunk.span(at + kValueHeader, chunk.u16(at + 6));
    if (length < kValueHeader || name >= names.size()) {
      return;
    }
    properties.push_back({names[name], static_cast<ColumnType>(chunk.u8(at + 3)),
                          Bytes(value.begin(), value.end()), chunk.u8(at + 2) != 0});
    at += length;
  }
}

void appendName(Bytes& out, const std::string& name) {
  const Bytes bytes = utf16Bytes(name);
  out.resize(out.size() + 2);
  store16(&out[out.size() - 2], static_cast<std::uint32_t>(bytes.size()));
  out.insert(out.end(), bytes.begin(), bytes.end());
}

void appendChunk(Bytes& out, std::uint16_t kind, const Bytes& content) {
  std::uint8_t header[kChunkHeader];
  store32(header, static_cast<std::uint32_t>(kChunkHeader + content.size()));
  store16(header + 4, kind);
  out.insert(out.end(), std::begin(header), std::end(header));
  out.insert(out.end(), content.begin(), content.end());
}

bool isTrue(const Property& property) {
  return !property.value.empty() && property.value[0] != 0;
}

}  // namespace

PropertyMap readProperties(const Pager& pager, std::span<const std::uint8_t> block) {
  PropertyMap map;
  std::vector<std::string> names;
  try {
    const ByteView view(block, 0);
    std::size_t at = kMarkerSize;
    while (at + kChunkHeader <= block.size()) {
      const std::size_t length = view.u32(at);
      const std::uint16_t kind = view.u16(at + 4);
      if (length < kChunkHeader) {
        break;
      }
      const ByteView content(view.span(at + kChunkHeader, length - kChunkHeader), 0);
      if (kind == kNamesChunk) {
        for (std::size_t name = 0; name + 2 <= content.size();) {
          names.push_back(readName(pager, content, name));
        }
      } else if (kind == kObjectChunk || kind == kColumnChunk) {
        readValues(pager, content, names, map);
      }
      at += length;
    }
  } catch (const Error&) {
    // A property that cannot be read is as one that is not there.
  }
  return map;
}

Bytes writeProperties(const PropertyMap& properties) {
  std::vector<std::string> names;
  for (const auto& [owner, list] : properties) {
    for (const Property& property : list) {
      if (std::find(names.begin(), names.end(), property.name) == names.end()) {
        names.push_back(property.name);
      }
    }
  }
  Bytes nameList;
  for (const std::string& name : names) {
    appendName(nameList, name);
  }
  Bytes out(std::begin(kMarker), std::end(kMarker));
  appendChunk(out, kNamesChunk, nameList);
  for (const auto& [owner, list] : properties) {
    Bytes content(4);
    appendName(content, owner);
    store32(content.data(), static_cast<std::uint32_t>(content.size()));
    for (const Property& property : list) {
      const auto name = std::find(names.begin(), names.end(), property.name) - names.begin();
      std::uint8_t header[kValueHeader];
      store16(header, static_cast<std::uint32_t>(kValueHeader + property.value.size()));
      header[2] = property.isDefinition ? 1 : 0;
      header[3] = static_cast<std::uint8_t>(property.type);
      store16(header + 4, static_cast<std::uint32_t>(name));
      store16(header + 6, static_cast<std::uint32_t>(property.value.size()));
      content.insert(content.end(), std::begin(header), std::end(header));
      content.insert(content.end(), property.value.begin(), property.value.end());
    }
    appendChunk(out, owner.empty() ? kObjectChunk : kColumnChunk, content);
  }
  return out;
}

void applyProperties(const Pager& pager, const PropertyMap& properties, TableDefinition& table) {
  for (const auto& [owner, list] : properties) {
    const auto position = table.findColumn(owner);
    if (owner.empty() || !position) {
      continue;
    }
    Column& column = table.columns[*position];
    for (const Property& property : list) {
      if (property.name == "Required") {
        column.required = isTrue(property);
      } else if (property.name == "AllowZeroLength") {
        column.allowZeroLength = isTrue(property);
      } else if (property.name == "DefaultValue") {
        column.defaultValue = decodeText(pager, property.value);
      } else if (property.name == "ResultType" && column.calculated && !property.value.empty()) {
        column.type = static_cast<ColumnType>(property.value[0]);
      }
    }
  }
}

}  // namespace orv::store::jet
