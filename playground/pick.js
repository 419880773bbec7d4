// The tab on which rays are cast: at the mesh, and at one box and one triangle.
import { loadCompiled } from "./compiled.js";
import { KX_HUGE, KX_TOLERANCE, degrees, kx, single, vector } from "./kx.js";
import { placement, short } from "./place.js";
import { change, onChange, reset, state } from "./state.js";
import { View, colour, orbit } from "./view.js";

const element = (id) => document.getElementById(id);
const numbers = (values, digits) => [...values].map((each) => short(each, digits)).join("  ");
const along = (ray, t) => kx.KXV3Combine(ray.subarray(0, 3), ray.subarray(3), 1, t);

/** Casts the state's ray at the mesh where it is placed. */
function castAt(mesh, hierarchy, { matrix, inverse }) {
  const ray = vector(state.ray);
  const inMesh = kx.KXTransformRay(ray, inverse);
  const hit = hierarchy.cast(inMesh);
  // One cast is too quick for a browser's clock; of several runs the quickest was disturbed least.
  const time = 5 * Math.min(...Array.from({ length: 5 }, () => {
    const begin = performance.now();
    for (let i = 0; i < 200; i++) hierarchy.cast(inMesh);
    return performance.now() - begin;
  }));
  if (!hit) return { time };
  const corners = [0, 1, 2].map((i) => {
    const at = 3 * mesh.triangles[3 * hit.triangle + i];
    return mesh.points.subarray(at, at + 3);
  });
  // A normal is taken along by the transposed inverse. Triangles too small for a plane have none.
  const plane = kx.KXPlaneEquation(...corners);
  const normal = plane && kx.KXV3Normalise(kx.KXM4P3I0(kx.KXM4Transpose(inverse), plane.subarray(0, 3))).out;
  const point = kx.KXM4P3I1(matrix, hit.point);
  const eye = ray.subarray(0, 3);
  const { range, elevation } = kx.KXPointsToREA(eye, point);
  return { time, corners: corners.map((each) => kx.KXM4P3I1(matrix, each)), normal, point, triangle: hit.triangle, range, elevation, bearing: kx.KXBearing(point, eye) };
}

const facts = (rows) => `<dl>${rows.map(([name, value]) => `<dt>${name}</dt><dd>${value}</dd>`).join("")}</dl>`;

function meshPicker(first) {
  let mesh = first;
  let hierarchy;
  let place;
  let found = {};
  const eye = () => state.eye;
  const view = new View(element("pick-view"), { distance: 6.5, eye, paint() {
    view.floor();
    view.mesh(mesh.shape, [place.matrix], [colour("mesh")]);
    const ray = vector(state.ray);
    const end = found.point ?? along(ray, 12);
    view.lines([along(ray, 0.2), end], { stroke: colour("accent"), width: 1.5, dash: [5, 4] });
    if (!found.point) return;
    view.lines(found.corners, { fill: colour("off"), stroke: colour("off"), width: 2, close: true });
    if (found.normal) view.lines([found.point, kx.KXV3Combine(found.point, found.normal, 1, 0.5)], { stroke: colour("off"), width: 3 });
    view.dot(found.point, 4, colour("off"));
  } });
  const aim = (column, row) => change({ ray: [...view.ray(column, row)].map((each) => Number(single(each))) });
  orbit(view.canvas, {
    get: eye,
    set: (next) => change({ eye: next }),
    click: aim,
    key(event, step) {
      if (event.shiftKey && step) return false;
      const [x, y] = step ? view.project(found.point ?? along(vector(state.ray), 6)) : [view.width / 2, view.height / 2];
      aim(x + (step?.[0] ?? 0), y - (step?.[1] ?? 0));
      return true;
    },
  });

  function update() {
    place = placement(state);
    found = {};
    element("cast-time").textContent = "";
    let text = "<p>Its hierarchy of boxes is being built…</p>";
    if (!place.inverse) {
      text = "<p class='off'>The mesh is flat here: its matrix is singular, so no ray can be taken into its space.</p>";
    } else if (hierarchy) {
      found = castAt(mesh, hierarchy, place);
      element("cast-time").textContent = `${found.time < 1 ? "Less than 1" : Math.round(found.time)} µs for this ray, among ${(mesh.triangles.length / 3).toLocaleString("en")} triangles.`;
      text = !found.point ? "<p>The ray misses the mesh.</p>" : facts([["Triangle", found.triangle.toLocaleString("en")], ["Point", numbers(found.point)],
        ["Normal", found.normal ? numbers(found.normal) : "too small for one"], ["Range", short(found.range)],
        ["Bearing", `${short(degrees(found.bearing), 1)}°`], ["Elevation", `${short(degrees(found.elevation), 1)}°`]]);
    }
    element("hit").innerHTML = text;
  }
  async function use(next) {
    mesh = next;
    hierarchy = undefined;
    update();
    try {
      hierarchy = (await loadCompiled()).hierarchy(mesh.points, mesh.triangles);
    } catch (error) {
      document.dispatchEvent(new CustomEvent("problem", { detail: `No ray can be cast at this mesh: ${error.message}` }));
    }
    update();
    view.redraw();
  }
  onChange((names) => names.some((each) => ["p", "r", "s", "order", "scale", "ray"].includes(each)) && update());
  use(mesh);
  return { use };
}

