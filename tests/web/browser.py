"""Chromium and Firefox, driven through the protocols that they bring: DevTools and WebDriver BiDi."""

import base64
import json
import os
import pathlib
import shutil
import signal
import subprocess
import tempfile
import time
import urllib.request

import websocket


patience = 120  # seconds for an answer


class BrowserError(Exception):
    """What a browser answers instead of what was asked for."""


class Protocol:
    """Commands and events as JSON over a socket."""

    def __init__(self, address):
        self.socket = websocket.create_connection(address, timeout=patience, suppress_origin=True)
        self.last = 0
        self.events = []

    def ask(self, method, **parameters):
        return self.send({"method": method, "params": parameters})

    def send(self, command):
        self.last += 1
        self.socket.send(json.dumps({"id": self.last, **command}))
        while True:
            try:
                message = json.loads(self.socket.recv())
            except websocket.WebSocketTimeoutException as error:
                raise BrowserError(f"{command['method']}: no answer in {patience} s") from error
            if message.get("id") != self.last:
                self.events.append(message)
            elif "error" in message:
                raise BrowserError(f"{command['method']}: {message['error']} {message.get('message', '')}")
            else:
                return message.get("result", {})


class Browser:
    """One browser with one page. What it says on its console is kept in `said`."""

    def __init__(self, command, environment=None):
        self.profile = tempfile.mkdtemp(prefix="nimbrel_web_")
        self.process = subprocess.Popen(
            [part.replace("@profile@", self.profile) for part in command], start_new_session=True,
            stdout=subprocess.DEVNULL, stderr=open(os.path.join(self.profile, "stderr"), "w"),
            env={**os.environ, "HOME": self.profile, **(environment or {})})

    def __enter__(self):
        return self

    def __exit__(self, *_):
        os.killpg(self.process.pid, signal.SIGKILL)
        self.process.wait()
        shutil.rmtree(self.profile, ignore_errors=True)

    def wait_for(self, look, seconds=60):
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            try:
                found = look()
                if found:
                    return found
            except (OSError, BrowserError):
                pass
            time.sleep(0.1)
        raise BrowserError("the browser does not answer")

    def processor_seconds(self):
        """Of all its processes, which share a session."""
        spent = 0
        for path in pathlib.Path("/proc").glob("[0-9]*/stat"):
            try:
                numbers = path.read_text().rsplit(")", 1)[1].split()
            except OSError:
                continue  # ended meanwhile
            if int(numbers[3]) == self.process.pid:
                spent += int(numbers[11]) + int(numbers[12])
        return spent / os.sysconf("SC_CLK_TCK")

    def until(self, script, seconds=120):
        """Waits until a JavaScript expression is true in the page, and returns it."""
        return self.wait_for(lambda: self.run(script), seconds)


class Chromium(Browser):
    name = "Chromium"

    def __init__(self, *flags):
        super().__init__([
            "chromium", "--no-sandbox", "--user-data-dir=@profile@", "--remote-debugging-port=0",
            "--no-first-run", "--disable-background-networking", "--disable-component-update",
            "--disable-default-apps", "--disable-sync", "--disable-search-engine-choice-screen",
            "--window-size=1000,700", "--window-position=0,0", "--allow-file-access-from-files",
            *flags, "about:blank"])
        port = self.wait_for(lambda: open(os.path.join(self.profile, "DevToolsActivePort")).readline())
        targets = f"http://127.0.0.1:{int(port)}/json"
        page = self.wait_for(lambda: [
            target for target in json.load(urllib.request.urlopen(targets)) if target["type"] == "page"])[0]
        self.protocol = Protocol(page["webSocketDebuggerUrl"])
        for domain in ("Page", "Runtime", "Log", "Network"):
            self.protocol.ask(f"{domain}.enable")

    def open(self, address):
        self.protocol.ask("Page.navigate", url=address)
        self.until("document.readyState !== 'loading' && location.href !== 'about:blank'")

    def run(self, script):
        answer = self.protocol.ask(
            "Runtime.evaluate", expression=script, awaitPromise=True, returnByValue=True, userGesture=True)
        if "exceptionDetails" in answer:
            raise BrowserError(str(answer["exceptionDetails"])[:500])
        return answer["result"].get("value")

    def screenshot(self, path):
        picture = self.protocol.ask("Page.captureScreenshot", format="png")["data"]
        with open(path, "wb") as file:
            file.write(base64.b64decode(picture))

    def press(self, key, code):
        for kind in ("rawKeyDown", "keyUp"):
            self.protocol.ask("Input.dispatchKeyEvent", type=kind, key=key, code=key, windowsVirtualKeyCode=code)

    def resize(self, width, height, phone=False):
        self.protocol.ask("Emulation.setDeviceMetricsOverride", width=width, height=height,
                          deviceScaleFactor=2 if phone else 1, mobile=phone)

    def throttle(self, bytes_per_second):
        self.protocol.ask("Network.emulateNetworkConditions", offline=False, latency=100,
                          downloadThroughput=bytes_per_second, uploadThroughput=bytes_per_second)

    def said(self):
        """Errors and warnings of the console so far."""
        self.run("0")
        found = []
        for event in self.protocol.events:
            parameters = event.get("params", {})
            if event["method"] == "Runtime.consoleAPICalled" and parameters["type"] in ("error", "warning"):
                found.append(" ".join(str(word.get("value", "")) for word in parameters["args"]))
            if event["method"] == "Runtime.exceptionThrown":
                found.append(str(parameters["exceptionDetails"])[:500])
            if event["method"] == "Log.entryAdded" and parameters["entry"]["level"] == "error":
                found.append(parameters["entry"]["text"] + " " + parameters["entry"].get("url", ""))
        return found

    def requests(self):
        """Addresses that were asked for so far."""
        self.run("0")
        return [event["params"]["request"]["url"] for event in self.protocol.events
                if event["method"] == "Network.requestWillBeSent"]


