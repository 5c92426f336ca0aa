// Which property of a shading each column of the shading tables stands for.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <variant>

#include "model/ShadingDataClass.h"

namespace orv::database {

/// A column that holds the key of a name in a lookup table.
enum class ShadingKey { group, supplier };

/// What a column of `Shading` holds.
using ShadingMember =
    std::variant<Property<double> ShadingDataClass::*, Property<bool> ShadingDataClass::*,
                 Property<std::int32_t> ShadingDataClass::*,
                 Property<std::string> ShadingDataClass::*, ShadingKey>;

struct ShadingColumn {
  const char* name;
  ShadingMember member;
};

/// Whether its numbers count nothing.
bool isShadingCode(const ShadingColumn& column);

inline constexpr const char* kShadingKeyColumn = "Shading_id";

/// The columns of `Shading` behind its key, in the order in which they are written.
std::span<const ShadingColumn> shadingColumns();

}  // namespace orv::database
