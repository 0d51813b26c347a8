#!/usr/bin/env python3
"""A stand-in for the feedback ticket service: HTTPS on this machine with a test authority of its
own, SQLite behind it. `./dev tickets` starts it for trying the application; the tests start it
themselves, and with --faults it also misbehaves as the ticket's identifier says.

usage: ticket_service.py FOLDER serve [--faults] [--bundle BUNDLE]
       ticket_service.py FOLDER list
       ticket_service.py FOLDER reply UUID TEXT
       ticket_service.py FOLDER close UUID

FOLDER gets the authority (ca.pem), the database, `requests` (what came in, a JSON object a line)
and, of the application's own bundle BUNDLE, a copy `bundle` that points to this service.
"""

import contextlib
import datetime
import http.server
import json
import os
import plistlib
import shutil
import sqlite3
import ssl
import subprocess
import sys
import time
import urllib.parse
import uuid

CATEGORIES = ("bug", "feature", "question", "other")
DETAIL = {"_res": "ok", "ticket": {
    "uuid": "299", "category": "bug", "title": "Sample", "content": "Text", "status": "pending",
    "atime": "2026-11-23T09:41:00Z", "mtime": "2026-11-23T09:41:00Z", "comments": []}}
OPENSSL_CONFIG = """[req]
distinguished_name = name
prompt = no
[name]
CN = {name}
[authority]
basicConstraints = critical, CA:TRUE
keyUsage = critical, keyCertSign
[service]
subjectAltName = DNS:localhost, IP:127.0.0.1
"""


def make_authority(folder):
    """An authority of its own for each folder, and the service's certificate by it."""
    if os.path.exists(os.path.join(folder, "service.pem")):
        return

    def openssl(*arguments):
        subprocess.run(["openssl", *arguments], cwd=folder, check=True, capture_output=True)

    key = ("-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes")
    for name in ("authority", "service"):
        with open(os.path.join(folder, f"{name}.conf"), "w", encoding="utf-8") as file:
            file.write(OPENSSL_CONFIG.format(name=f"Tamsel test {name}"))
    openssl("req", "-x509", *key, "-config", "authority.conf", "-extensions", "authority",
            "-keyout", "ca.key", "-out", "ca.pem", "-days", "3650")
    openssl("req", "-new", *key, "-config", "service.conf", "-keyout", "service.key",
            "-out", "service.csr")
    openssl("x509", "-req", "-in", "service.csr", "-CA", "ca.pem", "-CAkey", "ca.key",
            "-CAcreateserial", "-extfile", "service.conf", "-extensions", "service",
            "-out", "service.pem", "-days", "3650")


def make_bundle(source, folder, origin):
    """The application's bundle, with this service in the place of the maker's."""
    bundle = os.path.join(folder, "bundle")
    shutil.rmtree(bundle, ignore_errors=True)
    shutil.copytree(source, bundle)
    shutil.copy(os.path.join(folder, "ca.pem"), bundle)
    path = os.path.join(bundle, "Info.plist")
    with open(path, "rb") as file:
        info = plistlib.load(file)
    with open(path, "wb") as file:
        plistlib.dump({**info, "QLTicketOrigin": origin}, file)
    return bundle


