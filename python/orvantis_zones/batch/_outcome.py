"""What one recording came to, as bytes that travel and are kept."""
from __future__ import annotations

import hashlib
import json
from dataclasses import asdict, dataclass
from decimal import Decimal

TABLES = ("events", "zones", "lines")
_MAGIC = b"orvantis-zones recording 1\n"


@dataclass(frozen=True)
class Outcome:
    """kind: "" when it was evaluated; else what kept it from that, which text says. begin, end: of its stamps, exact."""
    kind: str = ""
    text: str = ""
    frames: int = 0
    begin: str = ""
    end: str = ""
    warnings: tuple[str, ...] = ()
    events: str = ""
    zones: str = ""
    lines: str = ""
    host: str = ""
    attempts: int = 1
    seconds: float = 0.0

    def length(self) -> Decimal:
        """Seconds from the first stamp to the last."""
        return Decimal(self.end) - Decimal(self.begin) if self.frames else Decimal(0)

    def pack(self) -> bytes:
        body = json.dumps(asdict(self)).encode()
        return _MAGIC + hashlib.sha256(body).hexdigest().encode() + b"\n" + body

    @classmethod
    def unpack(cls, packed: bytes) -> Outcome:
        """Raises ValueError when it was cut or changed."""
        if not packed.startswith(_MAGIC):
            raise ValueError("it is not a finished recording")
        digest, _, body = packed[len(_MAGIC):].partition(b"\n")
        if hashlib.sha256(body).hexdigest().encode() != digest:
            raise ValueError("it was cut or changed")
        values = json.loads(body)
        values["warnings"] = tuple(values["warnings"])
        return cls(**values)
