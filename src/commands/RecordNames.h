// Names that no record can be written under.
#pragma once

#include <string>

#include "model/FrameDataClass.h"
#include "model/GlazingData.h"
#include "model/ShadingDataClass.h"

namespace orv::commands {

/// Whether a name holds an apostrophe. Databases are searched by names between apostrophes, so
/// such a name finds nothing, or something else.
bool hasApostrophe(const std::string& name);

/// What somebody is told who gives such a name. `what` is what it names: "group".
std::string apostropheRefusal(const std::string& what, const std::string& name);

/// Raises kInvalidCall with apostropheRefusal().
void requireUsableName(const std::string& what, const std::string& name);

/// Looks at all names by which a record will be searched or will search others.
void requireUsableNames(const GlazingData& pane);
void requireUsableNames(const FrameDataClass& frame);
void requireUsableNames(const ShadingDataClass& shading);

}  // namespace orv::commands
