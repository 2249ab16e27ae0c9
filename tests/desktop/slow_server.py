"""A web server with manners to choose from, for one movie."""
import http.server
import threading


class SlowServer:
    """/whole: at once; /half: half of it, and the rest behind `go_on`; /cut: half
    of it, then the connection ends; anything else is not there."""

    def __init__(self, movie):
        self.go_on = threading.Event()
        server = self

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                name = self.path.strip("/").partition(".")[0]
                if name not in ("whole", "half", "cut"):
                    return self.send_error(404)
                self.send_response(200)
                self.send_header("Content-Length", str(len(movie)))
                self.end_headers()
                half = len(movie) if name == "whole" else len(movie) // 2
                self.wfile.write(movie[:half])
                self.wfile.flush()
                if name == "half":
                    server.go_on.wait(60)
                    self.wfile.write(movie[half:])

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
