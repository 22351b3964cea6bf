// The calls of a file through DuckDB, an answer a line.
//   node duckdb.mjs CALLS EXTENSION   from the root of the sources; the call is the third column
import { readFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { resolve } from 'node:path';

const { DuckDBInstance } = createRequire(resolve('build/sql/package.json'))('@duckdb/node-api');
const [calls, extension] = process.argv.slice(2);
const database = await DuckDBInstance.create(':memory:', { allow_unsigned_extensions: 'true' });
const connection = await database.connect();
await connection.run(`load '${resolve(extension)}'`);
for (const line of readFileSync(calls, 'utf8').trimEnd().split('\n')) {
  const reader = await connection.runAndReadAll(`select ${line.split('\t')[2]}`);
  console.log(reader.getRowsJS()[0][0]);
}
