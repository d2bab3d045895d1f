"""The part of the TDS 7.4 protocol that a driver needs to log in and to run statements."""
import datetime
import functools
import struct

SQL_BATCH, RPC, REPLY, ATTENTION, TRANSACTION, LOGIN7, PRELOGIN = 1, 3, 4, 6, 14, 16, 18
BEGIN, COMMIT, ROLLBACK = 5, 7, 8

PACKET_SIZE = 4096
OLDEST_VERSION = 0x72090002
VERSION = 0x74000004
COLLATION = bytes([0x09, 0x04, 0xD0, 0x00, 0x34])

DONE_MORE, DONE_ERROR, DONE_COUNT, DONE_ATTENTION = 0x01, 0x02, 0x10, 0x20


def receive(stream):
    """One message: its type and its bytes; None when the connection is closed."""
    content = b""
    while True:
        header = stream.read(8)
        if len(header) < 8:
            return None
        kind, status, length = struct.unpack(">BBH", header[:4])
        content += stream.read(length - 8)
        if status & 1:
            return kind, content


def packets(content, last=True, message=REPLY):
    """The packets of a reply; with `last` unset, more will follow."""
    size = PACKET_SIZE - 8
    pieces = [content[i : i + size] for i in range(0, len(content), size)] or [b""]
    sent = b""
    for number, piece in enumerate(pieces, 1):
        end = 1 if last and number == len(pieces) else 0
        sent += struct.pack(">BBHHBB", message, end, len(piece) + 8, 51, number % 256, 0) + piece
    return sent


def prelogin_answer(encrypts=False):
    options = [
        (0, bytes([16, 0, 0, 0, 0, 0])),
        (1, b"\x03" if encrypts else b"\x02"),  # Required, or not supported.
        (2, b"\x00"),
        (3, b""),
        (4, b"\x00"),
    ]
    table, data = b"", b""
    start = len(options) * 5 + 1
    for option, value in options:
        table += struct.pack(">BHH", option, start + len(data), len(value))
        data += value
    return table + b"\xff" + data


def login(content):
    """The login data of the client."""
    version = struct.unpack_from("<I", content, 4)[0]
    if version < OLDEST_VERSION:
        raise ValueError(f"The client uses an old version of the protocol: {version:#x}")

    def text(position, decode=bytes):
        start, length = struct.unpack_from("<HH", content, position)
        return decode(content[start : start + 2 * length]).decode("utf-16-le")

    return {
        "user": text(40),
        "password": text(44, clear),
        "application": text(48),
        "server": text(52),
        "database": text(68),
    }


def clear(password):
    mixed = (byte ^ 0xA5 for byte in password)
    return bytes((byte << 4 | byte >> 4) & 0xFF for byte in mixed)


def without_headers(content):
    return content[struct.unpack_from("<I", content)[0] :]


def batch_text(content):
    return without_headers(content).decode("utf-16-le")


def transaction_request(content):
    """The request's kind, and whether it also begins the next transaction."""
    body = without_headers(content)
    kind = struct.unpack_from("<H", body)[0]
    begins_next = kind != BEGIN and len(body) > 3 + body[2] and body[3 + body[2]] & 1
    return kind, bool(begins_next)


def short_text(text):
    return bytes([len(text)]) + text.encode("utf-16-le")


def long_text(text):
    return struct.pack("<H", len(text)) + text.encode("utf-16-le")


def token(kind, content):
    return bytes([kind]) + struct.pack("<H", len(content)) + content


def login_answer(database):
    return (
        token(0xE3, b"\x01" + short_text(database) + short_text("master"))
        + token(0xE3, b"\x07" + bytes([len(COLLATION)]) + COLLATION + b"\x00")
        + token(0xE3, b"\x04" + short_text(str(PACKET_SIZE)) + short_text(str(PACKET_SIZE)))
        + token(
            0xAD,
            b"\x01"
            + struct.pack(">I", VERSION)
            + short_text("Microsoft SQL Server")
            + bytes([16, 0, 0x10, 0]),
        )
        + done()
    )


def message(kind, number, severity, text):
    return token(
        kind,
        struct.pack("<iBB", number, 1, severity)
        + long_text(text)
        + short_text("STANDIN")
        + short_text("")
        + struct.pack("<I", 1),
    )


def error(number, text, severity=16):
    return message(0xAA, number, severity, text)


def info(number, text):
    return message(0xAB, number, 0, text)


def done(status=0, rows=0):
    return struct.pack("<BHHQ", 0xFD, status, 0, rows)


def transaction_begun(descriptor):
    return token(0xE3, b"\x08" + b"\x08" + struct.pack("<Q", descriptor) + b"\x00")


def transaction_ended(kind, descriptor):
    change = 9 if kind == COMMIT else 10
    return token(0xE3, bytes([change]) + b"\x00" + b"\x08" + struct.pack("<Q", descriptor))


class Integer:
    def __init__(self, size):
        self.size = size

    def metadata(self):
        return bytes([0x26, self.size])

    def cell(self, value):
        if value is None:
            return b"\x00"
        return bytes([self.size]) + int(value).to_bytes(self.size, "little", signed=True)


class DateTime:
    def metadata(self):
        return bytes([0x6F, 8])

    def cell(self, value):
        if value is None:
            return b"\x00"
        datetime_value = datetime.datetime.fromisoformat(value)
        since = datetime_value - datetime.datetime(1900, 1, 1)
        ticks = since.seconds * 300 + round(since.microseconds * 300 / 1_000_000)
        return b"\x08" + struct.pack("<iI", since.days, ticks)


class Text:
    def __init__(self, length):
        self.bytes = 2 * length

    def metadata(self):
        return b"\xe7" + struct.pack("<H", self.bytes) + COLLATION

    def cell(self, value):
        if value is None:
            return b"\xff\xff"
        content = value.encode("utf-16-le")
        if len(content) > self.bytes:
            raise ValueError("The text is longer than its column")
        return struct.pack("<H", len(content)) + content


class UnlimitedText:
    def metadata(self):
        return b"\xe7\xff\xff" + COLLATION

    def cell(self, value):
        if value is None:
            return b"\xff" * 8
        content = value.encode("utf-16-le")
        chunk = struct.pack("<I", len(content)) + content if content else b""
        return struct.pack("<Q", len(content)) + chunk + struct.pack("<I", 0)


@functools.cache
def column_type(name):
    fixed = {
        "smallint": Integer(2),
        "int": Integer(4),
        "datetime": DateTime(),
        "nvarchar(max)": UnlimitedText(),
    }
    if name in fixed:
        return fixed[name]
    if name.startswith("nvarchar(") and name.endswith(")"):
        return Text(int(name[9:-1]))
    raise ValueError(f"No such type: {name}")


def columns_metadata(columns):
    content = b"\x81" + struct.pack("<H", len(columns))
    for name, kind in columns:
        # Nullable and updatable.
        content += struct.pack("<IH", 0, 0x09) + column_type(kind).metadata() + short_text(name)
    return content


def row(columns, values):
    cells = (column_type(kind).cell(value) for (_, kind), value in zip(columns, values, strict=True))
    return b"\xd1" + b"".join(cells)
