#include "app/window/CompareCommands.h"

#include "app/Pointers.h"
#include "app/Text.h"
#include "app/dialogs/ReportDialog.h"
#include "app/window/Guarded.h"
#include "commands/CompactDatabase.h"
#include "commands/compare/CopyChanges.h"

namespace orv::app {

using commands::compare::copyPairs;
using commands::compare::Difference;

namespace {

void addNotesTo(QStringList& report, const QString& heading, const commands::Notes& notes) {
  if (notes.list().empty()) return;
  QStringList lines{heading};
  for (const commands::Note& note : notes.list()) lines << shownText(note.line());
  report << lines.join('\n');
}

bool isChangeable(const sources::datasource& node) {
  return node.DataType() == sources::DataType::orvDatabase3 || node.isInVersion3();
}

}  // namespace

CompareCommands::CompareCommands(commands::Session& session, WindowUserInterface& ui,
                                 QWidget& window)
    : session_(session), ui_(ui), window_(window) {}

void CompareCommands::compare(const std::string& left, const std::string& right) {
  const auto choice = CompareDialog(session_.MainDataSources, left, right, &window_).choose();
  if (!choice) return;
  left_ = choice->left->key();
  right_ = choice->right->key();
  options_ = choice->options;
  run({choice->left, choice->right});
}

void CompareCommands::compareAgain() {
  if (const auto both = sides()) run(*both);
}

std::optional<CompareCommands::Sides> CompareCommands::sides() {
  const Sides both{session_.MainDataSources.findByKey(left_),
                   session_.MainDataSources.findByKey(right_)};
  if (both.left && both.right) return both;
  emit statusMessage(tr("A source that was compared is not open any more."));
  return std::nullopt;
}

/// False when it came to no end.
bool CompareCommands::run(const Sides& sides) {
  emit workBegins();
  bool isDone = false;
  try {
    const BusyPointer busy;
    comparison_ = std::make_shared<const Comparison>(
        compareSources(session_, sides.left, sides.right, options_));
    const auto copyable = isChangeable(*sides.right)
                              ? commands::compare::copyablePairs(*comparison_).pairs
                              : std::vector<std::size_t>();
    emit compared(comparison_, copyable, headingOf(sides));
    isDone = true;
  } catch (const commands::Cancelled& cancelled) {
    emit statusMessage(cancelled.what());
  } catch (const std::exception& error) {
    ui_.message(commands::MessageKind::critical, commands::describe(error), commands::kProductName);
  }
  emit workEnded(false);
  return isDone;
}

QString CompareCommands::headingOf(const Sides& sides) const {
  const auto nameOf = [this](const Node& node) {
    return sourceName(session_.MainDataSources, node->Parent() ? *node->Parent() : *node);
  };
  return tr("%1 and %2").arg(nameOf(sides.left), nameOf(sides.right));
}

void CompareCommands::copy(const std::vector<std::size_t>& pairs) {
  const auto both = sides();
  if (!both || pairs.empty()) return;
  const auto seen = comparison_;
  if (!run(*both)) return;
  if (!comparison_->hasSameLines(*seen)) {
    ui_.message(commands::MessageKind::information,
                "Nothing is copied: records have changed since they were compared. Look at the new "
                "list.",
                commands::kProductName);
    return;
  }
  emit workBegins();
  ui_.collectFailures(tr("copy"));
  QStringList report;
  {
    const BusyPointer busy;
    guarded(ui_, [&] {
      const auto result =
          copyPairs(session_, both->left, both->right, *comparison_, pairs,
                    {.integrateBy = integrateBy_, .tolerance = options_.tolerance},
                    [&](const commands::PasteResult& each) {
                      addNotesTo(report, tr("What became of the records:"), each.notes);
                      addNotesTo(report, tr("Not given by the source, 0 is stored:"), each.zeros);
                      addNotesTo(report, tr("Not kept, since an ORV database has no place for it:"),
                                 each.notKept);
                    });
      if (!result.refused) emit finished(qt(result.summary(true)), ui_.failures() + report);
    });
  }
  emit workEnded(true);
  const QStringList failures = ui_.failures();
  run(*both);
  if (failures.isEmpty()) return;
  ReportDialog(tr("Failed Records"), tr("These records could not be copied:"), failures + report,
               {}, &window_)
      .exec();
}

std::optional<std::pair<CompareCommands::Place, CompareCommands::Place>> CompareCommands::placesOf(
    const Difference& difference) const {
  const Node left = session_.MainDataSources.findByKey(left_);
  const Node right = session_.MainDataSources.findByKey(right_);
  if (!left || !right || !comparison_) return std::nullopt;
  const auto& pair = comparison_->pairs[difference.pair];
  using commands::compare::partOf;
  return std::pair(Place{partOf(left, pair.kind), pair.a}, Place{partOf(right, pair.kind), pair.b});
}

}  // namespace orv::app

#include "moc_CompareCommands.cpp"
