#include "app/docks/spectra/IntegratedValues.h"

#include <QCoreApplication>
#include <QDateTime>
#include <algorithm>

namespace orv::app {

namespace {

struct IntegratedValue {
  const char* name;
  Property<float> GlazingData::*member;
};

/// Those that databases of every kind hold.
constexpr IntegratedValue kCommon[] = {
    {QT_TRANSLATE_NOOP("IntegratedValues", "Solar T, front"), &GlazingData::Precalc_Tfsol},
    {QT_TRANSLATE_NOOP("IntegratedValues", "Solar T, back"), &GlazingData::Precalc_Tbsol},
    {QT_TRANSLATE_NOOP("IntegratedValues", "Solar R, front"), &GlazingData::Precalc_Rfsol},
    {QT_TRANSLATE_NOOP("IntegratedValues", "Solar R, back"), &GlazingData::Precalc_RbSol},
    {QT_TRANSLATE_NOOP("IntegratedValues", "Visible T, front"), &GlazingData::Precalc_Tfvis},
    {QT_TRANSLATE_NOOP("IntegratedValues", "Visible T, back"), &GlazingData::Precalc_Tbvis},
    {QT_TRANSLATE_NOOP("IntegratedValues", "Visible R, front"), &GlazingData::Precalc_Rfvis},
    {QT_TRANSLATE_NOOP("IntegratedValues", "Visible R, back"), &GlazingData::Precalc_Rbvis},
    {QT_TRANSLATE_NOOP("IntegratedValues", "UV T, front"), &GlazingData::Precalc_Tfuv},
    {QT_TRANSLATE_NOOP("IntegratedValues", "UV T, back"), &GlazingData::Precalc_Tbuv},
    {QT_TRANSLATE_NOOP("IntegratedValues", "UV R, front"), &GlazingData::Precalc_Rfuv},
    {QT_TRANSLATE_NOOP("IntegratedValues", "UV R, back"), &GlazingData::Precalc_Rbuv},
};

constexpr IntegratedValue kOther[] = {
    {QT_TRANSLATE_NOOP("IntegratedValues", "Infrared T"), &GlazingData::Precalc_TfIR},
    {QT_TRANSLATE_NOOP("IntegratedValues", "Emissivity, front"), &GlazingData::Precalc_ef},
    {QT_TRANSLATE_NOOP("IntegratedValues", "Emissivity, back"), &GlazingData::Precalc_eb},
    {QT_TRANSLATE_NOOP("IntegratedValues", "Damage-weighted T"), &GlazingData::Precalc_Tdw},
    {QT_TRANSLATE_NOOP("IntegratedValues", "Skin protection T"), &GlazingData::Precalc_TSPF},
    {QT_TRANSLATE_NOOP("IntegratedValues", "CIE X of T"), &GlazingData::Precalc_TCIEX},
    {QT_TRANSLATE_NOOP("IntegratedValues", "CIE Y of T"), &GlazingData::Precalc_TCIEY},
    {QT_TRANSLATE_NOOP("IntegratedValues", "CIE Z of T"), &GlazingData::Precalc_TCIEZ},
    {QT_TRANSLATE_NOOP("IntegratedValues", "CIE X of Rf"), &GlazingData::Precalc_RfCIEX},
    {QT_TRANSLATE_NOOP("IntegratedValues", "CIE Y of Rf"), &GlazingData::Precalc_RfCIEY},
    {QT_TRANSLATE_NOOP("IntegratedValues", "CIE Z of Rf"), &GlazingData::Precalc_RfCIEZ},
};

QString translated(const char* text) {
  return QCoreApplication::translate("IntegratedValues", text);
}

/// A row whose texts come from `textOf`, with no text for records without integrated values.
template <class TextOf>
IntegratedRow makeRow(const char* name, const std::vector<SpectrumDataSet>& dataSets,
                      TextOf textOf) {
  IntegratedRow row{translated(name), {}};
  for (const auto& set : dataSets) {
    row.values.push_back(hasIntegratedValues(*set.record) ? textOf(*set.record) : QString());
  }
  return row;
}

IntegratedRow valueRow(const IntegratedValue& value, const std::vector<SpectrumDataSet>& dataSets) {
  return makeRow(value.name, dataSets, [&](const GlazingData& pane) {
    return QString::number((pane.*value.member)(), 'f', 3);
  });
}

QString timeText(const GlazingData& pane) {
  if (!pane.Precalc_Time()) return {};
  const auto seconds = pane.Precalc_Time()->time_since_epoch().count();
  return QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC).toString(u"yyyy-MM-dd HH:mm");
}

bool isEmpty(const IntegratedRow& row) {
  return std::all_of(row.values.begin(), row.values.end(),
                     [](const QString& text) { return text.isEmpty(); });
}

bool isSet(const IntegratedValue& value, const std::vector<SpectrumDataSet>& dataSets) {
  return std::any_of(dataSets.begin(), dataSets.end(), [&](const auto& set) {
    return hasIntegratedValues(*set.record) && (set.record.get()->*value.member)() != 0;
  });
}

}  // namespace

bool hasIntegratedValues(const GlazingData& pane) {
  // Databases mark missing values with a reflectance of -1; text files hold none, so all are 0.
  if (pane.Precalc_Rfsol() < 0) return false;
  const auto isThere = [&](const IntegratedValue& value) { return (pane.*value.member)() != 0; };
  return std::any_of(std::begin(kCommon), std::end(kCommon), isThere) ||
         std::any_of(std::begin(kOther), std::end(kOther), isThere);
}

std::vector<IntegratedRow> integratedRows(const std::vector<SpectrumDataSet>& dataSets) {
  std::vector<IntegratedRow> rows;
  if (std::none_of(dataSets.begin(), dataSets.end(),
                   [](const auto& set) { return hasIntegratedValues(*set.record); })) {
    return rows;
  }
  for (const auto& value : kCommon) rows.push_back(valueRow(value, dataSets));
  for (const auto& value : kOther) {
    if (isSet(value, dataSets)) rows.push_back(valueRow(value, dataSets));
  }
  rows.push_back(makeRow(
      QT_TRANSLATE_NOOP("IntegratedValues", "Standard"), dataSets,
      [](const GlazingData& pane) { return QString::fromStdString(pane.Precalc_StandardName()); }));
  rows.push_back(makeRow(QT_TRANSLATE_NOOP("IntegratedValues", "Calculated"), dataSets, timeText));
  std::erase_if(rows, isEmpty);
  return rows;
}

}  // namespace orv::app
