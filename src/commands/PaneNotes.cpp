#include "commands/PaneNotes.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <vector>

#include "commands/CopyRules.h"
#include "model/IntegratedColumns.h"

namespace orv::commands {

namespace DataType = sources::DataType;

namespace {

void note(TransferWork& work, const std::string& text, const GlazingData& pane) {
  work.result().notes.add(text, pane.filename());
}

void noteDirections(TransferWork& work, const std::string& identifier, const GlazingData& pane) {
  if (pane.ORV_Direction() == 0) return;  // its rows are one spectrum
  const auto directions = work.reader().directions(identifier, pane.ORV_Angle());
  if (directions.size() < 2) return;
  note(work,
       fmt::format("of the spectra of the directions {} at {} degrees only that of direction {} is "
                   "copied",
                   fmt::join(directions, ", "), pane.ORV_Angle(), pane.ORV_Direction()),
       pane);
}

/// Of a pane that has integrated values, the angles are those of the values.
void noteOtherSpectra(TransferWork& work, const std::string& identifier, const GlazingData& pane,
                      const std::vector<std::int16_t>& angles) {
  auto others = work.reader().spectralAngles(identifier);
  std::erase_if(
      others, [&](std::int16_t angle) { return std::ranges::find(angles, angle) != angles.end(); });
  if (others.empty()) return;
  note(
      work,
      fmt::format("the spectrum at {} degrees, where there are no integrated values, is not copied",
                  fmt::join(others, ", ")),
      pane);
}

/// What a pane is said to be decides whether its spectrum is read.
void noteUnreadSpectrum(TransferWork& work, const std::string& identifier,
                        const GlazingData& pane) {
  if (pane.spectral_pane()) return;
  const auto type = work.records().DataSourcePtr()->DataType();
  const auto angles = work.reader().spectralAngles(identifier);
  const bool hasOne = type == DataType::orv2Panes
                          ? !angles.empty()
                          : std::ranges::find(angles, pane.ORV_Angle()) != angles.end();
  if (hasOne) {
    work.result().notKept.add("spectrum, as the field \"spectral pane\" is no", pane.filename());
  }
}

void noteZeros(TransferWork& work, const GlazingData& pane) {
  const auto add = [&](const char* what) { work.result().zeros.add(what, pane.filename()); };
  if (lacksIntegratedValues(pane)) return add("integrated values");
  if (lacksIntegratedValues(pane, Band::solar)) add("solar values");
  if (lacksIntegratedValues(pane, Band::visible)) add("visible values");
  if (lacksIntegratedValues(pane, Band::ultraviolet)) add("ultraviolet values");
}

/// What is measured badly, or not what it is said to be, but can be stored.
void noteDoubts(TransferWork& work, const GlazingData& pane) {
  constexpr int kRightAngle = 90;
  if (pane.ORV_Angle() < 0 || pane.ORV_Angle() > kRightAngle) {
    note(work, fmt::format("{} degrees are no angle of incidence", pane.ORV_Angle()), pane);
  }
  if (!pane.SpectralData()) return;
  const SpectralData& spectrum = *pane.SpectralData();
  std::vector<float> wavelengths;
  bool isTooMuch = false;
  constexpr float kWhole = 1.0001F;  // with what rounding adds
  for (std::int32_t i = 0; i < spectrum.count(); ++i) {
    wavelengths.push_back(spectrum.wl(i));
    isTooMuch = isTooMuch || spectrum.Tf(i) + spectrum.Rf(i) > kWhole ||
                spectrum.Tb(i) + spectrum.Rb(i) > kWhole;
  }
  std::ranges::sort(wavelengths);
  const bool isDoubled = std::ranges::adjacent_find(wavelengths) != wavelengths.end();
  if (isDoubled) note(work, "a wavelength occurs twice", pane);
  if (isTooMuch) note(work, "transmittance and reflectance add up to more than 1", pane);
}

}  // namespace

void notePane(TransferWork& work, const std::string& identifier, const GlazingData& pane,
              const std::vector<std::int16_t>& angles, Zeros zeros) {
  for (const auto& names : {lossesOf(pane), work.reader().unreadColumns(identifier, pane)}) {
    for (const std::string& name : names) work.result().notKept.add(name, pane.filename());
  }
  noteUnreadSpectrum(work, identifier, pane);
  if (zeros != Zeros::none) noteZeros(work, pane);
  const bool hasEmissivity = pane.ORV_Emissivity_front() != 0 || pane.ORV_Emissivity_back() != 0;
  if (zeros == Zeros::all && !hasEmissivity) {
    work.result().zeros.add("emissivities", pane.filename());
  }
  if (pane.spectral_pane() && !pane.SpectralData()) {
    note(work, "marked as spectral, but without a spectrum at an angle", pane);
  }
  const auto type = work.records().DataSourcePtr()->DataType();
  if (type == DataType::orv2Panes && angles.size() > 1) {
    note(work,
         "version 2.0.1 does not tell spectra of several angles apart: each angle has all rows of "
         "the pane",
         pane);
  }
  for (const std::string& remark : work.reader().remarks(identifier, pane.ORV_Angle())) {
    note(work, remark, pane);
  }
  if (type == DataType::orv3Panes && pane.ORV_Angle() == angles.front()) {
    noteOtherSpectra(work, identifier, pane, angles);
  }
  noteDirections(work, identifier, pane);
  noteDoubts(work, pane);
}

}  // namespace orv::commands
