"""A web server on the loopback interface, with good manners and bad ones.

    odd_server.py FOLDER [tls]

Serves FOLDER/www, and what is below under paths of its own. Writes its port to FOLDER/port (with "tls" that of a
second, secure server to FOLDER/tls-port and its certificate to FOLDER/certificate.pem), and the head of each request
to FOLDER/requests. Ends when its standard input does."""
import http.server
import os
import socket
import ssl
import struct
import subprocess
import sys
import threading
import time

FOLDER = sys.argv[1]
LOG_LOCK = threading.Lock()
ports = {}


def hand_on(source, target):
    try:
        while data := source.recv(65536):
            target.sendall(data)
    except OSError:
        pass  # one side has left


class Handler(http.server.SimpleHTTPRequestHandler):
    def __init__(self, *arguments):
        super().__init__(*arguments, directory=os.path.join(FOLDER, "www"))

    def log_message(self, *_):
        pass

    def do_GET(self):
        with LOG_LOCK, open(os.path.join(FOLDER, "requests"), "a") as log:
            log.write(self.requestline + "\n" + str(self.headers).strip() + "\n\n")
        if self.path.startswith("/held-"):
            self.wait_for_leave()
        word, _, value = self.path.strip("/").partition("/")
        act = getattr(self, "odd_" + word, None)
        if act is None:
            return super().do_GET()
        try:
            act(value)
            self.wfile.flush()
        except (BrokenPipeError, ConnectionResetError, ssl.SSLError):
            pass  # the other side has had enough
        self.close_connection = True

    def do_CONNECT(self):
        """As a proxy: what comes from one side goes to the other."""
        with LOG_LOCK, open(os.path.join(FOLDER, "requests"), "a") as log:
            log.write(self.requestline + "\n\n")
        host, _, port = self.path.partition(":")
        self.wfile.write(b"HTTP/1.1 200 Connection established\r\nX-Proxy: yes\r\n\r\n")
        with socket.create_connection((host, int(port))) as other:
            threading.Thread(target=hand_on, args=(other, self.connection), daemon=True).start()
            hand_on(self.connection, other)
        self.close_connection = True

    def wait_for_leave(self):
        """A file whose name begins with "held-" is kept back until FOLDER/go is there."""
        while not os.path.exists(os.path.join(FOLDER, "go")):
            time.sleep(0.01)

    def head(self, status, **headers):
        self.send_response(status)
        for name, value in headers.items():
            self.send_header(name.replace("_", "-"), str(value))
        self.end_headers()

    def odd_body(self, size):
        """So many bytes."""
        self.head(200, Content_Length=size)
        self.wfile.write(b"x" * int(size))

    def odd_status(self, status):
        """A status with a body that would be a fine one."""
        body = b'"sha256": "' + b"0" * 64 + b'", "file": "a"'
        self.head(int(status), Content_Length=len(body))
        self.wfile.write(body)

    def odd_redirect(self, rest):
        """/redirect/STATUS/ANYWHERE"""
        status, _, target = rest.partition("/")
        self.head(int(status), Location=target if ":" in target else "/" + target, Content_Length=0)

    def odd_loop(self, hops):
        self.head(302, Location=f"/loop/{int(hops) + 1}", Content_Length=0)

    def odd_hops(self, count):
        """So many redirections before the answer."""
        if int(count) == 0:
            return self.odd_body(3)
        self.head(302, Location=f"{int(count) - 1}", Content_Length=0)  # relative

    def odd_slow_hops(self, count):
        """The same, half a second for each."""
        time.sleep(0.5)
        self.odd_hops(count)

    def odd_unsafe(self, rest):
        """From here to the open server."""
        self.head(302, Location=f"http://127.0.0.1:{ports['port']}/{rest}", Content_Length=0)

    def odd_safe(self, rest):
        """From here to the secure server."""
        self.head(302, Location=f"https://127.0.0.1:{ports['tls-port']}/{rest}", Content_Length=0)

    def odd_cut(self, _):
        """Less than promised."""
        self.head(200, Content_Length=1000)
        self.wfile.write(b"x" * 500)

    def odd_short(self, size):
        """A byte less than promised."""
        self.head(200, Content_Length=size)
        self.wfile.write(b"x" * (int(size) - 1))

    def odd_long(self, _):
        """More than promised."""
        self.head(200, Content_Length=10)
        self.wfile.write(b"x" * 20)

    def odd_length(self, text):
        """A length that is none."""
        self.head(200, Content_Length=text)
        self.wfile.write(b"x" * 20)

    def odd_chunks(self, size):
        """Chunks whose last one never comes."""
        self.head(200, Transfer_Encoding="chunked")
        self.wfile.write(b"5\r\nhello\r\n")

    def odd_unbounded(self, _):
        """No length; the end of the connection is the end of the body."""
        self.head(200)
        self.wfile.write(b"hello")

    def odd_continue(self, _):
        """An interim answer first, and a trailer last."""
        self.wfile.write(b"HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"
                         b"5\r\nhello\r\n0\r\nX-Trailer: yes\r\n\r\n")

    def odd_flood(self, _):
        self.head(200)
        while True:
            self.wfile.write(b"x" * 65536)

    def odd_trickle(self, count):
        """So many bytes, each alone, and no length."""
        self.head(200)
        for _ in range(int(count)):
            self.wfile.write(b"x")
            self.wfile.flush()
            time.sleep(0.05)

    def odd_headers(self, _):
        """Header lines without end."""
        self.send_response(200)
        self.flush_headers()
        while True:
            self.wfile.write(b"X-More: " + b"x" * 1000 + b"\r\n")

    def odd_header(self, size):
        """A header of so many bytes in all."""
        self.wfile.write(b"HTTP/1.1 200 OK\r\nContent-Length: 3\r\n")
        left = int(size) - 38  # without these two lines and the empty one
        while left > 0:
            line = left if left < 2000 else 1000
            self.wfile.write(b"X-More: " + b"x" * (line - 10) + b"\r\n")
            left -= line
        self.wfile.write(b"\r\nxxx")

    def odd_bare(self, status):
        """Lines that end without a carriage return."""
        self.wfile.write(b"HTTP/1.1 " + status.encode() + b" Some\nContent-Length: 3\n\nxxx")

    def odd_leave(self, _):
        """Hangs up in the middle, at the level of the wire."""
        self.head(200)
        self.wfile.write(b"hello")
        self.wfile.flush()
        wire = socket.socket(fileno=os.dup(self.connection.fileno()))
        time.sleep(0.05)
        wire.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
        os.close(self.connection.detach())
        wire.close()

    def odd_silence(self, _):
        """Not a word."""
        time.sleep(60)

    def odd_pause(self, _):
        """A good beginning, and then nothing."""
        self.head(200, Content_Length=1000)
        self.wfile.write(b"x" * 10)
        self.wfile.flush()
        time.sleep(60)

    def odd_drip(self, count):
        """A byte a second, or ten a second with a count behind a second slash."""
        count, _, rate = count.partition("/")
        self.head(200, Content_Length=count)
        for _ in range(int(count)):
            self.wfile.write(b"x")
            self.wfile.flush()
            time.sleep(1 / int(rate or "1"))

    def odd_drip_head(self, count):
        """So many header lines, one a tenth of a second."""
        self.send_response(200)
        for _ in range(int(count)):
            self.send_header("X-More", "x")
            self.flush_headers()
            time.sleep(0.1)
        self.end_headers()

    def odd_promise(self, size):
        """The length of a body of which nothing comes."""
        self.head(200, Content_Length=size)
        self.wfile.flush()
        time.sleep(60)

    def odd_noise(self, _):
        """No HTTP at all."""
        self.wfile.write(b"\0\1\2\3 what?\r\n\r\n")


