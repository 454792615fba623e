"""Power cuts on the box; scripts/powercut.sh lays out WORK and runs this:
  cut.py WORK N [CHAINS] [--disk ext4|cached|ubifs|all]
                             N cuts on the disk (class Box; all: N on each,
                             side by side), shared by CHAINS boxes in parallel
                             (one processor and one disk image each; default:
                             as many as the host has processors for one disk,
                             one for all); prints a line of figures a disk
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


# ZRCAMCTL_POWERCUT_SYNC=0: no sync loop while UBIFS is armed (ubifs.cgi), so
# that a save's unsynced data can stay unwritten until the cut.
START = time.monotonic()
NOSYNC = '&nosync' if os.environ.get('ZRCAMCTL_POWERCUT_SYNC') == '0' else ''
LIVE = set()  # every box started and not yet cut, for the last resort in main


class Box:
    """A box booted on the disk image (ext4 written through), on the same image
    behind nbdkit's cache in writeback mode (cached: what the box has not
    flushed is lost with nbdkit), or with the settings on UBIFS (ubifs: the
    image is not used; the flash is fresh and seeded at each boot)."""

    def __init__(self, work, initrd, disk, tag, cpus=2, kind='ext4'):
        with socket.socket() as s:
            s.bind(('127.0.0.1', 0))
            self.port = s.getsockname()[1]
        self.pidfile, self.console = '%s/%s.pid' % (work, tag), '%s/%s.log' % (work, tag)
        self.qemu, self.nbdkit, where = 0, None, ['--disk', disk]
        with open(self.console, 'wb') as log:
            if kind == 'cached':
                where = ['--nbd', '%s/%s.nbd' % (work, tag)]
                self.nbdkit = subprocess.Popen(
                    ['nbdkit', '--foreground', '--exit-with-parent', '--unix', where[1],
                     '--filter=cache', 'file', disk, 'cache=writeback'],
                    env=dict(os.environ, TMPDIR=work), stdin=subprocess.DEVNULL, stdout=log,
                    stderr=subprocess.STDOUT)
                LIVE.add(self)
                for _ in range(200):
                    if os.path.exists(where[1]) or self.nbdkit.poll() is not None:
                        break
                    time.sleep(0.05)
            elif kind == 'ubifs':
                where = ['--fs', 'ubifs']
            self.boot = subprocess.Popen(
                ['sh', 'tools/box/boot.sh', *where, '--port', str(self.port), '--overlay',
                 work + ('/overlay-ubifs.cpio' if kind == 'ubifs' else '/overlay.cpio'),
                 '--pidfile', self.pidfile, '--run', '/powercut/run.sh', '--cpus', str(cpus),
                 work + '/kernel', initrd], stdin=subprocess.DEVNULL, stdout=log,
                stderr=subprocess.STDOUT)
        LIVE.add(self)

    def state(self, timeout=240):
        """The settings partition's files as the booted box has them, before any save."""
        end = time.monotonic() + timeout
        while time.monotonic() < end and self.boot.poll() is None:
            if not self.qemu and os.path.exists(self.pidfile):
                self.qemu = int(open(self.pidfile).read() or 0)
            # Not before the box says it serves: a connection made while it
            # boots waits on the user-mode network's retries, some 20 s.
            if b'powercut: serving' not in open(self.console, 'rb').read():
                time.sleep(0.05)
                continue
            try:
                r = request(self.port, '/cgi-bin/pc/state.cgi', timeout=60)
                if r.startswith(b'HTTP/1.1 200 OK\r\n') and self.qemu:
                    with tarfile.open(fileobj=io.BytesIO(r.split(b'\r\n\r\n', 1)[1])) as t:
                        return {m.name[2:]: t.extractfile(m).read() for m in t if m.isfile()}
            except (OSError, tarfile.TarError):
                pass
            time.sleep(0.2)
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
        if self.nbdkit:  # the disk's cache goes with the power
            self.nbdkit.kill()
            self.nbdkit.wait(30)
        if self.qemu:
            try:
                os.kill(self.qemu, signal.SIGKILL)
            except ProcessLookupError:
                pass
            self.qemu = 0
        if self.boot.poll() is None:
            self.boot.terminate()
        self.boot.wait(30)


