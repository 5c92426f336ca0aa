// The docks that show the selected records.
#pragma once

#include <QObject>
#include <QTimer>
#include <optional>
#include <string>
#include <vector>

#include "commands/RecordReader.h"
#include "commands/Session.h"
#include "optics/Standard.h"

class QAction;
class QDockWidget;
class QMainWindow;

namespace orv::app {

class DetailsDock;
class DockShares;
class SpectrumDock;

/// Reads the selected records for the docks that are open, a moment after the selection has come
/// to rest.
class RecordDocks : public QObject {
  Q_OBJECT

 public:
  using Node = std::shared_ptr<sources::datasource>;

  RecordDocks(commands::Session& session, QMainWindow& window);

  /// The records to show from now on; none clears the docks.
  void show(const Node& node, std::vector<std::string> identifiers);
  /// Two records, or the one of them that is there, to be laid over each other with their
  /// difference; at this angle where one is given.
  struct Side {
    Node node;
    std::vector<std::string> identifiers;
  };
  void showDifference(Side left, Side right, std::optional<int> angle);
  /// Points at this wavelength, in microns, when the spectra of the records are there; on the curve
  /// of an angle, in degrees, where it is given.
  void pointAt(double microns, std::optional<int> angle = {});
  /// `WavelengthUnitCode` of the plots.
  void wavelengthUnit(int unit);
  /// By which the values beside the plots are computed.
  void standard(optics::Standard standard);
  /// Lays another dock over the details, with tabs to choose by.
  void layOverDetails(QDockWidget& dock);
  void openDetails();
  /// Opens or closes both docks.
  void open(bool opened);

  /// Opens and closes the spectrum dock.
  QAction* spectrumAction() const;
  QAction* detailsAction() const;

 signals:
  void refreshWanted();
  void standardChosen(optics::Standard standard);

 private:
  void readRecords();
  void readPanes(const commands::RecordReader& reader);
  void readOther(const commands::RecordReader& reader);
  void readSides();

  commands::Session& session_;
  QMainWindow& window_;
  DockShares* shares_;
  SpectrumDock* spectrum_;
  DetailsDock* details_;
  QTimer rest_;
  Node node_;
  std::vector<std::string> identifiers_;
  std::vector<Side> sides_;  ///< of a difference that is shown in place of the records
  std::optional<int> angle_;
  struct Place {
    double microns;
    std::optional<int> angle;
  };
  std::optional<Place> place_;
};

}  // namespace orv::app
