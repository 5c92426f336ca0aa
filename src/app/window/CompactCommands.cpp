#include "app/window/CompactCommands.h"

#include <filesystem>

#include "app/Text.h"
#include "app/dialogs/ReportDialog.h"
#include "app/dialogs/dlgCompact.h"
#include "commands/ErrorText.h"
#include "commands/PasswordQuestion.h"

namespace orv::app {

namespace {

/// The lines about a table as one part of the report.
QStringList parts(const std::vector<std::string>& lines) {
  QStringList parts;
  for (const std::string& line : lines) {
    const bool isDetail = line.starts_with("  ") && !parts.isEmpty();
    isDetail ? parts.back() += '\n' + shownText(line) : parts.emplace_back(shownText(line));
  }
  return parts;
}

}  // namespace

CompactCommands::CompactCommands(commands::Session& session, WindowUserInterface& ui,
                                 QWidget& window)
    : session_(session), ui_(ui), window_(window), open_(session) {
  open_.whenReplaced(
      [this](const Node& closed, const Node& opened) { emit replaced(closed, opened); });
}

CompactCommands::Node CompactCommands::databaseOf(const Node& node) {
  Node source = node;
  while (source && source->Parent()) source = source->Parent();
  return source && source->ADOConnection() ? source : nullptr;
}

void CompactCommands::compact(const Node& shown) {
  if (const Node database = databaseOf(shown)) {
    ask(Work::compact, qt(database->ADOConnection()->path()));
  }
}

void CompactCommands::repair(const Node& shown) {
  const Node database = databaseOf(shown);
  ask(Work::repair, database ? qt(database->ADOConnection()->path()) : QString());
}

void CompactCommands::ask(Work work, const QString& path) {
  auto request = dlgCompact(work, path, &window_).choose();
  if (!request) return;
  try {
    commands::withPassword(session_, std::filesystem::path(request->path).filename().string(), [&] {
      request->password = session_.password;
      run(*request);
    });
  } catch (const commands::Cancelled& cancelled) {
    ui_.status(cancelled.what());
  } catch (const std::exception& error) {
    if (work == Work::compact && commands::isDamage(error)) {
      offerRepair(request->path, commands::describe(error));
    } else {
      ui_.message(commands::MessageKind::critical, commands::describe(error),
                  commands::kProductName);
    }
  }
}

void CompactCommands::offerRepair(const std::string& path, const std::string& why) {
  const commands::Answer answer =
      ui_.ask({why + "\n\nDo you want to repair it into a new file?", commands::kProductName,
               commands::Buttons::yesNo, commands::Answer::yes});
  if (answer == commands::Answer::yes) ask(Work::repair, qt(path));
}

void CompactCommands::run(const commands::CompactRequest& request) {
  emit workBegins();
  commands::CompactResult result;
  try {
    result = commands::compactDatabase(request, ui_);
  } catch (...) {
    emit workEnded();
    throw;
  }
  // The new file first, so that nothing more is read of the one that it has replaced.
  const Node node = result.refused ? nullptr : open_.reopen(result.target);
  if (node) emit opened(node);
  emit workEnded();
  if (!result.refused) tell(result, request.work);
}

void CompactCommands::tell(const commands::CompactResult& result, Work work) {
  QString text = tr("%1: %2.").arg(shownText(result.target), qt(commands::describe(result.report)));
  if (!result.backup.empty()) text += tr("\nThe old file is %1.").arg(shownText(result.backup));
  QStringList report = parts(commands::describeSalvage(result.report));
  if (work == Work::repair) {
    if (report.isEmpty()) report << tr("Nothing is lost.");
    ReportDialog(
        tr("Repaired Database"), text, report,
        tr("What was saved and what is lost, by table, and where. The text can be copied."),
        &window_)
        .exec();
  } else {
    if (!report.isEmpty()) text += "\n\n" + report.join('\n');
    ui_.message(commands::MessageKind::information, text.toStdString(), commands::kProductName);
  }
}

}  // namespace orv::app

#include "moc_CompactCommands.cpp"
