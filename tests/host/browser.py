"""A headless Chromium, driven over its debugging pipe with nothing but Python's own library."""

import json
import shutil
import subprocess
import tempfile

EXECUTABLE = shutil.which("chromium")
FLAGS = ["--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-sync",
         "--disable-background-networking", "--disable-component-update", "--hide-scrollbars",
         "--remote-debugging-pipe"]


class Browser:
    """Remembers what a page complains of and asks the network for, from its opening on."""

    def __enter__(self):
        self.profile = tempfile.mkdtemp()
        # The browser reads commands from descriptor 3 and answers on 4.
        self.process = subprocess.Popen(["sh", "-c", 'exec "$@" 3<&0 4>&1 </dev/null >/dev/null 2>&1', "sh", EXECUTABLE, *FLAGS,
                                         f"--user-data-dir={self.profile}", "about:blank"],
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.last, self.session = 0, None
        self.complaints, self.requests, self.events = [], [], []
        target = next(target for target in self.call("Target.getTargets")["targetInfos"] if target["type"] == "page")
        self.session = self.call("Target.attachToTarget", targetId=target["targetId"], flatten=True)["sessionId"]
        for domain in ("Page", "Runtime", "Network", "Log"):
            self.call(f"{domain}.enable")
        return self

    def __exit__(self, *_):
        self.session = None
        try:
            self.call("Browser.close")
            self.process.wait(timeout=10)
        except (OSError, ValueError, subprocess.TimeoutExpired):
            self.process.kill()
            self.process.wait()
        self.process.stdin.close()
        self.process.stdout.close()
        shutil.rmtree(self.profile, ignore_errors=True)

    def receive(self):
        message = bytearray()
        # The end of the stream is no message either: the browser has gone.
        while (byte := self.process.stdout.read(1)) not in (b"\0", b""):
            message += byte
        return json.loads(message)

    def take(self, event):
        method, parameters = event["method"], event.get("params", {})
        self.events.append(method)
        if method in ("Runtime.exceptionThrown", "Log.entryAdded"):
            self.complaints.append(json.dumps(parameters))
        elif method == "Runtime.consoleAPICalled":
            self.complaints.append(json.dumps(parameters["args"]))
        elif method == "Network.requestWillBeSent":
            self.requests.append(parameters["request"]["url"])

    def call(self, method, **parameters):
        self.last += 1
        message = {"id": self.last, "method": method, "params": parameters}
        if self.session:
            message["sessionId"] = self.session
        self.process.stdin.write(json.dumps(message).encode() + b"\0")
        self.process.stdin.flush()
        while True:
            answer = self.receive()
            if answer.get("id") == self.last:
                if "error" in answer:
                    raise RuntimeError(f"{method}: {answer['error']}")
                return answer["result"]
            if "method" in answer:
                self.take(answer)

    def open(self, path, width=1100, height=900, dark=False, scripts=True):
        self.complaints, self.requests, self.events = [], [], []
        self.call("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=1, mobile=width < 600)
        self.call("Emulation.setEmulatedMedia",
                  features=[{"name": "prefers-color-scheme", "value": "dark" if dark else "light"}])
        self.call("Emulation.setScriptExecutionDisabled", value=not scripts)
        self.call("Page.navigate", url=path.resolve().as_uri())
        while "Page.loadEventFired" not in self.events:
            event = self.receive()
            if "method" in event:
                self.take(event)
        if scripts:
            # Parts with content-visibility have no text before they are drawn.
            self.call("Runtime.evaluate", awaitPromise=True,
                      expression="new Promise(done => requestAnimationFrame(() => requestAnimationFrame(done)))")

    def ask(self, expression):
        """The value of an expression of JavaScript in the page."""
        answer = self.call("Runtime.evaluate", expression=expression, returnByValue=True)
        if "exceptionDetails" in answer:
            raise RuntimeError(json.dumps(answer["exceptionDetails"]))
        return answer["result"].get("value")

    def click(self, selector):
        """With the mouse, as a user does, at the middle of what is there or of its first line."""
        x, y = self.ask(f"(() => {{ const element = document.querySelector({json.dumps(selector)});"
                        " element.scrollIntoView({block: 'center'}); const box = element.getClientRects()[0];"
                        " return [box.x + box.width / 2, box.y + box.height / 2]; })()")
        for kind in ("mousePressed", "mouseReleased"):
            self.call("Input.dispatchMouseEvent", type=kind, x=x, y=y, button="left", clickCount=1)
