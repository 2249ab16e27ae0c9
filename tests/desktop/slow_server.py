"""Web servers with manners to choose from."""
import http.server
import socket
import threading


class SlowServer:
    """/whole: at once; /half: half of the movie, and the rest behind `go_on`; /cut:
    half of it, then the connection ends; /huge: the same, and says that there is far
    more; /garbage: no movie, and no end before `go_on`; anything else is not there."""

    def __init__(self, movie):
        self.go_on = threading.Event()
        self.asked = 0  # requests
        server = self

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                server.asked += 1
                name = self.path.strip("/").partition(".")[0]
                if name not in ("whole", "half", "cut", "huge", "garbage"):
                    return self.send_error(404)
                body = movie if name != "garbage" else b"Dear aunt, " * 10000
                half = len(body) if name in ("whole", "garbage") else len(body) // 2
                self.send_response(200)
                said = {"huge": 1 << 62, "garbage": 1 << 30}
                self.send_header("Content-Length", str(said.get(name, len(body))))
                self.end_headers()
                try:
                    self.wfile.write(body[:half])
                    self.wfile.flush()
                    if name in ("half", "huge", "garbage"):
                        server.go_on.wait()
                    if name == "half":
                        self.wfile.write(body[half:])
                except OSError:
                    pass  # the player has heard enough
                self.close_connection = True

            def log_message(self, *words):
                pass

        self.http = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        self.http.daemon_threads = True
        threading.Thread(target=self.http.serve_forever, daemon=True).start()

    def url(self, name):
        return f"http://127.0.0.1:{self.http.server_port}/{name}.vxf"

    def close(self):
        self.go_on.set()
        self.http.shutdown()


class DeafServer:
    """Takes connections and never says a word."""

    def __init__(self):
        self.socket = socket.create_server(("127.0.0.1", 0))
        self.url = f"http://127.0.0.1:{self.socket.getsockname()[1]}/movie.vxf"

    def is_asked(self):
        """Waits for somebody, and until they have asked."""
        self.connection = self.socket.accept()[0]
        return self.connection.recv(1)

    def close(self):
        self.connection.close()
        self.socket.close()
