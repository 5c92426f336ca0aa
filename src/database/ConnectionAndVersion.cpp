// Opening and closing of databases, and the version of an ORV database.
#include "database/ORV_DatabaseInterface.h"
#include "database/Recordsets.h"
#include "model/ErrorCatalogue.h"

namespace orv::database {

ORV_DatabaseInterface::ConnectionPtr ORV_DatabaseInterface::OpenDatabase(
    const std::string& path, const std::string& password) const {
  return store::Connection::open("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + path +
                                 ";Jet OLEDB:Database Password=" + password);
}

void ORV_DatabaseInterface::CloseDatabase(store::Connection& dc) const {
  dc.close();
}

std::string ORV_DatabaseInterface::LookupDatabaseVersion(store::Connection& dc) const {
  auto rows = openTable(dc, "ORVdata_version");
  orv::RaiseUnless(!rows->eof(), kNoVersionEntries);
  rows->moveLast();
  return rows->value("version").toText();
}

}  // namespace orv::database
