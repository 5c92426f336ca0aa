// Values of fields as texts, and which of them a field can hold.
#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>

#include "commands/CellText.h"
#include "commands/NumberText.h"
#include "commands/edit/Field.h"
#include "errors/Error.h"
#include "model/Text.h"

namespace orv::commands::edit {

namespace {

std::optional<double> numberOfText(std::string_view text) {
  std::string plain(trimmed(text));
  if (const auto comma = plain.find(','); comma != std::string::npos) plain[comma] = '.';
  if (plain.starts_with('+')) plain.erase(0, 1);
  double number = 0;
  const char* end = plain.data() + plain.size();
  const auto [last, error] = std::from_chars(plain.data(), end, number);
  if (error != std::errc() || last != end || !std::isfinite(number)) return std::nullopt;
  return number;
}

std::optional<bool> flagIn(const std::string& text) {
  const std::string word = lowerCase(trimmed(text));
  if (word == "yes" || word == "true" || word == "1") return true;
  if (word == "no" || word == "false" || word == "0") return false;
  return std::nullopt;
}

/// "from 0 to 1000 mm"
std::string limitsOf(const EditField& field) {
  const std::string unit = field.unit.empty() ? "" : " " + field.unit;
  return fmt::format("from {} to {}{}", numberText(field.least), numberText(field.most), unit);
}

std::size_t charactersOf(const std::string& text) {
  // The file format counts units of UTF-16.
  std::size_t count = 0;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if ((byte & 0xC0) != 0x80) count += byte >= 0xF0 ? 2 : 1;
  }
  return count;
}

std::string textRefusal(const EditField& field, const std::string& text) {
  if (!field.mayBeEmpty && trimmed(text).empty()) {
    return fmt::format("{} cannot be empty.", field.name);
  }
  if (field.longest > 0 && charactersOf(text) > field.longest) {
    return fmt::format("{} has room for {} characters, and this is {} long.", field.name,
                       field.longest, charactersOf(text));
  }
  const auto isControl = [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return (byte < ' ' && c != '\t' && c != '\r' && c != '\n') || byte == 0x7F;
  };
  if (std::ranges::any_of(text, isControl)) {
    return fmt::format("{} has a control character.", field.name);
  }
  if (field.longest > 0 && text.find_first_of("\r\n") != std::string::npos) {
    return fmt::format("{} is one line.", field.name);
  }
  return {};
}

std::string numberRefusal(const EditField& field, double number) {
  if (number < field.least || number > field.most) {
    return fmt::format("{} is {}, and {} is not.", field.name, limitsOf(field), numberText(number));
  }
  if (field.type == FieldType::whole && number != std::floor(number)) {
    return fmt::format("{} is a whole number, and {} is none.", field.name, numberText(number));
  }
  return {};
}

/// The code that a text names, as cells show it or by its name alone.
std::optional<std::int32_t> codeIn(const EditField& field, std::string_view text) {
  for (const CodeName& name : field.codes) {
    const bool isNamed = equalIgnoringCase(text, name.text) ||
                         equalIgnoringCase(text, codeText(field.codes, name.code));
    if (isNamed) return name.code;
  }
  return std::nullopt;
}

}  // namespace

std::string valueRefusal(const EditField& field, const store::Value& value) {
  switch (field.type) {
    case FieldType::text:
    case FieldType::choice:
      if (const auto* text = value.getIf<std::string>()) return textRefusal(field, *text);
      return field.name + " is a text.";
    case FieldType::flag:
      return value.getIf<bool>() ? "" : field.name + " is yes or no.";
    case FieldType::number:
    case FieldType::whole:
      break;
  }
  if (value.isNull() || value.getIf<std::string>() || value.getIf<bool>()) {
    return field.name + " is a number.";
  }
  return numberRefusal(field, value.toDouble());
}

store::Value fieldValue(const EditField& field, const std::string& text) {
  store::Value value;
  std::string refusal;
  if (field.type == FieldType::text) {
    // Blanks around a name count for nobody, and those behind a line are seen by nobody.
    const bool isMemo = field.longest == 0;
    const std::string kept(isMemo ? text : trimmed(text));
    value = field.isCapital ? upperCase(kept) : kept;
  } else if (field.type == FieldType::choice) {
    value = std::string(trimmed(text));
  } else if (field.type == FieldType::flag) {
    const auto flag = flagIn(text);
    if (flag)
      value = *flag;
    else
      refusal = fmt::format("{} is yes or no, and \"{}\" is neither.", field.name, text);
  } else if (const auto code = codeIn(field, trimmed(text))) {
    value = *code;
  } else if (const auto number = numberOfText(text)) {
    refusal = numberRefusal(field, *number);
    if (refusal.empty()) {
      if (field.type == FieldType::whole)
        value = static_cast<std::int32_t>(*number);
      else if (field.isSingle)
        value = static_cast<float>(*number);
      else
        value = *number;
    }
  } else {
    refusal = fmt::format("{} is a number, and \"{}\" is none.", field.name, text);
  }
  if (refusal.empty()) refusal = valueRefusal(field, value);
  if (!refusal.empty()) throw Error(kInvalidCall, refusal);
  return value;
}

std::string fieldText(const store::Value& value) {
  if (const bool* flag = value.getIf<bool>()) return *flag ? "yes" : "no";
  if (const auto* number = value.getIf<double>()) return numberText(*number);
  return value.isNull() ? std::string() : value.toText();
}

}  // namespace orv::commands::edit