class Server(http.server.ThreadingHTTPServer):
    daemon_threads = True

    def handle_error(self, *_):
        pass  # who does not trust the certificate leaves in the middle


def serve(name, secure=None):
    server = Server(("127.0.0.1", 0), Handler)
    if secure:
        server.socket = secure.wrap_socket(server.socket, server_side=True, do_handshake_on_connect=False)
    ports[name] = server.server_port
    threading.Thread(target=server.serve_forever, daemon=True).start()


def certificate():
    path = os.path.join(FOLDER, "certificate.pem")
    subprocess.run(["openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes",
                    "-keyout", path + ".key", "-out", path, "-days", "2", "-subj", "/CN=loopback",
                    "-addext", "subjectAltName=IP:127.0.0.1"], check=True, stderr=subprocess.DEVNULL)
    context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    context.load_cert_chain(path, path + ".key")
    return context


os.makedirs(os.path.join(FOLDER, "www"), exist_ok=True)
if "tls" in sys.argv[2:]:
    serve("tls-port", certificate())
serve("port")
for name in ["tls-port", "port"]:  # "port" comes last: everything stands when it does
    if name in ports:
        with open(os.path.join(FOLDER, name + ".new"), "w") as file:
            file.write(str(ports[name]))
        os.rename(file.name, os.path.join(FOLDER, name))
sys.stdin.read()
