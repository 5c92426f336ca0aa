#include "store/sql/run/PreparedStatements.h"

#include <algorithm>
#include <bit>
#include <cstdlib>

namespace orv::store::sql {
namespace {

constexpr std::size_t kMostKept = 64;

int magnitudeOf(const jet::Table& table) {
  return std::bit_width(static_cast<std::uint64_t>(table.rowCount()));
}

}  // namespace

PreparedStatement::Source::Source(std::shared_ptr<jet::Table> read)
    : table(std::move(read)),
      definition(table->sharedDefinition()),
      magnitude(magnitudeOf(*table)),
      distrusted(table->distrusted().size()) {}

bool PreparedStatement::Source::isCurrent() const {
  return definition == table->sharedDefinition() && magnitude == magnitudeOf(*table) &&
         distrusted == table->distrusted().size();
}

void PreparedStatement::bind(int parameter, const Token& value) const {
  if (value.kind == Token::Kind::number) {
    sqlite3_bind_int(statement.get(), parameter, std::atoi(value.text.c_str()));
  } else {
    sqlite3_bind_text64(statement.get(), parameter, value.text.data(), value.text.size(),
                        SQLITE_TRANSIENT, SQLITE_UTF8);
  }
}

std::optional<PreparedStatement> PreparedStatements::take(const std::string& key,
                                                          std::uint64_t catalogVersion) {
  auto kept = statements_.extract(key);
  if (kept.empty() || kept.mapped().catalogVersion != catalogVersion ||
      !std::ranges::all_of(kept.mapped().sources, &PreparedStatement::Source::isCurrent)) {
    return std::nullopt;
  }
  return std::move(kept.mapped());
}

void PreparedStatements::keep(PreparedStatement statement) {
  if (statement.key.empty()) return;
  sqlite3_reset(statement.statement.get());
  if (statements_.size() >= kMostKept) statements_.clear();
  std::string key = statement.key;
  statements_.insert_or_assign(std::move(key), std::move(statement));
}

}  // namespace orv::store::sql