def post(box, kind, s, cut_at, refusal_ends=False):
    """The answer to save s; None when cut_at came first; with refusal_ends, False
    when the save was refused."""
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
        if refusal_ends and b'return ERROR!!!' in r:
            return False
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


def cuts(work, seeded, n, rng, chain, out, kind):
    """One box after the other on a copy of the seeded disk image of its own
    (on UBIFS: one box, its volume unmounted and mounted again after each
    emulated cut, a new box after ten minutes): n cuts; out[chain] gets the
    counts and the number of strays."""
    image, who = '%s/settings-%s%d.img' % (work, kind, chain), '%s chain %d cut' % (kind, chain)
    if kind != 'ubifs':
        shutil.copy(work + '/settings.img', image)
    boxes, up = [], 0
    try:
        seq, counts, strays, took = 0, {'torn': 0, 'empty': 0, 'lost': 0}, 0, []
        for i in range(1, n + 1):
            if not boxes or kind == 'ubifs' and time.monotonic() - up > 600:
                if boxes:
                    boxes[-1].cut()
                boxes.append(Box(work, work + '/root.cpio', image, '%s%d-start%d' % (kind, chain, i), 1, kind))
                files, up = boxes[-1].state(), time.monotonic()
                for path in seeded:
                    if files.get(path) != seeded[path]:
                        raise Fail('the box does not hold the first state written to %s' % path)
                base = {path: files.get(path) for path in FILES}
                known = set(files)
                floor = dict.fromkeys(FILES, 0)  # the save each file must hold, or a later one
                leftovers = set()
            box, acked, answered = boxes[-1], set(), 0

            def save(cut_at):
                """Save seq + 1; whether it was answered. On UBIFS a save counts
                only when it was answered as saved before the emulated cut: the
                fisheye program answers the same when its save failed, so after
                its answer the harness asks whether UBIFS still writes."""
                nonlocal seq
                seq += 1
                start = time.monotonic()
                if not post(box, seq % 4, seq, cut_at, kind == 'ubifs') or kind == 'ubifs' and \
                        seq % 4 == 3 and request(box.port, '/cgi-bin/pc/ubifs.cgi?cut').endswith(b'\n1\n'):
                    return False
                took.append(time.monotonic() - start)
                for path, _, _ in KINDS[seq % 4][3]:
                    floor[path] = max(floor[path], seq)
                    acked.add(path)
                return True

            if kind == 'ubifs':
                # Saves until UBIFS has stopped writing, as a cut would stop it
                # (it is read-only since, and refuses the next save).
                # UBIFS picks at arming whether to cut at once, after up to a
                # minute or after up to 10,000 writes: a round of 24 saves
                # without a cut is checked all the same, then armed anew.
                for rounds in range(1, 161):
                    request(box.port, '/cgi-bin/pc/ubifs.cgi?arm' + NOSYNC)
                    while answered < 24 * rounds and save(None):
                        answered += 1
                    if request(box.port, '/cgi-bin/pc/ubifs.cgi?cut').endswith(b'\n1\n'):
                        break
                    if answered < 24 * rounds:
                        raise Fail('save %d not saved, but UBIFS did not cut' % seq)
                    r = request(box.port, '/cgi-bin/pc/ubifs.cgi?remount', timeout=120)
                    if not r.endswith(b'\nremounted\n'):
                        raise Fail('the volume did not mount again: %r' % r[-300:])
                else:
                    raise Fail('no emulated cut in 4000 saves')
                r = request(box.port, '/cgi-bin/pc/ubifs.cgi?remount', timeout=120)
                if not r.endswith(b'\nremounted\n'):
                    raise Fail('the volume did not mount again: %r' % r[-300:])
                after, cut_at, begin = 0, None, 0
            else:
                # Half of the cuts a few milliseconds after the k-th answer, half at
                # a random instant of about as many saves (inside a save or not).
                after = rng.randint(1, 8) if rng.random() < 0.5 else 0
                span = 8 * (statistics.mean(took) if took else 1.0)
                begin = time.monotonic()
                cut_at = None if after else begin + rng.uniform(0, span)
                while save(cut_at):
                    answered += 1
                    if answered == after:
                        time.sleep(rng.uniform(0, 0.004))
                        break
                box.cut()
                boxes.append(Box(work, work + '/root.cpio', image, '%s%d-boot%d' % (kind, chain, i), 1, kind))
            files = boxes[-1].state()
            for path, (k, expect, read) in FILES.items():
                verdict, found = judge(files.get(path), base[path], floor[path], seq, k, expect, read)
                if verdict != 'ok':
                    counts[verdict] += 1
                    keep(work, boxes[-1], '%s-%d-%d' % (kind, chain, i), files)
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
                    who, i, 'after answer %d' % after if after else
                    'at %.3f s' % (cut_at - begin) if cut_at else 'emulated', seq, answered,
                    [read(files[p]) if p in files and files[p] != base[p] else 0
                     for p, (_, _, read) in FILES.items()], sorted(now)), file=sys.stderr)
        out[kind, chain] = (counts, strays)
        print('powercut: %s chain %d done in %.0f s' % (kind, chain, time.monotonic() - START),
              file=sys.stderr)
    except Fail as e:
        out[kind, chain] = e
    finally:
        for box in boxes:
            box.cut()


