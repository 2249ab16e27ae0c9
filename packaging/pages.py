#!/usr/bin/env python3
"""Manual pages and completions of the command, made of what `--help` prints.

    pages.py --vexel build/bin/vexel --version 0.1.0 --out FOLDER

FOLDER is made anew, with man1/vexel.1.gz, a page vexel-VERB.1.gz for each verb,
bash/vexel for bash and zsh/_vexel for zsh. The options stand in one place, the
programs themselves, so nothing here knows a verb by name.
"""

import argparse
import dataclasses
import gzip
import pathlib
import re
import shutil
import subprocess

# The extensions that the shell offers for an argument of that name.
EXTENSIONS = {"MOVIE": "vxf", "TEXT": "vxt", "ART": "svg|png|jpg|jpeg", "FILE": ""}
# Options with such a value take a file.
FILE_VALUES = {"OUT", "MOVIE", "PICTURE", "FILE", "FOLDER"}


@dataclasses.dataclass
class Option:
    names: list          # "-o" or "-h", "--help"
    value: str           # "" for a flag
    choices: list        # the values it takes, if they are few
    required: bool
    repeated: bool
    excludes: list
    help: str


@dataclasses.dataclass
class Verb:
    name: str
    summary: str
    usage: str
    arguments: list      # (name, required, help)
    options: list
    notes: list          # paragraphs
    examples: list       # lines


def rows(lines):
    """The rows of a section: a head at two blanks, its text at the column
    behind, or alone on the lines below."""
    found = []
    for line in lines:
        if line.startswith("  ") and line[2:3].strip():
            head, _, text = line[2:].partition("  ")
            found.append([head, text.strip()])
        else:
            found[-1][1] = (found[-1][1] + " " + line.strip()).strip()
    return found


def read_option(head, text):
    words, _, excludes = head.partition(" Excludes: ")
    words = words.split()
    names = words.pop(0).split(",")
    required = "REQUIRED" in words
    repeated = "..." in words
    value = next((word for word in words if word not in ("REQUIRED", "...")), "")
    value, _, listed = value.partition(":")
    choices = listed.strip("{}").split(",") if listed else []
    if "|" in value:
        choices = value.split("|")
    return Option(names, value, choices, required, repeated, excludes.split(), text)


def read_help(command, name):
    text = subprocess.run(command + ["--help"], check=True, capture_output=True,
                          text=True).stdout
    paragraphs = [part.split("\n") for part in text.strip("\n").split("\n\n")]
    head = paragraphs.pop(0)
    verb = Verb(name, head[0], head[1].removeprefix("Usage: "), [], [], [], [])
    others = {}
    for part in paragraphs:
        if part[0] == "Positionals:":
            for argument, what in rows(part[1:]):
                words = argument.split()
                verb.arguments.append((words[0], "REQUIRED" in words, what))
        elif part[0] == "Options:":
            verb.options = [read_option(*row) for row in rows(part[1:])]
        elif part[0] == "Subcommands:":
            others = rows(part[1:])
        else:
            read_footer(verb, part)
    return verb, others


def read_footer(verb, lines):
    """Notes, then examples: the line that says so and what stands below at an
    indent."""
    note = []
    inside = False
    for line in lines:
        begins = re.match(r"Examples?: (.*)", line)
        inside = bool(begins) or (inside and line.startswith(" "))
        if inside:
            verb.examples.append(begins.group(1) if begins else line.strip())
        else:
            note.append(line)
    if note:
        verb.notes.append(" ".join(note))


# --- Manual pages ---

def roff(text):
    text = text.replace("\\", r"\(rs").replace("-", r"\-").replace("'", r"\(aq")
    text = text.replace("`", r"\(ga").replace("^", r"\(ha").replace("~", r"\(ti")
    return r"\&" + text if text.startswith(".") else text


def sentence(text):
    return text[:1].upper() + text[1:] + ("" if text.endswith(".") else ".")


