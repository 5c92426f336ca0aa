// Reads the spectral rows of a database with mdb-reader, as peer_bench does with the store.
// usage: node mdbReader.mjs FILE
import MDBReader from 'mdb-reader';
import {readFileSync} from 'node:fs';

const seconds = (action) => {
  const start = process.hrtime.bigint();
  const result = action();
  return [Number(process.hrtime.bigint() - start) / 1e9, result];
};

const [opening, reader] = seconds(() => {
  const opened = new MDBReader(readFileSync(process.argv[2]));
  opened.getTableNames();
  return opened;
});
const [scan, rows] = seconds(() => reader.getTable('SpectralData').getData().length);
console.log(`open and list tables\tmdb-reader\t${opening}\t1`);
console.log(`scan\tmdb-reader\t${scan}\t${rows}`);
