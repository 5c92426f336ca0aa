#include "store/jet/row/LongValue.h"

#include <algorithm>
#include <functional>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/page/DataPage.h"
#include "store/jet/row/Row.h"
#include "store/jet/row/RowSpace.h"

namespace orv::store::jet {
namespace {

using Definition = LongValueDefinition;
using Form = Definition::Form;

/// Goes through the parts, giving each with its content (without the pointer to the next).
void walkParts(Pager& pager, const Definition& definition,
               const std::function<void(RowId, std::span<const std::uint8_t>)>& visit) {
  const Format& format = pager.format();
  std::size_t found = 0;
  RowId at = definition.first;
  while (at.page != 0) {
    const PageRef page = pager.read(at.page);
    const DataPage data(format, page.view());
    if (data.owner() != kLongValueOwner) {
      raiseDamaged(at.page, "it should hold part of a memo or picture, but is a table's");
    }
    std::span<const std::uint8_t> bytes = data.bytes(at.row);
    RowId next{};
    if (definition.form == Form::chain) {
      next = RowId::fromPointer(ByteView(bytes, at.page).u32(0));
      bytes = bytes.subspan(Definition::kNextSize);
    }
    const std::size_t left = definition.length - found;
    found += bytes.size();
    // Every part brings some bytes, so that a chain with a loop grows too long and ends here.
    if (bytes.empty() || found > definition.length) {
      if (!bytes.empty() && left > 0)
        visit(at, bytes.first(left));  // for whoever takes what is there
      raiseDamaged(at.page, "the parts of a memo or picture do not add up to its length");
    }
    visit(at, bytes);
    at = next;
  }
  if (found != definition.length) {
    raiseDamaged(definition.first.page,
                 "the parts of a memo or picture do not add up to its length");
  }
}

Bytes makeDefinition(std::size_t length, Form form, RowId first) {
  Bytes bytes(Definition::kSize, 0);
  Definition{static_cast<std::uint32_t>(length), form, first}.writeTo(bytes.data());
  return bytes;
}

RowId storePart(Pager& pager, const Column& column, const Bytes& part) {
  return RowSpace(pager, kLongValueOwner, *column.longValuePages, *column.longValueFreePages)
      .add(part, SlotKind::row);
}

}  // namespace

LongValueDefinition LongValueDefinition::read(std::span<const std::uint8_t> bytes,
                                              PageNumber page) {
  const ByteView view(bytes, page);
  const std::uint32_t flags = view.u32(0) & ~kLengthMask;
  const auto has = [&](Form form) { return (flags & static_cast<std::uint32_t>(form)) != 0; };
  return {view.u32(0) & kLengthMask,
          has(Form::inRow)     ? Form::inRow
          : has(Form::onePart) ? Form::onePart
                               : Form::chain,
          RowId::fromPointer(view.u32(4))};
}

void LongValueDefinition::writeTo(std::uint8_t* bytes) const {
  store32(bytes, length | static_cast<std::uint32_t>(form));
  store32(bytes + 4, first.toPointer());
}

void forEachLongValuePart(Pager& pager, std::span<const std::uint8_t> definition, PageNumber page,
                          const std::function<void(RowId)>& visit) {
  const Definition parsed = Definition::read(definition, page);
  if (parsed.form != Form::inRow) {
    walkParts(pager, parsed, [&](RowId id, std::span<const std::uint8_t>) { visit(id); });
  }
}

Bytes readLongValue(Pager& pager, std::span<const std::uint8_t> definition, PageNumber page) {
  Pager::ReadLock lock(pager);
  const Definition parsed = Definition::read(definition, page);
  Bytes value;
  if (parsed.form == Form::inRow) {
    const auto inRow = ByteView(definition, page).span(Definition::kSize, parsed.length);
    value.assign(inRow.begin(), inRow.end());
  } else {
    walkParts(pager, parsed, [&](RowId, std::span<const std::uint8_t> part) {
      value.insert(value.end(), part.begin(), part.end());
    });
  }
  return value;
}

Bytes writeLongValue(Pager& pager, const Column& column, const Bytes& value) {
  const Format& format = pager.format();
  if (value.size() > Definition::kLengthMask) {
    throw Error(kOverflow, "A value of column '" + column.name + "' is longer than 1 GB.");
  }
  if (value.size() <= format.maxInlineLongValue) {
    Bytes bytes = makeDefinition(value.size(), Form::inRow, {});
    bytes.insert(bytes.end(), value.begin(), value.end());
    return bytes;
  }
  if (!column.longValuePages || !column.longValueFreePages) {
    throw Error(kNotSupported, "Column '" + column.name + "' has no place for long values.");
  }
  const std::size_t room = format.pageSize - format.data.rowTable - 2;
  if (value.size() <= room) {
    return makeDefinition(value.size(), Form::onePart, storePart(pager, column, value));
  }
  // The last part first: each part holds the place of the one after it.
  const std::size_t partSize = room - Definition::kNextSize;
  const std::size_t parts = (value.size() + partSize - 1) / partSize;
  RowId next{};
  for (std::size_t i = parts; i-- > 0;) {
    const auto begin = value.begin() + static_cast<std::ptrdiff_t>(i * partSize);
    const auto end = i + 1 == parts ? value.end() : begin + static_cast<std::ptrdiff_t>(partSize);
    Bytes part(Definition::kNextSize);
    store32(part.data(), next.toPointer());
    part.insert(part.end(), begin, end);
    next = storePart(pager, column, part);
  }
  return makeDefinition(value.size(), Form::chain, next);
}

void eraseLongValue(Pager& pager, const Column& column, std::span<const std::uint8_t> definition,
                    PageNumber page) {
  std::vector<RowId> parts;
  forEachLongValuePart(pager, definition, page, [&](RowId part) { parts.push_back(part); });
  if (parts.empty()) return;
  if (!column.longValuePages || !column.longValueFreePages) {
    raiseDamaged(page,
                 "column '" + column.name + "' has a value outside its row, but no pages for such");
  }
  RowSpace space(pager, kLongValueOwner, *column.longValuePages, *column.longValueFreePages);
  for (const RowId part : parts) space.erase(part);
  space.finish();
}

}  // namespace orv::store::jet
