// Opening of data sources and their entry in the registry.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "commands/Session.h"

namespace orv::commands {

/// What a user says that text files are.
enum class TextFileKind { panes, shadings };

/// The fixed password of the International Glazing Database.
inline constexpr const char* kIgdbPassword = "tekzil";

/// A database file of whatever kind, opened.
struct DatabaseFile {
  std::shared_ptr<store::Connection> connection;
  /// Whether it has the password of the IGDB.
  bool withIgdbPassword = false;
};

/// Whether there is a file that begins as a database does.
bool isDatabaseFile(const std::string& path);

/// Raises kInvalidCall for the path of a database that holds a ";", at which a connection string
/// ends the path: another file would be opened.
void refuseSemicolon(const std::string& path);

/// Raises kInvalidCall for what is there and is no file: a pipe would be waited for.
void refuseOtherThanFile(const std::string& path);

/// Opens any database file; where it wants another password, with that of the IGDB. Refuses a ";"
/// in the path.
DatabaseFile openDatabaseFile(const std::string& path, const std::string& password = "");

/// Makes an empty ORV database, never in place of a file that is there. Refuses a ";" in the path.
void createDatabaseFile(const std::string& path);

/// Opens data sources and adds each with its record sets or files to the session's registry. Each
/// operation returns the new top-level node and raises, with nothing registered, when the source
/// cannot be opened or is not what it is said to be. A database whose path holds a ";" is refused.
class SourceOpener {
 public:
  using Node = std::shared_ptr<sources::datasource>;

  explicit SourceOpener(Session& session) : session_(session) {}

  /// Raises kUnknownVersion for a version that is neither "2.0.1" nor "3.0.0".
  Node openOrvDatabase(const std::string& folder, const std::string& filename);
  Node openIgdb(const std::string& folder, const std::string& filename);
  Node openOptics5UserDatabase(const std::string& folder, const std::string& filename);
  Node openTextFiles(const std::string& folder, const std::vector<std::string>& filenames,
                     TextFileKind kind);

  /// Opens a file or a folder, finding out by itself what it is: a database by its content (with
  /// the password of the IGDB where it needs one), anything else as text. Of a folder all files
  /// that may be text are taken, in the order of their names, and it is told what else is there.
  /// Where `kind` is not given, the first files decide what the texts are, and it is told where
  /// they do not agree.
  Node openAny(const std::string& path, std::optional<TextFileKind> kind = std::nullopt);

  /// Puts together the paths that become one source: text files of one folder. Any other path is
  /// a source by itself.
  static std::vector<std::vector<std::string>> grouped(const std::vector<std::string>& paths);
  /// Opens paths that belong together.
  Node openGroup(const std::vector<std::string>& paths,
                 std::optional<TextFileKind> kind = std::nullopt);

  /// Opens several paths, as they belong together; the first that cannot be opened ends it.
  std::vector<Node> openAll(const std::vector<std::string>& paths,
                            std::optional<TextFileKind> kind = std::nullopt);

 private:
  std::shared_ptr<store::Connection> connect(const std::string& folder, const std::string& filename,
                                             const std::string& password);
  Node registerDatabase(sources::DataTypeCode type, const std::string& folder,
                        const std::string& filename, std::shared_ptr<store::Connection> connection);
  Node openGlazingDatabase(sources::DataTypeCode type, const std::string& folder,
                           const std::string& filename, const std::string& password);
  Node openAnyDatabase(const std::string& folder, const std::string& filename);
  Node openTextFolder(const std::string& folder, std::optional<TextFileKind> kind);
  Node openTexts(const std::string& folder, const std::vector<std::string>& filenames,
                 std::optional<TextFileKind> kind);

  Session& session_;
};

}  // namespace orv::commands
