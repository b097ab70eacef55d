"""package.py OUT BUILD…: makes OUT/bvconn-VERSION-windows.zip of what lies in the folders of builds for
Windows, one for each size of a pointer. The same builds of the same commit make the same bytes."""

import os
import re
import subprocess
import sys
import tempfile
import time
import zipfile

import calls_header
import linked

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.dirname(os.path.dirname(HERE))
PROGRAMS = (("BVConnComponent", "bvconn/component/windows/BVConn.dll"),
            ("bvconn", "tools/bvconn/bvconn.exe"))
# For work on the sources, or of another package.
NOT_FOR_USERS = ("adding-an-operation.md", "rooms.md", "installed.md", "building-for-windows.md")
# For other systems; two look the component up as there is no need to on Windows.
ELSEWHERE = ("demo.cpp", "component_host.cpp", "component_host_in_c.c", "quoting/CMakeLists.txt")
ENTRY_POINTS = (("DllCanUnloadNow", 0), ("DllGetClassObject", 12), ("DllInstall", 8),
                ("DllRegisterServer", 0), ("DllUnregisterServer", 0))


def read(*path):
    with open(os.path.join(*path), "rb") as file:
        return file.read()


def text_of(*path):
    return read(*path).decode()


class Build:
    def __init__(self, folder):
        self.folder = folder
        self.cache = dict(re.findall(r"^(\w+):\w+=(.*)$", text_of(folder, "CMakeCache.txt"), re.M))
        compiler = re.search(r'CMAKE_CXX_COMPILER "(.*)"',
                             text_of(folder, "CMakeFiles", self.cache["CMAKE_CACHE_MAJOR_VERSION"] +
                                     "." + self.cache["CMAKE_CACHE_MINOR_VERSION"] + "." +
                                     self.cache["CMAKE_CACHE_PATCH_VERSION"],
                                     "CMakeCXXCompiler.cmake")).group(1)
        self.triplet = re.search(r"\w+-w64-mingw32", compiler).group(0)
        self.name = "x64" if self.triplet.startswith("x86_64") else "x86"
        self.libraries = self.cache["BVCONN_WINDOWS_LIBRARIES"]
        self.parts = {target: linked.parts_of(folder, target, self.libraries)
                      for target, _ in PROGRAMS}

    def import_library(self):
        """For programs that call an entry point by its name; the linker's own list leaves them out."""
        x86 = self.name == "x86"
        lines = [f"  {name}@{size}" if x86 else f"  {name}" for name, size in ENTRY_POINTS]
        with tempfile.TemporaryDirectory() as folder:
            with open(os.path.join(folder, "BVConn.def"), "w", encoding="ascii") as file:
                file.write("LIBRARY BVConn.dll\nEXPORTS\n" + "\n".join(lines) + "\n")
            subprocess.run([self.triplet + "-dlltool", "-d", "BVConn.def", "-l", "BVConn.lib",
                            "--deterministic-libraries", "--temp-prefix", "BVConn",
                            *(["--kill-at"] if x86 else [])], cwd=folder, check=True)
            return read(folder, "BVConn.lib")

    def files(self):
        for _, path in PROGRAMS:
            yield f"{self.name}/{os.path.basename(path)}", read(self.folder, path)
        yield (f"{self.name}/BVConn.tlb",
               read(self.folder, "bvconn/component/windows/BVConn.tlb"))
        library = f"lib/{self.name}"
        yield f"{library}/BVConn.lib", self.import_library()
        yield f"{library}/libBVConn.a", read(self.folder, "bvconn/libBVConn.a")
        yield f"{library}/libBVConnTesting.a", read(self.folder, "bvconn/testing/libBVConnTesting.a")
        yield f"{library}/libcurl.a", read(self.libraries, "lib/libcurl.a")
        yield f"{library}/libz.a", read("/usr", self.triplet, "lib/libz.a")


def terms_of(builds):
    """The name of each file with terms, and what is in it."""
    for build in builds:
        for parts in build.parts.values():
            for part in parts.values():
                text = text_of(part.terms)
                yield terms_name(part), text
                for name in re.findall(r"/usr/share/common-licenses/([\w.-]*\w)", text):
                    yield name, text_of("/usr/share/common-licenses", name)


def terms_name(part):
    return re.sub(r"[^\w+.-]+", "-", part.name) + ".txt"


def linked_page(builds):
    rows = {}
    for build in builds:
        for target, path in PROGRAMS:
            for part in build.parts[target].values():
                row = rows.setdefault((part.name, part.upstream, part.version), (part, [], set()))
                row[1].append(f"`{build.name}/{os.path.basename(path)}`")
                row[2].update(part.files)
    lines = ["# What is linked in", "",
             "The programs of this package have parts of others' work in them, from packages of",
             "Debian. This list was made from what the linker and the compiler took.", "",
             "| part | version | Debian's version | for | in | taken from | terms |",
             "|---|---|---|---|---|---|---|"]
    for (name, upstream, version), (part, programs, files) in sorted(rows.items()):
        taken = ", ".join(sorted(files)) or "headers"
        lines.append(f"| {name} | {upstream} | {version} | {part.purpose} | {', '.join(programs)} | "
                     f"{taken} | [terms](licences/{terms_name(part)}) |")
    lines += ["", "A program that is linked with `lib/*/libBVConn.a` has the same parts in it, where its "
              "compiler is the same.", ""]
    return "\n".join(lines)


