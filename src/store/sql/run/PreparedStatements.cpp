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
                                                          std::uint64_t catalogVersion,
                                                          std::uint64_t fileVersion) {
  if (catalogVersion_ != catalogVersion) {  // none holds any more, nor should it keep its tables
    statements_.clear();
    catalogVersion_ = catalogVersion;
  }
  auto kept = statements_.extract(key);
  if (kept.empty()) return std::nullopt;
  PreparedStatement& statement = kept.mapped();
  const std::uint64_t version = statement.namesQuery ? fileVersion : catalogVersion;
  const bool isCurrent =
      statement.version == version &&
      std::ranges::all_of(statement.sources, &PreparedStatement::Source::isCurrent);
  return isCurrent ? std::optional(std::move(statement)) : std::nullopt;
}

void PreparedStatements::keep(PreparedStatement statement) {
  if (statement.key.empty()) return;
  sqlite3_reset(statement.statement.get());
  if (statements_.size() >= kMostKept) statements_.clear();
  std::string key = statement.key;
  statements_.insert_or_assign(std::move(key), std::move(statement));
}

}  // namespace orv::store::sql