def option_head(option):
    head = ", ".join(r"\fB" + roff(name) + r"\fR" for name in option.names)
    if option.value:
        head += r" \fI" + roff("|".join(option.choices) or option.value) + r"\fR"
    return head


def option_text(option):
    text = roff(option.help)
    if option.required:
        text += " (required)"
    if option.repeated:
        text += " (may be given again)"
    if option.excludes:
        text += " (not with " + ", ".join(r"\fB" + roff(o) + r"\fR" for o in option.excludes) + ")"
    return text


STATUS = [("0", "It is done."),
          ("1", "The work failed: a bad movie, or a file that cannot be read or written."),
          ("2", "The command line, or a line of a script, is wrong.")]


def page(verb, version, others, see):
    title = "vexel" + ("-" + verb.name if verb.name else "")
    lines = [r'.\" Made of the output of --help.',
             f'.TH {roff(title.upper())} 1 "" "vexel {version}" "User Commands"',
             ".SH NAME", f"{roff(title)} \\- {roff(verb.summary)}",
             ".SH SYNOPSIS", r"\fB" + roff("vexel " + verb.name).strip() + r"\fR " +
             roff(verb.usage.removeprefix("vexel").strip().removeprefix(verb.name).strip()),
             ".SH DESCRIPTION", roff(sentence(verb.summary))]
    for note in verb.notes:
        lines += [".PP", roff(note)]
    if verb.arguments:
        lines.append(".SH ARGUMENTS")
        for name, required, what in verb.arguments:
            lines += [".TP", rf"\fI{roff(name)}\fR", roff(what) + ("" if required else " (optional)")]
    if others:
        lines.append(".SH VERBS")
        for name, what in others:
            lines += [".TP", rf"\fB{roff('vexel-' + name)}\fR(1)", roff(what)]
    lines.append(".SH OPTIONS")
    for option in verb.options:
        lines += [".TP", option_head(option), option_text(option)]
    lines.append(".SH EXIT STATUS")
    for status, what in STATUS:
        lines += [".TP", rf"\fB{status}\fR", what]
    if verb.examples:
        lines += [".SH EXAMPLES", ".nf"] + [roff(line) for line in verb.examples] + [".fi"]
    lines += [".SH SEE ALSO", ", ".join(rf"\fB{roff(name)}\fR(1)" for name in see)]
    return "\n".join(lines) + "\n"


# --- Completions ---

def quoted(text):
    return "'" + text.replace("'", r"'\''") + "'"


def first_extension(verb):
    return EXTENSIONS.get(verb.arguments[0][0], "") if verb.arguments else ""


def bash(verbs):
    lines = ["# Completion of vexel for bash; made of the output of --help.",
             "_vexel_files() {",
             "  # $1: extensions, or nothing for any file; folders always.",
             "  local cur=$2 file",
             "  while IFS= read -r file; do COMPREPLY+=(\"$file\"); done < <(",
             "    if [ -z \"$1\" ]; then compgen -f -- \"$cur\"; else",
             "      compgen -d -- \"$cur\"; compgen -f -- \"$cur\" | grep -E \"\\.($1)\\$\"; fi)",
             "}",
             "_vexel() {",
             "  local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD-1]}",
             "  COMPREPLY=()",
             "  if [ \"$COMP_CWORD\" -eq 1 ]; then",
             "    COMPREPLY=($(compgen -W " +
             quoted(" ".join([v.name for v in verbs] + ["--help"])) + " -- \"$cur\"))",
             "    return",
             "  fi",
             "  case ${COMP_WORDS[1]}:$prev in"]
    for verb in verbs:
        for option in verb.options:
            if not option.value:
                continue
            at = "|".join(f"{verb.name}:{name}" for name in option.names)
            if option.choices:
                act = f"COMPREPLY=($(compgen -W {quoted(' '.join(option.choices))} -- \"$cur\"))"
            elif option.value in FILE_VALUES:
                act = "_vexel_files '' \"$cur\""
            else:
                act = ":"
            lines.append(f"    {at}) {act}; return ;;")
    lines += ["  esac", "  local options extensions=", "  case ${COMP_WORDS[1]} in"]
    for verb in verbs:
        words = " ".join(name for option in verb.options for name in option.names)
        lines.append(f"    {verb.name}) options={quoted(words)} "
                     f"extensions={quoted(first_extension(verb))} ;;")
    lines += ["    *) return ;;", "  esac",
              "  case $cur in",
              "    -*) COMPREPLY=($(compgen -W \"$options\" -- \"$cur\")) ;;",
              "    *) _vexel_files \"$extensions\" \"$cur\" ;;",
              "  esac", "}",
              "complete -o filenames -F _vexel vexel"]
    return "\n".join(lines) + "\n"


