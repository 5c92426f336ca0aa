#include "commands/ChangeHistory.h"

#include <fmt/format.h>

#include <charconv>
#include <cstdlib>
#include <optional>
#include <string_view>

#include "model/Text.h"

namespace orv::commands {

namespace {

constexpr const char* kVariable = "ORV_HISTORY";
constexpr int kBytesOfMegabyte = 20;  // as a power of two

/// The number of bytes that a text of megabytes means; none for another text.
std::optional<std::uint64_t> bytesOf(std::string_view text) {
  std::uint64_t megabytes = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), megabytes);
  const bool isNumber = error == std::errc() && end == text.data() + text.size() &&
                        megabytes < (std::uint64_t{1} << kBytesOfMegabyte);
  return isNumber ? std::optional(megabytes << kBytesOfMegabyte) : std::nullopt;
}

}  // namespace

/// What is kept in secret is not written in clear beside it unless that is asked for.
std::string keepHistory(store::Connection& database) {
  if (database.readOnly()) return {};
  const char* const wanted = std::getenv(kVariable);
  const std::string_view text = wanted == nullptr ? "" : wanted;
  if (equalIgnoringCase(text, "off")) return {};
  const auto bytes = bytesOf(text);
  const bool isUsual = !bytes && !store::History::isSecret(database);
  const std::uint64_t largest = bytes.value_or(isUsual ? store::History::kLargest : 0);
  if (largest > 0) store::History(database).keep(largest);
  if (bytes || text.empty()) return {};
  return fmt::format(
      "{} is \"{}\", which is neither \"off\" nor a number of MB: it is as if it were not set.",
      kVariable, text);
}

HistoryScope::HistoryScope(UserInterface& ui, store::Connection& database, const std::string& title)
    : ui_(ui), database_(database), scope_(std::in_place, database, title) {}

HistoryScope::~HistoryScope() {
  scope_.reset();
  if (!database_.isOpen() || !store::History::isKept(database_)) return;
  store::History history(database_);
  if (const std::string aside = history.takeNameOfUnusable(); !aside.empty()) {
    ui_.message(MessageKind::information,
                fmt::format("The history that was beside the database could not be used, as it is "
                            "damaged or of another one. It is \"{}\" now, and a new one was begun.",
                            aside),
                kProductName);
  }
  const std::string failure = history.takeFailure();
  if (failure.empty()) return;
  ui_.message(MessageKind::critical,
              "The change was made, but cannot be taken back, since the history of the database "
              "could not be written: " +
                  failure,
              kProductName);
}

}  // namespace orv::commands
