#include "app/docks/spectra/IntegratedValues.h"

#include <QCoreApplication>
#include <QDateTime>
#include <algorithm>
#include <cmath>

#include "app/Text.h"
#include "commands/StoredValues.h"
#include "model/IntegratedColumns.h"
#include "optics/ScreenColour.h"

namespace orv::app {

using optics::Integration;
using IntegratedSets = std::vector<SpectrumDataSet>;

namespace {

struct IntegratedValue {
  const char* title;
  std::string_view name;  ///< among the computed ones; empty for none
  /// Where a record keeps a value that only some sources store.
  Property<float> GlazingData::*member = nullptr;
  int decimals = 3;
};

/// Those that databases of every kind hold.
constexpr IntegratedValue kCommon[] = {
    {QT_TRANSLATE_NOOP("IntegratedValues", "Solar T, front"), "Tf_sol"},
    {QT_TRANSLATE_NOOP("IntegratedValues", "Solar T, back"), "Tb_sol"},
    {QT_TRANSLATE_NOOP("IntegratedValues", "Solar R, front"), "Rf_sol"},
    {QT_TRANSLATE_NOOP("IntegratedValues", "Solar R, back"), "Rb_sol"},
    {QT_TRANSLATE_NOOP("IntegratedValues", "Visible T, front"), "Tf_vis"},
    {QT_TRANSLATE_NOOP("IntegratedValues", "Visible T, back"), "Tb_vis"},
    {QT_TRANSLATE_NOOP("IntegratedValues", "Visible R, front"), "Rf_vis"},
    {QT_TRANSLATE_NOOP("IntegratedValues", "Visible R, back"), "Rb_vis"},
    {QT_TRANSLATE_NOOP("IntegratedValues", "UV T, front"), "Tf_uv"},
    {QT_TRANSLATE_NOOP("IntegratedValues", "UV T, back"), "Tb_uv"},
    {QT_TRANSLATE_NOOP("IntegratedValues", "UV R, front"), "Rf_uv"},
    {QT_TRANSLATE_NOOP("IntegratedValues", "UV R, back"), "Rb_uv"},
};

/// Those that only some sources or standards have.
constexpr IntegratedValue kRare[] = {
    {QT_TRANSLATE_NOOP("IntegratedValues", "g (total solar T)"), "g"},
    {QT_TRANSLATE_NOOP("IntegratedValues", "Ra (rendering)"), "Ra", nullptr, 1},
    {QT_TRANSLATE_NOOP("IntegratedValues", "Infrared T"), "", &GlazingData::Precalc_TfIR},
    {QT_TRANSLATE_NOOP("IntegratedValues", "Emissivity, front"), "ef", &GlazingData::Precalc_ef},
    {QT_TRANSLATE_NOOP("IntegratedValues", "Emissivity, back"), "eb", &GlazingData::Precalc_eb},
    {QT_TRANSLATE_NOOP("IntegratedValues", "Damage T, front"), "Tf_dw", &GlazingData::Precalc_Tdw},
    {QT_TRANSLATE_NOOP("IntegratedValues", "Damage T, back"), "Tb_dw"},
    {QT_TRANSLATE_NOOP("IntegratedValues", "Damage R, front"), "Rf_dw"},
    {QT_TRANSLATE_NOOP("IntegratedValues", "Damage R, back"), "Rb_dw"},
    {QT_TRANSLATE_NOOP("IntegratedValues", "CIE damage factor"), "Tf_df"},
    {QT_TRANSLATE_NOOP("IntegratedValues", "Skin protection"), "Tf_spf", &GlazingData::Precalc_TSPF,
     2},
    {QT_TRANSLATE_NOOP("IntegratedValues", "CIE X of T"), "X", &GlazingData::Precalc_TCIEX, 2},
    {QT_TRANSLATE_NOOP("IntegratedValues", "CIE Y of T"), "Y", &GlazingData::Precalc_TCIEY, 2},
    {QT_TRANSLATE_NOOP("IntegratedValues", "CIE Z of T"), "Z", &GlazingData::Precalc_TCIEZ, 2},
    {QT_TRANSLATE_NOOP("IntegratedValues", "CIE L* of T"), "L", nullptr, 2},
    {QT_TRANSLATE_NOOP("IntegratedValues", "CIE a* of T"), "a", nullptr, 2},
    {QT_TRANSLATE_NOOP("IntegratedValues", "CIE b* of T"), "b", nullptr, 2},
    {QT_TRANSLATE_NOOP("IntegratedValues", "CIE X of Rf"), "Rf_X", &GlazingData::Precalc_RfCIEX, 2},
    {QT_TRANSLATE_NOOP("IntegratedValues", "CIE Y of Rf"), "Rf_Y", &GlazingData::Precalc_RfCIEY, 2},
    {QT_TRANSLATE_NOOP("IntegratedValues", "CIE Z of Rf"), "Rf_Z", &GlazingData::Precalc_RfCIEZ, 2},
    {QT_TRANSLATE_NOOP("IntegratedValues", "CIE L* of Rf"), "Rf_L", nullptr, 2},
    {QT_TRANSLATE_NOOP("IntegratedValues", "CIE a* of Rf"), "Rf_a", nullptr, 2},
    {QT_TRANSLATE_NOOP("IntegratedValues", "CIE b* of Rf"), "Rf_b", nullptr, 2},
    {QT_TRANSLATE_NOOP("IntegratedValues", "CIE X of Rb"), "Rb_X", nullptr, 2},
    {QT_TRANSLATE_NOOP("IntegratedValues", "CIE Y of Rb"), "Rb_Y", nullptr, 2},
    {QT_TRANSLATE_NOOP("IntegratedValues", "CIE Z of Rb"), "Rb_Z", nullptr, 2},
    {QT_TRANSLATE_NOOP("IntegratedValues", "CIE L* of Rb"), "Rb_L", nullptr, 2},
    {QT_TRANSLATE_NOOP("IntegratedValues", "CIE a* of Rb"), "Rb_a", nullptr, 2},
    {QT_TRANSLATE_NOOP("IntegratedValues", "CIE b* of Rb"), "Rb_b", nullptr, 2},
};

struct ColourValue {
  const char* title;
  std::array<std::string_view, 3> Lab;
};

constexpr ColourValue kColours[] = {
    {QT_TRANSLATE_NOOP("IntegratedValues", "Colour of T"), {"L", "a", "b"}},
    {QT_TRANSLATE_NOOP("IntegratedValues", "Colour of R, front"), {"Rf_L", "Rf_a", "Rf_b"}},
    {QT_TRANSLATE_NOOP("IntegratedValues", "Colour of R, back"), {"Rb_L", "Rb_a", "Rb_b"}},
};

QString translatedValue(const char* text) {
  return QCoreApplication::translate("IntegratedValues", text);
}

QString standardText(optics::Standard standard) {
  return qt(std::string(optics::nameOf(standard).name));
}

QString digits(double value) {
  return QString::number(value, 'g', 6);
}

std::optional<double> storedValue(const GlazingData& pane, const IntegratedValue& value) {
  if (value.member == nullptr) return commands::storedValue(pane, value.name);
  const float stored = (pane.*value.member)();
  return hasIntegratedValues(pane) && stored != 0 ? std::optional<double>(stored) : std::nullopt;
}

IntegratedCell storedCell(const GlazingData& pane, std::optional<double> value, int decimals) {
  if (!value) return {};
  const std::string& standard = pane.Precalc_StandardName();
  const QString tip = translatedValue("Stored: %1").arg(digits(*value));
  return {.text = QString::number(*value, 'f', decimals),
          .tip = standard.empty() ? tip : translatedValue("%1, by %2").arg(tip, qt(standard))};
}

/// What a value rests on, a line each.
QStringList grounds(const optics::Value& value) {
  QStringList lines;
  if (!value.reason.empty()) lines << qt(value.reason);
  if (value.value && value.covered > 0) {
    lines << translatedValue("The spectrum covers %1 % of the weight.")
                 .arg(QString::number(100 * value.covered, 'f', 1));
  }
  for (const std::string& remark : value.remarks) lines << qt(remark);
  return lines;
}

/// Parts of almost nothing are not told apart.
bool isApart(double stored, double computed) {
  constexpr double kAlmostNothing = 5e-5;
  return std::abs(computed - stored) >
         std::max(kAlmostNothing, kPartThatDiffers * std::abs(stored));
}

IntegratedCell computedCell(const optics::Value* value, std::optional<double> stored, int decimals,
                            optics::Standard standard) {
  if (value == nullptr) return {};
  IntegratedCell cell;
  QStringList lines;
  if (value->value) {
    cell.text = QString::number(*value->value, 'f', decimals);
    cell.differs = stored && isApart(*stored, *value->value);
    lines << translatedValue("%1: %2").arg(standardText(standard), digits(*value->value));
  }
  if (cell.differs) {
    const double part = *value->value / *stored - 1;
    lines << (*stored == 0 ? translatedValue("Stored: 0")
                           : translatedValue("Stored: %1, from which it differs by %2 %")
                                 .arg(digits(*stored), QString::asprintf("%+.1f", 100 * part)));
  }
  cell.tip = (lines + grounds(*value)).join(u'\n');
  return cell;
}

/// Data sets with what their spectra give by one standard.
class IntegratedTexts {
 public:
  IntegratedTexts(const IntegratedSets& dataSets, optics::Standard standard)
      : dataSets_(dataSets), standard_(standard) {
    optics::Integrator integrator(standard);
    for (const auto& set : dataSets) integrations_.push_back(integrator.integrate(*set.record));
  }

