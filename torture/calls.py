"""Every call fails in turn: of the system, and for memory. Which calls there are is counted beforehand."""
import errno
import pathlib
import signal
import struct
import tempfile

from torture.process import run_program
from torture.setting import FAILING_CALLS, IN_PLACE, VIEWING, WRITING, fill
from torture.trial import Trial

# How calls can fail. The first is tried from some call on for ever, too.
FOLDERS = (errno.EACCES, errno.EIO, errno.ENOMEM)
OPENING = (errno.EMFILE, errno.EACCES, errno.ENFILE, errno.EIO, errno.ENOMEM)
MAKING = (errno.ENOSPC, errno.EDQUOT, errno.EACCES, errno.EROFS, errno.EIO)
WRITING_FAULTS = (errno.ENOSPC, errno.EIO, errno.EDQUOT, errno.EINTR, errno.EFBIG, "short")
FAULTS = {
    "access": FOLDERS, "stat": FOLDERS, "lstat": FOLDERS, "fstat": (errno.EIO, errno.ENOMEM), "statvfs": FOLDERS,
    "readlink": FOLDERS, "realpath": FOLDERS, "getcwd": (errno.ENOENT, errno.ENOMEM), "pathconf": (errno.EIO,),
    "open": OPENING, "openat": OPENING, "opendir": OPENING, "fdopendir": (errno.ENOMEM,), "fopen": OPENING,
    "readdir": (errno.EIO,), "closedir": (errno.EIO,), "mkostemp": (errno.ENOSPC, errno.EMFILE, *MAKING[1:]),
    "read": (errno.EIO, errno.EINTR, "short"), "pread": (errno.EIO, errno.EINTR, "short"), "fread": (errno.EIO,),
    "write": WRITING_FAULTS, "pwrite": WRITING_FAULTS, "writev": (errno.ENOSPC, errno.EIO),
    "fwrite": (errno.ENOSPC, errno.EIO),
    "fflush": (errno.ENOSPC, errno.EIO), "sendfile": (errno.ENOSPC, errno.EIO),
    "close": (errno.EIO, errno.ENOSPC, errno.EINTR), "fclose": (errno.EIO, errno.ENOSPC),
    "fsync": (errno.EIO, errno.ENOSPC, errno.EDQUOT), "fdatasync": (errno.EIO,),
    "rename": (errno.EACCES, errno.ENOSPC, errno.EIO, errno.EROFS, errno.EXDEV),
    "renameat2": (errno.EACCES, errno.EINVAL, errno.ENOSPC, errno.EIO),
    "link": (errno.EACCES, errno.EPERM, errno.EMLINK, errno.ENOSPC, errno.EIO),
    "symlink": MAKING, "mkdir": MAKING, "unlink": (errno.EACCES, errno.EIO), "unlinkat": (errno.EACCES, errno.EIO),
    "remove": (errno.EACCES, errno.EIO), "rmdir": (errno.EACCES, errno.EIO),
    "fchmod": (errno.EPERM, errno.EIO), "fchown": (errno.EPERM, errno.EDQUOT), "futimens": (errno.EPERM,),
    "utimensat": (errno.EPERM,), "flock": (errno.ENOLCK, errno.EIO, errno.EINTR),
    "listxattr": (errno.EIO, errno.ERANGE), "getxattr": (errno.EIO,), "fsetxattr": (errno.ENOSPC, errno.EPERM),
    "fremovexattr": (errno.EIO, errno.ENOTSUP), "ftruncate": (errno.EIO,), "lseek": (errno.EIO,),
    "mmap": (errno.ENOMEM,), "fork": (errno.EAGAIN, errno.ENOMEM), "pipe2": (errno.EMFILE, errno.ENFILE),
    "socketpair": (errno.EMFILE, errno.ENFILE, errno.ENOMEM), "send": (errno.ENOBUFS,), "recv": (errno.EINTR,),
    "shutdown": (errno.ENOTCONN,),
    "poll": (errno.ENOMEM, errno.EINTR), "ppoll": (errno.ENOMEM, errno.EINTR), "waitpid": (errno.ECHILD, errno.EINTR),
    "kill": (errno.EPERM,), "sigaction": (errno.EINVAL,), "sigprocmask": (errno.EINVAL,), "prctl": (errno.EINVAL,),
    "fcntl": (errno.EBADF,), "dlopen": (errno.ENOENT,), "getrlimit": (errno.EPERM,), "setrlimit": (errno.EPERM,),
    "gethostname": (errno.ENAMETOOLONG,), "getentropy": (errno.ENOSYS,), "isatty": (errno.ENOTTY,),
    "sysconf": (errno.EINVAL,), "setvbuf": (errno.ENOMEM,), "getline": (errno.EIO, errno.ENOMEM),
}
# Lacks that are told as such.
LACKS = {errno.ENOMEM, errno.ENOSPC, errno.EDQUOT, errno.EMFILE, errno.ENFILE}
# A call that fails so for ever is tried again for ever, rightly.
NEVER_FOREVER = {errno.EINTR, errno.ERANGE}
CAUSE_LOST = {"fflush"}  # one that fails without need, such as of an empty stream, is noticed later only
REMOVING = {"unlink", "unlinkat", "remove"}
ENDING = (signal.SIGKILL, signal.SIGTERM)


