"""How many octets documents take: as XML text, as Fast Infoset, and compressed."""

import pathlib
import subprocess
import sys

COMPRESSORS = {"gzip -6": ["gzip", "-6", "-c", "-n"], "zstd -3": ["zstd", "-3", "-q", "-c"]}
GENERATED = ("records", "mesh", "text", "prose", "languages", "attributes", "table", "small",
             "messages")


def _count(command: list[str]) -> int:
    """The number of octets that a command writes."""
    octets = 0
    with subprocess.Popen(command, stdout=subprocess.PIPE) as process:
        while piece := process.stdout.read(1 << 20):
            octets += len(piece)
    if process.returncode != 0:
        raise subprocess.CalledProcessError(process.returncode, command)
    return octets


def _as_fi(tavrin: pathlib.Path, binary: pathlib.Path) -> int | None:
    """Octets of the document in the form of the writer "FI", if the reader "FI" can read that."""
    form = binary.with_suffix(".form-of-FI")
    convert = [str(tavrin), "convert", "--to", "FI"]
    try:
        subprocess.run([*convert, "--from", "X891", str(binary), str(form)], check=True)
        _count([*convert, "--from", "FI", str(form), "-"])
        return form.stat().st_size
    except subprocess.CalledProcessError:
        print(f"report: {binary.stem} has no size: FI cannot carry it", file=sys.stderr)
        return None


def _of_document(tavrin: pathlib.Path, xml: pathlib.Path) -> dict[str, int | None]:
    binary = xml.with_suffix(".fi")
    sizes = {"XML": xml.stat().st_size, "FI": _as_fi(tavrin, binary),
             "X891": binary.stat().st_size}
    for form, file in (("XML", xml), ("X891", binary)):
        for name, command in COMPRESSORS.items():
            sizes[f"{form}, {name}"] = _count([*command, str(file)])
    return sizes


def _order(xml: pathlib.Path) -> tuple[int, str]:
    """Generated documents come before files."""
    return GENERATED.index(xml.stem) if xml.stem in GENERATED else len(GENERATED), xml.stem


def of_documents(tavrin: pathlib.Path, folder: pathlib.Path) -> dict[str, dict[str, int | None]]:
    """Sizes of each document of a folder that bench_tavrin has written, by document and form."""
    documents = sorted(folder.glob("*.xml"), key=_order)
    return {xml.stem: _of_document(tavrin, xml) for xml in documents}
