#include "app/docks/spectra/SpectrumCsv.h"

#include <QCoreApplication>
#include <QStringList>
#include <map>

#include "app/Text.h"
#include "commands/CsvText.h"

namespace orv::app {

namespace {

struct CsvColumn {
  const SpectrumDataSet* set;
  SpectralQuantity quantity;
};

std::vector<CsvColumn> columnsOf(const SpectrumPlot& plot) {
  std::vector<CsvColumn> columns;
  for (std::size_t i = 0; i < plot.dataSets.size(); ++i) {
    if (!plot.showsDataSet(i) || !plot.dataSets[i].hasSpectrum()) continue;
    for (const SpectralQuantity quantity : kSpectralQuantities) {
      if (plot.shows(quantity)) columns.push_back({&plot.dataSets[i], quantity});
    }
  }
  return columns;
}

/// The cells of each wavelength, an empty one a column at first.
std::map<double, QStringList> cellsOf(const std::vector<CsvColumn>& columns) {
  std::map<double, QStringList> cells;
  for (std::size_t column = 0; column < columns.size(); ++column) {
    const auto& [set, quantity] = columns[column];
    for (std::size_t i = 0; i < set->wavelengths.size(); ++i) {
      auto [row, isNew] = cells.try_emplace(set->wavelengths[i]);
      if (isNew) row->second.resize(static_cast<qsizetype>(columns.size()));
      row->second[static_cast<qsizetype>(column)] =
          QString::number(static_cast<float>(set->of(quantity)[i]), 'g', 7);
    }
  }
  return cells;
}

QString quoted(const QString& cell, QChar separator) {
  return qt(commands::separatedCell(cell.toStdString(), separator.toLatin1()));
}

}  // namespace

QString spectraAsText(const SpectrumPlot& plot, QChar separator) {
  const auto columns = columnsOf(plot);
  QString text = quoted(
      QCoreApplication::translate("SpectrumPlot", "Wavelength (%1)").arg(plot.scale.unitText()),
      separator);
  for (const auto& [set, quantity] : columns) {
    text += separator + quoted(set->label + u' ' + symbolOf(quantity), separator);
  }
  text += QStringLiteral("\r\n");
  for (const auto& [microns, cells] : cellsOf(columns)) {
    text += QString::number(plot.scale.inUnit(microns), 'g', 7);
    for (const QString& cell : cells) text += separator + cell;
    text += QStringLiteral("\r\n");
  }
  return text;
}

}  // namespace orv::app
