// Three readers of Access databases with one form of result: a table is an array of objects whose
// values are null, booleans, numbers or texts (bytes in capital hexadecimal).
import MDBReader from 'mdb-reader';
import {execFileSync} from 'node:child_process';
import {readFileSync, statSync} from 'node:fs';

const kOptions = {
  encoding: 'utf8',
  maxBuffer: 1 << 30,
  stdio: ['ignore', 'pipe', 'pipe']
};
const run = (program, args) => execFileSync(program, args, kOptions);

/** The object with each value changed by `change(value, name)`. */
function mapValues(object, change) {
  const pairs = Object.entries(object).map(([name, value]) => [name, change(value, name)]);
  return Object.fromEntries(pairs);
}

let last = {};

/** The file, read once as long as it stays as it is. */
function open(path) {
  const {mtimeMs, size} = statSync(path);
  const key = `${path} ${mtimeMs} ${size}`;
  if (last.key !== key) last = {key, reader: new MDBReader(readFileSync(path))};
  return last.reader;
}

/** The tables of users: by name, the type of each column by its name. */
export function tablesOf(path) {
  const reader = open(path);
  const typesOf = (table) => table.getColumns().map((column) => [column.name, column.type]);
  const names = reader.getTableNames();
  return new Map(names.map((name) => [name, new Map(typesOf(reader.getTable(name)))]));
}

/** Fields of a CSV text: null for an empty field without quotes. */
function parseCsv(text) {
  const rows = [];
  let row = [];
  const field = /(?:"((?:[^"]|"")*)"|([^",\n]*))(,|\n|$)/gy;
  while (field.lastIndex < text.length) {
    const [, quoted, plain, end] = field.exec(text);
    row.push(quoted !== undefined ? quoted.replaceAll('""', '"') : plain === '' ? null : plain);
    if (end !== ',') {
      rows.push(row);
      row = [];
    }
  }
  return rows;
}

const kTextTypes =
    new Set(['text', 'memo', 'ole', 'binary', 'datetime', 'currency', 'numeric', 'repid']);
const kExportOptions = ['-b', 'hex', '-T', '%Y-%m-%d %H:%M:%S'];

export const mdbtools = {
  name: 'mdbtools',
  // It rounds numbers to so many digits, shows an empty text like Null, a binary value up to its
  // first byte of 0, question marks for characters of two UTF-16 units, and no dates before 1900.
  digits: {float: 8, double: 16},
  emptyIsNull: true,
  binaryEndsAtZero: true,
  unitsAreCharacters: true,
  firstDate: '1900-01-01',
  tableNames: (path) => run('mdb-tables', ['-1', path]).split('\n').filter(Boolean),
  count: (path, table) => +run('mdb-count', [path, table]),
  rows(path, table, types) {
    const [names, ...lines] = parseCsv(run('mdb-export', [...kExportOptions, path, table]));
    const convert = (text, name) => {
      const type = types.get(name);
      if (type === 'boolean') return text === '1';
      // It shows the letters of these like binary.
      if (type === 'repid' && text !== null) return Buffer.from(text, 'hex').toString();
      return text === null || kTextTypes.has(type) ? text : +text;
    };
    const row = (line) => Object.fromEntries(line.map((text, i) => [names[i], text]));
    return lines.map((line) => mapValues(row(line), convert));
  },
};

export const mdbReader = {
  name: 'mdb-reader',
  // It takes a part of a long memo that stands behind a deleted one on its page for longer than it
  // is, and leaves out the rest.
  cutsMemos: true,
  tableNames: (path) => open(path).getTableNames(),
  count: (path, table) => open(path).getTable(table).rowCount,
  rows(path, table) {
    const convert = (value) => {
      if (Buffer.isBuffer(value)) return value.toString('hex').toUpperCase();
      return value instanceof Date ? value.toISOString().slice(0, 19).replace('T', ' ') : value;
    };
    return open(path).getTable(table).getData().map((row) => mapValues(row, convert));
  },
};

const kBinaryTypes = new Set(['ole', 'binary']);

const orv = {
  name: 'orv sql',
  tableNames: null,  // lists no tables
  count: (path, table) => select(path, `SELECT COUNT(*) AS n FROM [${table}]`)[0].n,
  rows(path, table, types) {
    const convert = (value, name) =>
        kBinaryTypes.has(types.get(name)) && value !== null ? value.slice(2).toUpperCase() : value;
    return select(path, `SELECT * FROM [${table}]`).map((row) => mapValues(row, convert));
  },
};

export const kReaders = [mdbtools, mdbReader, orv];

/** Runs `orv` and gives its standard output; throws when it does not end with 0. */
export function runOrv(...args) { return run(process.env.ORV, args); }

function select(path, statement) {
  return JSON.parse(runOrv('sql', path, statement, '--format', 'json'));
}

/** As C prints a number with so many digits: of two that are as near, the even one. */
function printed(value, digits) {
  const [mantissa, exponent] = value.toExponential(99).split('e');
  const exact = mantissa.replace(/0+$/, '');
  const isHalf = exact.endsWith('5') && exact.replace(/[-.]/g, '').length === digits + 1;
  const down = isHalf && '02468'.includes(exact.at(-2));
  return down ? +`${exact.slice(0, -1)}e${exponent}` : +value.toPrecision(digits);
}

const kFixedPointTypes = new Set(['currency', 'numeric']);
const withoutEndingZeros = (text) => text.includes('.') ? text.replace(/\.?0+$/, '') : text;

/** A value as far as a reader can tell it. */
export function asSeen(value, type, reader) {
  if (type === 'binary' && reader.binaryEndsAtZero) value = value?.replace(/^((?:..)*?)00.*/, '$1');
  if (value === '' && reader.emptyIsNull) return null;
  if (value !== null && kFixedPointTypes.has(type)) return withoutEndingZeros(String(value));
  if (value !== null && type === 'repid') return value.replace(/[{}-]/g, '').toLowerCase();
  if (type === 'datetime' && value < reader.firstDate) return 'before the first date';
  if (typeof value === 'string' && reader.unitsAreCharacters)
    return value.replace(/[\ud800-\udfff]/g, '?');
  if (typeof value !== 'number') return value;
  const exact = type === 'float' ? Math.fround(value) : value;
  const digits = reader.digits?.[type];
  return digits ? printed(exact, digits) : exact;
}

/** Rows as far as a reader can tell them, as texts in order, to be compared. */
export function comparable(rows, types, reader) {
  const values = (row) => [...types].map(([name, type]) => asSeen(row[name], type, reader));
  return rows.map((row) => JSON.stringify(values(row))).sort();
}
