// A reader of the spectra in files of products for these tests, made apart from the one that is
// tested.
import {readFileSync} from 'node:fs';

/** The points of whatever form the file has; null for products without a spectrum of their own. */
function pointsOf(product) {
  const optical = product.physical_properties?.optical_properties?.optical_data;
  const blocks = optical?.angle_blocks ?? product.measured_data?.spectral_data?.angle_block;
  if (blocks) return blocks[0].wavelength_data;
  return product.spectral_data?.spectral_data ?? null;
}

/** [wavelength, transmittance, front reflectance, back reflectance]. */
function rowOf(point) {
  const values = point.specular ?? point;
  return [
    point.w ?? point.wavelength, values.tf ?? values.T, values.rf ?? values.Rf,
    values.rb ?? values.Rb
  ].map(Number);
}

/** The spectrum, and the published integrated values by NFRC; null for what the file has not. */
export function readProductFile(path) {
  const product = JSON.parse(readFileSync(path, 'utf8'));
  const published = product.integrated_results_summary ?? [];
  return {
    wavelengthUnit: 'microns',
    spectrum: pointsOf(product)?.map(rowOf) ?? null,
    published: published.find((each) => each.calculation_standard_name === 'NFRC') ?? null
  };
}
