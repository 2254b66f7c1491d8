"""The bundle that later releases of 3ds Max load: its PackageContents.xml, and what is wrong with one.

Needs the package libxml2-utils.
"""

import pathlib
import subprocess
import xml.etree.ElementTree as xml

SCHEMA = pathlib.Path(__file__).with_name("PackageContents.xsd")
CONTENTS_FILE = "PackageContents.xml"
ICONS = "Contents/icons/"
PLUGINS_KIND = "plugins parts"
ICON_KINDS = ("light icon paths parts", "dark icon paths parts")


def plugin_of(generation):
    return f"Contents/{generation}/KarvelMax.gup"


def make_contents(template, hosts):
    """The text of PackageContents.xml: what the template has, and the components of each release."""
    package = xml.fromstring(template)
    for host in hosts:
        kinds = [(PLUGINS_KIND, plugin_of(host.generation))]
        if host.takes_icon_paths:
            kinds += [(kind, ICONS) for kind in ICON_KINDS]
        for kind, place in kinds:
            components = xml.SubElement(package, "Components", Description=kind)
            xml.SubElement(components, "RuntimeRequirements", OS="Win64", Platform="3ds Max",
                           SeriesMin=str(host.release), SeriesMax=str(host.release))
            xml.SubElement(components, "ComponentEntry", AppName=package.get("Name"),
                           Version=package.get("AppVersion"), ModuleName="./" + place)
    xml.indent(package)
    return xml.tostring(package, encoding="utf-8", xml_declaration=True) + b"\n"


def problems(files, hosts):
    """What keeps a bundle (place -> bytes) from giving each release its file; a line each."""
    if CONTENTS_FILE not in files:
        return ["is missing"]
    text = files[CONTENTS_FILE]
    return against_format(text) or against_files(xml.fromstring(text), files, hosts)


def against_format(text):
    done = subprocess.run(["xmllint", "--noout", "--schema", SCHEMA, "-"], input=text,
                          stderr=subprocess.PIPE, check=False)
    lines = done.stderr.decode("utf-8", "replace").splitlines()
    return [line.removeprefix("-:") for line in lines[:-1] or lines] if done.returncode else []


def against_files(package, files, hosts):
    """What a format cannot tell: that modules are there, and which release loads which."""
    found, loads = [], []
    for components in package.iter("Components"):
        years = components.find("RuntimeRequirements")
        first, last = years.get("SeriesMin"), years.get("SeriesMax")
        # A range would give a file to the releases between, whose interfaces are others.
        if first != last:
            found.append(f"{first} to {last} is a range, give each release a row")
        for entry in components.iter("ComponentEntry"):
            place = entry.get("ModuleName").removeprefix("./")
            if place not in files and not (place.endswith("/") and
                                           any(name.startswith(place) for name in files)):
                found.append(f"{place} is not in the bundle")
            if components.get("Description") == PLUGINS_KIND:
                loads.append((first, place))
    wanted = [(str(host.release), plugin_of(host.generation)) for host in hosts]
    found += [f"{release} does not load {place}" for release, place in wanted
              if (release, place) not in loads]
    found += [f"{release} loads {place}, which is not for it" for release, place in loads
              if (release, place) not in wanted]
    found += [f"{release} loads {place} twice" for release, place in set(loads)
              if loads.count((release, place)) > 1]
    named = {place for _, place in wanted}
    found += [f"{name} is loaded by no release" for name in sorted(files)
              if name.endswith(".gup") and name not in named]
    return found
