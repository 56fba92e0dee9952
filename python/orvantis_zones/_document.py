"""Checking and loading zone documents."""
import os
from dataclasses import dataclass
from typing import List, Optional

from . import _core
from ._site import Site


class Error(ValueError):
    """Base of what this package raises about its inputs."""


@dataclass(frozen=True)
class Finding:
    """Something wrong or doubtful in a document, as `zone-detector validate` tells it.

    line and column are counted from 1, a column in characters. place is such as
    ZoneDetector/EvaluationField[0]/Zone[1]. kind is a word that stays the same from version to version. severity is
    "error" or "warning". excerpt shows the line of a fault of the JSON.

    >>> validates('{}').findings[0].kind
    'empty-document'
    """
    line: int
    place: str
    text: str
    column: int = 1
    kind: str = ""
    severity: str = "error"
    excerpt: str = ""

    def __str__(self):
        place = _core.printable(self.place) + ": " if self.place else ""
        text = f"{self.line}:{self.column}: {self.severity}: {place}{_core.printable(self.text)}"
        return text + "\n" + self.excerpt if self.excerpt else text


class DocumentError(Error):
    """A zone document is refused. Its text has a line for each error; `findings` has the warnings too."""

    def __init__(self, findings: List[Finding], path: str = ""):
        errors = [finding for finding in findings if finding.severity == "error"]
        head = "1 error" if len(errors) == 1 else f"{len(errors)} errors"
        at = path + ":" if path else ""
        shown = [at + str(finding) for finding in errors[:20]]
        if len(errors) > 20:
            shown.append(f"{len(errors) - 20} more errors; `findings` has them all")
        super().__init__("\n".join([f"{at}{' ' if at else ''}{head}", *shown]))
        self.findings = findings
        self.path = path

    def __reduce__(self):
        return type(self), (self.findings, self.path)


@dataclass(frozen=True)
class Report:
    """What there is to say about a document.

    ok: whether it loads. error: the complaint of the library's own check, as a host is told, if it has one.
    findings: what is wrong or doubtful, in the order of the document.
    """
    ok: bool
    error: Optional[str]
    findings: List[Finding]
    path: str = ""

    def raise_for_error(self):
        """Raises DocumentError unless ok.

        >>> validates("{}").raise_for_error()
        Traceback (most recent call last):
        orvantis_zones.DocumentError: 1 error
        ...
        """
        if not self.ok:
            raise DocumentError(self.findings, self.path)


def _read(path):
    # No longer than what is refused for its length.
    with open(path, "rb") as file:
        return file.read(_core.DOCUMENT_SIZE_LIMIT)


def _bytes(text):
    return text.encode("utf-8", "surrogatepass") if isinstance(text, str) else bytes(text)


def _report(checked, path):
    return Report(checked.ok, checked.complaint or None, [Finding(*entry) for entry in checked.findings], path)


def _load(text, path):
    checked = _core.check(text)
    _report(checked, path).raise_for_error()
    site = Site()
    checked.give_to(site)
    return site


def load(path):
    """Checks and loads a zone document: Site. Raises OSError, DocumentError.

    >>> site = Site()
    >>> site.fields[0] = [Zone(Rectangle((0, 0), (2, 2), name="gate"))]
    >>> site.save("site.json")
    >>> load("site.json").zone(0, 0).name
    'gate'
    """
    return _load(_read(path), os.fspath(path))


def loads(text):
    """Checks and loads a zone document from its text. Raises DocumentError.

    >>> site = Site()
    >>> site.fields[0] = [Zone(Rectangle((0, 0), (2, 2), name="gate"))]
    >>> loads(site.dumps()) == site
    True
    """
    return _load(_bytes(text), "")


def validate(path):
    """What `zone-detector validate` says of a document, as a Report. Raises OSError only.

    >>> with open("broken.json", "w") as file: _ = file.write("{}")
    >>> print(validate("broken.json").findings[0])
    1:1: error: no zone and no counter line; zones belong in "EvaluationField" in "ZoneDetector"
    """
    return _report(_core.check(_read(path)), os.fspath(path))


def validates(text):
    """What `zone-detector validate` says of a text, as a Report.

    >>> report = validates('{"ZoneDetector": }')
    >>> report.ok, report.error
    (False, 'JSON error in line 1, column 18: syntax error')
    """
    return _report(_core.check(_bytes(text)), "")


def dumps(self):
    """The site as the text of a zone document.

    Raises ValueError for what a document cannot hold, such as an infinite height or a sector's origin, and
    DocumentError for what load() would refuse. The active field is not in documents.

    >>> site = Site()
    >>> site.fields[0] = [Zone(Rectangle((0, 0), (2, 2), name="gate"))]
    >>> '"gate"' in site.dumps()
    True
    """
    text = _core.write(self)
    checked = _core.check(text)
    _report(checked, "").raise_for_error()
    lost = checked.lost(self)
    if lost:
        raise ValueError(f"{lost} has something that a document does not hold; copy or pickle the site to keep it")
    return text.decode()


def save(self, path):
    """Writes the site as a zone document: whole or not at all. Raises ValueError as dumps() does, and OSError.

    >>> site = Site()
    >>> site.fields[0] = [Zone(Rectangle((0, 0), (2, 2), name="gate"))]
    >>> site.save("site.json")
    >>> load("site.json") == site
    True
    """
    _core.write_whole(os.fspath(path), dumps(self).encode())


Site.dumps = dumps
Site.save = save
