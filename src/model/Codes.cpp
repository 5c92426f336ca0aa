#include "model/Codes.h"

#include <algorithm>

#include "model/Text.h"

namespace orv {

std::optional<std::int32_t> codeOf(std::span<const CodeName> names, std::string_view text) {
  const auto found = std::ranges::find_if(
      names, [text](const CodeName& name) { return equalIgnoringCase(name.text, text); });
  return found == names.end() ? std::nullopt : std::optional(found->code);
}

std::optional<std::string_view> nameOf(std::span<const CodeName> names, std::int32_t code) {
  const auto found = std::ranges::find(names, code, &CodeName::code);
  return found == names.end() ? std::nullopt : std::optional(found->text);
}

}  // namespace orv
