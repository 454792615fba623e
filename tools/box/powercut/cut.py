"""Power cuts on the box; scripts/powercut.sh lays out WORK and runs this:
  cut.py WORK N [CHAINS]     N cuts, shared by CHAINS boxes in parallel (one
                             processor and one disk image each; default: as
                             many as the host has processors);
                             prints the one line of figures
  cut.py WORK --cost PAIRS   0J save times, WORK/root.cpio against WORK/real.cpio
WORK holds kernel, real.cpio, root.cpio (the one booted), settings.img and
overlay.cpio; it is removed at the end, and every box started is stopped by
its qemu's pid."""
import io, os, random, re, select, shutil, signal, socket, statistics, subprocess, sys, tarfile
import threading, time

RETURN_PAGE = (b'<html>\n<head>\n<script language=javascript>\nlocation.href="/r";\n</script>\n'
               b'</head>\n<body>\n</body>\n</html>\n')
BARE_204 = b'HTTP/1.1 204 OKContent-type: text/html\r\n\r\n'


class Fail(Exception):
    pass


# A save of sequence number s posts rows (key, offset, width, value of s); the
# record it leaves is the first state with those bytes replaced.
J = [('AwbMode', 14, 1, lambda s: s), ('WbGainR', 15, 1, lambda s: s >> 8),
     ('WbGainB', 16, 1, lambda s: s >> 16)] + [
    (k, o, 1, lambda s, i=i: 31 * s + 7 * i) for i, (k, o) in enumerate(
        [('ExposureMode', 17), ('ShutterPosition', 19), ('GainLimit', 22), ('ExpComp', 24),
         ('Gamma', 56), ('DefogWeight', 62), ('AutumnSunsetMinute', 101)])]
Y = [('Hue', 4, 4, lambda s: s), ('TdnDwellTime', 25, 1, lambda s: s)] + [
    (k, o, 4, lambda s, i=i: (3 + 2 * i) * s + i) for i, (k, o) in enumerate(
        [('Saturation', 8), ('Sharpness', 20), ('D2nThreshold', 32), ('ShutterSpeed', 60),
         ('BGain', 76), ('NoiseFilter', 104)])]
C = [('DigitalZoom', 4, 1, lambda s: s >> 8), ('ZoomSpeed', 5, 1, lambda s: s >> 16),
     ('FocusSpeed', 8, 1, lambda s: 31 * s + 1), ('DssLevel', 65, 1, lambda s: 31 * s + 2),
     ('PresetSetId', 324, 2, lambda s: 5), ('PresetSetFocus', 326, 1, lambda s: s),
     ('ParkNumber', 1796, 2, lambda s: s), ('CamCtlPage', 1967, 1, lambda s: 31 * s + 3)]


def form(table, s):
    return [(k, f(s) & (1 << 8 * w) - 1) for k, o, w, f in table]


def patch(base, size, table, s):
    b = bytearray(base if base is not None else bytes(size))
    for k, o, w, f in table:
        b[o:o + w] = (f(s) & (1 << 8 * w) - 1).to_bytes(w, 'little')
    return bytes(b)


def preset_file(base, s):
    """Preset 5: its flag, bit 4 at 16404, and its label at 276, copied with its
    terminating zero and no more (the labels only grow, so the rest of the slot
    keeps the first state)."""
    b = bytearray(base if base is not None else bytes(262760))
    label = b'seq%d\0' % s
    b[276:276 + len(label)] = label
    b[16404] |= 0x10
    return bytes(b)


def fisheye(base, s):
    text = re.sub(rb'(?m)^CENTER_X\s*=.*$', b'CENTER_X = %d' % s, base or b'')
    return re.sub(rb'(?m)^CENTER_Y\s*=.*$', b'CENTER_Y = %d' % (s + 1), text)


def number(pattern, data):
    m = re.search(pattern, data)
    return int(m.group(1)) if m else None


