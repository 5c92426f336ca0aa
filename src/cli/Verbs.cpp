#include "cli/Verb.h"

namespace orv::cli {

std::vector<std::unique_ptr<Verb>> makeVerbs(CLI::App& app) {
  std::vector<std::unique_ptr<Verb>> verbs;
  for (const auto make :
       {makeNewVerb, makeInfoVerb, makeListVerb, makeShowVerb, makeCopyVerb, makeIntegrateVerb,
        makeAuditVerb, makeExportVerb, makeDeleteVerb, makeSqlVerb, makeTablesVerb, makeCheckVerb,
        makeCompactVerb, makeCompletionVerb}) {
    verbs.push_back(make(app));
  }
  return verbs;
}

}  // namespace orv::cli
