# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""The files of an installation agree with each other and with the programs, in any place."""

import os
import pathlib
import re
import shutil
import subprocess

import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]
APP_ID = "io.github.quillet.Quillet"


def output(*command):
    done = subprocess.run(
        command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, timeout=120
    )
    assert done.returncode == 0, done.stdout
    return done.stdout


@pytest.fixture(scope="module")
def prefix(tmp_path_factory):
    """An installation that was moved after it was made."""
    first = tmp_path_factory.mktemp("made") / "here"
    output("cmake", "--install", os.environ["QUILLET_BUILD_DIR"], "--prefix", str(first))
    moved = tmp_path_factory.mktemp("moved") / "some where"
    shutil.move(first, moved)
    return moved


def test_the_desktop_accepts_entry_and_metainfo(prefix):
    output("desktop-file-validate", str(prefix / f"share/applications/{APP_ID}.desktop"))
    metainfo = prefix / f"share/metainfo/{APP_ID}.metainfo.xml"
    output("appstreamcli", "validate", "--pedantic", "--no-net", str(metainfo))


def test_entry_icons_and_metainfo_share_one_identifier(prefix):
    entry = (prefix / f"share/applications/{APP_ID}.desktop").read_text()
    assert f"Icon={APP_ID}\n" in entry
    metainfo = (prefix / f"share/metainfo/{APP_ID}.metainfo.xml").read_text()
    assert f"<id>{APP_ID}</id>" in metainfo and f">{APP_ID}.desktop<" in metainfo
    icons = {file.name for file in (prefix / "share/icons").rglob("*.*")}
    assert icons == {f"{APP_ID}.svg", f"{APP_ID}.png", f"{APP_ID}-symbolic.svg"}
    for size in (16, 48, 512):  # a PNG's size stands in its header
        png = prefix / f"share/icons/hicolor/{size}x{size}/apps/{APP_ID}.png"
        assert png.read_bytes()[16:24] == size.to_bytes(4, "big") * 2
    for action in re.search("^Actions=(.*);$", entry, re.M)[1].split(";"):
        assert f"[Desktop Action {action}]" in entry


@pytest.mark.parametrize("program", ["quillet", "quillet-backend"])
def test_programs_pages_and_completions_agree(prefix, program):
    version = output(str(prefix / "bin" / program), "--version").split()[-1]
    page = (prefix / f"share/man/man1/{program}.1").read_text()
    assert f"Quillet {version}" in page.splitlines()[0]
    assert (
        f'<release version="{version}"' in next((prefix / "share/metainfo").iterdir()).read_text()
    )

    options = set(re.findall(r"--([a-z][a-z-]+)", output(str(prefix / "bin" / program), "--help")))
    options -= {"help-all"}
    assert "help" in options
    shells = [f"bash-completion/completions/{program}", "zsh/vendor-completions/_quillet"]
    for shell in [*shells, f"fish/vendor_completions.d/{program}.fish"]:
        text = (prefix / "share" / shell).read_text()
        missing = {option for option in options if option not in text}
        assert not missing, f"{shell} lacks {missing}"
    plain = page.replace("\\-", "-")
    assert not {option for option in options if f"--{option}" not in plain}


def test_no_installed_text_names_the_place_where_it_was_made(prefix):
    for file in prefix.rglob("*"):
        if file.is_file() and file.stat().st_size < 100_000 and file.parent.name != "bin":
            assert os.environ["QUILLET_BUILD_DIR"].encode() not in file.read_bytes(), file


def lines_of(path):
    return [line for line in (ROOT / path).read_text().splitlines() if line and line[0] != "#"]


def field(name, control):
    text = re.search(rf"^{name}:((?:\n .*)+)", control, re.M)[1]
    names = [re.sub(r" *[(<\[].*", "", item).strip(" ,") for item in text.strip().split(",\n")]
    return {item for item in names if not item.startswith("${")}


def test_all_lists_of_packages_say_the_same():
    control = (ROOT / "debian/control").read_text()
    assert field("Depends", control) == set(lines_of("packaging/runtime-depends.txt"))
    assert field("Recommends", control) == set(lines_of("packaging/runtime-recommends.txt"))
    listed = (ROOT / "packaging/packages.txt").read_text()
    needed = set(listed.partition("[build]\n")[2].partition("\n\n")[0].split())
    # What every Debian build has, and what only makes ours quicker.
    needed -= {"g++", "ccache"}
    tests_only = {"debhelper-compat", "libgtest-dev", "libgmock-dev"}
    assert field("Build-Depends", control) - tests_only == needed