# Save s is of kind s % 4: (module to attach, program, form, its files: path,
# the file it leaves from the first state, the number read back from a file).
KINDS = {
    1: ('0J', 'zrcamctlset.cgi', lambda s: form(J, s), [
        ('ZrConf/ZrCamCtlConf0J.bin', lambda b, s: patch(b, 108, J, s),
         lambda d: d[14] | d[15] << 8 | d[16] << 16 if len(d) == 108 else None)]),
    2: ('0y', 'zrcamctlset.cgi', lambda s: form(Y, s), [
        ('ZrConf/ZrCamCtlConf0y.bin', lambda b, s: patch(b, 128, Y, s),
         lambda d: int.from_bytes(d[4:8], 'little') if len(d) == 128 else None)]),
    3: (None, 'zrfisheyeset.cgi', lambda s: [('CenterX', s), ('CenterY', s + 1)], [
        ('fish_eye.conf', fisheye, lambda d: number(rb'(?m)^CENTER_X = (\d+)$', d))]),
    0: ('1C', 'zrcamctlset.cgi',
        lambda s: form(C, s) + [('PresetSetMode', 1), ('PresetSetLabel', 'seq%d' % s)], [
        ('ZrConf/ZrCamCtlConf1C.bin', lambda b, s: patch(b, 1968, C, s),
         lambda d: d[326] | d[4] << 8 | d[5] << 16 if len(d) == 1968 else None),
        ('ZrConf/PtzConf.bin', preset_file, lambda d: number(rb'^seq(\d+)\0', d[276:340]))]),
}
FILES = {path: (kind, expect, read) for kind, (_, _, _, files) in KINDS.items()
         for path, expect, read in files}


def request(port, path, body=None, cut_at=None, timeout=30.0):
    """The whole response (until the server closes), or None when cut_at comes first."""
    end = time.monotonic() + timeout
    with socket.create_connection(('127.0.0.1', port), timeout=timeout) as s:
        head = 'GET %s HTTP/1.0\r\n' % path if body is None else (
            'POST %s HTTP/1.0\r\nContent-Type: application/x-www-form-urlencoded\r\n'
            'Content-Length: %d\r\n' % (path, len(body)))
        s.sendall(head.encode() + b'\r\n' + (body or b''))
        data = b''
        while True:
            wait = min(end, cut_at or end) - time.monotonic()
            if wait <= 0:
                if cut_at and time.monotonic() >= cut_at:
                    return None
                raise Fail('no answer to %s in %.0f s' % (path, timeout))
            if select.select([s], [], [], wait)[0]:
                chunk = s.recv(65536)
                if not chunk:
                    return data
                data += chunk


LIVE = set()  # every box started and not yet cut, for the last resort in main


class Box:
    def __init__(self, work, initrd, disk, tag, cpus=2):
        with socket.socket() as s:
            s.bind(('127.0.0.1', 0))
            self.port = s.getsockname()[1]
        self.pidfile, self.console = '%s/%s.pid' % (work, tag), '%s/%s.log' % (work, tag)
        self.qemu = 0
        with open(self.console, 'wb') as log:
            self.boot = subprocess.Popen(
                ['sh', 'tools/box/boot.sh', '--disk', disk, '--port', str(self.port), '--overlay',
                 work + '/overlay.cpio', '--pidfile', self.pidfile, '--run', '/powercut/run.sh',
                 '--cpus', str(cpus), work + '/kernel', initrd], stdin=subprocess.DEVNULL,
                stdout=log, stderr=subprocess.STDOUT)
        LIVE.add(self)

    def state(self, timeout=240):
        """The settings partition's files as the booted box has them, before any save."""
        end = time.monotonic() + timeout
        while time.monotonic() < end and self.boot.poll() is None:
            if not self.qemu and os.path.exists(self.pidfile):
                self.qemu = int(open(self.pidfile).read() or 0)
            try:
                r = request(self.port, '/cgi-bin/pc/state.cgi', timeout=60)
                if r.startswith(b'HTTP/1.1 200 OK\r\n') and self.qemu:
                    with tarfile.open(fileobj=io.BytesIO(r.split(b'\r\n\r\n', 1)[1])) as t:
                        return {m.name[2:]: t.extractfile(m).read() for m in t if m.isfile()}
            except (OSError, tarfile.TarError):
                pass
            time.sleep(0.5)
        tail = open(self.console, 'rb').read()[-800:].decode(errors='replace')
        raise Fail('the box did not come up:\n' + tail)

    def cut(self):
        """Once: a box cut before is not looked up again, so that no pid is
        read from a file its boot.sh did not get to remove."""
        if self not in LIVE:
            return
        LIVE.discard(self)
        if not self.qemu and os.path.exists(self.pidfile) and self.boot.poll() is None:
            self.qemu = int(open(self.pidfile).read() or 0)
        if self.qemu:
            try:
                os.kill(self.qemu, signal.SIGKILL)
            except ProcessLookupError:
                pass
            self.qemu = 0
        if self.boot.poll() is None:
            self.boot.terminate()
        self.boot.wait(30)


