#!/usr/bin/python3
"""Plays the page in Chromium and Firefox and holds it against what is promised of it.

check.py PAGE-FOLDER REFERENCE-FOLDER OUT-FOLDER [NAME...]: the references are T.png as ./movie --at T
makes them; pictures of every situation come to lie in OUT-FOLDER, to be looked at. Prints what was
measured, and fails on what is out of bounds. Needs a display and PulseAudio.
"""

import base64
import functools
import html
import http.server
import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time

import numpy

import browser

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
PROBE = str(ROOT / "build/release/tools/probe/libnimbrel_probe.so")
WIDTH, HEIGHT = 960, 89
MESA = ["--use-gl=angle", "--use-angle=gl-egl", "--ignore-gpu-blocklist"]
SOUND = ["--autoplay-policy=user-gesture-required"]
STATE = "document.body.dataset.state"
STATUS = "document.getElementById('status').textContent"
PLAY = "document.getElementById('play').click()"


class Failures(list):
    """What is out of bounds."""

    def expect(self, holds, text):
        print(("  " if holds else "  FAILS: ") + text, flush=True)
        if not holds:
            self.append(text)


class Check:
    def __init__(self, page, references, out):
        self.page, self.references, self.out = page, references, out
        self.failures = Failures()
        self.expect = self.failures.expect
        self.address = (page / "nimbrel.html").as_uri()
        self.server = self.serve(page / "site")

    @staticmethod
    def serve(folder):
        class Quiet(http.server.SimpleHTTPRequestHandler):
            def log_message(self, *_):
                pass

        server = http.server.ThreadingHTTPServer(
            ("127.0.0.1", 0), functools.partial(Quiet, directory=str(folder)))
        threading.Thread(target=server.serve_forever, daemon=True).start()
        return server

    def site(self):
        return f"http://127.0.0.1:{self.server.server_port}/index.html"

    def open(self, page, query="", state="ready"):
        page.open(self.address + query)
        page.until(f"{STATE} === '{state}'")

    def play(self, page, query=""):
        """Returns once the music is on."""
        self.open(page, query)
        page.run(PLAY)
        page.until("window.nimbrel && nimbrel.show && nimbrel.show.at && nimbrel.show.at.seconds > 0.5")

    def shot(self, page, name):
        page.screenshot(str(self.out / f"{page.name}-{name}.png"))

    def grab(self, page, name):
        """The display itself, where a browser's own screenshot cannot be asked for."""
        subprocess.run(["ffmpeg", "-v", "error", "-y", "-f", "x11grab", "-i", os.environ["DISPLAY"],
                        "-frames:v", "1", str(self.out / f"{page.name}-{name}.png")], check=True)

    def size(self):
        """What a server sends for all of the page, as far as web/make has compressed it."""
        site = self.page / "site"
        if not list(site.glob("*.br")):
            print("  the site's files are not compressed: web/make without --quick does it")
            return
        sent = [path for path in site.iterdir() if path.suffix not in (".br", ".gz")
                and path.name != "README" and "still" not in path.name]  # which is for who cannot play
        compressed = [path.with_name(path.name + ".br") for path in sent]
        bytes_sent = sum((br if br.exists() else path).stat().st_size for path, br in zip(sent, compressed))
        self.expect(bytes_sent <= 9_000_000, f"{bytes_sent / 1e6:.2f} MB on the way, of 9.00")

    # What is looked at, each in a browser of its own.

    def frames(self, page):
        """The frames of 24 moments are those of the film."""
        self.open(page)
        self.compare(page, sorted(float(path.stem) for path in self.references.glob("*.png")))

    def painted(self, page):
        """From a server, the pictures that the page paints itself are those of Data/."""
        begin = time.monotonic()
        page.open(self.site())
        page.until(f"{STATE} === 'ready'", 300)
        print(f"  {page.name}: ready to play after {time.monotonic() - begin:.1f} s")
        self.expect(page.run("page.index.filter(({painted}) => painted).length") == 5,
                    f"{page.name}: paints five pictures")
        self.compare(page, [11.24, 46.03, 95.73])

    def compare(self, page, moments):
        page.run("(window.taken = [], nimbrel.pictures(%s, (picture) => taken.push(picture))"
                 ".then(() => { window.whole = true; }), 0)" % moments)
        page.until("window.whole", 900)
        worst, most = 0.0, 0.0
        for number, moment in enumerate(moments):
            text = page.run(TO_BASE64 % f"taken[{number}].pixels")
            mean, far = difference(reference(self.references / f"{moment:g}.png"), picture(text))
            print(f"  {moment:7.2f} s: mean {mean:.4f} of 255, off by more than 8: {far:.4f} %")
            worst, most = max(worst, mean), max(most, far)
        self.expect(worst <= 0.01 and most <= 0.01,
                    f"{page.name}: {len(moments)} moments, worst mean {worst:.4f}, most pixels off {most:.4f} %")

    def live(self, page):
        """Half a minute of the show: music and picture together, nothing said, no failure in the log."""
        self.play(page, "?log")
        self.expect(not page.run("nimbrel.music.silent"), f"{page.name}: the music sounds")
        apart, undrawn = [], []
        begin, frames = time.monotonic(), page.run("nimbrel.show.frames")
        while time.monotonic() < begin + 30:
            apart.append(page.run(APART))
            undrawn.append(page.run("nimbrel.show.at.undrawn"))
            time.sleep(0.25)
        started = page.run("nimbrel.show.firstFrame - nimbrel.show.asked")
        print(f"  {page.name}: the first frame {started:.0f} ms after the click")
        rate = (page.run("nimbrel.show.frames") - frames) / (time.monotonic() - begin)
        self.shot(page, "live")
        self.expect(max(map(abs, apart)) <= 40,
                    f"{page.name}: music and picture {min(apart):.0f} to {max(apart):.0f} ms apart")
        print(f"  {page.name}: {rate:.1f} frames a second")
        self.expect(1 <= max(undrawn) <= 2, f"{page.name}: at most {max(undrawn)} frames wait to be drawn")
        page.run("(nimbrel.show.order('errors'), 0)")
        page.until("nimbrel.show.errors")
        self.expect(page.run("nimbrel.show.errors") == [0, 0], f"{page.name}: glGetError is 0")
        rows = page.run("[...document.querySelectorAll('#log tbody tr')].map((row) => row.textContent)")
        self.expect(len(rows) > 20 and not any("ERROR" in row for row in rows),
                    f"{page.name}: {len(rows)} rows in the log, none of them an ERROR")
        self.expect(not page.said(), f"{page.name}: the console says nothing {page.said()}")
        foreign = [url for url in page.requests() if not url.startswith(("file:", "data:", "blob:", "about:"))]
        self.expect(not foreign, f"{page.name}: nothing foreign is asked for {foreign}")

    def escape(self, page):
        """Escape ends the show, which can then be played again."""
        self.play(page)
        page.press("Escape", 27)
        page.until(f"{STATE} === 'over'", 60)
        self.shot(page, "escape")
        page.run(PLAY)
        page.until(f"{STATE} === 'playing' && nimbrel.show.at && nimbrel.show.at.seconds > 1", 120)
        self.shot(page, "again")
        self.expect(True, f"{page.name}: Escape ends the show, and it plays again without a reload")
        page.press("Escape", 27)
        page.until(f"{STATE} === 'over'", 60)
        page.run(PLAY)
        page.until("nimbrel.show.at && !nimbrel.show.over", 120)
        page.run("(nimbrel.show.finish('At once.'), 0)")
        time.sleep(2)
        self.expect(page.run("nimbrel.music.source === null && %s === 'At once.'" % STATUS),
                    f"{page.name}: ended before the music has begun, it stays silent")

    def hidden(self, page):
        """On a hidden page the show waits; music and picture go on together."""
        self.play(page)
        page.run(HIDE % "true")
        time.sleep(1)
        before = page.run("nimbrel.show.at.seconds")
        self.shot(page, "hidden")
        time.sleep(4)
        waited = page.run("nimbrel.show.at.seconds") - before
        page.run(HIDE % "false")
        time.sleep(3)
        apart = page.run(APART)
        self.shot(page, "shown-again")
        self.expect(abs(waited) < 0.1, f"{page.name}: hidden for 5 s the show moved on by {waited:.2f} s")
        self.expect(page.run("nimbrel.show.at.seconds") > before + 1 and abs(apart) <= 40,
                    f"{page.name}: shown again it goes on, {apart:.0f} ms apart")

    def sizes(self, page):
        """Small and large, on a phone, and full screen, which Escape leaves together with the show."""
        self.open(page)
        self.at_sizes(page, "ready")
        page.run(PLAY)
        page.until("nimbrel.show && nimbrel.show.at && nimbrel.show.at.seconds > 4")
        self.at_sizes(page, "playing")
        if page.name == "Firefox":
            return  # it denies full screen where there is no window manager
        page.run("(document.getElementById('full').click(), 0)")
        page.until("document.fullscreenElement && document.fullscreenElement.id === 'stage'")
        time.sleep(2)
        self.grab(page, "full-screen")
        page.run("document.exitFullscreen()")
        page.until(f"{STATE} === 'over'", 60)
        self.expect(True, f"{page.name}: leaving full screen ends the show")

    def at_sizes(self, page, state):
        for name, width, height, phone in SIZES:
            page.resize(width, height, phone)
            time.sleep(1)
            self.shot(page, f"{name}-{state}")
            room = page.run("[innerWidth - document.documentElement.scrollWidth,"
                            " innerHeight - document.documentElement.scrollHeight]")
            self.expect(min(room) >= 0, f"{page.name}, {state}: nothing sticks out at {width} x {height}")
        page.resize(1000, 600)

    def loss(self, page):
        """A lost context is said, and the show can be played again."""
        self.open(page)
        page.run("(window.lose = true, 0)")
        page.run(PLAY)
        page.until("nimbrel.show && nimbrel.show.at && nimbrel.show.at.seconds > 0.5")
        page.run("(nimbrel.show.order('lose'), 0)")
        page.until(f"{STATE} === 'over'", 60)
        self.shot(page, "lost-context")
        self.expect("took the picture away" in page.run(STATUS), f"{page.name}: says that the picture is lost")

    def moment(self, page):
        """?at shows one frame."""
        self.open(page, "?at=97&log", "playing")
        page.until(f"{STATUS} === 'The frame at 97 s.'", 60)
        self.shot(page, "at-97")
        top, bottom = page.run("[document.getElementById('stage').getBoundingClientRect().top,"
                               " innerHeight - document.getElementById('log').getBoundingClientRect().bottom]")
        self.expect(top > 0 and bottom == 0, f"{page.name}: ?at=97 shows its frame, the log below it")

    def mute(self, page):
        """Where nothing may sound, silence keeps the time."""
        self.open(page)
        page.run("(window.AudioContext.prototype.resume = () => Promise.reject(new Error('blocked')),"
                 "Object.defineProperty(AudioContext.prototype, 'state', {get: () => 'suspended'}), 0)")
        page.run(PLAY)
        page.until("nimbrel.show && nimbrel.show.at && nimbrel.show.at.seconds > 1")
        self.shot(page, "blocked-sound")
        self.expect("no sound" in page.run(STATUS), f"{page.name}: blocked sound is said, and the show goes on")

    def unable(self, page):
        """Without WebGL 2 the page says so and shows a still."""
        self.open(page, "", "unable")
        time.sleep(1)
        self.shot(page, "no-webgl")
        self.expect("no WebGL 2" in page.run(STATUS), f"{page.name}: says that there is no WebGL 2")

    def gallery(self, page):
        """Each of the gallery's programs draws its native picture, runs, and ends by Escape."""
        for line in (ROOT / "gallery/programs").read_text().splitlines():
            if line[:1].isdigit():
                self.program(page, *line.split()[:2])

    def program(self, page, name, moment):
        page.open((self.page / "gallery" / f"gallery_{name}.html").as_uri())
        page.until(f"{STATE} === 'ready'", 300)
        drawn = self.run_aside(page, f"environment: {{GALLERY_PICTURE: '/p.ppm', GALLERY_MOMENT: '{moment}'}}")
        mean, far = difference(ppm((self.references / "gallery" / f"{name}.ppm").read_bytes()), ppm(drawn))
        self.expect(mean <= 0.01 and far <= 0.01,
                    f"{page.name}: {name}: mean {mean:.4f} of 255, off by more than 8: {far:.4f} %")
        page.run(PLAY)
        page.until("nimbrel.show && nimbrel.show.frames > 5", 120)
        self.shot(page, f"gallery-{name}")
        page.press("Escape", 27)
        page.until(f"{STATE} === 'over'", 60)

    def run_aside(self, page, how):
        """The file that the program leaves as /p.ppm."""
        page.run("(window.ended = null, nimbrel.run({%s, taken: '/p.ppm', step: 0})"
                 ".then((result) => { ended = result; }, (error) => { ended = {log: String(error)}; }), 0)" % how)
        page.until("window.ended", 300)
        errors = re.findall(r"ERROR.*", re.sub("<.*?>", " ", page.run("ended.log")))
        self.expect(not errors and page.run("Boolean(ended.file)"), f"{page.name}: errors in the log: {errors}")
        return base64.b64decode(page.run(TO_BASE64 % "ended.file"))

    def scene(self, page):
        """A scene of one's own, as docs/ tell to make it, draws the picture that docs/ show of it."""
        self.open_file(page, self.page / "scene" / "scene.html")
        drawn = ppm(self.run_aside(page, "words: ['/p.ppm']"))
        mean, far = difference(image(ROOT / "docs/make-your-own-scene.png", 640, 360), drawn)
        self.expect(mean <= 0.5 and far <= 1,
                    f"{page.name}: the scene: mean {mean:.4f} of 255, off by more than 8: {far:.4f} %")
        page.run(PLAY)
        page.until("nimbrel.show && nimbrel.show.frames > 5", 120)
        self.shot(page, "scene")

    def open_file(self, page, path):
        page.open(path.as_uri())
        page.until(f"{STATE} === 'ready'", 300)

    def damage(self, page):
        """Damaged and missing files are rows of the log and not drawn, as natively; the show goes on."""
        self.open(page, "?log")
        page.run("(%s, 0)" % ", ".join(DAMAGE[how][0] % path for path, how in DAMAGED.items()))
        moment = 95.73
        page.run("(window.taken = [], nimbrel.pictures([%g], (picture) => taken.push(picture))"
                 ".then(() => { window.whole = true; }), 0)" % moment)
        page.until("window.whole", 300)
        rows = page.run("[...document.querySelectorAll('#log tr.error')].map((row) =>"
                        " [...row.cells].map((cell) => cell.textContent).join(' '))")
        expected, native = self.damaged_natively(moment)
        self.expect(sorted(rows) == sorted(expected), f"{page.name}: rows {sorted(rows)}, natively {sorted(expected)}")
        mean, far = difference(native, picture(page.run(TO_BASE64 % "taken[0].pixels")))
        self.expect(mean <= 0.01 and far <= 0.01,
                    f"{page.name}: without them: mean {mean:.4f} of 255, off by more than 8: {far:.4f} %")
        page.run(PLAY)
        page.until("nimbrel.show && nimbrel.show.at && nimbrel.show.at.seconds > 2")
        self.shot(page, "damage")

    @staticmethod
    def damaged_natively(moment):
        """The ERROR rows of the log, and the frame."""
        with tempfile.TemporaryDirectory() as folder:
            shutil.copytree(ROOT / "Data", pathlib.Path(folder) / "Data")
            for path, how in DAMAGED.items():
                DAMAGE[how][1](pathlib.Path(folder) / path)
            subprocess.run([ROOT / "build/release/tools/movie/nimbrel_film", "--at", str(moment), "frame.png"],
                           check=True, cwd=folder, capture_output=True)
            subprocess.run([ROOT / "build/release/demo/nimbrel"], check=True, cwd=folder,
                           env={**os.environ, "LD_PRELOAD": PROBE, "ALSA_CONFIG_PATH": "/dev/null",
                                "NIMBREL_PROBE_TIMES": "0"})
            rows = re.findall(r"<tr.*?</tr>", (pathlib.Path(folder) / "Vell_log.html").read_text(), re.S)
            cells = [[html.unescape(re.sub("<.*?>", "", cell)).strip() for cell in re.findall(r"<td.*?</td>", row, re.S)]
                     for row in rows]
            return ([" ".join(row) for row in cells if "ERROR" in row],
                    image(pathlib.Path(folder) / "frame.png", WIDTH, HEIGHT))

    def speed(self, page):
        """The same frames as natively, one every second and a half of the show: how fast, and how long to the first."""
        native = Native(1.5)
        self.open(page, "?unpaced&step=1.5")
        page.run("(new PerformanceObserver((list) => { (window.tasks ||= []).push(...list.getEntries()"
                 ".map(({duration}) => duration)); }).observe({type: 'longtask', buffered: true}), 0)")
        page.run(PAUSES)
        page.run(PLAY)
        page.until("nimbrel.show && nimbrel.show.firstFrame", 120)
        spent, begin = page.processor_seconds(), page.run("nimbrel.show.firstFrame")
        page.until(f"{STATE} === 'over'", 300)
        frames, seconds = page.run("nimbrel.show.frames"), page.run("(nimbrel.show.at.wall - %f) / 1000" % begin)
        rate, spent = (frames - 1) / seconds, (page.processor_seconds() - spent) / frames
        started = page.run("(nimbrel.show.firstFrame - nimbrel.show.asked) / 1000")
        print(f"  {page.name}: {frames} frames, {rate:.1f} a second, {spent * 1000:.1f} ms of the processor each;"
              f" natively {native.frames}, {native.rate:.1f}, {native.processor:.1f} ms")
        print(f"  {page.name}: {rate / native.rate:.2f} of the native rate;"
              f" by the processor's time {native.processor / spent / 1000:.2f}")
        print(f"  {page.name}: the first frame {started:.2f} s after the click, natively {native.start:.2f} s:"
              f" {started / native.start:.2f} times")
        print(f"  {page.name}: the page's longest pause {page.run('longestPause'):.0f} ms,"
              f" its longest tasks {sorted(page.run('window.tasks || []'))[-3:]} ms")

    def slow(self, page):
        """From a server over a slow line: how much has come, and how long the rest takes."""
        page.throttle(1_500_000)
        page.protocol.ask("Page.navigate", url=self.site())
        page.until("document.readyState !== 'loading' && / s left/.test(%s)" % STATUS, 60)
        self.shot(page, "slow-line")
        self.expect(True, f"{page.name}: on a slow line it says \"{page.run(STATUS)}\"")
        page.throttle(-1)
        page.until(f"{STATE} === 'ready'", 120)
        self.expect(not page.said(), f"{page.name}: from a server the console says nothing {page.said()}")


