"""Words of the texts that objects show."""


def counted(count: int, word: str) -> str:
    """The count and the word, which has its plural with an s."""
    return f"{count} {word}" if count == 1 else f"{count} {word}s"