// What the contracts' tables say; each row has a result and where the point is.
const tables = {
  ray: {
    box: ["KXRayIxBox", [["the box is inverted", "0", "untouched"], ["an axis with |d| below KX_TOLERANCE", "0 or 1", "the origin"],
      ["the slabs have no t in common, or none at or above 0", "0", "the origin"], ["the origin on the surface", "1", "the origin"],
      ["hit from outside", "1", "d·t + o"], ["from inside", "1", "d·t + o"]]],
    triangle: ["KXRayIxTriangle", [["|denom| below KX_TOLERANCE; the origin on the plane, or the ray leads away from it", "0", "untouched"],
      ["h outside the triangle, or the triangle too small", "0", "h"], ["hit", "1", "h"]]],
  },
  line: {
    box: ["KXLineIxBox", [["the box is inverted, or both ends are outside on the same side", "0", "untouched"],
      ["the start is in the box or on its surface", "1", "the start"], ["an axis with |d| below KX_TOLERANCE", "0 or 1", "the start"],
      ["the slabs have no t in common, or none from 0 to 1", "0", "the start"], ["hit", "1", "d·t + s"]]],
    triangle: ["KXLineIxTriangle", [["|denom| below KX_TOLERANCE; the start on the plane, or the line leads away from it; t above 1", "0", "untouched"],
      ["h outside the triangle, or the triangle too small", "0", "h"], ["hit", "1", "h"]]],
  },
};

const isInside = (p, box) => p.every((each, i) => each >= box[i] && each <= box[i + 3]);

/** Which row of its table a call is in, by what it returned and wrote. */
function boxRow(call, path, box, step, isRay, hit, point) {
  const start = path.subarray(0, 3);
  if (Number.isNaN(point[0])) return 0;
  if (!isRay && isInside(start, box)) return 1;
  const still = step.findIndex((each) => Math.abs(each) < KX_TOLERANCE);
  const [stillRow, apartRow] = isRay ? [1, 2] : [2, 3];
  if (still >= 0) {
    // With this slab and those after it wide open, a miss is one of the slabs before it.
    const open = box.map((each, i) => (i % 3 < still ? each : i < 3 ? -KX_HUGE : KX_HUGE));
    return call(path, open) ? stillRow : apartRow;
  }
  if (!hit) return apartRow;
  if (!isRay) return 4;
  if (point.every((each, i) => each === start[i])) return 3;
  return isInside(start, box) ? 5 : 4;
}

/** The calls of both tables. */
export function verdicts({ path: ends, box: corners, triangle: points, as }) {
  const isRay = as === "ray";
  const line = vector(ends);
  const step = kx.KXV3Combine(line.subarray(3), line.subarray(0, 3), 1, -1);
  const path = isRay ? vector(ends.slice(0, 3), ...step) : line;
  const box = vector(corners);
  const vertices = vector(points);
  const record = new Uint32Array(17);
  kx.triangle(vertices, 0, 1, 2, record);
  const untouched = () => new Float32Array(3).fill(NaN);
  return ["box", "triangle"].map((what) => {
    const [name, rows] = tables[as][what];
    const point = untouched();
    const hit = what === "box" ? kx[name](path, box, point) : kx[name](path, record, vertices, point);
    const row = what === "triangle" ? (Number.isNaN(point[0]) ? 0 : hit ? 2 : 1) : boxRow(kx[name], path, box, step, isRay, hit, point);
    return { name, rows, row, hit: Boolean(hit), point };
  });
}

const handles = [["path", 0, "Start of the path"], ["path", 3, "End of the path, through which a ray goes on"], ["box", 0, "Low corner of the box"], ["box", 3, "High corner of the box"],
  ["triangle", 0, "First corner of the triangle"], ["triangle", 3, "Second corner of the triangle"], ["triangle", 6, "Third corner of the triangle"]];

