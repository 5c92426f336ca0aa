// What a database should hold of a pane file.
const single = Math.fround;

const kMillimetresPerInch = 25.4;
const kSiPerIpConductivity = 1.7307;
const kMicronsPerNanometre = 0.001;

/** The row of table Pane, without its keys. */
export function paneRow(pane) {
  const entry = (key) => pane.entries.get(key) ?? '';
  const isIp = pane.unit === 'IP';
  const info =
      entry('description') || (entry('appearance') && `Appearance: ${entry('appearance')}`);
  const isMonolithic = entry('type') === 'Monolithic';
  const [front, back] = pane.emis ?? [0, 0];
  return {
    name: pane.name,
    product_name: entry('product name'),
    thickness: single(single(pane.thickness) * (isIp ? kMillimetresPerInch : 1)),
    conduction: single(single(pane.conductivity) * (isIp ? kSiPerIpConductivity : 1)),
    emission_IR_outdoor: single(front),
    emission_IR_indoor: single(back),
    transmission_IR_outdoor: single(pane.tir),
    transmission_IR_indoor: 0,
    single_layer: isMonolithic,
    use_estimation: !isMonolithic,
    '0_30_60': false,
    spectral_pane: true,
    film_outdoor_side: false,
    with_and_without_film: pane.substrate !== null,
    Ra: 0,
    info,
    freeze: false,
    coatingcode: entry('coating class').toUpperCase(),
    acceptance: entry('acceptance'),
  };
}

/** The rows of table Pane_spectral_data without the pane's key, wavelengths ascending. */
export function spectralRows(pane, direction) {
  const isMicrons = pane.wavelengthUnit.startsWith('micron');
  return pane.spectrum.map(
      ([wavelength, transmittance, front, back], i) => ({
        angle: 0,
        direction,
        wavelength: single(single(wavelength) / (isMicrons ? kMicronsPerNanometre : 1)),
        transmission_outdoor: single(transmittance),
        reflection_outdoor: single(front),
        reflection_indoor: single(back),
        transmission_sub: single(pane.substrate?.[i][1] ?? 0),
        reflection_sub: single(pane.substrate?.[i][2] ?? 0),
      }));
}

/** The columns of table Pane_integrated_data for which a product file publishes a value. */
export function publishedRow({published}) {
  const columns = {
    reflection_solar_outdoor: published?.rfsol,
    reflection_solar_indoor: published?.rbsol,
    transmission_solar_outdoor: published?.tfsol,
    reflection_visual_outdoor: published?.rfvis,
    reflection_visual_indoor: published?.rbvis,
    transmission_visual_outdoor: published?.tfvis,
    transmission_UV_outdoor: published?.tuv,
  };
  const known = Object.entries(columns).filter(([, value]) => value != null);
  return Object.fromEntries(known.map(([column, value]) => [column, single(value)]));
}
