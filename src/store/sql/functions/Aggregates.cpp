// Aggregate functions that SQLite does not have: First, Last, StDev, Var.
#include <cmath>

#include "store/sql/functions/Arguments.h"
#include "store/sql/functions/Functions.h"

namespace orv::store::sql {
namespace {

/// First and Last: the value of the group's first or last row, in the order of reading.
struct EndValue {
  sqlite3_value* value = nullptr;
};

template <bool first>
void stepEnd(sqlite3_context* context, int, sqlite3_value** values) {
  auto* end = static_cast<EndValue*>(sqlite3_aggregate_context(context, sizeof(EndValue)));
  if (end == nullptr || (first && end->value != nullptr)) {
    return;
  }
  sqlite3_value_free(end->value);
  end->value = sqlite3_value_dup(values[0]);
}

void finishEnd(sqlite3_context* context) {
  auto* end = static_cast<EndValue*>(sqlite3_aggregate_context(context, 0));
  if (end != nullptr && end->value != nullptr) {
    sqlite3_result_value(context, end->value);
    sqlite3_value_free(end->value);
    end->value = nullptr;
  }
}

/// Mean and sum of squared deviations, updated value by value (Welford's method).
struct Spread {
  std::int64_t count;
  double mean;
  double squares;
};

void stepSpread(sqlite3_context* context, int, sqlite3_value** values) {
  auto* spread = static_cast<Spread*>(sqlite3_aggregate_context(context, sizeof(Spread)));
  if (spread == nullptr || sqlite3_value_type(values[0]) == SQLITE_NULL) {
    return;
  }
  const double value = sqlite3_value_double(values[0]);
  ++spread->count;
  const double before = value - spread->mean;
  spread->mean += before / static_cast<double>(spread->count);
  spread->squares += before * (value - spread->mean);
}

template <bool sample, bool root>
void finishSpread(sqlite3_context* context) {
  const auto* spread = static_cast<Spread*>(sqlite3_aggregate_context(context, 0));
  const std::int64_t divisor = spread == nullptr ? 0 : spread->count - (sample ? 1 : 0);
  if (divisor < 1) {
    sqlite3_result_null(context);
    return;
  }
  const double variance = spread->squares / static_cast<double>(divisor);
  sqlite3_result_double(context, root ? std::sqrt(variance) : variance);
}

using Step = void (*)(sqlite3_context*, int, sqlite3_value**);
using Finish = void (*)(sqlite3_context*);
struct AggregateDefinition {
  const char* name;
  Step step;
  Finish finish;
};

constexpr AggregateDefinition kAggregates[] = {
    {"jet_first", stepEnd<true>, finishEnd},
    {"jet_last", stepEnd<false>, finishEnd},
    {"jet_stdev", stepSpread, finishSpread<true, true>},
    {"jet_stdevp", stepSpread, finishSpread<false, true>},
    {"jet_var", stepSpread, finishSpread<true, false>},
    {"jet_varp", stepSpread, finishSpread<false, false>},
};

}  // namespace

void registerAggregates(sqlite3* db) {
  for (const AggregateDefinition& definition : kAggregates) {
    sqlite3_create_function_v2(db, definition.name, 1, SQLITE_UTF8, nullptr, nullptr,
                               definition.step, definition.finish, nullptr);
  }
}

}  // namespace orv::store::sql
