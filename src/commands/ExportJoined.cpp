// Export of several panes into one file.
#include <fmt/format.h>

#include <filesystem>
#include <map>

#include "commands/ExportLosses.h"
#include "commands/ExportWork.h"
#include "commands/FileCompletion.h"
#include "commands/SpectraCsv.h"
#include "model/IntegratedColumns.h"
#include "productfile/ProductWriter.h"
#include "textfile/TextFile.h"

namespace orv::commands {

namespace {

/// A pane at one angle.
struct DataSet {
  std::string identifier;
  std::shared_ptr<GlazingData> pane;
  bool isOneOfSeveral;               ///< the pane has other angles
  productfile::OrderedJson product;  ///< in a file of products
  std::string text;                  ///< of its text file
};

std::string productsText(std::vector<DataSet>& sets) {
  std::vector<productfile::OrderedJson> products;
  for (DataSet& set : sets) products.push_back(std::move(set.product));
  return productfile::formatProducts(products);
}

/// Panes of one name are told apart by their identifiers.
std::string tableText(const std::vector<DataSet>& sets) {
  std::map<std::string, std::string> firstOfName;
  std::map<std::string, bool> isRepeated;
  for (const DataSet& set : sets) {
    const std::string name = set.pane->filename();
    const auto first = firstOfName.try_emplace(name, set.identifier).first;
    if (first->second != set.identifier) isRepeated[name] = true;
  }
  std::vector<NamedSpectrum> spectra;
  for (const DataSet& set : sets) {
    std::string name = set.pane->filename();
    if (isRepeated[name]) name += " (" + set.identifier + ")";
    if (set.isOneOfSeveral) name += fmt::format(" at {}°", set.pane->ORV_Angle());
    spectra.push_back({name, set.pane->SpectralData()});
  }
  return spectraCsv(spectra);
}

std::string paneText(const Session& session, GlazingData& pane, JoinedExport& result) {
  const std::string name = pane.filename();
  for (const std::string& each : exportLossesOf(pane)) result.notKept.add(each, name);
  for (const std::string& each : completeForFile(pane)) result.filled.add(each, name);
  return session.textFiles.SpectralText(name, pane, PaneEntries::all);
}

}  // namespace

JoinedExport exportJoined(Session& session, const sources::RecordSelection& records,
                          ExportForm form) {
  requireExportable(records, form, true);
  JoinedExport result;
  const RecordReader reader(session, records.DataSourcePtr());
  std::vector<DataSet> sets;
  exportEach(session, records, result, [&](const std::string& identifier) {
    const auto angles = requireAngles(reader, identifier);
    std::vector<DataSet> ofPane;
    for (const std::int16_t angle : angles) {
      DataSet& set =
          ofPane.emplace_back(DataSet{identifier,
                                      paneForFile(reader, identifier, angle, form, result.notKept),
                                      angles.size() > 1,
                                      {},
                                      {}});
      if (form == ExportForm::json) set.product = productfile::productOf(*set.pane);
      if (form == ExportForm::text) set.text = paneText(session, *set.pane, result);
    }
    sets.insert(sets.end(), ofPane.begin(), ofPane.end());
  });
  result.dataSets = sets.size();
  if (sets.empty() || result.cancelled) return result;
  if (form == ExportForm::text && sets.size() > 1) {
    throw Error(kInvalidCall, fmt::format("A text file holds one pane at one angle, and here are "
                                          "{}. Choose one, another form, or a folder.",
                                          sets.size()));
  }
  result.text = form == ExportForm::json  ? productsText(sets)
                : form == ExportForm::csv ? tableText(sets)
                                          : sets.front().text;
  return result;
}

void writeJoined(const std::string& path, const std::string& text, bool overwrite) {
  if (!overwrite && std::filesystem::exists(path)) {
    throw Error(kInvalidCall, "There is a file \"" + path + "\" already, which is not replaced.");
  }
  textfile::writeText(path, text);
}

}  // namespace orv::commands