def zsh_text(text):
    return text.replace("\\", r"\\").replace("[", r"\[").replace("]", r"\]").replace(":", r"\:")


def zsh_files(extensions):
    # A lone word in brackets would be taken for qualifiers.
    pattern = f"({extensions})" if "|" in extensions else extensions
    return f'_files -g "*.{pattern}"' if extensions else "_files"


def zsh_option(option):
    spec = f"[{zsh_text(option.help)}]"
    if option.value:
        if option.choices:
            action = "(" + " ".join(option.choices) + ")"
        else:
            action = "_files" if option.value in FILE_VALUES else " "
        spec += f":{zsh_text(option.value)}:{action}"
    if len(option.names) > 1:
        return [quoted(f"({' '.join(option.names)}){name}{spec}") for name in option.names]
    excludes = f"({' '.join(option.excludes)})" if option.excludes else ""
    return [quoted(("*" if option.repeated else excludes) + option.names[0] + spec)]


def zsh(verbs):
    lines = ["#compdef vexel", "# Completion of vexel for zsh; made of the output of --help.",
             "_vexel() {", "  local -a verbs", "  verbs=("]
    lines += ["    " + quoted(f"{v.name}:{v.summary}") for v in verbs]
    lines += ["  )",
              "  if (( CURRENT == 2 )); then",
              "    if [[ $words[2] == -* ]]; then _arguments '(- *)'{-h,--help}'[print help]'",
              "    else _describe verb verbs; fi",
              "    return",
              "  fi",
              "  local verb=$words[2]",
              "  shift words",
              "  (( CURRENT-- ))",
              "  case $verb in"]
    for verb in verbs:
        specs = [spec for option in verb.options for spec in zsh_option(option)]
        for i, (name, required, _) in enumerate(verb.arguments):
            extensions = EXTENSIONS.get(name, "")
            specs.append(quoted(f"{i + 1}{'' if required else ':'}:{name}:{zsh_files(extensions)}"))
        lines.append(f"    {verb.name}) _arguments \\")
        lines += [f"      {spec} \\" for spec in specs[:-1]]
        lines.append(f"      {specs[-1]} ;;")
    lines += ["  esac", "}", "_vexel \"$@\""]
    return "\n".join(lines) + "\n"


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--vexel", required=True)
    parser.add_argument("--version", required=True)
    parser.add_argument("--out", required=True, type=pathlib.Path)
    words = parser.parse_args()

    command, names = read_help([words.vexel], "")
    command.summary = command.summary.removeprefix("vexel, ")
    command.summary = "a player and maker " + command.summary
    verbs = [read_help([words.vexel, name], name)[0] for name, _ in names]

    shutil.rmtree(words.out, ignore_errors=True)
    for folder in ("man1", "bash", "zsh"):
        (words.out / folder).mkdir(parents=True)

    def write_page(name, text):
        # Without a time inside, the same build gives the same file.
        packed = gzip.compress(text.encode(), 9, mtime=0)
        (words.out / "man1" / (name + ".1.gz")).write_bytes(packed)

    write_page("vexel", page(command, words.version, names, [f"vexel-{name}" for name, _ in names]))
    for verb in verbs:
        write_page("vexel-" + verb.name, page(verb, words.version, [], ["vexel"]))
    (words.out / "bash" / "vexel").write_text(bash(verbs))
    (words.out / "zsh" / "_vexel").write_text(zsh(verbs))


main()
