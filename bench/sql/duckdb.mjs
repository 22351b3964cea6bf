// The part of bench/sql/run that DuckDB does: runs the first statement, then times the others, eleven times in turn.
import { createRequire } from 'node:module';
import { resolve } from 'node:path';

const { DuckDBInstance } = createRequire(resolve('build/sql/package.json'))('@duckdb/node-api');
const database = await DuckDBInstance.create(':memory:', { allow_unsigned_extensions: 'true', threads: '1' });
const connection = await database.connect();
const [setup, ...queries] = process.argv.slice(2);
await connection.run("load 'build/linux/duckdb/kestran.duckdb_extension'");
await connection.run(setup);
for (let i = 0; i < 11; ++i)
  for (const [k, query] of queries.entries()) {
    const begin = performance.now();
    await connection.runAndReadAll(query);
    console.log('DuckDB', k, performance.now() - begin);
  }
