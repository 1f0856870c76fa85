#!/usr/bin/env python3
"""A small animated world as a binary glTF file, for the tutorial: what a modelling tool would export.

Two spheres, a ring of columns that turns once in ten seconds, a floor, two lamps, a camera that rises round them.
Metres; y is up. Usage: world.py OUT.glb
"""
import json, math, struct, sys

data = bytearray()
views, accessors, meshes, nodes, channels, samplers = [], [], [], [], [], []


def accessor(rows, kind, component=5126):
    width = {"SCALAR": 1, "VEC2": 2, "VEC3": 3, "VEC4": 4}[kind]
    flat = [value for row in rows for value in (row if width > 1 else [row])]
    views.append({"buffer": 0, "byteOffset": len(data), "byteLength": 4 * len(flat)})
    data.extend(struct.pack("<%d%s" % (len(flat), "f" if component == 5126 else "I"), *flat))
    columns = [flat[i::width] for i in range(width)]
    accessors.append({"bufferView": len(views) - 1, "componentType": component, "count": len(rows), "type": kind,
                      "min": [min(c) for c in columns], "max": [max(c) for c in columns]})
    return len(accessors) - 1


def mesh(points, quads, material):
    """Each quad has corners of its own, so that edges stay hard."""
    corners = [points[i] for quad in quads for i in quad]
    triangles = [4 * q + i for q in range(len(quads)) for i in (0, 1, 2, 0, 2, 3)]
    coordinates = [(u, v) for _ in quads for u, v in ((0, 1), (1, 1), (1, 0), (0, 0))]
    meshes.append({"primitives": [{"attributes": {"POSITION": accessor(corners, "VEC3"),
                                                  "TEXCOORD_0": accessor(coordinates, "VEC2")},
                                   "indices": accessor(triangles, "SCALAR", 5125), "material": material}]})
    return len(meshes) - 1


def box(width, height, depth, material):
    points = [(x * width / 2, y * height, z * depth / 2) for y in (0, 1) for z in (-1, 1) for x in (-1, 1)]
    return mesh(points, [(0, 1, 3, 2), (4, 6, 7, 5), (2, 3, 7, 6), (1, 0, 4, 5), (3, 1, 5, 7), (0, 2, 6, 4)], material)


def sphere(radius, material, rows=16):
    columns = 2 * rows
    points = [(radius * math.sin(math.pi * i / rows) * math.cos(2 * math.pi * j / columns),
               radius * math.cos(math.pi * i / rows),
               radius * math.sin(math.pi * i / rows) * math.sin(2 * math.pi * j / columns))
              for i in range(rows + 1) for j in range(columns)]
    at = lambda i, j: i * columns + j % columns
    return mesh(points, [(at(i, j), at(i, j + 1), at(i + 1, j + 1), at(i + 1, j))
                         for i in range(rows) for j in range(columns)], material)


def node(**what):
    nodes.append(what)
    return len(nodes) - 1


def animate(target, path, times, values):
    samplers.append({"input": accessor(times, "SCALAR"),
                     "output": accessor(values, "VEC4" if path == "rotation" else "VEC3")})
    channels.append({"sampler": len(samplers) - 1, "target": {"node": target, "path": path}})


floor, stone, mirror = 0, 1, 2
node(name="floor", mesh=box(16, 0.1, 16, floor), translation=[0, -1, 0])
node(name="sphere01", mesh=sphere(1, mirror), translation=[0, 1, 0])
moon = node(name="sphere02", mesh=sphere(0.4, mirror), translation=[2, 1, 0])
column = box(0.4, 2.2, 0.4, stone)
columns = [node(name="column%02d" % i, mesh=column, translation=[5 * math.cos(i * math.pi / 4), -0.9, 5 * math.sin(i * math.pi / 4)])
           for i in range(8)]
ring = node(name="ring", children=columns)
node(name="lamp", translation=[3, 6, 4], extensions={"KHR_lights_punctual": {"light": 0}})
node(name="night", translation=[-5, 3, -4], extensions={"KHR_lights_punctual": {"light": 1}})
camera = node(name="camera01", camera=0)

steps = [i / 2 for i in range(21)]  # ten seconds
turn = lambda angle: (0, math.sin(angle / 2), 0, math.cos(angle / 2))
animate(ring, "rotation", steps, [turn(2 * math.pi * t / 10) for t in steps])
animate(moon, "translation", steps, [(2 * math.cos(4 * math.pi * t / 10), 1 + 0.5 * math.sin(2 * math.pi * t / 10),
                                      2 * math.sin(4 * math.pi * t / 10)) for t in steps])
flight = [(8 * math.sin(0.3 * t - 1), 1 + 0.4 * t, 8 * math.cos(0.3 * t - 1)) for t in steps]


def facing(place, aim=(0, 0.6, 0)):
    """The turn of a camera, which looks along -z, from there to there."""
    x, y, z = (a - p for a, p in zip(aim, place))
    yaw, pitch = math.atan2(-x, -z), math.atan2(y, math.hypot(x, z))
    sy, cy, sp, cp = math.sin(yaw / 2), math.cos(yaw / 2), math.sin(pitch / 2), math.cos(pitch / 2)
    return (cy * sp, sy * cp, -sy * sp, cy * cp)


animate(camera, "translation", steps, flight)
animate(camera, "rotation", steps, [facing(place) for place in flight])

colour = lambda r, g, b: {"pbrMetallicRoughness": {"baseColorFactor": [r, g, b, 1], "metallicFactor": 0, "roughnessFactor": 0.4}}
gltf = {
    "asset": {"version": "2.0"}, "extensionsUsed": ["KHR_lights_punctual"], "scene": 0,
    "extensions": {"KHR_lights_punctual": {"lights": [{"type": "point", "color": [1, 0.85, 0.7], "intensity": 250},
                                                          {"type": "point", "color": [0.3, 0.5, 1], "intensity": 120}]}},
    "scenes": [{"nodes": [i for i in range(len(nodes)) if i not in columns]}], "nodes": nodes, "meshes": meshes,
    "materials": [dict(colour(0.12, 0.16, 0.25), name="floor", emissiveFactor=[0.01, 0.015, 0.03]), dict(colour(0.7, 0.45, 0.2), name="stone"),
                  dict(colour(0.8, 0.8, 0.8), name="mirror")],
    "cameras": [{"type": "perspective", "perspective": {"yfov": 0.9, "znear": 0.1, "zfar": 200}}],
    "animations": [{"channels": channels, "samplers": samplers}],
    "accessors": accessors, "bufferViews": views, "buffers": [{"byteLength": len(data)}],
}
text = json.dumps(gltf).encode()
text += b" " * (-len(text) % 4)
data.extend(b"\0" * (-len(data) % 4))
with open(sys.argv[1], "wb") as out:
    out.write(struct.pack("<III", 0x46546C67, 2, 28 + len(text) + len(data)))
    out.write(struct.pack("<II", len(text), 0x4E4F534A) + text + struct.pack("<II", len(data), 0x004E4942) + data)
