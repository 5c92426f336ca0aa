#include "app/window/LookupCommands.h"

#include <QInputDialog>

#include "app/Pointers.h"
#include "app/Text.h"
#include "app/docks/lookups/LookupsDock.h"
#include "commands/AccessUse.h"
#include "commands/ErrorText.h"
#include "commands/edit/Editor.h"
#include "errors/Error.h"

namespace orv::app {

using commands::edit::Editor;
using commands::edit::LookupRecord;

LookupCommands::LookupCommands(commands::Session& session, WindowUserInterface& ui, QWidget& window)
    : QObject(&window),
      session_(session),
      ui_(ui),
      window_(window),
      dock_(new LookupsDock(&window)) {
  connect(dock_, &LookupsDock::wanted, this, &LookupCommands::fill);
  connect(dock_, &LookupsDock::renameWanted, this, &LookupCommands::rename);
  connect(dock_, &LookupsDock::mergeWanted, this, &LookupCommands::merge);
  connect(dock_, &LookupsDock::deleteWanted, this, &LookupCommands::remove);
}

void LookupCommands::follow(const Node& node) {
  const Node source = node && node->isInVersion3() ? node->Parent() : node;
  const bool isOrv = source && source->DataType() == sources::DataType::orvDatabase3;
  const Node before = std::exchange(database_, isOrv ? source : nullptr);
  if (database_ != before) fill();
}

void LookupCommands::fill() {
  if (!dock_->isVisible()) return;
  if (!database_) return dock_->tellNone(tr("Only ORV databases of version 3.0.0 are shown here."));
  const auto connection = database_->ADOConnection();
  try {
    dock_->fill(commands::edit::lookupRecords(dock_->set(), *connection), !connection->readOnly());
  } catch (const std::exception& error) {
    dock_->tellNone(shownText(commands::describe(error)));
  }
}

void LookupCommands::rename() {
  const LookupRecord record = dock_->selected().front();
  const std::string name = ui_.input({.prompt = "New name:",
                                      .title = "Rename",
                                      .preset = record.name,
                                      .help = "All records that have the name get the new one"});
  if (name.empty() || name == record.name) return;
  const auto set = dock_->set();
  run(tr("%1 is %2 now.").arg(shownText(record.name), shownText(name)), [&] {
    Editor editor(session_, database_->ADOConnection(), set);
    const auto review = editor.save({editor.change(record.id, editor.place("name"), name)});
    if (!review.isFine()) throw Error(kInvalidCall, review.refusals.front().reason);
  });
}

void LookupCommands::merge() {
  const auto records = dock_->selected();
  QStringList names;
  for (const LookupRecord& record : records) names << shownText(record.name);
  bool isChosen = false;
  QString into;
  {
    const OrdinaryPointer pointer;
    into = QInputDialog::getItem(&window_, tr("Merge"),
                                 tr("All records with one of these names get the name:"), names, 0,
                                 false, &isChosen);
  }
  if (!isChosen) return;
  const auto place = static_cast<std::size_t>(names.indexOf(into));
  std::vector<std::int32_t> from;
  for (const LookupRecord& record : records) {
    if (record.id != records[place].id) from.push_back(record.id);
  }
  const auto set = dock_->set();
  run(tr("%1 merged into %2.").arg(counted(static_cast<qlonglong>(from.size()), tr("name")), into),
      [&] {
        commands::edit::mergeLookups(set, from, records[place].id, *database_->ADOConnection(),
                                     ui_);
      });
}

void LookupCommands::remove() {
  std::vector<std::int32_t> ids;
  for (const LookupRecord& record : dock_->selected()) ids.push_back(record.id);
  const auto set = dock_->set();
  run(tr("%1 deleted.").arg(counted(static_cast<qlonglong>(ids.size()), tr("name"))),
      [&] { commands::edit::deleteLookups(set, ids, *database_->ADOConnection(), ui_); });
}

void LookupCommands::run(const QString& done, const std::function<void()>& change) {
  bool mayGoOn = true;
  emit settleWanted(mayGoOn);
  if (!mayGoOn || !commands::mayBeChanged(*database_->ADOConnection(), ui_)) return;
  emit workBegins();
  std::string failure;
  try {
    const BusyPointer busy;
    change();
  } catch (const std::exception& error) {
    failure = commands::describe(error);
  }
  emit workEnded();
  if (failure.empty()) {
    emit told(done);
  } else {
    ui_.message(commands::MessageKind::critical, failure, commands::kProductName);
  }
}

}  // namespace orv::app

#include "moc_LookupCommands.cpp"
