"""A client of WebSocket, as far as a browser's own interface needs one."""

import base64
import os
import socket
import struct
from urllib.parse import urlsplit

TEXT, CLOSE, PING, PONG = 1, 8, 9, 10


class WebSocket:
    def __init__(self, url, timeout):
        parts = urlsplit(url)
        self._socket = socket.create_connection((parts.hostname, parts.port), timeout)
        self._pending = b""
        key = base64.b64encode(os.urandom(16)).decode()
        self._socket.sendall(
            (f"GET {parts.path} HTTP/1.1\r\nHost: {parts.netloc}\r\nUpgrade: websocket\r\n"
             f"Connection: Upgrade\r\nSec-WebSocket-Key: {key}\r\n"
             "Sec-WebSocket-Version: 13\r\n\r\n").encode())
        while b"\r\n\r\n" not in self._pending:
            self._pending += self._some()
        head, self._pending = self._pending.split(b"\r\n\r\n", 1)
        if b" 101 " not in head.split(b"\r\n")[0]:
            raise ConnectionError(head.decode())

    def _some(self):
        data = self._socket.recv(1 << 16)
        if not data:
            raise ConnectionError("the browser has gone")
        return data

    def _take(self, size):
        while len(self._pending) < size:
            self._pending += self._some()
        data, self._pending = self._pending[:size], self._pending[size:]
        return data

    def _frame(self):
        first, second = self._take(2)
        size = second & 0x7F
        if size == 126:
            size, = struct.unpack(">H", self._take(2))
        elif size == 127:
            size, = struct.unpack(">Q", self._take(8))
        return first & 0x80, first & 0x0F, self._take(size)

    def _send(self, kind, data):
        mask = os.urandom(4)
        size = len(data)
        if size < 126:
            head = struct.pack(">BB", 0x80 | kind, 0x80 | size)
        elif size < 1 << 16:
            head = struct.pack(">BBH", 0x80 | kind, 0x80 | 126, size)
        else:
            head = struct.pack(">BBQ", 0x80 | kind, 0x80 | 127, size)
        masked = bytes(byte ^ mask[i % 4] for i, byte in enumerate(data))
        self._socket.sendall(head + mask + masked)

    def send(self, text):
        self._send(TEXT, text.encode())

    def receive(self):
        """The next message."""
        text = b""
        while True:
            is_last, kind, data = self._frame()
            if kind == CLOSE:
                raise ConnectionError("the browser has gone")
            if kind == PING:
                self._send(PONG, data)
            if kind in (PING, PONG):
                continue
            text += data
            if is_last:
                return text.decode()

    def close(self):
        self._socket.close()
