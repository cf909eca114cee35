#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""The layer in packaging/yocto: reads layer.conf and the recipe by BitBake's syntax, and does the steps of
the classes that the recipe inherits by hand, for the target: configure, compile, install, package. A
program is linked with what was installed, and run.

    yocto.py SOURCE-FOLDER
"""
import fnmatch
import glob
import hashlib
import os
import re
import shlex
import subprocess
import sys
import tempfile
import types

CROSS = "powerpc-linux-gnu"
EXPECTED = "severity 3\n"  # what the program prints ends so

ASSIGNMENT = re.compile(
    r"^(?P<name>[A-Za-z_][\w:${}/-]*)(\[(?P<flag>\w+)\])?\s*"
    r"(?P<operator>\?\?=|\?=|:=|\+=|=\+|\.=|=\.|=)\s*(?P<quote>[\"'])(?P<value>.*)(?P=quote)\s*$", re.S)
FUNCTION = re.compile(r"^(?P<name>[a-z_]+(:append|:prepend)?)\s*\(\)\s*\{$")
CLASSES = {"cmake", "pkgconfig", "externalsrc", "systemd"}

# What BitBake's own configuration has, for FILES too.
BASE = {
    "prefix": "/usr", "bindir": "/usr/bin", "libdir": "/usr/lib", "nonarch_libdir": "/usr/lib",
    "includedir": "/usr/include", "datadir": "/usr/share", "mandir": "/usr/share/man",
    "docdir": "/usr/share/doc", "sysconfdir": "/etc", "systemd_system_unitdir": "/usr/lib/systemd/system",
    "FILES:${PN}-staticdev": "${libdir}/*.a",
    "FILES:${PN}-dev": "${includedir} ${libdir}/lib*.so ${libdir}/pkgconfig ${libdir}/cmake",
    "FILES:${PN}-doc": "${docdir} ${mandir}",
    "FILES:${PN}": "${bindir}/* ${libdir}/lib*.so.*",
}
PACKAGES = ["${PN}-staticdev", "${PN}-dev", "${PN}-doc", "${PN}"]


def fail(text):
    sys.exit("yocto: " + text)


def run(*command, **options):
    result = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, **options)
    if result.returncode != 0:
        fail(" ".join(command) + "\n" + result.stdout)
    return result.stdout


class Data:
    """Variables as BitBake has them: expanded when they are read."""

    def __init__(self, values):
        self.values = dict(values)
        self.flags = {}
        self.functions = {}
        self.inherited = set()

    def getVar(self, name):
        """`name` as it was assigned, FILES:${PN}-dev too."""
        return self.expand(self.values[name]) if name in self.values else None

    def expand(self, text):
        def python(match):
            utils = types.SimpleNamespace(contains=lambda name, word, yes, no, d:
                                          yes if word in (d.getVar(name) or "").split() else no)
            return str(eval(match.group(1), {"os": os, "d": self, "bb": types.SimpleNamespace(utils=utils)}))

        def variable(match):
            value = self.getVar(match.group(1))
            if value is None:
                fail("${%s} is not defined: %s" % (match.group(1), text))
            return value

        # Variables first: an expression may contain them.
        text = re.sub(r"\$\{([A-Za-z_][\w-]*)\}", variable, text)
        return re.sub(r"\$\{@(.*?)\}", python, text, flags=re.S)

    def assign(self, name, operator, value):
        old = self.values.get(name)
        if operator in ("?=", "??=") and old is not None:
            return
        if operator == ":=":
            value = self.expand(value)
        self.values[name] = {
            "+=": (old or "") + " " + value, ".=": (old or "") + value,
            "=+": value + " " + (old or ""), "=.": value + (old or "")}.get(operator, value)

    def parse(self, path):
        with open(path, encoding="utf-8") as file:
            lines = file.read().split("\n")
        number = 0
        while number < len(lines):
            start = number + 1
            line = lines[number]
            number += 1
            while line.endswith("\\"):
                if number == len(lines):
                    fail("%s:%d: nothing continues it" % (path, start))
                line = line[:-1] + lines[number]
                number += 1
            if not line.strip() or line.startswith("#"):
                continue
            assignment = ASSIGNMENT.match(line)
            function = FUNCTION.match(line)
            if assignment and not re.search(r'(?<!\\)' + assignment["quote"], assignment["value"]):
                if assignment["flag"]:
                    self.flags[assignment["name"], assignment["flag"]] = assignment["value"]
                else:
                    self.assign(assignment["name"], assignment["operator"], assignment["value"])
            elif line.startswith("inherit "):
                self.inherited.update(line.split()[1:])
            elif function:
                body = []
                while number < len(lines) and lines[number] != "}":
                    body.append(lines[number])
                    number += 1
                if number == len(lines):
                    fail("%s:%d: the function has no end" % (path, start))
                number += 1
                self.functions[function["name"]] = "\n".join(body)
            else:
                fail("%s:%d: not BitBake: %s" % (path, start, line))


def recipe(source, work, packageconfig):
    layer = os.path.join(source, "packaging/yocto")
    data = Data(BASE)
    data.values.update(LAYERDIR=layer, BBPATH="", BBFILES="")
    data.parse(os.path.join(layer, "conf/layer.conf"))
    recipes = sum((glob.glob(pattern) for pattern in data.getVar("BBFILES").split()), [])
    if len(recipes) != 1:
        fail("BBFILES finds %s" % recipes)
    if not re.match(data.getVar("BBFILE_PATTERN_" + data.getVar("BBFILE_COLLECTIONS").strip()), recipes[0]):
        fail("BBFILE_PATTERN does not find the recipe")
    name, version = os.path.basename(recipes[0])[:-len(".bb")].split("_")
    data.values.update(PN=name, PV=version, D=work + "/image", PACKAGECONFIG=packageconfig)
    # The classes define S after the recipe was read.
    data.values["S"] = "${EXTERNALSRC}"
    data.parse(recipes[0])
    if not data.inherited <= CLASSES:
        fail("classes whose steps are not done here: %s" % (data.inherited - CLASSES))
    for needed in ("SUMMARY", "LICENSE", "LIC_FILES_CHKSUM"):
        if not data.getVar(needed):
            fail("no %s" % needed)
    # Every value can be expanded.
    for key in data.values:
        data.getVar(key)
    return data


def check_metadata(source, data):
    if os.path.realpath(data.getVar("S")) != os.path.realpath(source):
        fail("the source is " + data.getVar("S"))
    with open(os.path.join(source, "CMakeLists.txt"), encoding="utf-8") as file:
        version = re.search(r"^project\(recordkit VERSION ([0-9.]+)", file.read(), re.M)[1]
    if not (version + ".").startswith(data.getVar("PV") + "."):
        fail("the recipe has version %s, the project %s" % (data.getVar("PV"), version))
    licence, digest = re.match(r"file://([^;]*);md5=(\w+)$", data.getVar("LIC_FILES_CHKSUM")).groups()
    with open(os.path.join(source, licence), "rb") as file:
        if hashlib.md5(file.read()).hexdigest() != digest:
            fail("LIC_FILES_CHKSUM is not that of " + licence)


def make_sysroot(folder, depends):
    """What DEPENDS put there."""
    headers = {"boost": "boost", "cli11": "CLI", "fmt": "fmt", "nlohmann-json": "nlohmann"}
    os.makedirs(folder + "/usr/include")
    for name in depends:
        os.symlink("/usr/include/" + headers[name], folder + "/usr/include/" + headers[name])


def build(data, work, flags):
    depends = data.getVar("DEPENDS").split()
    arguments = []
    for (name, flag), value in data.flags.items():
        if name != "PACKAGECONFIG":
            fail("the flag %s[%s] does nothing" % (name, flag))
        parts = (data.expand(value) + ",,").split(",")
        chosen = flag in data.getVar("PACKAGECONFIG").split()
        arguments.append(parts[0] if chosen else parts[1])
        depends += parts[2].split() if chosen else []
    make_sysroot(work + "/sysroot", depends)
    with open(work + "/toolchain.cmake", "w", encoding="utf-8") as file:
        file.write("""set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR powerpc)
