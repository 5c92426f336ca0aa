// What a statement has in common with others that differ from it in values only.
#pragma once

#include <string>
#include <vector>

#include "store/sql/syntax/Lexer.h"

namespace orv::store::sql {

struct StatementShape {
  std::string key;                ///< equal for statements that differ in the parameters only
  std::vector<Token> parameters;  ///< the first of each, in their order
};

/// Makes parameters of the whole numbers and texts that something is compared with, as in
/// `id = 17 AND ...`; equal values become one parameter. All other tokens, and which values are
/// equal, are part of the shape. None where expressions that stand twice, as in GROUP BY, have to
/// be written alike.
StatementShape takeParameters(std::vector<Token>& tokens);

}  // namespace orv::store::sql
