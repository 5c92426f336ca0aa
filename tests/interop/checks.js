// What is asked of a database: that all readers agree on it, and that it holds certain panes.
import assert from 'node:assert/strict';

import {paneRow, publishedRow, spectralRows} from './expected.js';
import {asSeen, comparable, kReaders, mdbReader, runOrv, tablesOf} from './readers.js';

/** A database as one reader sees it. Columns have small letters here: databases differ in that. */
class View {
  constructor(reader, database) {
    this.reader = reader;
    this.database = database;
    this.types = tablesOf(database);
  }

  rows(table) {
    const small = (row) => Object.entries(row).map(([name, value]) => [name.toLowerCase(), value]);
    const rows = this.reader.rows(this.database, table, this.types.get(table));
    return rows.map((row) => Object.fromEntries(small(row)));
  }

  /** The row has these values, as far as the reader can tell. */
  expectRow(table, actual, expected, what) {
    const small = [...this.types.get(table)].map(([name, type]) => [name.toLowerCase(), type]);
    const types = new Map(small);
    for (const [column, value] of Object.entries(expected)) {
      const type = types.get(column.toLowerCase());
      const found = asSeen(actual[column.toLowerCase()], type, this.reader);
      assert.equal(found, asSeen(value, type, this.reader), `${what}, column ${column}`);
    }
  }

  /**
   * The database has exactly these panes in the group, with the values of their files, and in the
   * column `direction` its own default.
   */
  expectPanes(panes, groupName, direction) {
    const group = this.rows('Groups').find((row) => row.groupname === groupName);
    const suppliers = new Map(this.rows('Suppliers').map((s) => [s.supplierid, s.suppliername]));
    const rows = this.rows('Pane').filter((row) => row.groupid === group.groupid);
    const integrated = this.rows('Pane_integrated_data');
    const spectral = this.rows('Pane_spectral_data');
    const names = (list) => list.map((each) => each.name).sort();
    assert.deepEqual(names(rows), names(panes), this.reader.name);
    for (const pane of panes) {
      const what = `${this.reader.name}, pane ${pane.name}`;
      const row = rows.find((each) => each.name === pane.name);
      const ofPane = (each) => each.paneid === row.paneid;
      this.expectRow('Pane', row, paneRow(pane), what);
      assert.equal(suppliers.get(row.supplierid), pane.supplier, what);
      assert.deepEqual(integrated.filter(ofPane).map((each) => each.angle), [0], what);
      this.expectSpectrum(spectral.filter(ofPane), spectralRows(pane, direction), what);
    }
  }

  /** The panes are these products, in this order: their spectra, a row of published values each. */
  expectProducts(products) {
    const spectral = this.rows('Pane_spectral_data');
    const integrated = this.rows('Pane_integrated_data');
    products.forEach((product, i) => {
      const what = `${this.reader.name}, product ${i}`;
      const ofPane = (row) => row.paneid === i + 1;
      this.expectSpectrum(spectral.filter(ofPane), spectralRows(product, 0), what);
      const rows = integrated.filter(ofPane);
      assert.equal(rows.length, 1, what);
      this.expectRow('Pane_integrated_data', rows[0], publishedRow(product), what);
    });
  }

  expectSpectrum(rows, expected, what) {
    assert.equal(rows.length, expected.length, what);
    rows.sort((a, b) => a.wavelength - b.wavelength);
    rows.forEach((row, i) => {
      this.expectRow('Pane_spectral_data', row, expected[i], `${what}, point ${i}`);
    });
  }

  /** There is no row of these panes. */
  expectNoRows(paneIds) {
    for (const table of ['Pane', 'Pane_spectral_data', 'Pane_integrated_data']) {
      const rest = this.rows(table).filter((row) => paneIds.has(row.paneid));
      assert.equal(rest.length, 0, `${this.reader.name}: ${table} has rows of deleted panes`);
    }
  }
}

/** The database as each reader sees it. */
export const viewsOf = (database) => kReaders.map((reader) => new View(reader, database));

/** What `work` gives; where it throws, what `failed` makes of the first line of the reason. */
export function attempt(work, failed) {
  try {
    return work();
  } catch (error) {
    return failed(String(error.stderr || error.message).split('\n')[0]);
  }
}

const cut = (text) => text.slice(0, 400);

/** What a reader has else than these rows in the columns of `types`; null where nothing. */
export function firstDifference(reader, rows, expected, types) {
  const found = comparable(rows, types, reader);
  const wanted = comparable(expected, types, reader);
  const first = wanted.findIndex((text, i) => text !== found[i]);
  if (first >= 0) return `has ${cut(found[first] ?? 'nothing')}, not ${cut(wanted[first])}`;
  return found.length === wanted.length ? null : `has ${cut(found[wanted.length])} besides`;
}

/** The columns whose values the reader can be held to. */
export function toldBy(reader, types) {
  return new Map([...types].filter(([, type]) => type !== 'memo' || !reader.cutsMemos));
}

/**
 * The file is sound, and all readers find the same tables and in them these rows, by table; where
 * none are given, those that mdb-reader finds.
 */
export function expectRows(database, expected) {
  runOrv('check', database);
  for (const [table, allTypes] of tablesOf(database)) {
    const wanted = expected ? expected[table] : mdbReader.rows(database, table);
    for (const reader of kReaders) {
      const what = `${reader.name}, table ${table}`;
      const types = toldBy(reader, allTypes);
      assert.equal(reader.count(database, table), wanted.length, what);
      const rows = reader.rows(database, table, types);
      const difference = firstDifference(reader, rows, wanted, types);
      if (difference) assert.fail(`${what} ${difference}`);
    }
  }
  const lists = kReaders.filter((each) => each.tableNames).map((each) => each.tableNames(database));
  for (const names of lists) assert.deepEqual(names.sort(), lists[0].sort());
}

/** All rows, by table, for expectKept(). */
export function rowsOf(database) {
  const rowsIn = ([table, types]) => comparable(mdbReader.rows(database, table), types, mdbReader);
  return new Map([...tablesOf(database)].map((each) => [each[0], rowsIn(each)]));
}

/** Every one of these rows is in the database still. */
export function expectKept(database, rowsBefore) {
  const rowsNow = rowsOf(database);
  for (const [table, rows] of rowsBefore) {
    const now = new Set(rowsNow.get(table));
    for (const row of rows) assert.ok(now.has(row), `table ${table} has lost ${cut(row)}`);
  }
}
