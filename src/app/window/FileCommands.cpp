#include "app/window/FileCommands.h"

#include <QFileDialog>

#include "app/Pointers.h"
#include "app/Text.h"
#include "app/dialogs/DialogFolders.h"
#include "app/dialogs/dlgTextFileOptions.h"

namespace orv::app {

using commands::OpenCommands;

namespace {

constexpr const char* kDefaultName = "orvdata.mdb";
constexpr const char* kOrvFilter = "ORV database (orvdata.mdb)";
constexpr const char* kIgdbFilter = "LBNL International Glazing Database(glazing.mdb)";
constexpr const char* kOptics5Filter = "Optics/IGDB user database (*.mdb)";
constexpr const char* kProductFilter = "Products (*.json)";
constexpr const char* kAllFilter = "All Files (*.*)";

/// The toolkit takes the pattern from the last parentheses of a filter and, told to hide it, shows
/// what stands before. "*.*" means all files to people, but to the toolkit only those with a point.
QString toolkitFilter(const QString& filter) {
  const QString pattern = filter.section('(', -1).chopped(1);
  return QStringLiteral("%1 (%2)").arg(filter, pattern == "*.*" ? "*" : pattern);
}

}  // namespace

FileCommands::FileCommands(commands::Session& session, QWidget& window)
    : commands_(session), window_(window) {
  commands_.whenReplaced(
      [this](const Node& closed, const Node& opened) { emit replaced(closed, opened); });
}

void FileCommands::newOrvDatabase() {
  const Choice choice = chooseFiles({kOrvFilter, kAllFilter}, Mode::make);
  if (choice.files.empty()) return;
  const BusyPointer busy;
  announce(commands_.createOrvDatabase(choice.folder, choice.files.front()));
}

void FileCommands::openOrvDatabase() {
  openDatabase({kOrvFilter, kAllFilter}, &OpenCommands::openOrvDatabase);
}

void FileCommands::openIgdb() {
  openDatabase({kIgdbFilter, kAllFilter}, &OpenCommands::openIgdb);
}

void FileCommands::openOptics5UserDatabase() {
  openDatabase({kOptics5Filter, kAllFilter}, &OpenCommands::openOptics5UserDatabase);
}

void FileCommands::openTextFiles() {
  dlgTextFileOptions options(&window_);
  const std::int16_t type = options.choose();
  if (type == dlgTextFileOptions::kCancelled) return;
  const Choice choice = chooseFiles({kAllFilter, kProductFilter}, Mode::openSeveral);
  if (choice.files.empty()) return;
  const BusyPointer busy;
  announce(commands_.openTextFiles(choice.folder, choice.files,
                                   type == dlgTextFileOptions::kPaneData
                                       ? commands::TextFileKind::panes
                                       : commands::TextFileKind::shadings));
}

void FileCommands::openPaths(const QStringList& paths) {
  if (paths.isEmpty()) return;
  const BusyPointer busy;
  std::vector<std::string> files;
  for (const QString& path : paths) files.push_back(path.toStdString());
  const auto nodes = commands_.openAll(files);
  if (nodes.empty()) return;
  const bool isFolder = nodes.back()->DataType() == sources::DataType::textFolder &&
                        QFileInfo(paths.constLast()).isDir();
  isFolder ? emit folderOpened(nodes.back()) : announce(nodes.back());
}

void FileCommands::offerReplacements() {
  announce(commands_.openReplacements());
}

void FileCommands::remove(const Node& shown) {
  if (!shown) return;
  Node source = shown;
  while (const Node parent = source->Parent()) source = parent;
  Node next;
  if (commands_.remove(source->key(), next)) emit removed(next);
}

FileCommands::Choice FileCommands::chooseFiles(const QStringList& filters, Mode mode) {
  const QString kind = "open " + filters.constFirst();
  QFileDialog dialog(&window_, tr("Open new data source"), dialogFolder(kind));
  if (mode == Mode::make) {
    dialog.setWindowTitle(tr("New ORV database"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix("mdb");
    dialog.setOption(QFileDialog::DontConfirmOverwrite);  // no file is ever replaced
    dialog.selectFile(kDefaultName);
  }
  dialog.setFileMode(mode == Mode::openOne       ? QFileDialog::ExistingFile
                     : mode == Mode::openSeveral ? QFileDialog::ExistingFiles
                                                 : QFileDialog::AnyFile);
  QStringList shown;
  for (const QString& filter : filters) shown << toolkitFilter(filter);
  dialog.setOption(QFileDialog::HideNameFilterDetails);
  dialog.setNameFilters(shown);
  if (dialog.exec() != QDialog::Accepted) return {};
  Choice choice;
  for (const QString& path : dialog.selectedFiles()) {
    const QFileInfo file(path);
    choice.folder = file.absolutePath().toStdString();
    choice.files.push_back(file.fileName().toStdString());
  }
  rememberDialogFolder(kind, qt(choice.folder));
  return choice;
}

void FileCommands::openDatabase(const QStringList& filters,
                                Node (OpenCommands::*open)(const std::string&,
                                                           const std::string&)) {
  const Choice choice = chooseFiles(filters, Mode::openOne);
  if (choice.files.empty()) return;
  const BusyPointer busy;
  announce((commands_.*open)(choice.folder, choice.files.front()));
}

void FileCommands::announce(const Node& node) {
  if (node) emit opened(node);
}

}  // namespace orv::app

#include "moc_FileCommands.cpp"
