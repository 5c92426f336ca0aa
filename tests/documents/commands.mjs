// Runs the commands that documents show. Those that begin with "$ " in a block of code are run in
// their order, and what they print is compared with what stands below each. Other lines of code
// that call orv, and the examples of man pages, are run each in a folder of its own that has what
// they name, and have to succeed.
//
// usage: node commands.mjs ORV SOURCES DOCUMENT...
import {execFileSync, spawnSync} from 'node:child_process';
import {cpSync, existsSync, mkdtempSync, readFileSync, rmSync, symlinkSync} from 'node:fs';
import {tmpdir} from 'node:os';
import {dirname, join, resolve} from 'node:path';

const [orv, sources, ...documents] = process.argv.slice(2);
const corpus = process.env.ORV_CORPUS ?? join(sources, '../shared/corpus');
const igdb = join(corpus, 'sources/glazing.mdb');
const frames = join(corpus, 'sources/orvdata-3.0.0.mdb');
const access97 = join(corpus, 'access/testV1997.mdb');

/** The lines of a document that are code, each with its number and that of its block. */
function codeOf(document) {
  const lines = [];
  let block = 0;
  let isCode = false;
  const isManual = /\.\d$/.test(document);
  readFileSync(resolve(sources, document), 'utf8').split('\n').forEach((text, i) => {
    const begins = isManual ? text === '.nf' : !isCode && text.startsWith('```');
    const ends = isManual ? text === '.fi' : isCode && text.startsWith('```');
    if (begins) block += 1;
    if (begins || ends)
      isCode = begins;
    else if (isCode)
      lines.push({line: i + 1, block, text: isManual ? text.replaceAll('\\', '') : text});
  });
  return lines;
}

/** The commands with a prompt: each with its line and the lines that it prints. */
function shownCommands(document) {
  const commands = [];
  let block = 0;
  for (const {line, text, block: own} of codeOf(document)) {
    if (text.startsWith('$ '))
      commands.push({line, command: text.slice(2), printed: []});
    else if (own === block)
      commands.at(-1)?.printed.push(text);
    if (text.startsWith('$ ')) block = own;
  }
  return commands;
}

/** The commands without one. */
function bareCommands(document) {
  return codeOf(document)
      .filter(({text}) => /^(echo .* \| )?orv [a-z]+ /.test(text))
      .map(({line, text}) => ({line, command: text}));
}

const environment = {
  ...process.env,
  PATH: `${dirname(orv)}:${process.env.PATH}`,
  LC_ALL: 'C.UTF-8',
};
const work = mkdtempSync(join(tmpdir(), 'orv-documents-'));

/** What a command prints; it may fail, as far as the document shows what it says then. */
function outputOf(command, folder) {
  const script = `{ ${command}\n} 2>&1 || true`;
  return execFileSync('bash', ['-c', script], {cwd: folder, env: environment, encoding: 'utf8'});
}

/** The text with one name for the folder of whoever runs the commands, and lines of one length. */
function withoutFolder(text, folder) {
  return text.replaceAll(folder, '/home/anna').replace(/-{3,}/g, '---');
}

let passed = 0;
const failures = [];

function compareShown(document) {
  const folder = mkdtempSync(join(work, 'shown-'));
  symlinkSync(join(sources, 'examples'), join(folder, 'examples'));
  for (const {line, command, printed} of shownCommands(document)) {
    const found = withoutFolder(outputOf(command, folder).trimEnd(), folder);
    const expected = withoutFolder(printed.join('\n').trimEnd(), folder);
    if (found === expected)
      passed += 1;
    else
      failures.push(`${document}:${line}: ${command}\nprints\n${found}\nand not\n${expected}`);
  }
}

/**
 * A folder with what documents name: a database of 15 panes, the 12th at two angles, and its
 * sources.
 */
