// Headless Chromium against the simulator (module 0J): a person's post and
// each of the three answers as the browser takes them, then 50 concurrent
// posts through the same server. Arguments: directory for the screenshot;
// --box for the simulator in the box (simulate.sh --box).
const { spawn } = require('child_process');
const fs = require('fs'), net = require('net'), os = require('os'), path = require('path');
const puppeteer = require('puppeteer-core');

const repo = path.resolve(__dirname, '../..'), out = process.argv[2] || '.', box = process.argv[3] === '--box';
const sleep = (ms) => new Promise((r) => setTimeout(r, ms));
let consoleText = '';
const seen = (text) => consoleText.split(text).length - 1;
function check(ok, what) { if (!ok) throw new Error('FAILED: ' + what); console.log('ok: ' + what); }
async function until(cond, what, ms = 60000) {
  for (const end = Date.now() + ms; Date.now() < end; await sleep(50)) if (await cond()) return check(true, what);
  check(false, what);
}
const freePort = () => new Promise((resolve) => {
  const s = net.createServer().listen(0, '127.0.0.1', () => { const { port } = s.address(); s.close(() => resolve(port)); });
});

(async () => {
  const port = await freePort(), base = `http://127.0.0.1:${port}`;
  const sim = spawn('sh', ['scripts/simulate.sh', ...(box ? ['--box'] : []), '0J'],
    { cwd: repo, env: { ...process.env, PORT: String(port) } });
  for (const s of [sim.stdout, sim.stderr]) s.on('data', (d) => { consoleText += d; });
  const exited = new Promise((r) => sim.on('exit', (code) => {
    if (code === 77) { console.log('SKIPPED: no box\n' + consoleText); process.exit(77); }  // tools/box/prepare.sh
    r();
  }));
  const profile = fs.mkdtempSync(path.join(os.tmpdir(), 'zrcamctl-chromium-'));
  let browser;
  try {
    await until(() => /serving http/.test(consoleText), 'the simulator serves', 900000);
    const state = base + '/cgi-bin/simstate.cgi?';  // the device's files, through its server
    const bytes = async () => Buffer.from(await (await fetch(state + 'record=0J')).arrayBuffer());
    browser = await puppeteer.launch({
      executablePath: '/usr/bin/chromium', headless: true, protocolTimeout: 600000,
      userDataDir: profile,
      args: ['--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run', '--disable-background-networking',
        '--disable-component-update', '--disable-sync'],
    });
    const page = await browser.newPage();
    page.setDefaultTimeout(120000);
    const visits = [], dialogs = [];
    page.on('framenavigated', (f) => { if (f === page.mainFrame()) visits.push(new URL(f.url()).pathname); });
    page.on('dialog', (d) => { dialogs.push(d.message()); d.accept().catch(() => {}); });  // a frame may go first
    const post = async (keys) => {  // "Key=value" lines, typed into the page's fields
      for (const [key, value] of keys.split('\n').map((l) => l.split('='))) {
        await page.waitForSelector(`input[name=${key}]`);
        await page.click(`input[name=${key}]`, { clickCount: 3 });
        await page.type(`input[name=${key}]`, value);
      }
      const answer = page.waitForResponse((r) => r.url().endsWith('/cgi-bin/zrcamctlset.cgi'));
      await page.click('#save');
      return (await answer).status();
    };

    await page.goto(base + '/');
    check((await page.$$('a[href^="/m/"]')).length === 142, 'the index links a page for every module code');
    await page.goto(base + '/m/0J.html');

    // The return page: its script takes the browser back to the settings page.
    let signals = seen('[zrcamctld got SIGUSR1 (10)]'), from = visits.length;
    check(await post('AwbMode=1\nWbGainR=40') === 200, 'a post gets the return page (200)');
    await until(() => visits.slice(from).join() === '/cgi-bin/zrcamctlset.cgi,/m/0J.html', 'the redirect is followed back');
    let b = await bytes();
    check(b[14] === 1 && b[15] === 40, 'the record holds the posted values (bytes 14, 15)');
    await until(() => seen('[zrcamctld got SIGUSR1 (10)]') > signals, 'the daemon stand-in got SIGUSR1 (10)');
    const recordView = () => page.frames().find((f) => f.url().includes('simrecord.cgi'));
    const shown = async (text) => (await recordView()?.content().catch(() => ''))?.includes(text);
    await until(async () => await shown('   15 WbGainR u8 0 -&gt; 40') && await shown('byte 15: 00 -&gt; 28'),
      'the page shows the change, by key and by byte');
    await until(async () => await page.$eval('input[name=WbGainR]', (e) => e.value).catch(() => '') === '40',
      'the page\'s form, read back through zrcamctlget.cgi, holds the saved value');
    await page.screenshot({ path: path.join(out, box ? 'simulator-box.png' : 'simulator.png'), fullPage: true });

    // A pending lens initialisation: the bare 204 leaves the page in place.
    from = visits.length;
    check(await post('LensInitCmd=1') === 204, 'a pending one-shot gets 204');
    await sleep(500);
    check((await bytes())[50] !== 0 && visits.length === from && page.url() === base + '/m/0J.html', 'the page stays');

    // No record: the error page's alert, then history.go(-1) back.
    await fetch(state + 'remove=0J', { method: 'POST' });
    check(await post('AwbMode=2') === 200, 'a post without a record gets the error page (200)');
    await until(() => visits.slice(from).join() === '/cgi-bin/zrcamctlset.cgi,/m/0J.html', 'history.go(-1) goes back');
    check(dialogs.join() === 'zrcamctlset.cgi Cgi Func:[] return ERROR!!!', 'the alert is shown');

    // 50 concurrent posts from the page, one key each (the browser takes at
    // most six connections to the server at once): every one answered, every
    // update kept.
    await fetch(state + 'record=0J', { method: 'POST', body: Buffer.alloc(108) });
    const source = fs.readFileSync(path.join(repo, 'families/zoom_camera_module.cpp'), 'utf8');
    const keys = [...source.matchAll(/U8\("(\w+)", (\d+)\)/g)].filter((m) => m[2] !== '50' && m[2] !== '66').slice(0, 50);
    check(keys.length === 50, '50 one-byte keys of the family');
    const started = Date.now();
    const statuses = await page.evaluate((bodies) => Promise.all(bodies.map((body) => fetch('/cgi-bin/zrcamctlset.cgi', {
      method: 'POST', body, headers: { 'Content-Type': 'application/x-www-form-urlencoded' } }).then((r) => r.status, () => 0))),
    keys.map((m) => `${m[1]}=1&RetReDir=/m/0J.html`));
    check(statuses.every((s) => s === 200), `every one of 50 concurrent posts answered (${Date.now() - started} ms)`);
    b = await bytes();
    check(b.length === 108, 'the record keeps its 108 bytes');
    const kept = keys.filter((m) => b[+m[2]] === 1).length;
    check(kept === 50, `every update kept (${kept} of 50)`);

    // Another site (another port of 127.0.0.1) tries each program: an <img>,
    // with and without its referrer, auto-submitted forms and a no-cors
    // fetch. Nothing is stored and no daemon is woken.
    const cgi = base + '/cgi-bin/', set = cgi + 'zrcamctlset.cgi';
    const form = (meta) => `<meta name="referrer" content="${meta}"><form method="post" action="${set}">` +
      '<input name="WbGainR" value="99"><input name="RetReDir" value="/m/0J.html"></form>' +
      '<script>if (!history.state) { history.replaceState(1, ""); document.forms[0].submit(); }</script>';
    const pages = { '/form': form('origin'), '/form-noref': form('no-referrer'), '/': ['', ' referrerpolicy="no-referrer"']
      .flatMap((p, i) => ['zrcamctlset.cgi?WbGainR=98&', 'zrcamctlapply.cgi?', 'zrcamctldefault.cgi?', 'zrfisheyeset.cgi?CenterX=9&']
        .map((q) => `<img${p} src="${cgi}${q}r=${i}">`)).join('') + '<iframe src="/form"></iframe><iframe src="/form-noref"></iframe>' +
      `<script>fetch("${set}", {method: "POST", mode: "no-cors", body: new URLSearchParams("WbGainR=97")})</script>` };
    const evilPort = await freePort();
    const evil = require('http').createServer((q, r) => r.setHeader('Content-Type', 'text/html').end(pages[q.url] || ''));
    await new Promise((r) => evil.listen(evilPort, '127.0.0.1', r));
    const gotSignals = seen('got SIG');
    try {
      await page.goto(`http://127.0.0.1:${evilPort}/`);
      await sleep(3000);  // the refusals' alerts go back; a form submits only once
      await page.goto('about:blank');
    } finally { evil.close(); }
    check(Buffer.compare(await bytes(), b) === 0 && seen('got SIG') === gotSignals, 'another site changes nothing, wakes no daemon');
    check((await (await fetch(state + 'answer')).text()).includes('cross-site request refused'), 'and is told so');
  } finally {
    if (browser) await browser.close();
    sim.kill('SIGTERM');
    await exited;
    fs.rmSync(profile, { recursive: true, force: true });
  }
})().catch((e) => { console.error(e.message, '\n--- simulator console:\n' + consoleText); process.exit(1); });