  IntegratedRow valueRow(const IntegratedValue& value) const {
    IntegratedRow row{translatedValue(value.title), {}};
    for (std::size_t i = 0; i < dataSets_.size(); ++i) {
      const GlazingData& pane = *dataSets_[i].record;
      const auto stored = storedValue(pane, value);
      row.values.push_back(
          {storedCell(pane, stored, value.decimals),
           computedCell(integrations_[i].find(value.name), stored, value.decimals, standard_)});
    }
    return row;
  }

  IntegratedRow colourRow(const ColourValue& value) const {
    IntegratedRow row{translatedValue(value.title), {}};
    for (const Integration& integration : integrations_) {
      row.values.push_back({{}, colourCell(integration, value)});
    }
    return row;
  }

  /// By which standard, and when.
  IntegratedRow standardRow() const {
    IntegratedRow row{translatedValue("Standard"), {}};
    for (const auto& set : dataSets_) {
      const bool isStored = hasIntegratedValues(*set.record);
      row.values.push_back({{.text = isStored ? qt(set.record->Precalc_StandardName()) : QString()},
                            {.text = set.hasSpectrum() ? standardText(standard_) : QString()}});
    }
    return row;
  }

  IntegratedRow timeRow() const {
    IntegratedRow row{translatedValue("Calculated"), {}};
    for (const auto& set : dataSets_) row.values.push_back({{.text = timeText(*set.record)}, {}});
    return row;
  }

