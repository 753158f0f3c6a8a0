"""What a process holds and has cost, from /proc."""

import os
from pathlib import Path


def field(path, name):
    with open(path, encoding="ascii") as lines:
        return next(int(line.split()[1]) for line in lines if line.startswith(name + ":"))


def sample(pid):
    """What it holds now, and what it has cost so far."""
    process = Path("/proc") / str(pid)
    times = (process / "stat").read_text(encoding="ascii").rsplit(")", 1)[1].split()
    tasks = [task / "status" for task in (process / "task").iterdir()]
    return {"resident set in MB": field(process / "status", "VmRSS") / 1024,
            "private memory in MB": field(process / "status", "RssAnon") / 1024,
            "descriptors": len(os.listdir(process / "fd")), "threads": len(tasks),
            "processor seconds": (int(times[11]) + int(times[12])) / os.sysconf("SC_CLK_TCK"),
            "wake-ups": sum(field(task, "voluntary_ctxt_switches") for task in tasks)}
