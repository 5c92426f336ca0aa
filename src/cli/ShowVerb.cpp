#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <iostream>

#include "cli/Arguments.h"
#include "cli/Verb.h"
#include "commands/RecordDetails.h"
#include "commands/RecordList.h"
#include "commands/RecordReader.h"
#include "database/ShadingColumns.h"

namespace orv::cli {

namespace {

using commands::RecordKind;

class ShowVerb : public Verb {
 public:
  explicit ShowVerb(CLI::App& app)
      : Verb(app, "show", "Show every field of a record, or its spectrum",
             "  orv show orvdata.mdb 12\n"
             "  orv show orvdata.mdb 12 --angle 60 --spectrum --format tsv\n"
             "  orv show glazing.mdb CLEAR_3.DAT\n"
             "  orv show clear.txt\n"
             "  orv show orvdata.mdb 3 --set frames\n") {
    source_.addSource(command());
    command()
        .add_option("ID", identifier_,
                    "Identifier of the record, as list shows it; it may be left out where there is "
                    "one only")
        ->type_name("");
    source_.addOptions(command());
    source_.addTolerant(command());
    command()
        .add_option("--angle", angle_,
                    "Angle of incidence of a pane's data, in degrees (default: the first)")
        ->type_name("DEGREES");
    command()
        .add_option("--direction", direction_,
                    "Direction of incidence of a pane's spectrum (default: the first)")
        ->type_name("N");
    command().add_flag("--spectrum", spectrum_,
                       "Show the spectrum, a row a wavelength, in place of the fields");
    addFormat(command(), format_);
  }

  ExitCode run(Console& console) override {
    const Node node = source_.openRecordSet(console);
    if (identifier_.empty()) identifier_ = onlyRecordOf(*node);
    const commands::RecordReader reader(console.session, node);
    const RecordKind kind = commands::recordKind(*node).value_or(RecordKind::panes);
    if (kind != RecordKind::panes && (angle_ || direction_)) {
      throw wrongUse("--angle and --direction choose among the data of a pane; this is none.");
    }
    switch (kind) {
      case RecordKind::panes:
        showPane(reader);
        break;
      case RecordKind::frames:
        showFrame(reader);
        break;
      case RecordKind::shadings:
        showShading(reader);
        break;
    }
    return kAllWell;
  }

 private:
  static std::string onlyRecordOf(const sources::datasource& node) {
    const auto identifiers = commands::recordIdentifiers(node);
    if (identifiers.size() == 1) return identifiers.front();
    throw wrongUse(
        fmt::format("There are {} records: give the identifier of the one to show, as "
                    "list shows it.",
                    identifiers.size()));
  }

  void showPane(const commands::RecordReader& reader) {
    const std::int16_t angle = chooseAngle(reader.dataAngles(identifier_));
    const auto pane =
        reader.pane(identifier_, angle, chooseDirection(reader.directions(identifier_, angle)));
    reader.tellGroup(identifier_, *pane);
    for (const std::string& remark : reader.remarks(identifier_, angle)) {
      std::cerr << "orv: " << remark << '\n';
    }
    spectrum_ ? writeSpectrum(*pane) : writeFields(commands::paneDetails(*pane));
  }

  void showFrame(const commands::RecordReader& reader) {
    if (spectrum_) throw wrongUse("A frame has no spectrum.");
    const auto frame = reader.frame(identifier_);
    reader.tellGroup(identifier_, *frame);
    writeFields(commands::frameDetails(*frame));
  }

  void showShading(const commands::RecordReader& reader) {
    const auto shading = reader.shading(identifier_);
    reader.tellGroup(identifier_, *shading);
    spectrum_ ? writeSpectrum(*shading) : writeFields(commands::shadingDetails(*shading));
  }

  template <class Number>
  static std::string listOf(const std::vector<Number>& numbers) {
    return numbers.empty() ? "none" : fmt::format("{}", fmt::join(numbers, ", "));
  }

  /// The angle asked for, else the first of those that the pane has; 0 when it has none.
  std::int16_t chooseAngle(const std::vector<std::int16_t>& angles) const {
    if (!angle_) return angles.empty() ? std::int16_t{0} : angles.front();
    if (std::find(angles.begin(), angles.end(), *angle_) == angles.end()) {
      throw wrongUse(
          fmt::format("The pane has no data at {} degrees, only at: {}.", *angle_, listOf(angles)));
    }
    return *angle_;
  }

  /// The direction asked for; 0, which is the first, unless one is.
  std::int32_t chooseDirection(const std::vector<std::int32_t>& directions) const {
    if (directions.size() > 1 && !direction_) {
      std::cerr << fmt::format(
          "orv: The pane has data of the directions {}; the first is shown. "
          "Choose with --direction.\n",
          fmt::join(directions, ", "));
    }
    if (!direction_) return 0;
    if (std::find(directions.begin(), directions.end(), *direction_) == directions.end()) {
      throw wrongUse(fmt::format("The pane has no data of direction {}, only of: {}.", *direction_,
                                 listOf(directions)));
    }
    return *direction_;
  }

  void writeFields(const std::vector<commands::DetailField>& fields) const {
    const auto writer = makeRowWriter(format_, {"field", "value", "unit"}, std::cout);
    for (const auto& field : fields) {
      const bool isJson = format_ == Format::json;
      writer->row({field.name, isJson ? field.raw : store::Value(field.value), field.unit});
    }
    writer->end();
  }

  void writeSpectrum(const GlazingData& pane) const {
    const auto writer =
        makeRowWriter(format_,
                      {"wavelength (nm)", "transmittance front", "transmittance back",
                       "reflectance front", "reflectance back"},
                      std::cout);
    const auto& spectrum = pane.SpectralData();
    const std::int32_t count = spectrum ? spectrum->count() : 0;
    for (std::int32_t i = 0; i < count; ++i) {
      writer->row({spectrum->ConvertedWl(i, kNanometers), spectrum->Tf(i), spectrum->Tb(i),
                   spectrum->Rf(i), spectrum->Rb(i)});
    }
    writer->end();
  }

  void writeSpectrum(const ShadingDataClass& shading) const {
    const auto& columns = kShadingSpectralColumns;
    std::vector<std::string> names;
    for (const auto& column : columns) names.emplace_back(column.name);
    names.front() += " (nm)";
    const auto writer = makeRowWriter(format_, names, std::cout);
    for (const ShadingSpectralPoint& point : shading.spectrum()) {
      std::vector<store::Value> values;
      for (const auto& column : columns) values.emplace_back(point.*column.member);
      writer->row(values);
    }
    writer->end();
  }

  SourceArgument source_;
  std::string identifier_;
  std::optional<std::int16_t> angle_;
  std::optional<std::int32_t> direction_;
  bool spectrum_ = false;
  Format format_ = Format::table;
};

}  // namespace

std::unique_ptr<Verb> makeShowVerb(CLI::App& app) {
  return std::make_unique<ShowVerb>(app);
}

}  // namespace orv::cli