def post(box, kind, s, cut_at):
    module, program, fields, _ = KINDS[kind]
    if module:
        r = request(box.port, '/cgi-bin/pc/attach.cgi?' + module, cut_at=cut_at)
        if r is not None and not r.endswith(b'\r\n\r\n%s\n' % module.encode()):
            raise Fail('attaching %s: %r' % (module, r[-200:]))
        if r is None:
            return None
    body = '&'.join('%s=%s' % kv for kv in fields(s) + [('RetReDir', '/r')]).encode()
    r = request(box.port, '/cgi-bin/pc/' + program, body, cut_at)
    if r is not None and not (r.endswith(b'\r\n\r\n' + RETURN_PAGE) or r == BARE_204):
        raise Fail('save %d: %r' % (s, r[-300:]))
    return r


def seed(image, work):
    """Gives the binary files a first state of position-dependent bytes, so that
    a block out of place, stale or zeroed does not pass for a whole file; the
    image's journal is replayed first, or the mount would undo the writes."""
    sizes = {'ZrCamCtlConf0J.bin': 108, 'ZrCamCtlConf0y.bin': 128, 'ZrCamCtlConf1C.bin': 1968,
             'PtzConf.bin': 262760}
    subprocess.run(['e2fsck', '-fy', image], stdout=subprocess.DEVNULL,
                   stderr=subprocess.DEVNULL, timeout=60)
    commands, seeded = ['cd /ZrConf'], {}
    for name, size in sizes.items():
        seeded['ZrConf/' + name] = bytes((i * 37 + (i >> 8) * 11 + 5) & 255 for i in range(size))
        with open('%s/%s' % (work, name), 'wb') as f:
            f.write(seeded['ZrConf/' + name])
        commands += ['rm %s' % name, 'write %s/%s %s' % (work, name, name)]
    subprocess.run(['debugfs', '-w', '-f', '-', image], input='\n'.join(commands).encode(),
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True, timeout=60)
    return seeded


def cuts(work, seeded, n, rng, chain, out):
    """One box after the other on a copy of the seeded disk image of its own:
    n cuts; out[chain] gets the counts and the number of strays."""
    image, who = '%s/settings%d.img' % (work, chain), 'chain %d cut' % chain
    shutil.copy(work + '/settings.img', image)
    first = Box(work, work + '/root.cpio', image, 'c%dboot0' % chain, cpus=1)
    boxes = [first]
    try:
        files = first.state()
        for path in seeded:
            if files.get(path) != seeded[path]:
                raise Fail('the box does not hold the first state written to %s' % path)
        base = {path: files.get(path) for path in FILES}
        known = set(files)
        floor = dict.fromkeys(FILES, 0)  # the save each file must hold, or a later one
        seq, counts, strays, took = 0, {'torn': 0, 'empty': 0, 'lost': 0}, 0, []
        leftovers = set()
        for i in range(1, n + 1):
            box, acked = boxes[-1], set()
            # Half of the cuts a few milliseconds after the k-th answer, half at
            # a random instant of about as many saves (inside a save or not).
            after = rng.randint(1, 12) if rng.random() < 0.5 else 0
            span = 12 * (statistics.mean(took) if took else 1.0)
            begin = time.monotonic()
            cut_at = None if after else begin + rng.uniform(0, span)
            answered = 0
            while True:
                seq += 1
                start = time.monotonic()
                if post(box, seq % 4, seq, cut_at) is None:
                    break
                took.append(time.monotonic() - start)
                for path, _, _ in KINDS[seq % 4][3]:
                    floor[path] = max(floor[path], seq)
                    acked.add(path)
                answered += 1
                if answered == after:
                    time.sleep(rng.uniform(0, 0.004))
                    break
            box.cut()
            boxes.append(Box(work, work + '/root.cpio', image, 'c%dboot%d' % (chain, i), cpus=1))
            files = boxes[-1].state()
            for path, (kind, expect, read) in FILES.items():
                verdict, found = judge(files.get(path), base[path], floor[path], seq, kind, expect,
                                       read)
                if verdict != 'ok':
                    counts[verdict] += 1
                    print('powercut: %s %d: %s %s (must hold save %d or later; last save %d)%s'
                          % (who, i, path, verdict, floor[path], seq,
                             where(files.get(path), base[path], read, expect)), file=sys.stderr)
                if found is not None:  # what the disk holds now: a loss counts once
                    floor[path] = found
            # A killed save may leave one temporary, which the next save of the
            # file removes; anything else new is a stray.
            now = {name for name in files if re.search(r'\.[0-9]+\.new$', name)}
            for name in sorted(set(files) - known - set(FILES) - now):
                strays += 1
                print('powercut: %s %d: stray %s' % (who, i, name), file=sys.stderr)
            for name in sorted(now):
                owner = re.sub(r'\.[0-9]+\.new$', '', name)
                if (name in leftovers and owner in acked) or sum(
                        re.sub(r'\.[0-9]+\.new$', '', m) == owner for m in now) > 1:
                    strays += 1
                    print('powercut: %s %d: leftover %s stays' % (who, i, name), file=sys.stderr)
            leftovers = now
            if os.environ.get('ZRCAMCTL_POWERCUT_VERBOSE'):
                print('powercut: %s %d %s, saves to %d, %d answered; files hold %s %s' % (
                    who, i, 'after answer %d' % after if after else 'at %.3f s' % (cut_at - begin),
                    seq, answered, [read(files[p]) if p in files and files[p] != base[p] else 0
                                    for p, (_, _, read) in FILES.items()], sorted(now)),
                      file=sys.stderr)
        out[chain] = (counts, strays)
    except Fail as e:
        out[chain] = e
    finally:
        for box in boxes:
            box.cut()


