#!/usr/bin/env python3
"""Checks who includes whom.

usage: layering.py [ROOT]

Prints each line that breaks a rule as file:line and exits 1 if there is one.
"""

import pathlib
import re
import sys

# The floors, each with the floors below it that it may include. A floor may always include itself.
FLOORS = {
    "platform/Vel": [],
    "platform/Keln": ["platform/Vel"],
    "platform/Mlag": ["platform/Vel"],
    "platform/NetworkTopology": ["platform/Vel", "platform/Keln", "platform/Mlag"],
    "platform/NetworkTopologyV3": ["platform/Vel", "platform/Keln", "platform/Mlag"],
}
# From here up a floor may include every floor entered so far.
FLOORS["finder"] = list(FLOORS)
FLOORS["translator"] = list(FLOORS)
FLOORS["reflection"] = list(FLOORS)
FLOORS["tools"] = list(FLOORS)

# What reaches the classes above the models by name: these must not include them, not even through another header.
BY_NAME = ("tools/call/", "tools/cli/CallCommand.cpp", "tools/cli/InspectCommand.cpp")
REACHED_BY_NAME = {"finder", "translator", "reflection"}

# The floors that may use libraries beside the standard one.
MAY_USE_LIBRARIES = {"tools"}

# The headers of C++20, and the one beside them that every compiler we build with has: it spells type names.
STANDARD_HEADERS = set(
    """
    algorithm any array atomic barrier bit bitset charconv chrono codecvt compare complex concepts
    condition_variable coroutine deque exception execution filesystem format forward_list fstream functional future
    initializer_list iomanip ios iosfwd iostream istream iterator latch limits list locale map memory
    memory_resource mutex new numbers numeric optional ostream queue random ranges ratio regex scoped_allocator
    semaphore set shared_mutex source_location span sstream stack stdexcept stop_token streambuf string string_view
    strstream syncstream system_error thread tuple type_traits typeindex typeinfo unordered_map unordered_set
    utility valarray variant vector version
    cassert cctype cerrno cfenv cfloat cinttypes climits clocale cmath csetjmp csignal cstdarg cstddef cstdint
    cstdio cstdlib cstring ctime cuchar cwchar cwctype
    cxxabi.h
    """.split()
)

INCLUDE = re.compile(r'^\s*#\s*(?:include|include_next|import)\b\s*(.*)')
NAMED = re.compile(r'^(?:"([^"]+)"|<([^>]+)>)')
SOURCE_SUFFIXES = {".h", ".hpp", ".cpp", ".cc", ".inl"}


def floor_of(path):
    """The floor that a path from the root lies on, or None."""
    for floor in FLOORS:
        if path.startswith(floor + "/"):
            return floor
    return None


def without_comments(text):
    """The text without its comments, its lines kept. Strings are passed over, since they may hold /* too."""
    return re.sub(
        r'("(?:\\.|[^"\\\n])*")|//[^\n]*|/\*.*?\*/',
        lambda found: found.group(1) or "\n" * found.group().count("\n"),
        text,
        flags=re.S,
    )


def complaint(floor, operand):
    """What is wrong with an include of the operand on the floor, or None."""
    named = NAMED.match(operand)
    if not named:
        return f"includes {operand}, which cannot be checked: write the name out"
    quoted, angled = named.groups()
    if angled:
        if angled in STANDARD_HEADERS or floor in MAY_USE_LIBRARIES:
            return None
        return f"{floor} includes <{angled}>, which is not of the standard library"
    below = floor_of(quoted)
    if below is None:
        return f'{floor} includes "{quoted}", which is not the path of a header from the repository root'
    if below != floor and below not in FLOORS[floor]:
        return f"{floor} must not include {below}"
    return None


def includes(file):
    """Line number, line and operand of every include of a file."""
    text = without_comments(file.read_text(encoding="utf-8", errors="replace"))
    for number, line in enumerate(text.splitlines(), 1):
        include = INCLUDE.match(line)
        if include:
            yield number, line, include.group(1).strip()


def way_to_what_is_reached_by_name(root, path, seen):
    """The paths that lead from a header, itself first, to one that only names may reach, or None."""
    if floor_of(path) in REACHED_BY_NAME:
        return [path]
    if path in seen or not (root / path).is_file():
        return None
    seen.add(path)
    for _, _, operand in includes(root / path):
        named = NAMED.match(operand)
        further = named and named.group(1) and way_to_what_is_reached_by_name(root, named.group(1), seen)
        if further:
            return [path] + further
    return None


def complaint_by_name(root, operand):
    """What is wrong with an include of the operand by something that goes by names, or None."""
    named = NAMED.match(operand)
    way = named and named.group(1) and way_to_what_is_reached_by_name(root, named.group(1), set())
    return way and "must reach by name alone what it includes by way of " + ", ".join(way)


def check(root):
    """Yields file:line and complaint for every rule that a source below the root breaks."""
    for top in sorted({floor.split("/")[0] for floor in FLOORS}):
        for file in sorted((root / top).rglob("*")):
            if file.suffix not in SOURCE_SUFFIXES:
                continue
            path = file.relative_to(root).as_posix()
            floor = floor_of(path)
            if floor is None:
                yield f"{path}:1: lies on no floor"
                continue
            for number, line, operand in includes(file):
                problem = complaint(floor, operand)
                if not problem and path.startswith(BY_NAME):
                    problem = complaint_by_name(root, operand)
                if problem:
                    yield f"{path}:{number}: {problem}\n    {line.strip()}"


def main(arguments):
    root = pathlib.Path(arguments[0] if arguments else ".").resolve()
    found = list(check(root))
    for line in found:
        print(line)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
