#!/usr/bin/env python3
"""kvd at a real terminal: a pseudo-terminal is typed into and its screen read.

Checks line editing and history recall with the cursor keys, history kept
between sessions under $HOME (and none written when home is no folder),
completion of command words, family rows, keywords and file names, prompt
dialogues and the pager, and Ctrl-C ending the shell as quit does with the
terminal left in the mode it was found in.

Usage: kvd_pty.py path/to/kvd
"""
import os
import select
import signal
import subprocess
import sys
import tempfile
import termios
import time
import fcntl

KVD = os.path.abspath(sys.argv[1])
FAILURES = []


class Session:
    def __init__(self, home, trace, cwd=None):
        self.master, self.slave = os.openpty()
        self.before = termios.tcgetattr(self.slave)
        env = dict(os.environ, HOME=home, KVD_SIM_TRACE=trace, TERM="vt100")
        env.pop("KVD_SIM_FLEET", None)
        self.pid = os.fork()
        if self.pid == 0:
            os.setsid()
            fcntl.ioctl(self.slave, termios.TIOCSCTTY, 0)
            for fd in (0, 1, 2):
                os.dup2(self.slave, fd)
            os.close(self.master)
            if cwd:
                os.chdir(cwd)
            os.execve(KVD, [KVD], env)
        self.screen = b""
        self.mark = 0

    def read_until(self, text, timeout=20.0):
        """Reads the terminal until text appears after the mark."""
        text = text.encode() if isinstance(text, str) else text
        end = time.monotonic() + timeout
        while text not in self.screen[self.mark:]:
            left = end - time.monotonic()
            if left <= 0:
                raise TimeoutError("no %r in %r" % (text, self.screen[self.mark:]))
            ready, _, _ = select.select([self.master], [], [], left)
            if ready:
                try:
                    self.screen += os.read(self.master, 4096)
                except OSError:
                    raise TimeoutError("terminal closed before %r" % text)
        found = self.screen.index(text, self.mark) + len(text)
        got = self.screen[self.mark:found]
        self.mark = found
        return got.decode(errors="replace")

    def type(self, keys):
        os.write(self.master, keys.encode())

    def editor_ready(self, timeout=5.0):
        """Waits until the editor has the terminal in its own mode: it may
        draw the prompt before it switches, and keys typed before then are
        seen by the terminal's line discipline instead."""
        end = time.monotonic() + timeout
        while termios.tcgetattr(self.slave)[3] == self.before[3] and time.monotonic() < end:
            time.sleep(0.02)
        return termios.tcgetattr(self.slave)[3] != self.before[3]

    def command(self, keys, expect="cmd> "):
        self.editor_ready()
        self.type(keys)
        return self.read_until(expect)

    def wait(self):
        _, status = os.waitpid(self.pid, 0)
        return os.waitstatus_to_exitcode(status)

    def close(self):
        os.close(self.master)
        os.close(self.slave)


def check(what, ok, detail=""):
    if not ok:
        FAILURES.append("%s: %r" % (what, detail))


