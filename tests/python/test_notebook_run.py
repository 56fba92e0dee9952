"""A notebook runs, and its page shows what objects show of themselves."""
import base64
import json
import os
import re
import shutil
import subprocess
import sys

import pytest
from conftest import CROSSING

pytest.importorskip("nbconvert", reason="python3-nbconvert IS NOT INSTALLED: NO NOTEBOOK WAS RUN")
pytest.importorskip("ipykernel", reason="python3-ipykernel IS NOT INSTALLED: NO NOTEBOOK WAS RUN")
pytest.importorskip("matplotlib")
pytest.importorskip("pandas")

CELLS = {
    "setup": """import numpy as np
import orvantis_zones as oz
from orvantis_zones.batch import evaluate
site = oz.load("crossing.json")
points = np.random.default_rng(1).uniform((-5, -8, 0), (30, 20, 3), (5000, 3))
moments = [(k / 10, points[k * 200:k * 200 + 500], None) for k in range(20)]
recordings = [oz.Recording.from_arrays(moments, name=f"day {k} <a>") for k in range(3)]
run = oz.evaluate(site, recordings[0])""",
    "site": "site",
    "another site": "other = site.copy(); other.fields[0] = None; other",
    "report": "oz.validate('broken.json')",
    "run": "run",
    "table": "run.events",
    "frame": "run.zones.to_pandas()",
    "plot": "axes = oz.plot(site, points=points, tracks={7: [(11, 5), (11, 10)]})",
    "bar": "batch = evaluate(site, [*recordings, 'none.pcd'], progress=True)",
    "batch": "batch",
}


def notebook():
    cells = [{"cell_type": "code", "execution_count": None, "metadata": {}, "outputs": [], "source": text}
             for text in CELLS.values()]
    return {"cells": cells, "metadata": {"kernelspec": {"name": "here", "display_name": "here", "language": "python"}},
            "nbformat": 4, "nbformat_minor": 4}


@pytest.fixture(scope="module")
def made(tmp_path_factory):
    """Outputs by cell, and the page. With ORVANTIS_NOTEBOOK_PAGE it is kept under that name, to be looked at."""
    folder = tmp_path_factory.mktemp("notebook")
    shutil.copy(CROSSING, folder)
    (folder / "broken.json").write_text('{"ZoneDetector": {"EvaluationField": [{"index": 9, "Zone": []}]}}')
    (folder / "tour.ipynb").write_text(json.dumps(notebook()))
    kernel = folder / "kernels" / "here"
    kernel.mkdir(parents=True)
    (kernel / "kernel.json").write_text(json.dumps(
        {"argv": [sys.executable, "-B", "-m", "ipykernel_launcher", "-f", "{connection_file}"], "display_name": "here",
         "language": "python"}))
    environment = {**os.environ, "JUPYTER_PATH": str(folder), "IPYTHONDIR": str(folder / "ipython"),
                   "JUPYTER_RUNTIME_DIR": str(folder / "runtime"), "JUPYTER_CONFIG_DIR": str(folder / "config"),
                   "HOME": str(folder)}
    for to in ("notebook", "html"):
        words = ["--execute", "--output", "run.ipynb", "tour.ipynb"] if to == "notebook" else ["run.ipynb"]
        done = subprocess.run([sys.executable, "-m", "nbconvert", "--to", to, *words], cwd=folder, env=environment,
                              capture_output=True, text=True, timeout=300)
        assert done.returncode == 0, done.stderr
    page = (folder / "run.html").read_text(encoding="utf-8")
    if "ORVANTIS_NOTEBOOK_PAGE" in os.environ:
        shutil.copy(folder / "run.html", os.environ["ORVANTIS_NOTEBOOK_PAGE"])
    run = json.loads((folder / "run.ipynb").read_text(encoding="utf-8"))
    return {name: cell["outputs"] for name, cell in zip(CELLS, run["cells"])}, page


def html(outputs):
    return "".join("".join(output.get("data", {}).get("text/html", "")) for output in outputs)


def pictures(text):
    return [base64.b64decode(data).decode() for data in re.findall(r'src="data:image/svg\+xml;base64,([^"]+)"', text)]


def test_no_cell_fails_or_writes_to_the_error_stream(made):
    outputs, _ = made
    assert [output for cell in outputs.values() for output in cell if output["output_type"] in ("error", "stream")] == []


def test_sites_and_runs_show_pictures_that_share_no_id(made):
    outputs, page = made
    shown = [pictures(html(outputs[name])) for name in ("site", "another site", "run")]
    assert [len(each) for each in shown] == [1, 1, 1]
    ids = [set(re.findall(r' id="([^"]+)"', picture)) for [picture] in shown]
    assert all(ids) and not ids[0] & ids[1] and not ids[0] & ids[2]
    assert [pictures(page)] == [[picture for [picture] in shown]]


def test_reports_and_tables_show_rows(made):
    outputs, page = made
    assert html(outputs["report"]).count("<tr>") == 4 and "is refused" in html(outputs["report"])
    assert html(outputs["table"]).count("<tr>") > 10 and "Walkway" in html(outputs["table"])
    assert 'class="dataframe"' in html(outputs["frame"])
    assert "day 0 &lt;a&gt;" in html(outputs["run"]) and "<a>" not in page.replace("&lt;a&gt;", "").split("<body")[1]


def test_matplotlib_draws_and_a_batch_has_its_bar(made):
    outputs, _ = made
    [plot] = [output["data"]["image/png"] for output in outputs["plot"] if "image/png" in output.get("data", {})]
    assert len(plot) > 10_000
    assert html(outputs["bar"]).startswith('<progress value="4" max="4"></progress> 4 of 4 recordings, ')
    assert "none.pcd" in html(outputs["batch"]) and "Errors:" in html(outputs["batch"])
