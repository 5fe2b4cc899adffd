"""Plays what Windows Installer does with a package: reads the tables that decide, and follows the rules of costing. Wine's
does not follow them all, and what is lost by them is lost in silence.

A machine is what is on its disk (path below the folder -> version; () for a file without one), the products that are
installed, and what the registry searches find.
"""
import re
import subprocess

MIN_INCLUSIVE, MAX_INCLUSIVE, ONLY_DETECT = 0x100, 0x200, 0x002


def numbers(version):
    return tuple(int(part) for part in version.split(".")) if version else ()


class Package:
    """The tables of a package."""

    def __init__(self, path):
        self.path = path
        self.properties = dict(self.table("Property"))
        self.version = numbers(self.properties["ProductVersion"])
        actions = [(int(row[2]), row[0]) for row in self.table("InstallExecuteSequence")]
        self.sequence = [action for _, action in sorted(actions)]
        self.files = self._read_files()

    def table(self, name):
        """The rows of a table, each a list of cells."""
        text = subprocess.check_output(["msiinfo", "export", self.path, name], text=True)
        return [line.split("\t") for line in text.splitlines()[3:]]

    def _read_files(self):
        """Path of each file -> its component's code, its version."""
        folders = {row[0]: row[1:] for row in self.table("Directory")}

        def path_of(folder):
            return "" if folder == "INSTALLDIR" else path_of(folders[folder][0]) + folders[folder][1] + "\\"
        components = {row[0]: row for row in self.table("Component")}
        found = {}
        for row in self.table("File"):
            component = components[row[1]]
            if component[5] != row[0]:
                raise ValueError(f"{row[2]} does not decide about its own component")
            found[path_of(component[2]) + row[2]] = (component[1], numbers(row[4]))
        return found


class Refused(Exception):
    """A launch condition, with its message."""


class Machine:
    def __init__(self, disk=(), found=()):
        self.disk = dict(disk)
        self.found = dict(found)
        self.products = []

    def install(self, package, installed=False):
        """Installs; with `installed`, repairs."""
        run = Run(self, package, installed)
        for action in package.sequence:
            getattr(run, action, lambda: None)()
        self.products.append(package)

    def repair(self, package):
        self.products.remove(package)
        self.install(package, installed=True)

    def remove(self, package):
        self.products.remove(package)
        kept = {code for product in self.products for code, _ in product.files.values()}
        for path, (code, _) in package.files.items():
            if code not in kept:
                self.disk.pop(path, None)


class Run:
    """One installation; a method for each action that decides something, called by its name in the sequence."""

    def __init__(self, machine, package, installed):
        self.machine, self.package = machine, package
        self.properties = {"Installed": installed}
        self.related, self.allowed = [], []

    def FindRelatedProducts(self):
        for code, low, high, _, attributes, _, found in self.package.table("Upgrade"):
            for product in self.machine.products:
                if code == product.properties["UpgradeCode"] and in_range(product.version, low, high, int(attributes)):
                    self.properties[found] = True
                    self.related += [] if int(attributes) & ONLY_DETECT else [product]

    def AppSearch(self):
        for name, signature in self.package.table("AppSearch"):
            _, root, key, value, kind = next(row for row in self.package.table("RegLocator") if row[0] == signature)
            if (root, kind) == ("2", "18"):  # HKEY_LOCAL_MACHINE; a value as it is, in the 64-bit view
                self.properties[name] = self.machine.found.get((key, value))

    def LaunchConditions(self):
        for condition, message in self.package.table("LaunchCondition"):
            if not holds(condition, self.properties):
                raise Refused(re.sub(r"\[(\w+)\]", lambda name: self.properties[name[1]], message))

    def CostFinalize(self):
        """A file on the disk with a higher version than the package's, or with one where the package has none, keeps its
        whole component from being installed. It is decided here, and never again."""
        self.allowed = [path for path, (_, version) in self.package.files.items()
                        if self.machine.disk.get(path, ()) <= version]

    def RemoveExistingProducts(self):
        for product in self.related:
            self.machine.remove(product)

    def InstallFiles(self):
        for path in self.allowed:
            version = self.package.files[path][1]
            if not version or self.machine.disk.get(path, ()) < version:
                self.machine.disk[path] = version


def in_range(version, low, high, attributes):
    above = not low or version > numbers(low) or attributes & MIN_INCLUSIVE and version == numbers(low)
    below = not high or version < numbers(high) or attributes & MAX_INCLUSIVE and version == numbers(high)
    return above and below


def holds(condition, properties):
    """Words joined by OR, each perhaps with NOT before it: no more is known here."""
    terms = condition.split(" OR ")
    if not all(re.fullmatch(r"(NOT )?\w+", term) for term in terms):
        raise ValueError(f"a condition that cannot be played: {condition}")
    return any(bool(properties.get(term.removeprefix("NOT "))) != term.startswith("NOT ") for term in terms)
