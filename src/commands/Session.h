// What start-up creates, for all commands of a run.
#pragma once

#include <memory>
#include <set>
#include <string>

#include "commands/TolerantReading.h"
#include "commands/UserInterface.h"
#include "database/ORV_DatabaseInterface.h"
#include "productfile/ProductFile.h"
#include "sources/DataSources.h"
#include "textfile/ORV_TextFileInterface.h"

namespace orv::commands {

/// One a run. The list of data sources is empty at first and is not kept between runs.
struct Session {
  explicit Session(UserInterface& userInterface)
      : ui(userInterface),
        MainDataSources(std::make_shared<sources::KeyCounter>()),
        database(userInterface) {}

  /// Outlives the session.
  UserInterface& ui;
  sources::DataSources MainDataSources;
  database::ORV_DatabaseInterface database;
  ORV_TextFileInterface textFiles;
  productfile::ProductFiles products;
  TolerantReading tolerant;
  std::string password;        ///< for databases that want one, save the IGDB
  std::string inputFolder;     ///< where the standard input is kept as a file; empty where it is not
  std::set<std::string> told;  ///< remarks that are made once a run
  /// Whether reserved group names are refused.
  bool strictGroupNames = true;
};

}  // namespace orv::commands
