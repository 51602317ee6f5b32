# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""The documents that the programs are started with, each holding the text START."""

import html
import json
import pathlib
import subprocess

START = "The old text of the letter."
MODULES = pathlib.Path(__file__).parents[2] / "build" / "programs" / "editors"
PACKAGES = [
    "esbuild",
    "quill",
    "codemirror",
    "lexical",
    "@lexical/rich-text",
    "prosemirror-state",
    "prosemirror-view",
    "prosemirror-model",
    "prosemirror-schema-basic",
    "prosemirror-keymap",
    "prosemirror-commands",
    "prosemirror-history",
]
STYLE = "width:90%;height:600px;white-space:pre-wrap;border:1px solid"
START_JSON = json.dumps(START)
EDITORS = {
    "Quill": f"""import Quill from 'quill';
const editor = new Quill('#t', {{}});
editor.setText({START_JSON} + '\\n');""",
    "CodeMirror": f"""import {{EditorView, basicSetup}} from 'codemirror';
new EditorView({{doc: {START_JSON}, extensions: [basicSetup, EditorView.lineWrapping,
  EditorView.theme({{'&': {{height: '600px'}}}})], parent: t}});""",
    "Lexical": f"""import {{createEditor, $getRoot, $createParagraphNode, $createTextNode}}
  from 'lexical';
import {{registerRichText}} from '@lexical/rich-text';
t.contentEditable = true;
const editor = createEditor({{onError: console.error}});
editor.setRootElement(t);
registerRichText(editor);
editor.update(() => {{ const p = $createParagraphNode(); p.append($createTextNode({START_JSON}));
  $getRoot().append(p); }});""",
    "ProseMirror": f"""import {{EditorState}} from 'prosemirror-state';
import {{EditorView}} from 'prosemirror-view';
import {{schema}} from 'prosemirror-schema-basic';
import {{keymap}} from 'prosemirror-keymap';
import {{baseKeymap}} from 'prosemirror-commands';
import {{history, undo, redo}} from 'prosemirror-history';
const doc = schema.node('doc', null, [schema.node('paragraph', null, [schema.text({START_JSON})])]);
new EditorView(t, {{state: EditorState.create({{doc, plugins: [history(),
  keymap({{'Mod-z': undo, 'Mod-y': redo}}), keymap(baseKeymap)]}})}});""",
}
INPUTS = {
    "textarea": f'<textarea id=t spellcheck=false style="{STYLE}">{START}</textarea>',
    "contenteditable": f'<div id=t contenteditable role=textbox spellcheck=false style="{STYLE}">'
    f"{START}</div>",
    # As frameworks do: each change goes into a state, and the state is written back.
    "controlled textarea": f'<textarea id=t spellcheck=false style="{STYLE}">{START}</textarea>'
    "<script>t.oninput = () => { const state = t.value, at = t.selectionStart;"
    " requestAnimationFrame(() => { t.value = state; t.setSelectionRange(at, at); }); };</script>",
}
WITH_BLOCKS = [*EDITORS, "contenteditable"]
KINDS = [*INPUTS, *EDITORS]


def bundle(kind):
    """The editor and what it needs as one script; fetched from npm once."""
    script = MODULES / f"{kind}.bundle.js"
    if not script.exists():
        MODULES.mkdir(parents=True, exist_ok=True)
        if not (MODULES / "node_modules" / "esbuild").exists():
            subprocess.run(
                ["npm", "install", "--no-audit", "--no-fund", *PACKAGES],
                cwd=MODULES,
                check=True,
                stdout=subprocess.DEVNULL,
            )
        (MODULES / f"{kind}.js").write_text(EDITORS[kind])
        subprocess.run(
            ["node_modules/.bin/esbuild", f"{kind}.js", "--bundle", f"--outfile={script}"],
            cwd=MODULES,
            check=True,
            stderr=subprocess.DEVNULL,
        )
    return script.read_text().replace("</script", "<\\/script")


def write_page(folder, kind):
    body = INPUTS.get(kind)
    if not body:
        body = f'<div id=t style="{STYLE}"></div><script>{bundle(kind)}</script>'
    page = f"<!doctype html><meta charset=utf-8><title>letter page</title>{body}"
    pathlib.Path(folder, "page.html").write_text(page)
    pathlib.Path(folder, "firefox").mkdir(exist_ok=True)


NAMESPACES = " ".join(
    f'xmlns:{name}="urn:oasis:names:tc:opendocument:xmlns:{path}:1.0"'
    for name, path in {
        "office": "office",
        "text": "text",
        "draw": "drawing",
        "svg": "svg-compatible",
        "presentation": "presentation",
        "table": "table",
    }.items()
)
BODIES = {
    "spreadsheet": '<table:table table:name="one"><table:table-row><table:table-cell '
    'office:value-type="string"><text:p>{}</text:p></table:table-cell></table:table-row>'
    "</table:table>",
    "text": "<text:p>{}</text:p>",
    "presentation": '<draw:page draw:name="one" draw:master-page-name=""><draw:frame '
    'svg:width="20cm" svg:height="8cm" svg:x="2cm" svg:y="2cm"><draw:text-box><text:p>{}</text:p>'
    "</draw:text-box></draw:frame></draw:page>",
}


def write_office(folder, kind):
    """A document of LibreOffice in one XML file."""
    file = pathlib.Path(folder, f"letter.fod{kind[0]}")
    body = BODIES[kind].format(html.escape(START))
    file.write_text(
        f'<?xml version="1.0" encoding="UTF-8"?><office:document {NAMESPACES} '
        f'office:version="1.2" office:mimetype="application/vnd.oasis.opendocument.{kind}">'
        f"<office:body><office:{kind}>{body}</office:{kind}></office:body></office:document>"
    )


def write_notebook(folder):
    """A notebook of Zim."""
    notes = pathlib.Path(folder, "notes")
    notes.mkdir()
    (notes / "notebook.zim").write_text("[Notebook]\nversion=0.4\nname=notes\nhome=letter\n")
    (notes / "letter.txt").write_text(
        "Content-Type: text/x-zim-wiki\nWiki-Format: zim 0.4\n\n" + START + "\n"
    )