class Firefox(Browser):
    name = "Firefox"

    PREFERENCES = {
        "remote.active-protocols": 1,
        "remote.prefs.recommended": True,
        "media.autoplay.default": 0,
        "webgl.force-enabled": True,
        "app.update.enabled": False,
        "browser.shell.checkDefaultBrowser": False,
        "datareporting.policy.dataSubmissionEnabled": False,
        "browser.aboutwelcome.enabled": False,
        "toolkit.telemetry.reportingpolicy.firstRun": False,
    }

    def __init__(self, preferences=None):
        super().__init__(["true"])
        self.process.wait()
        with open(os.path.join(self.profile, "user.js"), "w") as file:
            for name, value in {**self.PREFERENCES, **(preferences or {})}.items():
                file.write(f"user_pref({json.dumps(name)}, {json.dumps(value)});\n")
        self.process = subprocess.Popen(
            ["firefox-esr", "--remote-debugging-port=0", "--profile", self.profile, "--no-remote",
             "--width", "1000", "--height", "700", "about:blank"],
            start_new_session=True, stdout=subprocess.DEVNULL,
            stderr=open(os.path.join(self.profile, "stderr"), "w"),
            env={**os.environ, "HOME": self.profile, "MOZ_DISABLE_CONTENT_SANDBOX": "1"})
        address = self.wait_for(self.address)
        self.protocol = Protocol(address + "/session")
        self.protocol.ask("session.new", capabilities={})
        self.protocol.ask("session.subscribe", events=["log.entryAdded", "network.beforeRequestSent"])
        self.context = self.protocol.ask("browsingContext.getTree")["contexts"][0]["context"]

    def address(self):
        with open(os.path.join(self.profile, "stderr")) as file:
            for line in file:
                if "WebDriver BiDi listening on" in line:
                    return line.split()[-1]
        return None

    def open(self, address):
        self.protocol.ask("browsingContext.navigate", context=self.context, url=address, wait="interactive")

    def run(self, script):
        answer = self.protocol.ask(
            "script.evaluate", expression=f"Promise.resolve({script}).then(JSON.stringify)",
            target={"context": self.context}, awaitPromise=True, userActivation=True)
        if answer["type"] == "exception":
            raise BrowserError(answer["exceptionDetails"]["text"])
        return json.loads(answer["result"]["value"]) if "value" in answer["result"] else None

    def screenshot(self, path):
        picture = self.protocol.ask("browsingContext.captureScreenshot", context=self.context)["data"]
        with open(path, "wb") as file:
            file.write(base64.b64decode(picture))

    def press(self, key, _code):
        value = {"Escape": "\ue00c"}.get(key, key)
        self.protocol.ask("input.performActions", context=self.context, actions=[
            {"type": "key", "id": "keyboard",
             "actions": [{"type": "keyDown", "value": value}, {"type": "keyUp", "value": value}]}])

    def resize(self, width, height, phone=False):
        self.protocol.ask("browsingContext.setViewport", context=self.context,
                          viewport={"width": width, "height": height})

    def said(self):
        self.run("0")
        return [event["params"]["text"] for event in self.protocol.events
                if event.get("method") == "log.entryAdded" and event["params"]["level"] in ("error", "warn")]

    def requests(self):
        self.run("0")
        return [event["params"]["request"]["url"] for event in self.protocol.events
                if event.get("method") == "network.beforeRequestSent"]
