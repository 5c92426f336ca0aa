#include "commands/RecordNames.h"

#include <fmt/format.h>

#include "errors/Error.h"

namespace orv::commands {

bool hasApostrophe(const std::string& name) {
  return name.find('\'') != std::string::npos;
}

std::string apostropheRefusal(const std::string& what, const std::string& name) {
  return fmt::format(
      "The {} \"{}\" holds an apostrophe ('), and databases cannot be searched for such a name. "
      "Leave the apostrophe out, or write ’ in its place.",
      what, name);
}

void requireUsableName(const std::string& what, const std::string& name) {
  if (hasApostrophe(name)) throw Error(kInvalidCall, apostropheRefusal(what, name));
}

void requireUsableNames(const GlazingData& pane) {
  requireUsableName("name of the pane", pane.filename());
  requireUsableName("group", pane.group());
  requireUsableName("supplier", pane.supplier());
}

void requireUsableNames(const FrameDataClass& frame) {
  requireUsableName("name of the frame", frame.name());
  requireUsableName("group", frame.group());
  requireUsableName("supplier", frame.supplier());
  requireUsableName("frame type", frame.frametype());
}

void requireUsableNames(const ShadingDataClass& shading) {
  requireUsableName("group", shading.group());
  requireUsableName("supplier", shading.supplier());
}

}  // namespace orv::commands