TO_BASE64 = ("(() => { const bytes = %s; let text = '';"
             "for (let i = 0; i < bytes.length; i += 8192)"
             " text += String.fromCharCode(...bytes.subarray(i, i + 8192));"
             "return btoa(text); })()")
PAUSES = ("(() => { window.longestPause = 0; let last = performance.now(); setInterval(() => {"
          "const now = performance.now(); longestPause = Math.max(longestPause, now - last - 5); last = now; }, 5);"
          "return 0; })()")
# The page's pack is changed as the file is: each PNG lies there under the same name with other bytes.
ENTRY = "page.index.find(({path}) => path === '%s')"
DAMAGE = {
    "cut": (ENTRY + ".size >>= 1", lambda path: os.truncate(path, path.stat().st_size // 2)),
    "overwritten": ("((file) => new Uint8Array(nimbrel.files.pack, file.offset, 40).fill(120))(" + ENTRY + ")",
                    lambda path: path.write_bytes(b"x" * 40 + path.read_bytes()[40:])),
    "missing": ("page.index.splice(page.index.findIndex(({path}) => path === '%s'), 1)",
                lambda path: path.unlink())}
DAMAGED = {
    "Data/Gfx/City/palace.png": "cut", "Data/Gfx/City/roof.jpg": "overwritten", "Data/Gfx/Wisp/red.png": "overwritten",
    "Data/Gfx/Fish/fish.xt3dstatic": "overwritten", "Data/Gfx/Wisp/billboard.frag": "missing",
    "Data/Gfx/City/sky/zneg.jpg": "missing"}

# Milliseconds by which the picture is ahead of the music at one moment of the wall's clock.
APART = ("(() => { const {seconds, wall} = nimbrel.show.at;"
         "return (seconds - nimbrel.music.heardAt(wall)) * 1000; })()")
HIDE = ("(Object.defineProperty(document, 'hidden', {get: () => %s, configurable: true}),"
        "document.dispatchEvent(new Event('visibilitychange')), 0)")
SIZES = [("large", 2560, 1440, False), ("middle", 1280, 720, False), ("wide", 1900, 600, False),
         ("narrow", 500, 700, False), ("phone", 390, 800, True), ("phone-lying", 800, 390, True)]
CHROMIUM_ONLY = {"slow"}


def picture(text):
    pixels = numpy.frombuffer(base64.b64decode(text), numpy.uint8)
    return pixels.reshape(HEIGHT, WIDTH, 4)[::-1, :, :3].astype(int)


def reference(path):
    return image(path, WIDTH, HEIGHT)


def image(path, width, height):
    raw = subprocess.run(
        ["ffmpeg", "-v", "error", "-i", str(path), "-f", "rawvideo", "-pix_fmt", "rgb24", "-"],
        check=True, capture_output=True).stdout
    return numpy.frombuffer(raw, numpy.uint8).reshape(height, width, 3).astype(int)


def ppm(content):
    kind, width, height, _, pixels = content.split(None, 4) if content else (b"", 0, 0, 0, b"")
    pixels = content[len(content) - 3 * int(width) * int(height):]  # which may begin like a blank
    return numpy.frombuffer(pixels, numpy.uint8).reshape(int(height), int(width), 3).astype(int)


class Native:
    """The demo itself, one frame every `step` seconds, as fast as it draws."""

    def __init__(self, step):
        with tempfile.TemporaryDirectory() as folder:
            report, durations = pathlib.Path(folder) / "report", pathlib.Path(folder) / "frames"
            begin = time.monotonic()
            demo = subprocess.Popen(
                [ROOT / "build/release/demo/nimbrel"], cwd=ROOT, stdout=subprocess.DEVNULL,
                env={**os.environ, "LD_PRELOAD": PROBE,
                     "ALSA_CONFIG_PATH": "/dev/null", "NIMBREL_PROBE_STEP": str(step),
                     "NIMBREL_PROBE_REPORT": str(report), "NIMBREL_PROBE_FRAMES": str(durations)})
            while not report.exists() and demo.poll() is None:
                time.sleep(0.005)
            self.start = time.monotonic() - begin
            demo.wait()
            rows = numpy.loadtxt(durations)[1:]
        self.frames = len(rows) + 1
        self.rate = 1000 / rows[:, 1].mean()
        self.processor = rows[:, 2].mean()


def difference(expected, actual):
    """Mean difference of a channel, and how many of a hundred pixels are off by more than 8."""
    apart = abs(expected - actual)
    return apart.mean(), (apart.max(axis=2) > 8).mean() * 100


def start(name, situation):
    if name == "Chromium":
        return browser.Chromium(*(["--disable-3d-apis"] if situation == "unable" else MESA), *SOUND)
    return browser.Firefox({"webgl.disabled": situation == "unable"})


def main():
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))  # by way of the browsers' ends
    folders = [pathlib.Path(word).resolve() for word in sys.argv[1:4]]
    check = Check(*folders)
    check.size()
    situations = sys.argv[4:] or [
        "frames", "painted", "live", "escape", "hidden", "sizes", "loss", "moment", "mute", "unable", "slow",
        "gallery", "scene", "damage", "speed"]
    for situation in situations:
        print(f"{situation}: {getattr(check, situation).__doc__}", flush=True)
        for name in ("Chromium", "Firefox"):
            if name == "Firefox" and situation in CHROMIUM_ONLY:
                continue
            try:
                with start(name, situation) as page:
                    getattr(check, situation)(page)
            except browser.BrowserError as error:
                check.expect(False, f"{name}: {situation}: {error}")
    print(f"{len(check.failures)} failures.")
    sys.exit(1 if check.failures else 0)


main()
