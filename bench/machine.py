"""What the benchmarks ran on, with nothing that names the machine, its folders or its users."""

import pathlib
import platform
import re
import subprocess

# What pkg-config calls the libraries, and what people do.
LIBRARIES = {
    "expat": "expat",
    "libxml-2.0": "libxml2",
    "xerces-c": "Xerces-C++",
    "pugixml": "pugixml",
    "benchmark": "Google Benchmark",
}


def _output(*command: str) -> str:
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout.strip()


def _field(text: str, pattern: str) -> str:
    found = re.search(pattern, text, re.MULTILINE)
    return found[1].strip() if found else "unknown"


def _processor() -> str:
    text = pathlib.Path("/proc/cpuinfo").read_text(encoding="utf-8")
    cores = re.findall(r"^processor\s*:", text, re.MULTILINE)
    model = _field(text, r"^model name\s*:(.*)")
    return f"{model}, {len(cores)} cores"


def _memory() -> str:
    kibibytes = _field(pathlib.Path("/proc/meminfo").read_text(encoding="utf-8"),
                       r"^MemTotal:\s*(\d+) kB")
    return f"{int(kibibytes) / 2**20:.1f} GiB"


def _compiler(cache: str) -> str:
    """The compiler that a CMake cache names, without its folder."""
    path = _field(cache, r"^CMAKE_CXX_COMPILER:\w+=(.*)")
    return _output(path, "--version").splitlines()[0]


def _flags(cache: str) -> str:
    flags = [_field(cache, rf"^{name}:\w+=(.*)")
             for name in ("CMAKE_CXX_FLAGS", "CMAKE_CXX_FLAGS_RELEASE")]
    return " ".join(flag for flag in flags if flag)


def _version(package: str) -> str | None:
    answer = subprocess.run(["pkg-config", "--modversion", package], check=False,
                            capture_output=True, text=True)
    return answer.stdout.strip() if answer.returncode == 0 else None


def describe(build: pathlib.Path) -> dict[str, str]:
    """Tells about this machine and about what was built in a folder."""
    cache = (build / "CMakeCache.txt").read_text(encoding="utf-8")
    versions = [(name, _version(package)) for package, name in LIBRARIES.items()]
    return {
        "Processor": _processor(),
        "Memory": _memory(),
        "Kernel": f"{platform.system()} {platform.release().split('-')[0]}",
        "Compiler": _compiler(cache),
        "Flags": f"`{_flags(cache)}`",
        "Libraries": ", ".join(f"{name} {version}" for name, version in versions if version),
    }
