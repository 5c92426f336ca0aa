#include "commands/SourceOpener.h"

#include <filesystem>
#include <utility>

#include "commands/ChangeHistory.h"
#include "commands/IgdbPassword.h"
#include "database/DatabaseErrors.h"
#include "database/OrvSchema.h"
#include "model/Text.h"
#include "store/StoreError.h"
#include "textfile/TextFile.h"

namespace orv::commands {

namespace DataType = sources::DataType;
using sources::DataTypeCode;

namespace {

constexpr const char* kGlazingQuery = "qryOptics5Grid";

struct RecordSetDesign {
  DataTypeCode type;
  const char* text;
};

/// The record sets of a database, in the order in which they are listed.
std::vector<RecordSetDesign> recordSetsOf(DataTypeCode database) {
  switch (database) {
    case DataType::orvDatabase2:
      return {{DataType::orv2Panes, "Panes"},
              {DataType::orv2Frames, "Frames"},
              {DataType::orv2Shadings, "Shadings"}};
    case DataType::orvDatabase3:
      return {{DataType::orv3Panes, "Panes"},
              {DataType::orv3Frames, "Frames"},
              {DataType::orv3Shadings, "Shadings"}};
    default:
      return {{DataType::optics5Panes, "Panes"}};
  }
}

std::string joined(const std::string& folder, const std::string& filename) {
  return (std::filesystem::path(folder) / filename).string();
}

/// What identifies the records of a text file: its name; of a list of products one name a product.
/// That a file cannot be read is told where its records are read.
std::vector<std::string> identifiersIn(const Session& session, const std::string& folder,
                                       const std::string& filename) {
  if (!productfile::isProduct(filename)) return {filename};
  try {
    const auto& file = session.products.at(textfile::requireFile(folder, filename));
    std::vector<std::string> identifiers;
    for (const std::string& pointer : file.pointers()) {
      identifiers.push_back(productfile::ProductName{filename, pointer}.identifier());
    }
    return identifiers;
  } catch (const Error&) {
    return {filename};
  }
}

/// The kind of node for a version of an ORV database. Raises kUnknownVersion.
DataTypeCode databaseType(const std::string& version) {
  const std::string lower = lowerCase(version);
  if (lower == database::kVersion2) return DataType::orvDatabase2;
  if (lower == database::kVersion3) return DataType::orvDatabase3;
  throw Error(database::kUnknownVersion,
              "Version number of this ORV database (" + version + ") was not recognized.",
              kProductName);
}

}  // namespace

SourceOpener::Node SourceOpener::openOrvDatabase(const std::string& folder,
                                                 const std::string& filename) {
  auto connection = connect(folder, filename, session_.password);
  const DataTypeCode type = databaseType(session_.database.LookupDatabaseVersion(*connection));
  if (type == DataType::orvDatabase3) {
    const std::string remark = keepHistory(*connection);
    const bool isNew = !remark.empty() && session_.told.insert(remark).second;
    if (isNew) session_.ui.message(MessageKind::information, remark, kProductName);
  }
  return registerDatabase(type, folder, filename, std::move(connection));
}

SourceOpener::Node SourceOpener::openIgdb(const std::string& folder, const std::string& filename) {
  return openGlazingDatabase(DataType::igdb, folder, filename, kIgdbPassword);
}

SourceOpener::Node SourceOpener::openOptics5UserDatabase(const std::string& folder,
                                                         const std::string& filename) {
  return openGlazingDatabase(DataType::optics5User, folder, filename, session_.password);
}

SourceOpener::Node SourceOpener::openTextFiles(const std::string& folder,
                                               const std::vector<std::string>& filenames,
                                               TextFileKind kind) {
  const DataTypeCode type =
      kind == TextFileKind::panes ? DataType::paneTextFile : DataType::shadingTextFile;
  const Node node = session_.MainDataSources.AddDataSource(
      DataType::textFolder, folder, nullptr, folder, "");
  for (const std::string& filename : filenames) {
    for (const std::string& identifier : identifiersIn(session_, folder, filename)) {
      node->DataSources()
          .AddDataSource(type, identifier, nullptr, folder, identifier)
          ->Parent(node);
    }
  }
  return node;
}

/// The saved query shows that the file really is such a database; its rows are not read.
SourceOpener::Node SourceOpener::openGlazingDatabase(DataTypeCode type, const std::string& folder,
                                                     const std::string& filename,
                                                     const std::string& password) {
  auto connection = connect(folder, filename, password);
  connection->openRecordset(kGlazingQuery);
  return registerDatabase(type, folder, filename, std::move(connection));
}

std::shared_ptr<store::Connection> SourceOpener::connect(const std::string& folder,
                                                         const std::string& filename,
                                                         const std::string& password) {
  const std::string path = joined(folder, filename);
  refuseSemicolon(path);
  return session_.database.OpenDatabase(path, password);
}

SourceOpener::Node SourceOpener::registerDatabase(DataTypeCode type, const std::string& folder,
                                                  const std::string& filename,
                                                  std::shared_ptr<store::Connection> connection) {
  const Node node =
      session_.MainDataSources.AddDataSource(type, filename, connection, folder, filename);
  for (const RecordSetDesign& design : recordSetsOf(type)) {
    node->DataSources().AddDataSource(design.type, design.text, connection, "", "")->Parent(node);
  }
  return node;
}

void refuseSemicolon(const std::string& path) {
  const std::string whole = std::filesystem::absolute(path).lexically_normal().string();
  if (whole.find(';') == std::string::npos) return;
  throw Error(kInvalidCall, "\"" + whole +
                                "\" cannot be opened: what names a database to the store ends at "
                                "a semicolon (;), so that another file would be taken. Rename the "
                                "file or the folder.");
}

void refuseOtherThanFile(const std::string& path) {
  std::error_code failure;
  const auto status = std::filesystem::status(path, failure);
  if (!std::filesystem::exists(status) || std::filesystem::is_regular_file(status)) return;
  throw Error(kInvalidCall,
              "\"" + path + "\" is no file, but " +
                  (std::filesystem::is_directory(status) ? "a folder." : "a pipe or a device."));
}

void createDatabaseFile(const std::string& path) {
  refuseSemicolon(path);
  database::CreateEmptyDatabase(path);
}

DatabaseFile openDatabaseFile(const std::string& path, const std::string& password) {
  refuseSemicolon(path);
  refuseOtherThanFile(path);
  bool isAgain = false;  // so that it is open with the second password
  return withPasswordOfIgdb(password, [&](const std::string& tried) -> DatabaseFile {
    const bool withIgdbPassword = std::exchange(isAgain, true);
    return {store::Connection::openFile(path, tried), withIgdbPassword};
  });
}

}  // namespace orv::commands