def filled(name, values):
    text = text_of(HERE, name)
    for key, value in values.items():
        text = text.replace(f"@{key}@", value)
    return text


def files_of(builds, version):
    values = {"VERSION": version, "MAJOR": version.split(".", maxsplit=1)[0],
              "CONFIG_SERVICE_URI": builds[0].cache["BVCONN_CONFIG_SERVICE_URI"],
              "TORVEX_SERVICE_URI": builds[0].cache["BVCONN_TORVEX_SERVICE_URI"],
              "COMPILER": re.sub(r"[-+].*", "",
                                 builds[0].parts["bvconn"]["libstdc++ and libgcc"].version)}
    yield "README.md", filled("readme.md.in", values)
    yield "LINKED.md", linked_page(builds)
    yield "CHANGELOG.md", read(ROOT, "CHANGELOG.md")
    yield "licences/BVConnector.txt", read(HERE, "no_licence.txt")
    for name, text in terms_of(builds):
        yield "licences/" + name, text
    for build in builds:
        yield from build.files()
    for line in text_of(ROOT, "bvconn/public_headers.txt").splitlines():
        if line and not line.startswith("#"):
            yield "include/bvconn/" + line, read(ROOT, "bvconn", line)
    idl = text_of(ROOT, "bvconn/component/windows/BVConn.idl")
    yield "include/BVConn.idl", idl
    yield "include/BVConn.h", calls_header.header(idl)
    yield "include/service_object_rows.inc", read(ROOT, "bvconn/platform/torvexlib/service_object_rows.inc")
    for name in ("BVConnConfig.cmake", "BVConnConfigVersion.cmake"):
        yield "lib/cmake/BVConn/" + name, filled(name + ".in", values)
    for name in sorted(os.listdir(os.path.join(ROOT, "docs"))):
        if name.endswith((".md", ".png")) and name not in NOT_FOR_USERS:
            yield "docs/" + name, read(ROOT, "docs", name)
    yield from tree("acceptance", HERE)
    for name, source in tree("examples", ROOT):
        if name.split("/", maxsplit=1)[1] not in ELSEWHERE:
            yield name, source
    # As they are built from a package.
    yield "examples/CMakeLists.txt", read(HERE, "examples.cmake")


def without_dead_links(files):
    """In pages, a link to what the sources have and this package has not is its words alone. One that leads
    nowhere in the sources either stays, for a test to find."""
    folders = {os.path.dirname(name) for name in files}
    for page in [name for name in files if name.endswith(".md")]:
        def words(link, folder=os.path.dirname(page)):
            target = os.path.normpath(os.path.join(folder, link.group(2)))
            known = target in files or target in folders
            lost = not known and os.path.exists(os.path.join(ROOT, target))
            return link.group(1) if lost else link.group(0)
        content = files[page] if isinstance(files[page], str) else files[page].decode()
        files[page] = re.sub(r"\[([^\]]*)\]\(([^)#:\s]+)(?:#[^)\s]*)?\)", words, content)


def tree(folder, above):
    for place, _, names in sorted(os.walk(os.path.join(above, folder))):
        for name in sorted(names):
            if not name.endswith(".sh"):
                path = os.path.join(place, name)
                yield os.path.relpath(path, above), read(path)


def moment():
    """Of the commit, so that time has no part in it."""
    seconds = subprocess.run(["git", "-C", ROOT, "log", "-1", "--format=%ct"], text=True,
                             stdout=subprocess.PIPE, check=True).stdout
    return time.gmtime(int(seconds))[:6]


def main(out, *folders):
    version = re.search(r"^project\(BVConn VERSION ([\d.]+) ", text_of(ROOT, "CMakeLists.txt"),
                        re.M).group(1)
    builds = [Build(folder) for folder in folders]
    name = f"bvconn-{version}-windows"
    os.makedirs(out, exist_ok=True)
    path = os.path.join(out, name + ".zip")
    when = moment()
    files = dict(files_of(builds, version))
    without_dead_links(files)
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as archive:
        for file, content in sorted(files.items()):
            if isinstance(content, str):
                content = content.encode()
            # As the programs of Windows that read them have lines.
            if file.endswith((".cmd", ".js", ".vbs", ".txt")):
                content = re.sub(b"\r?\n", b"\r\n", content)
            entry = zipfile.ZipInfo(f"{name}/{file}", when)
            entry.external_attr = 0o644 << 16
            entry.compress_type = zipfile.ZIP_DEFLATED
            archive.writestr(entry, content)
    print(path)


if __name__ == "__main__":
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    main(*sys.argv[1:])
