// A reader of pane files for these tests, made apart from the one that is tested.
import {existsSync, readFileSync} from 'node:fs';
import {basename, dirname, join} from 'node:path';

/** What Windows-1252 has for the bytes 0x80 to 0x9F; 0 where it has nothing. */
const kWindows1252 = '€0‚ƒ„…†‡ˆ‰Š‹Œ0Ž00‘’“”•–—˜™š›œ0žŸ';

/** UTF-8, or Windows-1252 where the bytes are no UTF-8. */
function decode(bytes) {
  try {
    return new TextDecoder('utf-8', {fatal: true}).decode(bytes);
  } catch {
    const character = (c) => kWindows1252[c.charCodeAt(0) - 0x80];
    return bytes.toString('latin1').replace(/[\x80-\x9f]/g, character);
  }
}

/** Entries of the header by their key in small letters, and the lines without comments. */
function parts(text) {
  const entries = new Map();
  const body = text.replace(/\{([^}]*)\}/g, (_, comment) => {
    const entry = /^\s*([^:]+?)\s*:([^]*)$/.exec(comment);
    if (entry) entries.set(entry[1].toLowerCase(), entry[2].trim());
    return /[\r\n]/.test(comment) ? '\n' : ' ';
  });
  const lines =
      body.split(/\r\n|\r|\n/).map((line) => line.trim().split(/\s+/)).filter((words) => words[0]);
  return {entries, lines};
}

/** What the words of a line before the spectrum say; they may also stand on one line. */
function takeHead(lines) {
  const words = [];
  while (words.length < 4) words.push(...lines.shift());
  const head = {
    unit: words[0],
    wavelengthUnit: words[1].toLowerCase(),
    thickness: +words[2],
    conductivity: +words[3],
    tir: 0,
    emis: null
  };
  for (let line; (line = lines[0].join(' ')), /^(tir|emis)/i.test(line); lines.shift()) {
    const numbers = line.split('=')[1].split(/[\s,]+/).filter(Boolean).map(Number);
    if (/^tir/i.test(line))
      head.tir = numbers[0];
    else
      head.emis = [numbers[0], numbers[1] ?? numbers[0]];
  }
  return head;
}

/** Rows of [wavelength, transmittance, front reflectance, back reflectance]. */
function spectrumOf(lines) {
  const value = (word, before) => (word === undefined || word === '*' ? before : +word);
  let row = [0, 0, 0, 0];
  return lines.map(([wavelength, t, front, back]) => {
    row = [+wavelength, value(t, row[1]), value(front, row[2]), value(back, row[3])];
    if (back === undefined) row[3] = row[2];
    return row;
  });
}

/** The spectrum of the file that a pane names as its substrate; null where it cannot be used. */
function substrateOf(path, entries, spectrum) {
  const name = entries.get('substrate filename');
  const substrate = name && join(dirname(path), name);
  if (!substrate || !existsSync(substrate)) return null;
  const rows = readPaneFile(substrate).spectrum;
  const fits = rows.length === spectrum.length && rows.every((row, i) => row[0] === spectrum[i][0]);
  return fits ? rows : null;
}

/** With what the folder holds of the pane's substrate. */
export function readPaneFile(path) {
  const {entries, lines} = parts(decode(readFileSync(path)));
  const supplier = entries.get('manufacturer') ?? entries.get('supplier') ?? 'Unknown';
  const head = takeHead(lines);
  const spectrum = spectrumOf(lines);
  const substrate = substrateOf(path, entries, spectrum);
  return {name: basename(path), supplier, entries, ...head, spectrum, substrate};
}