const fixture = join(work, 'fixture');
function makeFixture() {
  cpSync(join(sources, 'examples/panes'), join(fixture, 'measured-panes'), {recursive: true});
  cpSync(join(fixture, 'measured-panes'), join(fixture, 'measured'), {recursive: true});
  for (const name of ['clear', 'lowe']) {
    cpSync(join(fixture, `measured/${name}_4.txt`), join(fixture, `${name}.txt`));
  }
  if (existsSync(igdb)) cpSync(igdb, join(fixture, 'glazing.mdb'));
  if (existsSync(access97)) cpSync(access97, join(fixture, 'access97.mdb'));
  const script = `set -e
    mkdir -p .local/share/bash-completion/completions slanting
    (cat measured/pvb_076.txt; echo '{ Angle of Incidence: 60 }') > slanting/pvb_076.txt
    orv copy clear.txt measured-panes orvdata.mdb --group Fixture
    orv copy slanting orvdata.mdb --group Fixture
    for i in 1 2 3 4 5; do orv edit orvdata.mdb 1 "supplier=Maker $i" --yes; done
    orv copy '${sources}/examples/shadings' orvdata.mdb --group Fixture
    [ ! -e '${frames}' ] || orv copy '${frames}' orvdata.mdb --set frames --group Fixture
    orv export measured-panes --form json --single catalogue.json
    for i in clear lowe; do orv export $i.txt --form json --single $i.json; done
    cp clear.json product.json
    orv edit orvdata.mdb 1 thickness=5 --yes
    orv undo orvdata.mdb
    orv list orvdata.mdb --columns PaneID,name,thickness,SupplierName --format csv > panes.csv
    printf 'id;thickness\\n1;5,9\\n' > changes.csv
    for i in old changed colleague; do cp orvdata.mdb $i.mdb; done
    cp orvdata.mdb damaged.mdb`;
  execFileSync(orv, ['new', 'orvdata.mdb'], {cwd: fixture});
  execFileSync('bash', ['-c', script], {cwd: fixture, env: environment, stdio: 'pipe'});
}

/** Why a command cannot be run here; empty where it can. */
function hindrance(command) {
  if (command.includes('glazing.mdb') && !existsSync(igdb)) return 'needs the corpus';
  if (command.includes('access97.mdb') && !existsSync(access97)) return 'needs the corpus';
  if (/(show|delete).*--set frames/.test(command) && !existsSync(frames)) return 'needs the corpus';
  const tool = command.match(/\| (\w+)/)?.[1] ?? 'orv';
  return spawnSync('bash', ['-c', `command -v ${tool}`], {env: environment}).status === 0 ?
      '' :
      `needs ${tool}`;
}

/**
 * With an answer to the question before a change, room for a new file, and panes that the IGDB at
 * hand has.
 */
function asRunHere(command) {
  return command.replace(/^(orv (?:delete|edit|merge) .*?)( --yes)?$/, '$1 --yes')
      .replace(/^orv new (\S+)/, 'rm -f $1; orv new $1')
      .replace('CLEAR_3.DAT', 'PANE00001.DAT')
      .replace('CLEAR_6.DAT', 'PANE00002.DAT');
}

function runBare(document) {
  for (const {line, command} of bareCommands(document)) {
    const reason = hindrance(command);
    if (reason) {
      console.log(`${document}:${line}: passed over, ${reason}: ${command}`);
      continue;
    }
    const folder = mkdtempSync(join(work, 'bare-'));
    cpSync(fixture, folder, {recursive: true});
    const options = {cwd: folder, env: {...environment, HOME: folder}, encoding: 'utf8'};
    const run = spawnSync('bash', ['-o', 'pipefail', '-c', asRunHere(command)], options);
    // Of spectra that end too early, and of data that are wrong or differ.
    const mayFallShort = /^orv (integrate|audit|diff)/.test(command);
    if (run.status === 0 || (run.status === 1 && mayFallShort))
      passed += 1;
    else
      failures.push(`${document}:${line}: ${command}\nends with ${run.status}: ${run.stderr}`);
  }
}

try {
  makeFixture();
  for (const document of documents) {
    compareShown(document);
    runBare(document);
  }
} finally {
  rmSync(work, {recursive: true});
}
for (const failure of failures) console.log(`${failure}\n`);
console.log(`${passed} passed, ${failures.length} failed`);
process.exit(failures.length === 0 && passed > 0 ? 0 : 1);
