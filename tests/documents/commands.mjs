// Runs the commands that documents show, in their order, and compares what they print with what
// stands below each: lines of a block of code that begin with "$ " are commands.
// usage: node commands.mjs ORV SOURCES DOCUMENT...
import {execFileSync} from 'node:child_process';
import {mkdtempSync, readFileSync, rmSync, symlinkSync} from 'node:fs';
import {tmpdir} from 'node:os';
import {dirname, join} from 'node:path';

const [orv, sources, ...documents] = process.argv.slice(2);

/** The commands of a document: each with its line and the lines that it prints. */
function commandsOf(document) {
  const commands = [];
  let isCode = false;
  readFileSync(join(sources, document), 'utf8').split('\n').forEach((line, i) => {
    if (line.startsWith('```')) {
      isCode = !isCode;
      commands.at(-1) && (commands.at(-1).isOpen = false);
    } else if (isCode && line.startsWith('$ ')) {
      commands.push({line: i + 1, command: line.slice(2), printed: [], isOpen: true});
    } else if (commands.at(-1)?.isOpen) {
      commands.at(-1).printed.push(line);
    }
  });
  return commands;
}

const environment = {
  ...process.env,
  PATH: `${dirname(orv)}:${process.env.PATH}`,
  LC_ALL: 'C.UTF-8',
};
const folder = mkdtempSync(join(tmpdir(), 'orv-documents-'));
symlinkSync(join(sources, 'examples'), join(folder, 'examples'));

/** What a command prints; it may fail, as far as the document shows what it says then. */
function outputOf(command) {
  const script = `{ ${command}\n} 2>&1 || true`;
  return execFileSync('bash', ['-c', script], {cwd: folder, env: environment, encoding: 'utf8'});
}

/** The text with one name for the folder of whoever runs the commands, and lines of one length. */
function withoutFolder(text) {
  return text.replaceAll(folder, '/home/anna').replace(/-{3,}/g, '---');
}

let passed = 0;
let failed = 0;
try {
  for (const document of documents) {
    for (const {line, command, printed} of commandsOf(document)) {
      const found = withoutFolder(outputOf(command).trimEnd());
      const expected = withoutFolder(printed.join('\n').trimEnd());
      if (found === expected) {
        passed += 1;
      } else {
        failed += 1;
        console.log(`${document}:${line}: ${command}\nprints\n${found}\nand not\n${expected}\n`);
      }
    }
  }
} finally {
  rmSync(folder, {recursive: true});
}
console.log(`${passed} passed, ${failed} failed`);
process.exit(failed === 0 && passed > 0 ? 0 : 1);
