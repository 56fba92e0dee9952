#!/usr/bin/env python3
"""Asks the server of the page over its own socket, as browsers and attackers would.

    test_server.py GROUP ZONE_DETECTOR
"""
import http.client
import json
import os
import pathlib
import signal
import socket
import subprocess
import sys
import tempfile
import unittest

PROGRAM = ""
DOCUMENT = b'{"ZoneDetector": {}}\n'
FRAME = bytes(range(256)) * 4096
SECRET = b"not for the page"


class Server:
    """The command, serving a page of two files and a link, a document and a frame."""

    def __init__(self, *words, page=True):
        self.folder = tempfile.TemporaryDirectory()
        self.path = pathlib.Path(self.folder.name)
        (self.path / "page" / "assets").mkdir(parents=True)
        if page:
            (self.path / "page" / "index.html").write_text("<!doctype html>", encoding="utf-8")
        (self.path / "page" / "assets" / "engine.wasm").write_bytes(b"\0asm")
        (self.path / "secret").write_bytes(SECRET)
        (self.path / "page" / "link").symlink_to(self.path / "secret")
        (self.path / "site.json").write_bytes(DOCUMENT)
        (self.path / "scan.bin").write_bytes(FRAME)
        (self.path / "empty.bin").write_bytes(b"")
        words = words or ("site.json", "scan.bin", "empty.bin")
        self.process = subprocess.Popen([PROGRAM, "studio", "--no-browser", "--page", "page", *words], cwd=self.path,
                                        stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        self.link = self.process.stdout.readline().strip()
        if self.link:
            _, _, host, self.token, _ = self.link.split("/")
            self.port = int(host.split(":")[1])

    def ask(self, link="", method="GET", headers=None, body=None, token=None):
        connection = http.client.HTTPConnection("127.0.0.1", self.port, timeout=20)
        try:
            connection.request(method, f"/{token or self.token}/{link}", body=body, headers=headers or {})
            answer = connection.getresponse()
            return answer.status, answer.read(), dict(answer.getheaders())
        finally:
            connection.close()

    def status(self, *words, **named):
        return self.ask(*words, **named)[0]

    def say(self, request):
        """Sends bytes as they are; the status of the answer, or 0 when the connection was closed without one."""
        with socket.create_connection(("127.0.0.1", self.port), timeout=20) as stream:
            stream.sendall(request)
            line = stream.makefile("rb").readline()
        return int(line.split()[1]) if line else 0

    def end(self, number=signal.SIGINT):
        self.process.send_signal(number)
        code = self.process.wait(timeout=30)
        errors = self.process.stderr.read()
        self.process.stdout.close()
        self.process.stderr.close()
        self.folder.cleanup()
        return code, errors


class Case(unittest.TestCase):
    def setUp(self):
        self.server = Server()

    def tearDown(self):
        code, errors = self.server.end()
        self.assertEqual(code, 130, errors)
        self.assertEqual(errors, "Open this link in a browser; Ctrl-C ends.\n")


class Answers(Case):
    def test_the_page_by_its_types(self):
        status, body, headers = self.server.ask()
        self.assertEqual((status, body, headers["Content-Type"]), (200, b"<!doctype html>", "text/html; charset=utf-8"))
        status, body, headers = self.server.ask("assets/engine.wasm")
        self.assertEqual((status, body, headers["Content-Type"]), (200, b"\0asm", "application/wasm"))
        self.assertEqual(headers["X-Content-Type-Options"], "nosniff")
        self.assertEqual(headers["Referrer-Policy"], "no-referrer")

    def test_what_was_named(self):
        session = json.loads(self.server.ask("session.json")[1])
        self.assertEqual(session, {
            "document": {"name": "site.json", "link": "files/document", "size": len(DOCUMENT)},
            "frames": [{"name": "scan.bin", "link": "files/frame/0", "size": len(FRAME)},
                       {"name": "empty.bin", "link": "files/frame/1", "size": 0}],
            "tracks": None})
        self.assertEqual(self.server.ask("files/document")[1], DOCUMENT)
        self.assertEqual(self.server.ask("files/frame/0")[1], FRAME)
        self.assertEqual(self.server.ask("files/frame/1")[:2], (200, b""))

    def test_ranges(self):
        for text, part in (("0-0", FRAME[:1]), ("10-19", FRAME[10:20]), ("-3", FRAME[-3:]),
                           (f"{len(FRAME) - 2}-", FRAME[-2:]), (f"0-{len(FRAME) - 1}", FRAME)):
            status, body, _ = self.server.ask("files/frame/0", headers={"Range": "bytes=" + text})
            self.assertEqual((status, body), (206, part), text)


class Refuses(Case):
    def test_ranges_out_of_bounds(self):
        size = len(FRAME)
        for text in (f"{size}-", f"0-{size}", f"{size}-{size}", f"-{size + 1}", "9-3", "0-1,3-4", "x", "-", "0-99999999999999999999"):
            status, body, _ = self.server.ask("files/frame/0", headers={"Range": "bytes=" + text})
            self.assertIn(status, (400, 416), text)
            self.assertLess(len(body), 1000, text)

    def test_another_token(self):
        for token in ("0" * 32, self.server.token[:-1], self.server.token + "0", "", self.server.token.upper() + "x"):
            self.assertEqual(self.server.status(token=token or "x"), 403, token)
        self.assertEqual(self.server.say(b"GET / HTTP/1.1\r\nHost: 127.0.0.1:%d\r\n\r\n" % self.server.port), 403)

    def test_another_host_or_origin(self):
        port = self.server.port
        for host in ("localhost", f"localhost:{port}", "127.0.0.1", "example.org", f"127.0.0.1:{port}.example.org"):
            self.assertEqual(self.server.status(headers={"Host": host}), 403, host)
        for origin in ("null", "http://example.org", "http://127.0.0.1", f"https://127.0.0.1:{port}"):
            self.assertEqual(self.server.status(headers={"Origin": origin}), 403, origin)
        self.assertEqual(self.server.status(headers={"Origin": f"http://127.0.0.1:{port}"}), 200)
        token = self.server.token.encode()
        self.assertEqual(self.server.say(b"GET /%s/ HTTP/1.1\r\n\r\n" % token), 403)
        self.assertEqual(self.server.say(b"GET /%s/ HTTP/1.1\r\nHost: 127.0.0.1:%d\r\nHost: example.org\r\n\r\n" % (token, port)), 403)

    def test_paths_that_were_not_named(self):
        for path in ("link", "secret", "../secret", "%2e%2e/secret", "..%2fsecret", "assets/../../secret", "assets/", "assets",
                     "files/", "files/frame/2", "files/frame/-1", "files/frame/0/", "/etc/passwd", "//etc/passwd",
                     str(self.server.path / "secret"), "index.html%00", "site.json"):
            status, body, _ = self.server.ask(path)
            self.assertEqual(status, 404, path)
            self.assertNotIn(SECRET, body)

    def test_other_methods(self):
        for method in ("POST", "DELETE", "PATCH", "OPTIONS", "CONNECT"):
            self.assertIn(self.server.status("files/document", method=method), (400, 404, 405), method)
        self.assertEqual(self.server.status("files/frame/0", method="PUT", body=b"x"), 405)
        self.assertEqual(self.server.status("index.html", method="PUT", body=b"x"), 405)
        self.assertEqual(self.server.status("new.json", method="PUT", body=b"x"), 404)

    def test_what_is_not_http(self):
        for request in (b"\r\n\r\n", b"\0" * 100 + b"\r\n\r\n", b"GET\r\n\r\n", b"GET / HTTP/9.9\r\n\r\n", b"GET /" + b"a" * 20000 + b" HTTP/1.1\r\n\r\n"):
            self.assertIn(self.server.say(request), (0, 400, 403, 414), request[:20])


class Saves(Case):
    def save(self, body, version):
        return self.server.ask("files/document", method="PUT", body=body, headers={"If-Match": version})

    def test_over_the_version_that_was_read(self):
        path = self.server.path / "site.json"
        version = self.server.ask("files/document")[2]["ETag"]
        status, _, headers = self.save(b"{}\n", version)
        self.assertEqual((status, path.read_bytes()), (200, b"{}\n"))
        self.assertNotEqual(headers["ETag"], version)
        status, body, _ = self.save(b"[]", version)
        self.assertEqual((status, body), (412, b"the file was changed by another program since it was read\n"))
        self.assertEqual(self.save(b"[]", headers["ETag"])[0], 200)
        self.assertEqual(self.server.status("files/document", method="PUT", body=b"x"), 412)
        self.assertEqual(path.read_bytes(), b"[]")
        self.assertEqual(sorted(entry.name for entry in self.server.path.iterdir()),
                         ["empty.bin", "page", "scan.bin", "secret", "site.json"])

    def test_nothing_larger_than_a_document(self):
        version = self.server.ask("files/document")[2]["ETag"]
        request = (b"PUT /%s/files/document HTTP/1.1\r\nHost: 127.0.0.1:%d\r\nIf-Match: %s\r\nContent-Length: 200000\r\n\r\n"
                   % (self.server.token.encode(), self.server.port, version.encode()))
        self.assertIn(self.server.say(request + b" " * 200000), (400, 413))
        self.assertEqual((self.server.path / "site.json").read_bytes(), DOCUMENT)

    def test_a_body_that_was_cut_is_not_saved(self):
        version = self.server.ask("files/document")[2]["ETag"]
        with socket.create_connection(("127.0.0.1", self.server.port), timeout=20) as stream:
            stream.sendall(b"PUT /%s/files/document HTTP/1.1\r\nHost: 127.0.0.1:%d\r\nIf-Match: %s\r\nContent-Length: 50\r\n\r\n{}"
                           % (self.server.token.encode(), self.server.port, version.encode()))
        self.assertEqual(self.server.ask("files/document")[1], DOCUMENT)


class KeepsServing(Case):
    def test_a_thousand_at_once(self):
        request = b"GET /%s/ HTTP/1.1\r\nHost: 127.0.0.1:%d\r\nConnection: close\r\n\r\n" % (self.server.token.encode(), self.server.port)
        streams = []
        for _ in range(1000):
            streams.append(socket.create_connection(("127.0.0.1", self.server.port), timeout=60))
            streams[-1].sendall(request)
        for stream in streams:
            with stream, stream.makefile("rb") as answer:
                self.assertEqual(answer.readline(), b"HTTP/1.1 200 OK\r\n")

    def test_clients_that_say_nothing_or_read_nothing(self):
        slow = [socket.create_connection(("127.0.0.1", self.server.port), timeout=20) for _ in range(100)]
        for stream in slow[:50]:
            stream.sendall(b"GET /%s/files/frame/0 HTTP/1.1\r\nHost: 127.0.0.1:%d\r\n\r\n" % (self.server.token.encode(), self.server.port))
        for stream in slow[50:]:
            stream.sendall(b"GET /")
        self.assertEqual(self.server.status(), 200)
        for stream in slow:
            stream.close()

    def test_no_files_stay_open(self):
        folder = f"/proc/{self.server.process.pid}/fd"
        self.server.ask("files/frame/0")
        before = len(os.listdir(folder))
        for _ in range(300):
            self.server.ask("files/frame/0", headers={"Range": "bytes=0-9"})
        self.assertLessEqual(len(os.listdir(folder)), before + 2)


class Ends(unittest.TestCase):
    def test_by_a_signal(self):
        self.assertEqual(Server().end(signal.SIGINT)[0], 130)
        self.assertEqual(Server().end(signal.SIGTERM)[0], 143)

    def test_where_something_is_missing(self):
        for words, page, error in (
                (("missing.json",), True, "zone-detector: missing.json: cannot be read: No such file or directory\n"),
                (("site.json", "page"), True, "zone-detector: page: cannot be read: it is a folder\n"),
                ((), False, "zone-detector: page: the page is not here: there is no index.html; --page says where it is\n")):
            server = Server(*words, page=page)
            self.assertEqual(server.link, "")
            self.assertEqual(server.end(0), (1, error))

    def test_on_a_port_that_is_taken(self):
        first = Server()
        second = Server("--port", str(first.port))
        self.assertEqual(second.end(0), (1, f"zone-detector: port {first.port} is taken; choose another one with --port\n"))
        self.assertEqual(first.end()[0], 130)


if __name__ == "__main__":
    PROGRAM = sys.argv.pop()
    unittest.main(defaultTest=sys.argv.pop(1) if len(sys.argv) > 1 else None)
