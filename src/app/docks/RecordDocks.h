// The docks that show the selected records.
#pragma once

#include <QObject>
#include <QTimer>
#include <optional>
#include <string>
#include <vector>

#include "app/docks/ShownRecord.h"
#include "app/docks/details/DetailsRecord.h"
#include "optics/Standard.h"

class QAction;
class QDockWidget;
class QMainWindow;

namespace orv::app {

class DetailsDock;
class DockShares;
class SpectrumDock;

/// Reads the selected records for the docks that are open, a moment after the selection has come
/// to rest, and besides those that are pinned: they stay in the plot, and stand beside the selected
/// ones of their kind, until they are pinned no more or their source is closed.
class RecordDocks : public QObject {
  Q_OBJECT

 public:
  using Node = std::shared_ptr<sources::datasource>;

  RecordDocks(commands::Session& session, QMainWindow& window);

  /// The records to show from now on; none leaves the pinned ones alone.
  void show(const Node& node, std::vector<std::string> identifiers);
  /// Shows nothing and reads nothing until the next show().
  void rest();
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
  /// Pins the selected records, or no longer when all of them are.
  QAction* pinAction() const { return pin_; }
  QAction* unpinAction() const { return unpin_; }

 signals:
  void refreshWanted();
  void standardChosen(optics::Standard standard);

 private:
  void makePinActions();
  void beginReading();
  std::size_t countToRead() const;
  /// Reads for a moment, and goes on when the user lets it.
  void readOn();
  void showRead();
  void showSpectra();
  void showDetails();
  DetailsRecord columnOf(const ShownRecord& record) const;
  void readSides();
  void pointAtPlace();
  void togglePin(std::size_t dataSet);
  void pinSelected();
  void pinsChanged();
  bool isPinned(const RecordPlace& place) const;
  /// Leaves the pins out whose sources are closed.
  void prunePins();
  QString titleOf(const ShownRecord& record) const;

  commands::Session& session_;
  QMainWindow& window_;
  DockShares* shares_;
  SpectrumDock* spectrum_;
  DetailsDock* details_;
  QTimer rest_;
  QTimer reading_;
  QAction* pin_;
  QAction* unpin_;
  Node node_;
  std::vector<std::string> identifiers_;
  std::vector<RecordPlace> pins_;
  std::vector<RecordPlace> wanted_;   ///< the pinned and the selected records
  std::vector<ShownRecord> read_;     ///< those of them that have been read
  std::vector<RecordPlace> plotted_;  ///< whose the data sets of the plot are
  std::vector<Side> sides_;           ///< of a difference that is shown in place of the records
  std::optional<int> angle_;
  struct Place {
    double microns;
    std::optional<int> angle;
  };
  std::optional<Place> place_;
};

}  // namespace orv::app
