// Parses the scripts that are named, and prints for each as a line of JSON whether it has errors, and the commands in it.
import { readFileSync } from 'node:fs';
import { fileURLToPath } from 'node:url';
import { Language, Parser } from 'web-tree-sitter';

await Parser.init();
const grammar = new URL(import.meta.resolve('tree-sitter-powershell/tree-sitter-powershell.wasm'));
const parser = new Parser();
parser.setLanguage(await Language.load(fileURLToPath(grammar)));
for (const file of process.argv.slice(2)) {
    const script = parser.parse(readFileSync(file, 'utf8')).rootNode;
    const commands = script.descendantsOfType('command_name').map((name) => name.text);
    console.log(JSON.stringify({ hasError: script.hasError, commands }));
}
