// Databases that `orv` makes and changes, as mdbtools, mdb-reader and `orv sql` read them.
import assert from 'node:assert/strict';
import {execFileSync, spawnSync} from 'node:child_process';
import {copyFileSync, existsSync, mkdtempSync, readdirSync, readFileSync, rmSync, writeFileSync} from 'node:fs';
import {tmpdir} from 'node:os';
import {basename, join} from 'node:path';
import {after, before, test} from 'node:test';

import {attempt, expectKept, expectRows, rowsOf, viewsOf} from './checks.js';
import {publishedRow} from './expected.js';
import {readPaneFile} from './paneFile.js';
import {readProductFile} from './productFile.js';
import {mdbReader, mdbtools, runOrv, tablesOf} from './readers.js';

const kGroup = 'Interop';
const kCorpus = process.env.ORV_CORPUS;
const kExamples = join(process.env.ORV_SOURCE_DIR, 'examples', 'panes');
const kFolders = [kExamples, join(kCorpus, 'panes')].filter(existsSync);
const kForeignDatabase = join(kCorpus, 'sources', 'orvdata-3.0.0.mdb');
const kGrownDatabase = join(kCorpus, 'foreign', 'grownByAnotherWriter.mdb');

const kPanes = kFolders.flatMap(
    (source) => readdirSync(source).map((name) => readPaneFile(join(source, name))));

let folder;
before(() => (folder = mkdtempSync(join(tmpdir(), 'orv-interop-'))));
after(() => rmSync(folder, {recursive: true}));

/** Copies all panes into the database, in which new rows get this `direction`. */
function copyPanes(database, direction) {
  for (const source of kFolders) {
    runOrv('copy', source, database, '--group', kGroup, '--substrate', 'drop');
  }
  expectRows(database);
  viewsOf(database).forEach((view) => view.expectPanes(kPanes, kGroup, direction));
}

/** Deletes every second pane of the group. */
function deleteHalf(database, direction) {
  const listed = JSON.parse(runOrv('list', database, '--format', 'json'));
  const ours = listed.filter((pane) => pane.group === kGroup);
  const doomed = ours.filter((_, i) => i % 2 === 1);
  runOrv('delete', database, '--yes', ...doomed.map((pane) => String(pane.id)));
  expectRows(database);
  viewsOf(database).forEach((view) => view.expectNoRows(new Set(doomed.map((pane) => pane.id))));
  const gone = new Set(doomed.map((pane) => pane.name));
  const left = kPanes.filter((pane) => !gone.has(pane.name));
  viewsOf(database).forEach((view) => view.expectPanes(left, kGroup, direction));
}

test('an empty database', () => {
  const database = join(folder, 'empty.mdb');
  runOrv('new', database);
  expectRows(database);
});

test('panes in a new database, then half of them', () => {
  const database = join(folder, 'new.mdb');
  runOrv('new', database);
  copyPanes(database, 0);
  deleteHalf(database, 0);
});

const absent = 'the corpus of foreign files is not on this machine';
const skip = existsSync(kForeignDatabase) ? false : absent;
test('panes in a database of a foreign writer, then half of them', {skip}, () => {
  const database = join(folder, 'foreign.mdb');
  copyFileSync(kForeignDatabase, database);
  const rowsBefore = rowsOf(database);
  copyPanes(database, null);
  expectKept(database, rowsBefore);
  deleteHalf(database, null);
  expectKept(database, rowsBefore);
});

test('three panes in a database whose map of free pages leaves pages out', {skip}, () => {
  const database = join(folder, 'grown.mdb');
  copyFileSync(kGrownDatabase, database);
  const rowsBefore = rowsOf(database);
  const files = readdirSync(kExamples).slice(0, 3).map((name) => join(kExamples, name));
  runOrv('copy', ...files, database, '--group', kGroup);
  expectRows(database);
  expectKept(database, rowsBefore);
  viewsOf(database).forEach((view) => view.expectPanes(files.map(readPaneFile), kGroup, 0));
});

test('products, their spectra and their published values', {skip}, () => {
  const folderOfAll = join(kCorpus, 'products');
  const files = readdirSync(folderOfAll).filter((name) => name.endsWith('.json'));
  const isPane = (path) => readProductFile(path).spectrum !== null;  // else a shading
  const panes = files.map((name) => join(folderOfAll, name)).filter(isPane);
  const database = join(folder, 'products.mdb');
  runOrv('new', database);
  panes.forEach((pane, i) => {  // each in a group: two are of one name
    runOrv('copy', pane, database, '--group', `${kGroup} ${i}`, '--no-integrate');
  });
  expectRows(database);
  const products = panes.map(readProductFile);
  viewsOf(database).forEach((view) => view.expectProducts(products));
  assert.equal(panes.length, 7);
  const published = products.flatMap((product) => Object.keys(publishedRow(product)));
  assert.ok(published.length >= 30, `${published.length} values`);
});

test('all that a foreign database holds, copied into a new one', {skip}, () => {
  const database = join(folder, 'copy.mdb');
  runOrv('new', database);
  for (const set of ['panes', 'frames', 'shadings']) {
    runOrv('copy', kForeignDatabase, database, '--set', set, '--group', kGroup);
  }
  runOrv('copy', join(kExamples, '..', 'shadings'), database, '--group', kGroup);
  expectRows(database);
});