set(CMAKE_CXX_COMPILER %s-g++)
set(CMAKE_CXX_FLAGS "%s" CACHE STRING "")
set(CMAKE_SHARED_LINKER_FLAGS "-Wl,--as-needed -Wl,-z,relro,-z,now" CACHE STRING "")
set(CMAKE_FIND_ROOT_PATH %s/sysroot)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
""" % (CROSS, flags, work))
    run("cmake", "-S", data.getVar("S"), "-B", work + "/build", "-G", "Ninja",
        "-DCMAKE_TOOLCHAIN_FILE=" + work + "/toolchain.cmake", "-DCMAKE_INSTALL_PREFIX=/usr",
        "-DCMAKE_INSTALL_LIBDIR=lib", *shlex.split(data.getVar("EXTRA_OECMAKE")),
        *shlex.split(" ".join(arguments)))
    run("cmake", "--build", work + "/build")
    environment = dict(os.environ, DESTDIR=data.getVar("D"))
    run("cmake", "--install", work + "/build", env=environment)
    run("sh", "-eu", "-c", data.expand(data.functions["do_install:append"]))


def package(data):
    """Each installed file, and the package that gets it."""
    image = data.getVar("D")
    result = {}
    files = [os.path.join(folder, name)[len(image):] for folder, _, names in os.walk(image) for name in names]
    for path in files:
        for name in PACKAGES:
            patterns = data.getVar("FILES:" + name).split()
            if any(fnmatch.fnmatch(path, pattern) or path.startswith(pattern + "/") for pattern in patterns):
                result[path] = data.expand(name)
                break
        else:
            fail("installed and in no package: " + path)
    return result


def expect(packages, name, *paths):
    for path in paths:
        if packages.get(path) != name:
            fail("%s is in %s, not in %s" % (path, packages.get(path), name))


def link_and_run(source, work, data, siblings):
    image = data.getVar("D")
    environment = dict(os.environ, PKG_CONFIG_LIBDIR=image + "/usr/lib/pkgconfig", PKG_CONFIG_SYSROOT_DIR=image)
    flags = run("pkg-config", "--cflags", "--libs", "recordkit", env=environment).split()
    # Some pkg-configs add the sysroot whatever the file says.
    with open(image + "/usr/lib/pkgconfig/recordkit.pc", encoding="utf-8") as file:
        if "prefix=/usr\n" not in file.read():
            fail("the prefix in recordkit.pc")
    run(CROSS + "-g++", "-std=c++17", source + "/examples/classify_event.cpp", *siblings, "-o",
        work + "/program", *flags)
    output = run("qemu-ppc-static", "-L", "/usr/" + CROSS, "-E",
                 "LD_LIBRARY_PATH=%s/usr/lib:/usr/%s/lib" % (image, CROSS), work + "/program")
    if not output.endswith(EXPECTED):
        fail("what the program prints: " + output)


def main():
    source = os.path.abspath(sys.argv[1])
    with tempfile.TemporaryDirectory() as scratch:
        with open(scratch + "/LibraryMessages.h", "w", encoding="utf-8") as file:
            with open(source + "/recordkit/platform/messages.tsv", encoding="utf-8") as messages:
                file.write('constexpr const char* RECORDKIT_LIBRARY_MESSAGES = R"catalogue(%s)catalogue";\n'
                           % messages.read())
        siblings = ["-I" + scratch] + glob.glob(source + "/examples/board/siblings/*.cpp")
        units = "/usr/lib/systemd/system/recordkit-log"

        for name, flags in (("", "-Os -g -fstack-protector-strong -D_FORTIFY_SOURCE=2"), ("static", "-Os"),
                            ("host", "-O0")):
            work = scratch + "/work-" + name
            os.mkdir(work)
            data = recipe(source, work, name)
            check_metadata(source, data)
            build(data, work, flags)
            packages = package(data)
            expect(packages, "recordkit", "/usr/lib/tmpfiles.d/recordkit.conf",
                   "/usr/lib/sysctl.d/60-recordkit.conf", units + ".target")
            expect(packages, "recordkit-dev", "/usr/include/recordkit/sel/SELEntry.h",
                   "/usr/lib/pkgconfig/recordkit.pc", "/usr/share/recordkit/messages.tsv")
            expect(packages, "recordkit-doc", "/usr/share/man/man3/recordkit.3",
                   "/usr/share/doc/recordkit/LICENSE")
            if name == "static":
                expect(packages, "recordkit-staticdev", "/usr/lib/librecordkit.a")
                expect(packages, None, "/usr/lib/librecordkit.so.1")
            else:
                expect(packages, "recordkit", "/usr/lib/librecordkit.so.1")
            if name == "host":
                expect(packages, "recordkit", "/usr/lib/librecordkit-host.so.1", units + ".service",
                       "/usr/bin/recordkit")
                output = run("qemu-ppc-static", "-L", "/usr/" + CROSS, data.getVar("D") + "/usr/bin/recordkit",
                             "--version")
                if not output.startswith("recordkit "):
                    fail("what the command prints: " + output)
                siblings = []
            else:
                expect(packages, None, "/usr/lib/librecordkit-host.so.1", units + ".service",
                       "/usr/bin/recordkit")
            link_and_run(source, work, data, siblings)
            print("yocto: PACKAGECONFIG=\"%s\": built, packaged, linked and run" % name)


main()
