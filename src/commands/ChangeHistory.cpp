#include "commands/ChangeHistory.h"

#include <charconv>
#include <cstdlib>
#include <string_view>

#include "model/Text.h"

namespace orv::commands {

namespace {

constexpr const char* kVariable = "ORV_HISTORY";
constexpr int kBytesOfMegabyte = 20;  // as a power of two

/// The bound that the environment sets; 0 where no history is wanted. What is kept in secret is not
/// written in clear beside it unless that is asked for.
std::uint64_t largestHistory(store::Connection& database) {
  const char* wanted = std::getenv(kVariable);
  if (wanted == nullptr || *wanted == '\0') {
    return store::History::isSecret(database) ? 0 : store::History::kLargest;
  }
  const std::string_view text(wanted);
  if (equalIgnoringCase(text, "off")) return 0;
  std::uint64_t megabytes = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), megabytes);
  const bool isNumber = error == std::errc() && end == text.data() + text.size();
  return isNumber && megabytes < (std::uint64_t{1} << kBytesOfMegabyte)
             ? megabytes << kBytesOfMegabyte
             : store::History::kLargest;
}

}  // namespace

void keepHistory(store::Connection& database) {
  if (database.readOnly()) return;
  if (const std::uint64_t largest = largestHistory(database))
    store::History(database).keep(largest);
}

HistoryScope::HistoryScope(UserInterface& ui, store::Connection& database, const std::string& title)
    : ui_(ui), database_(database), scope_(std::in_place, database, title) {}

HistoryScope::~HistoryScope() {
  scope_.reset();
  if (!database_.isOpen() || !store::History::isKept(database_)) return;
  const std::string failure = store::History(database_).takeFailure();
  if (failure.empty()) return;
  ui_.message(MessageKind::critical,
              "The change was made, but cannot be taken back, since the history of the database "
              "could not be written: " +
                  failure,
              kProductName);
}

}  // namespace orv::commands
