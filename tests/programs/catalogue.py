# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""The programs that people write in: how each is started with a text in its input."""

import dataclasses
import pathlib

import pages
import session


@dataclasses.dataclass
class Program:
    """`command` and `file`: {folder} and {file} are filled in. `title`: of the window with the
    input. `click` (parts of the window's width and height), then `keys`, put the caret into it."""

    name: str
    package: str
    command: list
    title: str = "letter"
    file: str = "letter.txt"
    click: tuple = (0.5, 0.5)
    keys: tuple = ()
    environment: dict = dataclasses.field(default_factory=dict)
    # Writes what the program opens, given the session's folder.
    prepare: object = None
    # Copies two line feeds between blocks, where a page's paragraphs keep a distance.
    has_blocks: bool = False


def office(kind, file, package, prepare=None, **more):
    options = ["--norestore", "--nologo", "--nofirststartwizard"]
    place = "-env:UserInstallation=file://{folder}/office"
    return Program(
        f"LibreOffice {kind}",
        package,
        ["soffice", *options, place, "{file}"],
        file=file,
        prepare=prepare and (lambda folder: pages.write_office(folder, prepare)),
        **more,
    )


def thunderbird(kind, is_html):
    def prepare(folder):
        profile = pathlib.Path(folder, "thunderbird")
        profile.mkdir()
        values = {
            "mail.accountmanager.accounts": '"account1"',
            "mail.accountmanager.defaultaccount": '"account1"',
            "mail.account.account1.identities": '"id1"',
            "mail.account.account1.server": '"server1"',
            "mail.identity.id1.useremail": '"writer@example.com"',
            "mail.identity.id1.fullName": '"Writer"',
            "mail.identity.id1.smtpServer": '"smtp1"',
            "mail.identity.id1.valid": "true",
            "mail.identity.id1.compose_html": "true" if is_html else "false",
            "mail.server.server1.type": '"pop3"',
            "mail.server.server1.hostname": '"localhost"',
            "mail.server.server1.name": '"Mail"',
            "mail.server.server1.userName": '"writer"',
            "mail.server.server1.login_at_startup": "false",
            "mail.server.server1.check_new_mail": "false",
            "mail.smtpservers": '"smtp1"',
            "mail.smtpserver.smtp1.hostname": '"localhost"',
            "mail.rights.version": "1",
            "mail.spellcheck.inline": "false",
            "mail.shell.checkDefaultClient": "false",
            "mailnews.start_page.enabled": "false",
            "datareporting.policy.dataSubmissionEnabled": "false",
        }
        lines = [f'user_pref("{key}", {value});' for key, value in values.items()]
        (profile / "user.js").write_text("\n".join(lines))

    return Program(
        f"Thunderbird composer, {kind}",
        "thunderbird",
        [
            "thunderbird",
            "--no-remote",
            "--profile",
            "{folder}/thunderbird",
            "-compose",
            f"to='a@example.com',subject='letter',body='{pages.START}'",
        ],
        title="Write: letter",
        click=(0.5, 0.8),
        prepare=prepare,
        has_blocks=is_html,
    )


def browser(name, package, command, kinds, environment=None):
    for kind in kinds:
        yield Program(
            f"{name}, {kind}",
            package,
            command,
            title="letter page",
            file="page.html",
            click=(0.3, 0.5),
            environment=environment or {},
            prepare=lambda folder, kind=kind: pages.write_page(folder, kind),
            has_blocks=kind in pages.WITH_BLOCKS,
        )


CHROMIUM = [*session.CHROMIUM, "--user-data-dir={folder}/chromium", "file://{file}"]
FIREFOX = ["firefox-esr", "--no-remote", "--profile", "{folder}/firefox", "{file}"]
FALKON = {
    "QTWEBENGINE_DISABLE_SANDBOX": "1",
    "QTWEBENGINE_CHROMIUM_FLAGS": "--force-renderer-accessibility",
}
EPIPHANY = {"WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS": "1"}
PLAIN = ("textarea", "contenteditable")
ZENITY = ["zenity", "--text-info", "--editable", "--title=letter", "--filename={file}"]

PROGRAMS = [
    Program("mousepad", "mousepad", ["mousepad", "--disable-server", "{file}"]),
    Program("gedit", "gedit", ["gedit", "--standalone", "{file}"]),
    Program("pluma", "pluma", ["pluma", "{file}"]),
    Program("GNOME text editor", "gnome-text-editor", ["gnome-text-editor", "-s", "{file}"]),
    Program("featherpad", "featherpad", ["featherpad", "--standalone", "{file}"]),
    Program("KWrite", "kwrite", ["kwrite", "{file}"]),
    Program("Kate", "kate", ["kate", "-b", "{file}"], click=(0.6, 0.5)),
    Program("geany", "geany", ["geany", "-i", "-c", "{folder}/geany", "{file}"], click=(0.6, 0.4)),
    Program("SciTE", "scite", ["scite", "{file}"]),
    Program("zenity", "zenity", ZENITY),
    Program("ghostwriter", "ghostwriter", ["ghostwriter", "{file}"], click=(0.3, 0.4)),
    Program("FocusWriter", "focuswriter", ["focuswriter", "{file}"], title="."),
    Program(
        "Zim",
        "zim",
        ["zim", "--standalone", "{folder}/notes", "letter"],
        prepare=pages.write_notebook,
        click=(0.6, 0.6),
    ),
    Program("AbiWord", "abiword", ["abiword", "{file}"]),
    office("Writer", "letter.fodt", "libreoffice-writer", "text", click=(0.5, 0.4)),
    office("Calc", "letter.fods", "libreoffice-calc", "spreadsheet", keys=("ctrl+Home", "F2")),
    office("Impress", "letter.fodp", "libreoffice-impress", "presentation", keys=("Tab", "F2")),
    thunderbird("plain", False),
    thunderbird("HTML", True),
    *browser("Chromium", "chromium", CHROMIUM, pages.KINDS),
    *browser("Firefox", "firefox-esr", FIREFOX, pages.KINDS),
    *browser("Falkon", "falkon", ["falkon", "-p", "new", "file://{file}"], PLAIN, FALKON),
    *browser(
        "Epiphany",
        "epiphany-browser",
        ["epiphany", "--private-instance", "file://{file}"],
        PLAIN,
        EPIPHANY,
    ),
]
