// Makes docs/report.png and docs/report-coverage.png: the HTML report of the example application's tests and of one that
// fails. Run it after a change of the report's looks; pngquant (Debian) makes the pictures small.
import { execFileSync, spawnSync } from 'node:child_process';
import { cpSync, mkdtempSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { pathToFileURL } from 'node:url';
import { launchBrowser } from '../testing/browser.mjs';
import { root } from '../testing/corvis.mjs';

const failing = `test "Searching shows the results"
timeout 1 s
note A viewer looks for a comedy.
say "search for comedies"
expect success
show "#result-count" is "4"
say go home
`;

// The scripts whose report a picture shows, its address within the report, and the picture's height.
const pictures = [
  ['report.png', ['tests'], '', 800],
  ['report-coverage.png', ['demo.voice'], '#coverage', 1050],
];

const folder = mkdtempSync(path.join(tmpdir(), 'corvis-report-'));
cpSync(path.join(root, 'examples/cinema'), folder, { recursive: true });
writeFileSync(path.join(folder, 'tests/searching.voice'), failing);
const browser = await launchBrowser();
for (const [name, scripts, place, height] of pictures) {
  const args = ['test-app', '--tap', '--html', 'report.html', '.', ...scripts];
  spawnSync(path.join(root, 'corvis'), args, { cwd: folder, stdio: 'ignore' });
  const page = await browser.newPage({ viewport: { width: 1280, height } });
  await page.goto(pathToFileURL(path.join(folder, 'report.html')).href + place);
  await page.waitForFunction(() => [...document.images].every((image) => image.complete));
  const file = path.join(root, 'docs', name);
  await page.screenshot({ path: file });
  execFileSync('pngquant', ['--force', '--ext', '.png', file]);
}
await browser.close();
rmSync(folder, { recursive: true });