  /// Whether the standard has a value for which there is a spectrum, even one too short.
  bool isComputed(std::string_view name) const {
    for (std::size_t i = 0; i < dataSets_.size(); ++i) {
      if (dataSets_[i].hasSpectrum() && integrations_[i].find(name) != nullptr) return true;
    }
    return false;
  }

 private:
  IntegratedCell colourCell(const Integration& integration, const ColourValue& value) const {
    std::array<double, 3> Lab{};
    for (std::size_t i = 0; i < Lab.size(); ++i) {
      const optics::Value* part = integration.find(value.Lab[i]);
      if (part == nullptr || !part->value) return computedCell(part, {}, 0, standard_);
      Lab[i] = *part->value;
    }
    const auto colour = optics::screenColour(Lab);
    const QString tip =
        translatedValue("%1 under D65: L* %2, a* %3, b* %4")
            .arg(standardText(standard_), digits(Lab[0]), digits(Lab[1]), digits(Lab[2]));
    return {.text = QString::asprintf("#%02x%02x%02x", colour[0], colour[1], colour[2]),
            .tip = (QStringList(tip) + grounds(*integration.find(value.Lab[0]))).join(u'\n'),
            .colour = colour};
  }

  static QString timeText(const GlazingData& pane) {
    if (!hasIntegratedValues(pane) || !pane.Precalc_Time()) return {};
    const auto seconds = pane.Precalc_Time()->time_since_epoch().count();
    return QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC).toString(u"yyyy-MM-dd HH:mm");
  }

  const IntegratedSets& dataSets_;
  optics::Standard standard_;
  std::vector<Integration> integrations_;
};

bool isEmpty(const IntegratedRow& row) {
  return std::ranges::all_of(row.values, [](const IntegratedPair& pair) {
    return pair.stored.text.isEmpty() && pair.computed.text.isEmpty();
  });
}

}  // namespace

bool hasIntegratedValues(const GlazingData& pane) {
  if (!hasIntegratedData(pane)) return false;
  const auto isThere = [&](const IntegratedValue& value) {
    return value.member != nullptr && (pane.*value.member)() != 0;
  };
  return !lacksIntegratedValues(pane) || std::ranges::any_of(kRare, isThere);
}

std::vector<IntegratedRow> integratedRows(const IntegratedSets& dataSets,
                                          optics::Standard standard) {
  std::vector<IntegratedRow> rows;
  if (std::ranges::none_of(dataSets, [](const auto& set) {
        return set.hasSpectrum() || hasIntegratedValues(*set.record);
      })) {
    return rows;
  }
  const IntegratedTexts texts(dataSets, standard);
  const auto addUnlessEmpty = [&](IntegratedRow row, bool isComputed) {
    if (isComputed || !isEmpty(row)) rows.push_back(std::move(row));
  };
  for (const auto& value : kCommon) rows.push_back(texts.valueRow(value));
  for (const auto& value : kColours) {
    addUnlessEmpty(texts.colourRow(value), texts.isComputed(value.Lab[0]));
  }
  for (const auto& value : kRare) {
    addUnlessEmpty(texts.valueRow(value), texts.isComputed(value.name));
  }
  addUnlessEmpty(texts.standardRow(), false);
  addUnlessEmpty(texts.timeRow(), false);
  return rows;
}

}  // namespace orv::app
