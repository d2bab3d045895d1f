"""TLS as the protocol has it: the handshake travels in its packets, all that follows in TLS alone."""
import io
import ssl

import tds


class Stream(io.RawIOBase):
    """Reads and writes through TLS, when the handshake is done."""

    def __init__(self, context, incoming, outgoing):
        self.incoming, self.outgoing = incoming, outgoing
        self.received, self.sent = ssl.MemoryBIO(), ssl.MemoryBIO()
        self.tls = context.wrap_bio(self.received, self.sent, server_side=True)
        while not self.shake_hands():
            message = tds.receive(incoming)
            if message is None:
                raise ConnectionError
            self.received.write(message[1])
        self.send_handshake()

    def shake_hands(self):
        try:
            self.tls.do_handshake()
            return True
        except ssl.SSLWantReadError:
            self.send_handshake()
            return False

    def send_handshake(self):
        if self.sent.pending:
            self.outgoing.write(tds.packets(self.sent.read(), message=tds.PRELOGIN))

    def read(self, size):
        content = b""
        while len(content) < size:
            try:
                piece = self.tls.read(size - len(content))
            except ssl.SSLWantReadError:
                piece = self.incoming.read1()
                if not piece:
                    return content
                self.received.write(piece)
                continue
            if not piece:
                return content
            content += piece
        return content

    def write(self, content):
        self.tls.write(content)
        self.outgoing.write(self.sent.read())