function scene() {
  let now;
  const place = ([name, at]) => state[name].slice(at, at + 3);
  const moveTo = ([name, at], point, step) => change({ [name]: state[name].toSpliced(at, 3, ...[...point].map((each) => Number((Math.round(each / step) * step).toFixed(2)))) });

  const view = new View(element("scene-view"), { distance: 8, eye: () => state.eye, paint() {
    view.floor();
    const [box, triangle] = now;
    const corner = (i) => [0, 1, 2].map((axis) => state.box[axis + (i >> axis & 1 ? 3 : 0)]);
    const isValid = kx.KXIsValidBox(vector(state.box));
    const edge = { stroke: colour(box.hit ? "good" : "ghost"), width: box.hit ? 2.5 : 1.5, dash: isValid ? [] : [4, 4] };
    if (isValid) for (const face of [[0, 1, 3, 2], [4, 5, 7, 6], [0, 1, 5, 4], [2, 3, 7, 6], [0, 2, 6, 4], [1, 3, 7, 5]]) view.lines(face.map(corner), { fill: colour("wash") });
    for (let i = 0; i < 8; i++) for (const axis of [1, 2, 4]) if (!(i & axis)) view.lines([corner(i), corner(i | axis)], edge);
    view.lines([0, 3, 6].map((at) => state.triangle.slice(at, at + 3)), { fill: colour("wash"), stroke: colour(triangle.hit ? "good" : "ghost"), width: triangle.hit ? 2.5 : 1.5, close: true });
    const [start, end] = [vector(place(handles[0])), vector(place(handles[1]))];
    if (state.as === "ray") view.lines([end, kx.lerp(start, end, 8)], { stroke: colour("accent"), width: 1.5, dash: [6, 5] });
    view.lines([start, end], { stroke: colour("accent"), width: 3 });
    for (const each of now) if (each.hit) view.dot(each.point, 6, colour("good"));
    handles.forEach((handle, i) => {
      const [x, y] = view.project(place(handle));
      element("handles").children[i].style.translate = `${x}px ${y}px`;
    });
  } });
  orbit(view.canvas, { get: () => state.eye, set: (next) => change({ eye: next }) });

  element("handles").innerHTML = handles.map(([name]) => `<button type="button" class="handle of-${name}"></button>`).join("");
  [...element("handles").children].forEach((button, i) => {
    const handle = handles[i];
    button.addEventListener("pointerdown", (event) => button.setPointerCapture(event.pointerId));
    button.addEventListener("pointermove", (event) => {
      if (!button.hasPointerCapture(event.pointerId)) return;
      const frame = element("handles").getBoundingClientRect();
      const ray = view.ray(event.clientX - frame.left, event.clientY - frame.top);
      // In the plane of the picture: as far along the line of sight as before.
      const ahead = kx.KXM4P3I0(view.placement, vector(0, 0, -1));
      moveTo(handle, along(ray, view.project(place(handle))[2] / kx.dot(ray.subarray(3), ahead)), 0.05);
    });
    button.addEventListener("keydown", (event) => {
      const step = event.shiftKey ? 0.01 : 0.05;
      const [axis, way] = { ArrowLeft: [0, -1], ArrowRight: [0, 1], ArrowDown: [1, -1], ArrowUp: [1, 1], PageUp: [2, -1], PageDown: [2, 1] }[event.key] ?? [];
      if (axis === undefined) return;
      event.preventDefault();
      moveTo(handle, place(handle).map((each, at) => each + (at === axis ? way * step : 0)), 0.01);
    });
  });
  element("kinds").addEventListener("change", ({ target }) => change({ as: target.value }));
  element("reset-scene").addEventListener("click", () => reset("box", "path", "triangle", "as"));

  function update() {
    now = verdicts(state);
    element("kinds").querySelector(`[value=${state.as}]`).checked = true;
    handles.forEach((handle, i) => {
      const text = `${handle[2]}: ${place(handle).join(", ")}`;
      Object.assign(element("handles").children[i], { ariaLabel: text, title: text });
    });
    element("verdicts").innerHTML = now.map(({ name, rows, row, hit, point }) => `<h3><code>${name}</code> <span class="${hit ? "good" : "off"}">returns ${Number(hit)}</span>${
      hit ? ` <span class="quiet">at ${numbers(point, 2)}</span>` : ""}</h3>
      <table class="rows"><thead><tr><th>outcome</th><th>result</th><th>point</th></tr></thead><tbody>${rows.map((cells, i) =>
        `<tr${i === row ? ' aria-current="true"' : ""}>${cells.map((each) => `<td>${each}</td>`).join("")}</tr>`).join("")}</tbody></table>`).join("");
  }
  onChange((names) => names.some((each) => ["box", "path", "triangle", "as"].includes(each)) && update());
  update();
}

export function pick(section, mesh) {
  scene();
  return meshPicker(mesh);
}
