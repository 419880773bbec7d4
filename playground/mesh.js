// The mesh that is shown: the one that came with the page, or a file of the visitor's.
import { BufferAttribute, BufferGeometry, TorusKnotGeometry } from "three";
import { OBJLoader } from "three/addons/loaders/OBJLoader.js";
import { mergeVertices } from "three/addons/utils/BufferGeometryUtils.js";

import bunny from "./default-mesh.obj";
import { kx, vector } from "./kx.js";

/** Moves the box's centre to the origin, and makes its longest side 2 long. */
function fitted(points) {
  const box = vector(...points.subarray(0, 3), ...points.subarray(0, 3));
  for (let i = 0; i < points.length; i += 3) kx.KXPutPointInBox(points.subarray(i, i + 3), box);
  const side = Math.max(...kx.KXBoxDiagonal(box));
  const centre = kx.KXBoxMidPoint(box);
  const move = kx.KXM4Translate(-centre[0], -centre[1], -centre[2]);
  const size = kx.KXM4Scale(2 / side, 2 / side, 2 / side);
  return kx.KXM4NP3I1(kx.KXM4Mult(size, move), points);
}

function meshOf(name, geometry) {
  const points = fitted(geometry.attributes.position.array);
  const triangles = Uint32Array.from(geometry.index.array);
  const shape = new BufferGeometry();
  shape.setAttribute("position", new BufferAttribute(points, 3));
  shape.setIndex(new BufferAttribute(triangles, 1));
  shape.computeVertexNormals();
  return { name, points, triangles, shape };
}

/** The mesh of an OBJ file's text. Throws an Error that says in a sentence what is wrong. */
function readObj(name, text) {
  // Of other files the reader complains on the console, line by line.
  if (!/^\s*f\s/m.test(text)) throw new Error(`${name} cannot be read: there are no triangles in it, as an OBJ file has them.`);
  const parts = [];
  new OBJLoader().parse(text).traverse((each) => each.isMesh && parts.push(each.geometry.attributes.position.array));
  const points = new Float32Array(parts.reduce((sum, each) => sum + each.length, 0));
  parts.reduce((at, each) => (points.set(each, at), at + each.length), 0);
  if (!points.length || !points.every(Number.isFinite)) {
    throw new Error(`${name} cannot be read: a number is not one, or a face has a corner that is not there.`);
  }
  if (points.every((each, i) => each === points[i % 3])) throw new Error(`${name} cannot be shown: all its points are one.`);
  return meshOf(name, mergeVertices(new BufferGeometry().setAttribute("position", new BufferAttribute(points, 3)), 0));
}

export async function readFile(file) {
  if (file.size > 2e8) throw new Error(`${file.name} cannot be read: it is larger than 200 MB.`);
  return readObj(file.name, await file.text());
}

/** The bunny; where the page was built without it, a knot. */
export function defaultMesh() {
  return bunny ? readObj("bunny.obj", bunny) : meshOf("knot", new TorusKnotGeometry(0.7, 0.25, 200, 32));
}
