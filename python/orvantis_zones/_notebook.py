"""How objects show themselves in a notebook."""
import base64
import html


def picture(svg, about):
    """An image of a drawing. Inline SVG loses its content in some notebooks; an image does not."""
    data = base64.b64encode(svg.encode()).decode()
    return f'<img alt="{html.escape(about, quote=True)}" style="max-width:100%" src="data:image/svg+xml;base64,{data}"/>'


def report(self):
    """The findings as a table."""
    head = "loads" if self.ok else "is refused"
    name = html.escape(self.path or "the document")
    if not self.findings:
        return f"<p><code>{name}</code> {head}; nothing is doubtful.</p>"
    rows = "".join(
        f"<tr><td>{f.line}:{f.column}</td><td>{f.severity}</td><td><code>{html.escape(f.place)}</code></td>"
        f'<td style="text-align:left">{html.escape(f.text)}</td></tr>' for f in self.findings)
    return (f"<p><code>{name}</code> {head}.</p><table><thead><tr><th>line:column</th><th>severity</th><th>place</th>"
            f"<th>text</th></tr></thead><tbody>{rows}</tbody></table>")


def site(self):
    """The plan."""
    try:
        return picture(self.to_svg(), repr(self))
    except (ValueError, RuntimeError) as error:
        return f"<p>{html.escape(repr(self))} cannot be drawn: {html.escape(str(error))}</p>"


def run(self):
    """The picture of the run, what it is, and its warnings."""
    try:
        shown = picture(self.to_svg(), repr(self))
    except ValueError as error:
        shown = f"<p>It cannot be drawn: {html.escape(str(error))}</p>"
    warned = "".join(f"<p>Warning: {html.escape(text)}</p>" for text in self.warnings)
    return f"<p>{html.escape(repr(self)[1:-1])}</p>{warned}{shown}"
