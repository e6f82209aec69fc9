"""What every page is made of, Nimbrel's and those of single scenes."""

import base64
import gzip
import hashlib
import html
import json
import pathlib

HERE = pathlib.Path(__file__).resolve().parent
SCRIPTS = ["files.js", "music.js", "input.js", "page.js"]
NOTHING = "data:,"  # the address of a picture that there is not


class Parts:
    """`show`: what the page is told of what it plays; `program`: the program's path less its suffix."""

    def __init__(self, show, program, further_scripts=()):
        self.show = show
        self.program = program.with_suffix(".wasm").read_bytes()
        self.worker = "".join(path.read_text() for path in [
            program.with_suffix(".js"), *further_scripts, HERE / "worker.js"])
        self.template = (HERE / "page.html").read_text()
        self.style = (HERE / "page.css").read_text()
        self.script = "".join((HERE / name).read_text() for name in SCRIPTS)

    def names(self):
        """Texts of the template that the show is called by."""
        return {name: html.escape(self.show[name]) for name in ("title", "caption", "description")}

    def facts(self, index, **files):
        """`files`: name and content of each; "" and nothing for what does not come by itself."""
        described = {kind: {"name": name, "size": len(content)} for kind, (name, content) in files.items()}
        return json.dumps({"show": self.show, "index": index, "files": described}).replace("<", "\\u003c")


class Pack:
    """Files in one piece, and where each lies in it."""

    def __init__(self):
        self.content = bytearray()
        self.index = []

    def add(self, name, content, **how):
        self.index.append({"path": name, "offset": len(self.content), "size": len(content), **how})
        self.content += content


def script_sum(text):
    return "'sha256-" + base64.b64encode(hashlib.sha256(text.encode()).digest()).decode() + "'"


def policy(**sources):
    """Nothing but what is named may be loaded or run."""
    rules = {"default": "'none'", "base-uri": "'none'", "form-action": "'none'", **sources}
    named = {"default": "default-src"}
    return "; ".join(f"{named.get(rule, rule.replace('_', '-'))} {value}" for rule, value in rules.items())


def fill(template, **parts):
    for name, text in parts.items():
        template = template.replace(f"@{name}@", text)
    return template


def data_address(path, kind):
    return f"data:{kind};base64," + base64.b64encode(path.read_bytes()).decode()


def inert(text):
    """A script's text as the content of a script element."""
    return text.replace("</script", "<\\/script").replace("<!--", "<\\!--")


def embedded(name, content):
    text = base64.b64encode(gzip.compress(content, 9, mtime=0)).decode()
    return f'<script type="text/plain" id="file-{name}">{text}</script>'


def single(page, pack, logo=NOTHING, still=NOTHING):
    """The page as one file. It holds every picture: nothing of it has to come over a line, so that
    nothing is painted."""
    style, script = page.style, inert(page.script)
    rules = policy(
        script_src=f"{script_sum(script)} blob: 'wasm-unsafe-eval'", worker_src="blob:",
        style_src=script_sum(style), img_src="data:", media_src="'self' file:",
        connect_src="'none'")
    files = "\n".join([
        f'<script type="text/plain" id="file-worker">{inert(page.worker)}</script>',
        embedded("program", page.program), embedded("pack", pack.content)])
    return fill(
        page.template, policy=rules, style=f"<style>{style}</style>", script=f"<script>{script}</script>",
        logo=logo, still=still,
        facts=page.facts(
            pack.index, program=("", page.program), pack=("", pack.content), painter=("", b""), worker=("", b"")),
        files=files, **page.names())