class Tickets:
    """The tickets in their database; each call opens it anew, so that other processes join in."""

    def __init__(self, folder):
        self.file = os.path.join(folder, "tickets.sqlite")
        with self.open() as database:
            database.executescript(
                "CREATE TABLE IF NOT EXISTS tickets(uuid PRIMARY KEY, app, device, category, title,"
                " content, status, atime, mtime);"
                "CREATE TABLE IF NOT EXISTS comments(id PRIMARY KEY, ticket, author_type,"
                " author_id, content, atime);")

    @contextlib.contextmanager
    def open(self):
        database = sqlite3.connect(self.file, timeout=10)
        database.row_factory = sqlite3.Row
        try:
            with database:
                yield database
        finally:
            database.close()

    @staticmethod
    def now():
        text = datetime.datetime.now(datetime.timezone.utc).isoformat(timespec="milliseconds")
        return text.replace("+00:00", "Z")

    def listed(self, app, device):
        with self.open() as database:
            return [dict(row) for row in database.execute(
                "SELECT uuid, category, title, status, atime, mtime FROM tickets"
                " WHERE app = ? AND device = ? ORDER BY mtime DESC", (app, device))]

    def everything(self):
        with self.open() as database:
            return [dict(row) for row in database.execute("SELECT * FROM tickets ORDER BY mtime")]

    def file_ticket(self, body):
        ticket, now = str(uuid.uuid4()), self.now()
        with self.open() as database:
            database.execute("INSERT INTO tickets VALUES(?,?,?,?,?,?,?,?,?)",
                             (ticket, body["app"], body["device_id"], body["category"],
                              body["title"], body["content"], "pending", now, now))
        return ticket

    def detail(self, ticket):
        with self.open() as database:
            row = database.execute(
                "SELECT uuid, category, title, content, status, atime, mtime FROM tickets"
                " WHERE uuid = ?", (ticket,)).fetchone()
            return row and {**row, "comments": [dict(comment) for comment in database.execute(
                "SELECT id, author_type, author_id, content, atime FROM comments"
                " WHERE ticket = ? ORDER BY atime", (ticket,))]}

    def comment(self, ticket, kind, author, content):
        with self.open() as database:
            now = self.now()
            found = database.execute("UPDATE tickets SET status = ?, mtime = ? WHERE uuid = ?",
                                     ("replied" if kind == "admin" else "pending", now, ticket))
            if found.rowcount:
                database.execute("INSERT INTO comments VALUES(?,?,?,?,?,?)",
                                 (str(uuid.uuid4()), ticket, kind, author, content, now))
            return bool(found.rowcount)

    def close_ticket(self, ticket):
        with self.open() as database:
            database.execute("UPDATE tickets SET status = 'closed', mtime = ? WHERE uuid = ?",
                             (self.now(), ticket))


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    disable_nagle_algorithm = True

    def log_message(self, *_):
        pass

    def answer(self, status, body, *headers):
        data = body if isinstance(body, bytes) else json.dumps(body).encode()
        self.send_response(status)
        for name, value in (("Content-Type", "application/json"),
                            ("Content-Length", str(len(data))), *headers):
            self.send_header(name, value)
        self.end_headers()
        self.wfile.write(data)

    def refuse(self, status, code):
        self.answer(status, {"_res": "err", "code": code, "reportable": False})

    def record(self, body):
        entry = {"method": self.command, "path": self.path, "headers": self.headers.items(),
                 "body": body.decode(errors="replace")}
        with open(self.server.requests, "a", encoding="utf-8") as file:
            file.write(json.dumps(entry) + "\n")

    def do_GET(self):
        self.record(b"")
        url = urllib.parse.urlsplit(self.path)
        parts = url.path.split("/")[1:]
        query = dict(urllib.parse.parse_qsl(url.query))
        if parts == ["tickets"] and {"app", "device_id"} == set(query):
            results = self.server.tickets.listed(query["app"], query["device_id"])
            self.answer(200, {"_res": "ok", "results": results})
        elif parts[0] == "ticket" and len(parts) == 2:
            fault = self.server.faults and FAULTS.get(parts[1])
            ticket = not fault and self.server.tickets.detail(parts[1])
            if fault:
                fault(self)
            elif ticket:
                self.answer(200, {"_res": "ok", "ticket": ticket})
            else:
                self.refuse(404, "ticket_not_found")
        else:
            self.refuse(404, "not_found")

    def do_POST(self):
        data = self.rfile.read(int(self.headers.get("Content-Length", 0)))
        self.record(data)
        body = json.loads(data)
        parts = self.path.split("/")[1:]
        if self.server.faults and "ba5e" in parts:
            self.hang_up()
        elif self.server.faults and len(parts) == 3 and parts[1] in MOVED:
            self.answer(int(parts[1]), b"", ("Location", f"/ticket/{MOVED[parts[1]]}/comment"))
        elif parts == ["ticket"] and self.is_ticket(body):
            self.answer(200, {"_res": "ok", "message": "ticket filed",
                              "uuid": self.server.tickets.file_ticket(body)})
        elif len(parts) == 3 and parts[::2] == ["ticket", "comment"] and \
                set(body) == {"device_id", "content"} and body["content"]:
            if self.server.tickets.comment(parts[1], "user", body["device_id"], body["content"]):
                self.answer(200, {"_res": "ok", "message": "comment added"})
            else:
                self.refuse(404, "ticket_not_found")
        else:
            self.refuse(400, "bad_request")

    @staticmethod
    def is_ticket(body):
        return set(body) == {"app", "device_id", "category", "title", "content"} and \
            all(isinstance(text, str) and text for text in body.values()) and \
            body["category"] in CATEGORIES

    # Faults.

    def drip(self):
        self.send_response(200)
        self.end_headers()
        with contextlib.suppress(OSError):
            while True:
                self.wfile.write(b" ")
                time.sleep(0.02)

    def flood(self, announced):
        size = 50 * 1024 * 1024
        self.send_response(200)
        if announced:
            self.send_header("Content-Length", str(size))
        self.end_headers()
        self.close_connection = True
        with contextlib.suppress(OSError):
            for _ in range(size // 65536):
                self.wfile.write(b"x" * 65536)

    def hang_up(self, after=b""):
        self.wfile.write(after)
        self.close_connection = True

    def endless_header(self):
        with contextlib.suppress(OSError):
            self.wfile.write(b"HTTP/1.1 200 OK\r\n")
            while True:
                self.wfile.write(b"X-More: " + b"x" * 1000 + b"\r\n")


MOVED = {"308": "307", "307": "0"}
ERROR = {"_res": "err", "code": "E_BROKEN"}
FAULTS = {
    "199": lambda self: self.hang_up(b"HTTP/1.1 199 Odd\r\nContent-Length: 2\r\n\r\n{}"),
    "299": lambda self: self.answer(299, DETAIL),
    "300": lambda self: self.answer(300, DETAIL),
    "500": lambda self: self.answer(500, b"<html>"),
    "500e": lambda self: self.answer(500, ERROR),
    "500f": lambda self: self.answer(500, {**ERROR, "_res": "fail"}),
    "ead5": Handler.endless_header,
    "ead1": lambda self: self.wfile.write(b"HTTP/1.1 200 OK\r\nX: " + b"x" * 10_000_000),
    "401f": lambda self: self.answer(401, {**ERROR, "code": "\n" + "E" * 100_000}),
    "401e": lambda self: self.answer(401, ERROR),
    "feed": lambda self: self.answer(200, {"_res": "ok"}),
    "bad": lambda self: self.answer(200, b"no JSON"),
    "b1": lambda self: self.flood(True),
    "b2": lambda self: self.flood(False),
    "d1": Handler.drip,
    "deaf": lambda self: time.sleep(60),
    "dead": lambda self: self.hang_up(
        b'HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n{"_res":"ok"'),
    "ba5e": Handler.hang_up,
    "c00": lambda self: self.answer(200, DETAIL, ("Set-Cookie", "id=7")),
    "302a": lambda self: self.answer(302, b"", ("Location", "/ticket/299")),
    "302b": lambda self: self.answer(302, b"", ("Location", self.server.elsewhere)),
    "302c": lambda self: self.answer(302, b"", ("Location", "/ticket/302c")),
}


class Service(http.server.ThreadingHTTPServer):
    """Serves until it is shut down; `origin` is where."""

    daemon_threads = True

    def __init__(self, folder, faults=False):
        make_authority(folder)
        super().__init__(("127.0.0.1", 0), Handler)
        self.folder = folder
        self.tickets = Tickets(folder)
        self.faults = faults
        self.requests = os.path.join(folder, "requests")
        self.origin = f"https://localhost:{self.server_address[1]}"
        self.elsewhere = self.origin.replace("https", "http") + "/ticket/299"
        self.tls = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        self.tls.load_cert_chain(*(os.path.join(folder, f"service.{kind}")
                                   for kind in ("pem", "key")))

    def get_request(self):
        connection, address = super().get_request()
        # The handshake belongs to the request's own thread: it must not hold up the others.
        return self.tls.wrap_socket(connection, server_side=True,
                                    do_handshake_on_connect=False), address

    def end(self):
        self.shutdown()
        self.server_close()

    def handle_error(self, request, client_address):
        pass  # clients leave as they like


def main(folder, command, *arguments):
    os.makedirs(folder, exist_ok=True)
    tickets = Tickets(folder)
    if command == "serve":
        service = Service(folder, "--faults" in arguments)
        print(json.dumps({"origin": service.origin}), flush=True)
        if "--bundle" in arguments:
            source = arguments[arguments.index("--bundle") + 1]
            bundle = make_bundle(source, folder, service.origin)
            print(f"start Tamsel with this service:\n"
                  f"  TAMSEL_BUNDLE={os.path.abspath(bundle)} build/bin/tamsel\n"
                  "answer a ticket as the support side:\n"
                  "  ./dev tickets list\n  ./dev tickets reply UUID TEXT", flush=True)
        with contextlib.suppress(KeyboardInterrupt):
            service.serve_forever()
    elif command == "list":
        for ticket in tickets.everything():
            print(ticket["uuid"], ticket["status"], ticket["title"])
    elif command == "reply":
        if not tickets.comment(arguments[0], "admin", "support", arguments[1]):
            sys.exit("there is no such ticket")
    elif command == "close":
        tickets.close_ticket(arguments[0])
    else:
        sys.exit(__doc__)


if __name__ == "__main__":
    try:
        main(*sys.argv[1:])
    except (TypeError, IndexError):
        sys.exit(__doc__)