for (const [kind, key] of [['plain', 0], ['encoded', 1234567890]]) {
  test(`tables with every kind of index after random changes, in a file that is ${kind}`, () => {
    const [database, rows] = [join(folder, `${kind}.mdb`), join(folder, `${kind}.json`)];
    execFileSync(process.env.ORV_RANDOM_DATABASE, [database, rows, '20', '1200', `${key}`]);
    expectRows(database, JSON.parse(readFileSync(rows, 'utf8')));
  });
}

/** Rows of a table; without long values for a reader that cuts some of them. */
function readable(reader, path, table, types) {
  const isLong = (name) => ['memo', 'ole'].includes(types.get(name));
  const fields = (row) =>
      Object.entries(row).filter(([name]) => !reader.cutsMemos || !isLong(name));
  return reader.rows(path, table, types).map(fields);
}

/** Without the bytes that stand for no character in a code page: readers differ in those. */
const withoutUndefined = (text) => text.replace(/[?\ufffd\u0080-\u009f]/g, '');

for (const part of ['access', 'foreign', 'sources']) {
  const inPart = join(kCorpus, part);
  const files = existsSync(inPart) ? readdirSync(inPart) : [];
  const isTried = (name) => name.endsWith('.mdb') && name !== basename(kGrownDatabase);  // large
  for (const file of files.filter(isTried)) {
    const isJet3 = /V1997|nwind/.test(file);
    test(`${file}, ${isJet3 ? 'converted' : 'compacted'}`, () => {
      const [before, after] = [join(inPart, file), join(folder, `compact-${file}`)];
      const options = [
        ...(file.startsWith('password') ? ['--password', 'password'] : []),
        ...(isJet3 ? ['--jet4', '--force'] : []),
      ];
      // Forms and the like are lost where a file is converted.
      const {status} = spawnSync(process.env.ORV, ['compact', before, after, ...options]);
      assert.equal(status, file === 'nwind.mdb' ? 1 : 0);
      const tables = tablesOf(before);
      assert.deepEqual(new Set(tablesOf(after).keys()), new Set(tables.keys()));
      const seen = isJet3 ? withoutUndefined : (text) => text;
      for (const reader of [mdbtools, mdbReader]) {
        for (const [table, types] of tables) {
          // mdbtools has moved rows where they were moved to.
          const rows = (path) =>
              readable(reader, path, table, types).map((row) => seen(JSON.stringify(row))).sort();
          const expected = attempt(() => rows(before), () => null);
          if (expected) assert.deepEqual(rows(after), expected, `${reader.name}: ${table}`);
        }
      }
    });
  }
}

/**
 * A file with a byte changed, a page cleared, without the name at its beginning, or cut anywhere.
 */
function damaged(file, seed) {
  const bytes = readFileSync(file);
  let state = seed;  // of numbers that are the same in each run
  const any = (limit) => ((state = (state * 1103515245 + 12345) & 0x7fffffff) >> 8) % limit;
  const page = 4096 * (1 + any(bytes.length / 4096 - 1));
  switch (seed % 4) {
    case 0:
      return bytes.subarray(0, Math.max(page, Math.floor(bytes.length / 2)) + any(4096));
    case 1:
      bytes.fill(0, page, page + 4096);
      break;
    case 2:
      bytes[page + any(seed % 8 === 2 ? 64 : 4096)] ^= 1 + any(255);
      break;
    case 3:
      bytes.fill(1 + any(255), 4, 4 + any(16));
  }
  return bytes;
}

/** How often each row of a table is there, as mdbtools has it; none where it reads nothing. */
function rowCounts(path, table, types) {
  const counts = new Map();
  const rows = attempt(() => readable(mdbtools, path, table, types), () => []);
  for (const text of rows.map((row) => JSON.stringify(row))) {
    counts.set(text, (counts.get(text) ?? 0) + 1);
  }
  return counts;
}

const kDamagedFiles = ['access/overflowTestV2000.mdb', 'sources/orvdata-3.0.0.mdb'];
for (const file of kDamagedFiles.map((name) => join(kCorpus, name))) {
  test(`${basename(file)}: a repair saves what mdbtools reads of a damaged copy`, {skip}, () => {
    const tables = tablesOf(file);
    const soundRows =
        new Map([...tables].map(([table, types]) => [table, rowCounts(file, table, types)]));
    const [copy, repaired] = [join(folder, 'damaged.mdb'), join(folder, 'repaired.mdb')];
    for (let seed = 1; seed <= 4; ++seed) {
      writeFileSync(copy, damaged(file, seed));
      rmSync(repaired, {force: true});
      spawnSync(process.env.ORV, ['compact', copy, repaired, '--repair']);
      for (const [table, types] of tables) {
        const sound = soundRows.get(table);
        const [before, after] = [copy, repaired].map((path) => rowCounts(path, table, types));
        for (const [row, count] of before) {
          const real = Math.min(count, sound.get(row) ?? 0);
          assert.ok((after.get(row) ?? 0) >= real, `seed ${seed}, ${table}: ${row}`);
        }
      }
    }
  });
}