def keep(work, box, name, files):
    """With ZRCAMCTL_POWERCUT_KEEP=DIR, what a failed check saw: the files and the
    boxes' consoles, in DIR/NAME."""
    if not os.environ.get('ZRCAMCTL_POWERCUT_KEEP'):
        return
    out = os.path.join(os.environ['ZRCAMCTL_POWERCUT_KEEP'], name)
    for path, data in files.items():
        os.makedirs(os.path.dirname(os.path.join(out, path)), exist_ok=True)
        with open(os.path.join(out, path), 'wb') as f:
            f.write(data)
    for log in os.listdir(work):
        if log.endswith('.log'):
            shutil.copy(os.path.join(work, log), out)


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
        args, kinds = sys.argv[2:], ['ext4']
        if '--disk' in args:
            kinds = [args.pop(args.index('--disk') + 1)]
            args.remove('--disk')
        if kinds == ['all']:
            kinds = ['ext4', 'cached', 'ubifs']
        if not set(kinds) <= {'ext4', 'cached', 'ubifs'}:
            raise Fail('no disk %s: ext4, cached, ubifs or all' % kinds[0])
        n = int(args[0]) if args else 10
        # Every disk's chains side by side: by default one per host processor
        # for one disk, one a disk for all three.
        chains = int(args[1]) if len(args) > 1 else 1 if len(kinds) > 1 else os.cpu_count() or 1
        chains = max(1, min(n, chains))
        out, seeded = {}, seed(work + '/settings.img', work)
        if 'ubifs' in kinds:  # laid over the factory files by run.sh at each boot
            os.makedirs(work + '/seed/powercut/seed/ZrConf')
            for path in seeded:
                shutil.copy('%s/%s' % (work, path.split('/')[-1]), work + '/seed/powercut/seed/' + path)
            with open(work + '/overlay-ubifs.cpio', 'wb') as f:
                f.write(open(work + '/overlay.cpio', 'rb').read())
                f.flush()
                subprocess.run('find . | sort | cpio -o -H newc --quiet -R 0:0', shell=True,
                               cwd=work + '/seed', stdout=f, check=True)
        threads = [threading.Thread(target=cuts, daemon=True,
                                    args=(work, seeded, n // chains + (c < n % chains), random.Random(),
                                          c, out, kind)) for kind in kinds for c in range(chains)]
        for t in threads:
            t.start()
        for t in threads:
            while t.is_alive():
                t.join(1)
        status = 0
        for kind in kinds:
            results = [out.get((kind, c)) for c in range(chains)]
            for e in results:
                if not isinstance(e, tuple):
                    raise e if isinstance(e, Fail) else Fail('a chain of cuts stopped early')
            counts = {k: sum(c[k] for c, _ in results) for k in results[0][0]}
            print('%s: cuts %d, torn %d, empty %d, acknowledged lost %d'
                  % (kind, n, counts['torn'], counts['empty'], counts['lost']))
            if any(counts.values()) or sum(s for _, s in results):
                status = 1
        return status
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
