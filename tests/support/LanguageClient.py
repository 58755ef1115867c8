"""A client of `contextdata serve`: sends messages, takes them, and checks that nothing else comes."""
import json
import queue
import subprocess
import threading

from Command import COMMAND, HANG, environment


def frame(body):
    body = body if isinstance(body, bytes) else json.dumps(body).encode()
    return b"Content-Length: %d\r\n\r\n%s" % (len(body), body)


class LanguageClient:
    """Usable in a `with` statement, which ends the server."""

    def __init__(self, snapshot, *options):
        self.process = subprocess.Popen([COMMAND, "serve", "--snapshot", snapshot, *options], stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, stderr=subprocess.PIPE, env=environment())
        self.arrived = queue.Queue()
        self.kept = []
        self.errors = b""
        self.last_id = 0
        self.threads = [threading.Thread(target=work) for work in (self.read_messages, self.read_errors)]
        for thread in self.threads:
            thread.start()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.end()
        self.process.kill()
        self.process.wait()
        for thread in self.threads:
            thread.join()
        self.process.stdout.close()
        self.process.stderr.close()

    def read_messages(self):
        """Anything but frames of JSON is put into the queue as an exception."""
        output = self.process.stdout
        try:
            while header := output.readline():
                name, length = header.split(b": ")
                if name != b"Content-Length" or output.readline() != b"\r\n":
                    raise ValueError(f"no frame: {header!r}")
                self.arrived.put(json.loads(output.read(int(length))))
            self.arrived.put(EOFError("the server has ended"))
        except ValueError as error:
            self.arrived.put(error)

    def read_errors(self):
        self.errors = self.process.stderr.read()

    # Sending.

    def send_bytes(self, data):
        try:
            self.process.stdin.write(data)
            self.process.stdin.flush()
        except BrokenPipeError:
            pass  # which the exit code tells

    def send(self, message):
        self.send_bytes(frame({"jsonrpc": "2.0", **message}))

    def notify(self, method, params=None):
        self.send({"method": method, "params": params})

    def begin(self, method, params=None):
        """Sends a request; its id."""
        self.last_id += 1
        self.send({"id": self.last_id, "method": method, "params": params})
        return self.last_id

    def end(self):
        """Closes the input; the exit code."""
        try:
            self.process.stdin.close()
        except BrokenPipeError:
            pass
        return self.process.wait(HANG)

    # Taking.

    def take(self, wanted):
        """The first message for which `wanted` is true; others are kept."""
        for message in self.kept:
            if wanted(message):
                self.kept.remove(message)
                return message
        while True:
            try:
                message = self.arrived.get(timeout=HANG)
            except queue.Empty:
                raise AssertionError(f"nothing came; so far: {self.kept}") from None
            if isinstance(message, Exception):
                raise AssertionError(f"{message}; before: {self.kept}; {self.errors!r}") from message
            if wanted(message):
                return message
            self.kept.append(message)

    def take_response(self, number):
        return self.take(lambda message: "method" not in message and message["id"] == number)

    def take_notification(self, method, wanted=lambda params: True):
        return self.take(lambda message: message.get("method") == method and wanted(message["params"]))["params"]

    # Both.

    def ask(self, method, params=None):
        """The result of a request."""
        response = self.take_response(self.begin(method, params))
        if "error" in response:
            raise AssertionError(response["error"])
        return response["result"]

    def start(self, options=None, **capabilities):
        """Both halves of the beginning; what the server can do. Answers take as long as they take unless the options
        say otherwise: on a slow machine the usual limit would cut some of them short."""
        abilities = self.ask("initialize", {"processId": None, "rootUri": None, "capabilities": capabilities,
                                            "initializationOptions": {"timeout": 0, **(options or {})}})
        self.notify("initialized", {})
        return abilities

    def open(self, uri, text, version=1):
        self.notify("textDocument/didOpen", {"textDocument": {"uri": uri, "languageId": "korval", "version": version,
                                                              "text": text}})