def counted(variant, start):
    """How often each call comes, by role and name, when nothing fails."""
    with tempfile.TemporaryDirectory(prefix="hvx-torture-") as name:
        folder = pathlib.Path(name) / "documents"
        folder.mkdir()
        fill(folder, start)
        state = pathlib.Path(name) / "state"
        run_program(variant.words(), folder,
                    {"LD_PRELOAD": str(FAILING_CALLS), "HVX_TORTURE_STATE": str(state)})
        data = state.read_bytes()
    counts = {}
    rows = struct.unpack_from("QQ", data)[1]
    for number in range(rows):
        call, program, worker = struct.unpack_from("24sQQ", data, 16 + 40 * number)
        call = call.rstrip(b"\0").decode()
        counts["program", call], counts["worker", call] = program, worker
    return counts


def failing_calls(references, sample, rng):
    """`sample` is how many of each kind are wanted, at most; None for all."""
    trials = []
    for variant in WRITING:
        counts = counted(variant, references[variant.name].start)
        fully = variant is IN_PLACE
        once = [trial_of("calls that fail once", variant, role, call, number, fault)
                for role, call, number in each_call(counts)
                for fault in (FAULTS[call] if fully else FAULTS[call][:2])]
        for_ever = [trial_of("calls that fail from there on", variant, role, call, number, FAULTS[call][0], True)
                    for role, call, number in each_call(counts)]
        ended = [Trial("ended at each call", variant, f"{role}:{call}:{number}:signal{int(end)}", struck=True)
                 for role, call, number in each_call(counts) for end in ENDING]
        trials += chosen(once, sample, rng) + chosen(for_ever, sample, rng) + chosen(ended, sample, rng)
    looking = []
    for variant in VIEWING:
        counts = counted(variant, references[variant.name].start)
        looking += [trial_of("calls that fail, commands that look", variant, role, call, number, FAULTS[call][0])
                    for role, call, number in each_call(counts)]
    return trials + chosen(looking, sample, rng)


def chosen(trials, sample, rng):
    return trials if sample is None or sample >= len(trials) else rng.sample(trials, sample)


def each_call(counts):
    return [(role, call, number) for (role, call), count in counts.items() if call != "alloc"
            for number in range(1, count + 1)]


def trial_of(kind, variant, role, call, number, fault, forever=False):
    if fault in NEVER_FOREVER:
        forever = False
    return Trial(kind, variant, f"{role}:{call}:{number}:{fault}{':forever' if forever else ''}",
                 error=fault if fault in LACKS and call not in CAUSE_LOST else 0, cannot_remove=call in REMOVING)


def failing_allocations(references, sample, rng):
    trials = []
    for variant in (IN_PLACE, *VIEWING):
        counts = counted(variant, references[variant.name].start)
        if variant in VIEWING and sample is None:
            share = 500
        else:
            share = sample if variant is IN_PLACE else sample // 4
        for suffix, kind in (("", "memory lacks once"), (":forever", "memory lacks from there on")):
            kind += "" if variant is IN_PLACE else ", commands that look"
            all_of_kind = [Trial(kind, variant, f"{role}:alloc:{number}:{errno.ENOMEM}{suffix}", error=errno.ENOMEM,
                                 may_end=True)
                           for role in ("program", "worker") for number in range(1, counts[role, "alloc"] + 1)]
            trials += chosen(all_of_kind, share, rng)
    return trials