def where(data, base, read, expect):
    """Where a torn file parts from the save its number names."""
    found = read(data) if data else None
    if not found:
        return ''
    want = expect(base, found)
    off = [i for i in range(min(len(data), len(want))) if data[i] != want[i]]
    return '; %d bytes, save %d has %d; %d differ, from offset %s' % (
        len(data), found, len(want), len(off), off[:8])


def judge(data, base, floor, last, kind, expect, read):
    """'ok' and the save the file holds (0: the first state), or what is wrong."""
    if data is None:
        return ('empty', None) if base is not None else ('ok' if floor == 0 else 'lost', 0)
    found = 0 if data == base else read(data)
    if data != base and (not found or found % 4 != kind or found > last or
                         data != expect(base, found)):
        return ('empty' if not data.strip(b'\0') else 'torn', None)
    return ('ok' if found >= floor else 'lost', found)


def cost(work, pairs):
    shutil.copy(work + '/settings.img', work + '/other.img')
    boxes = [Box(work, work + '/real.cpio', work + '/settings.img', 'real'),
             Box(work, work + '/root.cpio', work + '/other.img', 'other')]
    try:
        for box in boxes:
            box.state()
        times = [[], []]
        for i in range(pairs):
            for which in (i % 2, 1 - i % 2):
                body = ('AwbMode=%d&RetReDir=/r' % (i % 256)).encode()
                start = time.monotonic()
                if not request(boxes[which].port, '/cgi-bin/zrcamctlset.cgi', body).startswith(
                        b'HTTP/1.1 200 OK'):
                    raise Fail('0J save not answered')
                times[which].append(time.monotonic() - start)
        real, other = (statistics.median(t) * 1000 for t in times)
        gap = statistics.median(a - b for a, b in zip(*times)) * 1000
        print('0J save through the box\'s server, median of %d: build/box/root.cpio %.1f ms, '
              'ZRCAMCTL_BOX_ROOT %.1f ms, median pair difference %.1f ms'
              % (pairs, real, other, gap))
    finally:
        for box in boxes:
            box.cut()


def main():
    work = sys.argv[1]
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))
    try:
        if sys.argv[2:3] == ['--cost']:
            cost(work, int(sys.argv[3]) if len(sys.argv) > 3 else 40)
            return 0
        n = int(sys.argv[2]) if len(sys.argv) > 2 else 10
        chains = max(1, min(n, int(sys.argv[3]) if len(sys.argv) > 3 else os.cpu_count() or 1))
        out, seeded = [None] * chains, seed(work + '/settings.img', work)
        threads = [threading.Thread(target=cuts, daemon=True,
                                    args=(work, seeded, n // chains + (c < n % chains), random.Random(),
                                          c, out)) for c in range(chains)]
        for t in threads:
            t.start()
        for t in threads:
            while t.is_alive():
                t.join(1)
        for e in out:
            if not isinstance(e, tuple):
                raise e if isinstance(e, Fail) else Fail('a chain of cuts stopped early')
        counts = {k: sum(c[k] for c, _ in out) for k in out[0][0]}
        print('cuts %d, torn %d, empty %d, acknowledged lost %d'
              % (n, counts['torn'], counts['empty'], counts['lost']))
        return 1 if any(counts.values()) or sum(s for _, s in out) else 0
    except Fail as e:
        print('powercut: %s' % e, file=sys.stderr)
        return 1
    except KeyboardInterrupt:
        return 130
    finally:
        for box in list(LIVE):
            box.cut()
        shutil.rmtree(work, ignore_errors=True)


sys.exit(main())
