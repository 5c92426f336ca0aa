// Tries the store on databases of any program: see tools/try-files.
import {spawnSync} from 'node:child_process';
import {existsSync, mkdtempSync, readdirSync, readFileSync, rmSync, statSync} from 'node:fs';
import {tmpdir} from 'node:os';
import {join} from 'node:path';
import {parseArgs} from 'node:util';

import {attempt, firstDifference, toldBy} from './checks.js';
import {mdbReader, mdbtools, tablesOf} from './readers.js';

const {values: options, positionals: folders} = parseArgs({
  allowPositionals: true,
  options: {
    changes: {type: 'string', default: '300'},
    seed: {type: 'string', default: '1'},
    largest: {type: 'string', default: 'Infinity'},
    password: {type: 'string', multiple: true, default: []},
  },
});
const kReaders = [mdbtools, mdbReader];
const load = (file) => JSON.parse(readFileSync(file, 'utf8'));

/** What each reader finds in each table: rows, or a text that says why it cannot read it. */
function readAll(database, say) {
  const tables = attempt(() => tablesOf(database), (why) => {
    say(`mdb-reader cannot tell the tables: ${why}`);
    return new Map();
  });
  return [...tables].flatMap(([table, types]) => kReaders.map((reader) => {
    const told = toldBy(reader, types);
    return {
      reader,
      table,
      types: told,
      rows: attempt(() => reader.rows(database, table, told), String)
    };
  }));
}

const place = ({reader, table}, column) => `${reader.name}, ${table}.${column}`;

/**
 * What readers find else than the store does, by reader, table and column; the columns in `known`,
 * in which they do anyway, are left out.
 */
function differences(readings, expected, known = new Map()) {
  const found = new Map();
  for (const reading of readings) {
    const {reader, table, rows} = reading;
    const types = new Map([...reading.types].filter(([name]) => !known.has(place(reading, name))));
    const compare = (columns) =>
        typeof rows === 'string' ? rows : firstDifference(reader, rows, expected[table], columns);
    if (!types.size || !compare(types)) continue;
    for (const [column, type] of types) {
      const what = compare(new Map([[column, type]]));
      if (!what) continue;
      found.set(place(reading, column), what);
      types.delete(column);
    }
    const what = types.size ? compare(types) : null;
    if (what) found.set(place(reading, '*'), what);
  }
  return found;
}

/** The columns in which all readers find the same, but not what the store does. */
function outvoted(readings, found) {
  const places = new Set();
  for (const first of readings) {
    const others =
        readings.filter(({reader, table}) => table === first.table && reader !== first.reader);
    for (const [column, type] of first.types) {
      const types = new Map([[column, type]]);
      const agrees = (other) => found.has(place(other, column)) && other.types.has(column) &&
          !firstDifference(first.reader, first.rows, other.rows, types);
      const isRead = [first, ...others].every(({rows}) => typeof rows !== 'string');
      if (isRead && found.has(place(first, column)) && others.every(agrees))
        places.add(`${first.table}.${column}`);
    }
  }
  return places;
}

/** Tries one file; whether all was well. */
function tryFile(path, folder) {
  let well = true;
  const say = (what) => console.log(`  ${what}`);
  console.log(path);
  const program = [path, folder, options.changes, options.seed, ...options.password];
  const ended = spawnSync(process.env.ORV_TRY_FILE, program, {encoding: 'utf8'});
  process.stdout.write(ended.stdout);
  if (ended.status !== 0) {
    well = false;
    if (ended.stderr || ended.signal) say(`WRONG: ${ended.signal ?? ''} ${ended.stderr}`);
  }
  const [before, changed] = ['before.json', 'changed.json'].map((name) => join(folder, name));
  if (!existsSync(before)) return well;
  const fail = (what) => {
    say(`WRONG: ${what}`);
    well = false;
  };
  const readings = readAll(path, say);
  const known = differences(readings, load(before));
  for (const [what, difference] of known) say(`not comparable: ${what} ${difference}`);
  for (const what of outvoted(readings, known)) fail(`all readers find the same in ${what}`);
  if (!existsSync(changed)) return well;
  const after = readAll(join(folder, 'changed.mdb'), say);
  for (const [what, difference] of differences(after, load(changed), known)) {
    fail(`after the changes ${what} ${difference}`);
  }
  return well;
}

const isDatabase = (name) => /\.(mdb|accdb)$/i.test(name);
let failed = 0;
let tried = 0;
for (const source of folders) {
  const isTried = (name) =>
      isDatabase(name) && statSync(join(source, name)).size <= +options.largest;
  const names = readdirSync(source, {recursive: true}).filter(isTried).sort();
  for (const name of names) {
    const folder = mkdtempSync(join(tmpdir(), 'orv-try-'));
    try {
      ++tried;
      failed += tryFile(join(source, name), folder) ? 0 : 1;
    } finally {
      rmSync(folder, {recursive: true});
    }
  }
}
console.log(`${tried} files tried; something was wrong with ${failed}.`);
process.exitCode = failed || !tried ? 1 : 0;
