// node look.js CHROMIUM FOLDER: see run
const fs = require('fs');
const puppeteer = require('puppeteer-core');
const [chromium, folder] = process.argv.slice(2);
const axe = fs.readFileSync(require.resolve('axe-core/axe.min.js'), 'utf8');
const summary = JSON.parse(fs.readFileSync(folder + '/summary.json', 'utf8'));

// In the page: what is wrong with its layout and its texts.
function faultsOfPage(expected) {
    const faults = [];
    if (document.documentElement.scrollWidth > innerWidth) faults.push('the page is wider than the window');
    if (document.scripts.length || document.querySelector('img,b[onclick],[onerror]')) faults.push('a name became an element');
    if (!document.body.textContent.includes('<script>document.title=1</script>')) faults.push('a name is not shown as it is');
    const visible = element => element.getClientRects().length > 0;
    for (const element of document.querySelectorAll('.tile *, .panel *, td, th, summary *, .questions *, .faults *')) {
        const box = element.getBoundingClientRect();
        if (visible(element) && (box.right > innerWidth + 1 || box.left < -1) && !element.closest('thead'))
            faults.push('over the edge: ' + element.textContent.slice(0, 40));
    }
    // What stands side by side: a row's cells, an entry's words and its bar, the tiles and the panels.
    for (const parent of document.querySelectorAll('tr, li, .tiles, .panels, .body, summary, .facts')) {
        const boxes = [...parent.children].filter(visible).map(child => child.getBoundingClientRect());
        boxes.forEach((a, at) => boxes.slice(at + 1).forEach(b => {
            if (Math.min(a.right, b.right) - Math.max(a.left, b.left) > 1 && Math.min(a.bottom, b.bottom) - Math.max(a.top, b.top) > 1)
                faults.push('overlap in ' + parent.textContent.slice(0, 40));
        }));
    }
    const counts = [...document.querySelectorAll('#exam-2 .questions li')].map(
        row => [row.querySelector('.in bdi').textContent, row.querySelector('.count').textContent].join(' '));
    const wanted = expected.questions.map(one => `${one.id} ${one.right} of ${one.asked}`);
    if (counts.join() !== wanted.join()) faults.push(`numbers: ${counts} instead of ${wanted}`);
    return faults;
}

async function look(browser, width, scheme) {
    const faults = [];
    const page = await browser.newPage();
    for (const event of ['console', 'pageerror', 'requestfailed'])
        page.on(event, what => faults.push(`${event}: ${what.text ? what.text() : what}`));
    page.on('request', request => request.url().endsWith('/report.html') || faults.push('loads ' + request.url()));
    await page.emulateMediaFeatures([{name: 'prefers-color-scheme', value: scheme}]);
    await page.setViewport({width, height: 900});
    await page.goto(`file://${folder}/report.html`, {waitUntil: 'load'});
    faults.push(...await page.evaluate(faultsOfPage, summary));
    await page.evaluate(axe);
    const {violations} = await page.evaluate(() => axe.run(document, {resultTypes: ['violations']}));
    for (const {impact, id, nodes} of violations)
        if (['serious', 'critical'].includes(impact)) faults.push(`${impact}: ${id} at ${nodes[0].html.slice(0, 200)}`);
    await page.keyboard.press('Tab');
    if (!await page.evaluate(() => document.activeElement.matches('.skip'))) faults.push('the keyboard does not begin at the top');
    await page.close();
    return faults;
}

(async () => {
    const browser = await puppeteer.launch({executablePath: chromium, args: ['--no-sandbox', '--disable-gpu', '--no-first-run',
        '--disable-background-networking', '--disable-component-update', '--disable-sync']});
    for (const width of [360, 1400]) {
        for (const scheme of ['light', 'dark']) {
            const faults = await look(browser, width, scheme);
            faults.forEach(fault => console.log('    ' + fault));
            console.log(`[${faults.length ? '  FAILED  ' : '       OK '}] report.${scheme}_${width} (0 ms)`);
            process.exitCode ||= faults.length ? 1 : 0;
        }
    }
    await browser.close();
})();
