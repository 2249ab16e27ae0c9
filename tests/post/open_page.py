#!/usr/bin/env python3
"""The browser command of browser.py: becomes Chromium, in a process group of its
own that the test can end.

    open_page.py FOLDER URL     leaves FOLDER/PID.pid and what Chromium says in FOLDER/PID.log
"""
import os
import pathlib
import sys
import urllib.parse

OPTIONS = [
    "--headless", "--disable-gpu", "--disable-dev-shm-usage", "--no-first-run",
    "--no-default-browser-check", "--disable-default-apps", "--disable-extensions",
    "--password-store=basic",
    # Nobody is spoken to but this machine.
    "--disable-background-networking", "--disable-component-update", "--disable-sync",
    "--disable-domain-reliability", "--metrics-recording-only", "--no-pings",
    "--no-proxy-server", "--host-resolver-rules=MAP * ~NOTFOUND, EXCLUDE 127.0.0.1",
]

folder, url = pathlib.Path(sys.argv[1]), sys.argv[2]
pid = os.getpid()
os.setsid()
with open(folder / f"{pid}.log", "wb") as log:
    os.dup2(log.fileno(), 1)
    os.dup2(log.fileno(), 2)
(folder / f"{pid}.pid").touch()
# The player takes any port; Chromium declines a few, which are known for
# something else.
options = OPTIONS + [f"--user-data-dir={folder}/profile",
                     f"--explicitly-allowed-ports={urllib.parse.urlsplit(url).port}"]
if os.geteuid() == 0:
    options.append("--no-sandbox")  # which root can't have
environment = {**os.environ, "HOME": str(folder), "XDG_CONFIG_HOME": str(folder / "config"),
               "XDG_CACHE_HOME": str(folder / "cache")}
try:
    os.execvpe("chromium", ["chromium", *options, url], environment)
except OSError as error:
    sys.exit(f"chromium cannot be run: {error}")
