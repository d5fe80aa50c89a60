"""journald.py PROGRAM ARGUMENT...: runs the program as a service whose standard error goes to the journal of systemd, and prints what
the journal gets as JSON, a line for each entry. Ends the program at the end of the standard input.

Requires a mount namespace of its own: `unshare --user --map-root-user --mount`.
"""

import json
import os
import socket
import subprocess
import sys
import threading

JOURNAL = "/run/systemd/journal"


def fields(message):
    """The fields of an entry in the journal's own form; a value with a line break has its size before it."""
    found = {}
    while message:
        name, message = message.split(b"\n", 1)
        if b"=" in name:
            name, value = name.split(b"=", 1)
        else:
            size = int.from_bytes(message[:8], "little")
            value, message = message[8:8 + size], message[8 + size + 1:]
        found[name.decode()] = value.decode()
    return found


def print_entries(listener):
    while message := listener.recv(1 << 20):
        print(json.dumps(fields(message)), flush=True)


def main():
    subprocess.run(["mount", "-t", "tmpfs", "none", "/run"], check=True)
    os.makedirs(JOURNAL)
    listener = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
    listener.bind(JOURNAL + "/socket")
    reader = threading.Thread(target=print_entries, args=(listener,))
    reader.start()
    errors, stream = os.pipe()
    status = os.fstat(stream)
    program = subprocess.Popen(sys.argv[1:], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=stream,
                               env={**os.environ, "JOURNAL_STREAM": "%d:%d" % (status.st_dev, status.st_ino)})
    threading.Thread(target=lambda: (sys.stdin.read(), program.terminate()), daemon=True).start()
    ended = program.wait()
    with socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM) as last:
        last.sendto(b"", JOURNAL + "/socket")
    reader.join()
    os.close(stream)
    if text := os.read(errors, 65536).decode():
        sys.exit("the program writes to the standard error output: " + text)
    sys.exit(ended)


if __name__ == "__main__":
    main()
