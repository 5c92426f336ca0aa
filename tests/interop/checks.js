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

  typeOf(table, column) {
    const isColumn = ([name]) => name.toLowerCase() === column.toLowerCase();
    return [...this.types.get(table)].find(isColumn)[1];
  }

  /** The row has these values, as far as the reader can tell. */
  expectRow(table, actual, expected, what) {
    for (const [column, value] of Object.entries(expected)) {
      const type = this.typeOf(table, column);
      const found = asSeen(actual[column.toLowerCase()], type, this.reader);
      assert.equal(found, asSeen(value, type, this.reader), `${what}, column ${column}`);
    }
  }

  /** The database has exactly these panes in the group, with the values of their files. */
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

  /** The panes are these products: with their spectra, and a row of their published values each. */
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
}

const cut = (text) => text.slice(0, 400);

/** The file is sound, and all readers see the same tables, counts and values. */
export function expectAgreement(database) {
  runOrv('check', database);
  for (const [table, types] of tablesOf(database)) {
    const reference = mdbReader.rows(database, table, types);
    for (const reader of kReaders) {
      const what = `${reader.name}, table ${table}`;
      const rows = reader.rows(database, table, types);
      assert.equal(reader.count(database, table), rows.length, what);
      const texts = comparable(rows, types, reader);
      const expected = comparable(reference, types, reader);
      const first = texts.findIndex((text, i) => text !== expected[i]);
      if (first >= 0) assert.fail(`${what} has ${cut(texts[first])}, not ${cut(expected[first])}`);
    }
  }
  const lists = kReaders.filter((each) => each.tableNames).map((each) => each.tableNames(database));
  for (const names of lists) assert.deepEqual(names.sort(), lists[0].sort());
}

/**
 * Every reader finds exactly these panes in the group, with the values of their files. The column
 * `direction` is left at the database's default.
 */
export function expectPanes(database, panes, groupName, direction) {
  for (const reader of kReaders) {
    new View(reader, database).expectPanes(panes, groupName, direction);
  }
}

/** Every reader finds these products, in the order in which they were copied. */
export function expectProducts(database, products) {
  for (const reader of kReaders) new View(reader, database).expectProducts(products);
}

/** No reader finds any row of these panes. */
export function expectNoRows(database, paneIds) {
  for (const reader of kReaders) {
    const view = new View(reader, database);
    for (const table of ['Pane', 'Pane_spectral_data', 'Pane_integrated_data']) {
      const rest = view.rows(table).filter((row) => paneIds.has(row.paneid));
      assert.equal(rest.length, 0, `${reader.name}: ${table} has rows of deleted panes`);
    }
  }
}

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

/** The file is sound, and every reader finds exactly these rows; `expected` has them by table. */
export function expectRows(database, expected) {
  runOrv('check', database);
  for (const reader of kReaders) {
    for (const [table, allTypes] of tablesOf(database)) {
      const what = `${reader.name}, table ${table}`;
      const types = toldBy(reader, allTypes);
      assert.equal(reader.count(database, table), expected[table].length, what);
      const rows = reader.rows(database, table, types);
      const difference = firstDifference(reader, rows, expected[table], types);
      if (difference) assert.fail(`${what} ${difference}`);
    }
  }
}

/** All rows, by table, for expectKept(). */
export function rowsOf(database) {
  const pairs = [...tablesOf(database)].map(
      ([table,
        types]) => [table, comparable(mdbReader.rows(database, table, types), types, mdbReader)]);
  return new Map(pairs);
}

/** Every one of these rows is in the database still. */
export function expectKept(database, rowsBefore) {
  const rowsNow = rowsOf(database);
  for (const [table, rows] of rowsBefore) {
    const now = new Set(rowsNow.get(table));
    for (const row of rows) assert.ok(now.has(row), `table ${table} has lost ${cut(row)}`);
  }
}