def main():
    work = tempfile.mkdtemp(prefix="kvd_pty.")
    home = os.path.join(work, "home")
    os.mkdir(home)
    files = os.path.join(work, "files")
    os.mkdir(files)
    for name in ("fw_image.bin", "fw_notes.txt"):
        open(os.path.join(files, name), "w").close()
    os.mkdir(os.path.join(files, "objects"))
    open(os.path.join(files, "objects", "inner.txt"), "w").close()
    trace = os.path.join(work, "trace")

    # First session: editing, recall, completion, prompts; left with quit.
    s = Session(home, trace, cwd=files)
    s.read_until("cmd> ")
    check("editor owns the terminal at the prompt", s.editor_ready(), "local modes unchanged")
    # An edited line is cut at 131 characters as a piped one is: the rest
    # runs as the next line, after its own prompt.
    # A line wider than the screen is redrawn with its prompt: the output
    # is found by what the commands print.
    s.type("set lines".ljust(130) + "6\r")
    time.sleep(0.3)
    out = s.command("set\r", expect="iocb 0 lines") + s.read_until("cmd> ")
    check("131 characters are one line", "lines 6" in out, out)
    s.editor_ready()
    s.type("set lines 5".ljust(131) + "set\r")
    out = s.read_until("iocb 0 lines") + s.read_until("cmd> ")
    check("the 132nd character starts the next line", "cmd> board 0  ring 0  iocb 0 lines 5" in out, out)
    out = s.command("set lines 7\r")
    out = s.command("sett\x7f\r")  # backspace edits the line before it runs
    check("backspace", "lines 7" in out, out)
    s.command("set lines 9\r")
    out = s.command("\x1b[A\x1b[A\r")  # up twice: "set"
    check("up arrow recalls the older line", "board 0  ring 0  iocb 0 lines 9" in out, out)
    out = s.command("set ring 3\x1b[D4\r")  # left once, insert before the last digit
    out = s.command("set\r")
    check("cursor left edits inside the line", "ring 43" in out, out)

    # The editor redraws as it likes: completions are judged by what runs.
    s.type("mb\t")
    time.sleep(0.3)
    s.type("rdr\t")
    got = s.read_until("rdrev2")
    got += s.read_until("cmd> ")
    for row in ("rdrcfg", "rdrpi", "rdrev"):
        check("mbox rdr<Tab> lists " + row, row in got, got)
    check("mbox rdr<Tab> lists only rdr rows", "rdsparm" not in got, got)
    out = s.command("ev2\t\r")
    check("mb<Tab> and rdrev2<Tab> complete the line", "second hw rev" in out, out)

    out = s.command("set li\t12\r")
    out = s.command("set\r")
    check("set keyword completes", "lines 12" in out, out)

    out = s.command("! ls fw_i\t\r")
    check("file name completes", "fw_image.bin" in out and "fw_notes" not in out, out)
    out = s.command("! ls ob\t\r")
    check("folder name completes", "inner.txt" in out, out)

    # A prompt dialogue at the terminal: Ctrl-R finds the older line, and
    # the pager waits for one key.
    out = s.command("\x12set ri\r")
    check("reverse search", "ring 43" in out, out)
    # A prompt dialogue reads its answer through the editor too.
    s.editor_ready()
    s.type("mbox initlink\r")
    s.read_until("link flags: ")
    out = s.command("0\r")
    check("prompt dialogue", "Command: 0x5" in out, out)
    s.editor_ready()
    s.type("quit\r")
    check("quit status", s.wait() == 1)
    check("terminal restored after quit", termios.tcgetattr(s.slave) == s.before)
    s.close()

    hist = os.path.join(home, ".kvd_history")
    check("history file written", os.path.exists(hist))
    check("history file private", os.stat(hist).st_mode & 0o077 == 0, oct(os.stat(hist).st_mode))

    # Second session: the first one's lines come back; Ctrl-C ends it. Older
    # lines fill the file up to its 500 before it starts.
    first = open(hist).read().splitlines()[1:]
    check("history file holds the session's lines", "set\\040lines\\04012" in first, first)
    with open(hist, "w") as f:
        f.write("_HiStOrY_V2_\n" + "".join("rdpci\\0400\\040%d\n" % i for i in range(500 - len(first))))
        f.write("".join(line + "\n" for line in first))
    open(trace, "w").close()
    s = Session(home, trace)
    s.read_until("cmd> ")
    s.command("\x12set li\r")
    out = s.command("set\r")
    check("history from the last session", "lines 12" in out, out)
    s.editor_ready()
    s.type("set bo")
    time.sleep(0.2)
    s.type("\x03")
    check("Ctrl-C status", s.wait() == 1)
    check("terminal restored after Ctrl-C", termios.tcgetattr(s.slave) == s.before)
    s.close()
    # two lines entered: the two oldest gone, none more
    kept = open(hist).read().splitlines()
    check("history keeps the newest 500 lines", len(kept) == 501 and kept[1] == "rdpci\\0400\\0402"
          and kept[-1] == "set", kept[:2] + kept[-2:])
    lines = open(trace).read().splitlines()
    check("Ctrl-C releases the library", lines and lines[-1].startswith("KVD_FreeDiagEnv"), lines[-3:])
    check("Ctrl-C drops event registrations",
          sum(1 for l in lines if l.startswith("unRegisterForEvent")) == 3, lines[-5:])

    # A home that is not a folder gets no history file, and the shell works.
    s = Session(os.path.join(work, "nohome"), trace)
    s.read_until("cmd> ")
    out = s.command("set\r")
    check("shell without a home", "lines 16" in out, out)
    # The pager at the terminal: Enter goes on, "x" stops the listing, and
    # Ctrl-C at its question ends the shell like quit.
    s.command("set lines 2\r")
    s.editor_ready()
    s.type("getcfg\r")
    pause = "Hit <CR> to continue (x to abort): "
    s.read_until(pause)
    s.type("\r")
    page = s.read_until(pause)
    check("pager goes on at Enter", page.count("Chgstate") == 1, page)
    out = s.command("x\r")
    check("pager stops at x", "0x" not in out, out)
    s.editor_ready()
    s.type("getcfg\r")
    s.read_until(pause)
    s.type("\x03")
    check("Ctrl-C at the pager status", s.wait() == 1)
    check("terminal restored after Ctrl-C at the pager", termios.tcgetattr(s.slave) == s.before)
    s.close()
    check("no history without a home", not os.path.exists(os.path.join(work, "nohome")))

    # Progress of an object read on a terminal's standard error only.
    master, slave = os.openpty()
    out = os.path.join(work, "object.bin")
    run = subprocess.run([KVD, "-b", "2", "-c", "sli4iov read %s /prg/wol.prg 2 1024" % out],
                         stdout=subprocess.PIPE, stderr=slave, env=dict(os.environ, HOME=home))
    os.close(slave)
    # kvd has exited: drain the terminal until its writer side is gone, since
    # one read may return only part of what was written.
    chunks = []
    while True:
        try:
            chunk = os.read(master, 4096)
        except OSError:
            break
        if not chunk:
            break
        chunks.append(chunk)
    shown = b"".join(chunks).decode(errors="replace")
    os.close(master)
    size = os.path.getsize(out)
    check("progress on the terminal", shown.endswith("/prg/wol.prg: %d bytes\r\n" % size), shown)
    check("stdout without progress", b"\r" not in run.stdout and b"Wrote %d bytes" % size in run.stdout,
          run.stdout)

    for f in FAILURES:
        print("FAIL", f)
    print("%d failure(s)" % len(FAILURES))
    return 1 if FAILURES else 0


if __name__ == "__main__":
    signal.alarm(120)
    sys.exit(main())
