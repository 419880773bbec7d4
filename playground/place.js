// The tab on which a mesh is placed.
import { copy, languages, program } from "./code.js";
import * as kxmaths5 from "./kx.js";
import { degrees, kx, radians, vector } from "./kx.js";
import { change, onChange, orders, reset, state } from "./state.js";
import { View, colour, orbit } from "./view.js";

const element = (id) => document.getElementById(id);
const identity = () => kx.KXM4Scale(1, 1, 1);

/** The placement and its inverse, or null for a singular one; with another order than the state's, too. */
export function placement({ p, r, s, order, scale }) {
  const which = kxmaths5[`KX_ORDER_${order}`];
  const angles = r.map(radians);
  const size = kx.KXM4Scale(...s);
  let matrix;
  if (scale === "first") {
    matrix = kx.KXM4Mult(kx.KXM4Position(vector(p, angles), which).matrix, size);
  } else {
    const turned = kx.KXM4Mult(size, kx.KXM4Orientation(...angles, which).matrix);
    matrix = kx.KXM4Mult(kx.KXM4Translate(...p), turned);
  }
  return { matrix, inverse: kx.KXM4Inverse(matrix) };
}

/** The two ways of reading a matrix back. Each gives null or what it read, and the matrix made of that. */
const readings = [{
  name: "By columns",
  call: "KXM4MatrixComponents",
  formula: "T·RY·RX·RZ·S: a point is scaled along its own axes, then rotated",
  read(matrix) {
    const { position, scale } = kx.KXM4MatrixComponents(matrix);
    const rebuilt = kx.KXM4Mult(kx.KXM4Position(position, kxmaths5.KX_ORDER_YXZ).matrix, kx.KXM4Scale(...scale));
    return { scale, angles: position.subarray(3), move: position.subarray(0, 3), rebuilt };
  },
  reason(read, matrix) {
    const rows = kx.KXM4Transpose(matrix);
    const [a, b, c] = [0, 4, 8].map((at) => kx.KXV3Normalise(rows.subarray(at, at + 3)).out);
    if (read.scale.some((each) => Math.abs(each) < 1e-6)) return "A column without a length has no direction.";
    return [[a, b], [b, c], [c, a]].some((each) => Math.abs(kx.dot(...each)) > 1e-5)
      ? "The columns of the matrix are not perpendicular, as those of a scaled rotation are."
      : "Near a quarter turn about X, angles come back less exactly.";
  },
}, {
  name: "By rows",
  call: "KXM4Decompose",
  formula: "T·S·RX·RY·RZ: a point is rotated, then scaled along the fixed axes",
  read(matrix) {
    const parts = kx.KXM4Decompose(matrix);
    if (!parts) return null;
    const shear = parts.subarray(3, 6);
    return { scale: parts.subarray(0, 3), angles: parts.subarray(6, 9), move: parts.subarray(9, 12), shear, rebuilt: kx.KXM4Compose(parts) };
  },
  reason: ({ shear }) => (shear.some((each) => !(Math.abs(each) < 1e-5)) ? "It found a shear, which KXM4Compose does not build in."
    : "Near a quarter turn about Y, angles come back less exactly."),
}];

/** How far two matrices are apart, at most. */
const apart = (a, b) => Math.max(...a.map((each, i) => Math.abs(each - b[i])));

/** A number for people; -0 would look like a mistake. */
export const short = (value, digits = 3) => (Number.isFinite(value) ? (Number(value.toFixed(digits)) + 0).toFixed(digits) : "—").replace("-", "−");

function fillMatrix(table, matrix) {
  table.innerHTML = matrix ? [0, 4, 8, 12].map((row) => `<tr>${[...matrix.subarray(row, row + 4)].map((each) =>
    `<td${Math.abs(each) < 5e-5 ? ' class="zero"' : ""}>${short(each, 4)}</td>`).join("")}</tr>`).join("") : "";
}

const groups = [
  { name: "p", label: "Position", low: -2, high: 2, step: 0.01 },
  { name: "r", label: "Rotation, degrees", low: -180, high: 180, step: 1 },
  { name: "s", label: "Scale", low: -2, high: 2, step: 0.01 },
];

/** Sliders and fields for nine numbers. */
function makeControls(form) {
  form.innerHTML = groups.map(({ name, label, low, high, step }) => `<fieldset><legend>${label}</legend>${[..."xyz"].map((axis, i) => `
    <div class="slider"><span class="axis-${axis}" aria-hidden="true">${axis}</span>
      <input type="range" aria-label="${label} ${axis}" data-at="${name}${i}" min="${low}" max="${high}" step="${step}">
      <input type="number" aria-label="${label} ${axis}, as a number" data-at="${name}${i}" step="${step}"></div>`).join("")}</fieldset>`).join("") + `
    <label class="row">Scale acts <select id="scale"><option value="first">first, along the mesh’s own axes</option>
      <option value="last">after the rotation, along the fixed axes</option></select></label>
    <button type="button" id="reset" class="plain">Start again</button>`;
  form.addEventListener("submit", (event) => event.preventDefault());
  form.addEventListener("input", ({ target }) => {
    if (target.id === "scale") return change({ scale: target.value });
    const [name, i] = target.dataset.at;
    const value = target.valueAsNumber;
    if (!(Math.abs(value) < 1e6)) return undefined;
    return change({ [name]: state[name].with(i, value) });
  });
  // A field that was left without a number gets the one that is true.
  form.addEventListener("focusout", showControls);
  element("reset").addEventListener("click", () => reset("p", "r", "s", "order", "scale", "eye"));
}

function showControls() {
  for (const input of element("controls").querySelectorAll("[data-at]")) {
    const value = String(state[input.dataset.at[0]][input.dataset.at[1]]);
    if (input !== document.activeElement || input.type === "range") input.value = value;
  }
  element("scale").value = state.scale;
}

export function place(section, mesh) {
  const eye = () => state.eye;
  let now;
  let language = "C";

  makeControls(element("controls"));
  const main = new View(element("place-view"), { distance: 6.5, eye, paint(view) {
    view.floor();
    view.mesh(mesh.shape, [now.matrix], [colour("mesh")]);
    view.axes(identity(), 1.6, ["X", "Y", "Z"], 1);
    view.axes(now.matrix, 1.25, undefined, 3.5);
  } });
  orbit(main.canvas, { get: eye, set: (next) => change({ eye: next }) });

  element("orders").innerHTML = orders.map((order) => `<label class="card"><input type="radio" name="order" value="${order}" class="unseen">
    <canvas aria-hidden="true"></canvas><strong>${order}</strong><span class="quiet">R${order[0]}·(R${order[1]}·R${order[2]})</span></label>`).join("");
  element("orders").addEventListener("change", ({ target }) => change({ order: target.value }));
  const small = (canvas, paint) => new View(canvas, { distance: 5.6, eye, paint });
  element("orders").querySelectorAll("canvas").forEach((canvas, i) => small(canvas, (view) => {
    const { matrix } = placement({ ...state, p: [0, 0, 0], order: orders[i] });
    view.mesh(mesh.shape, [matrix], [colour(orders[i] === state.order ? "mesh" : "pale")]);
    view.axes(matrix, 1.3, undefined, 2);
  }));

  element("readings").innerHTML = readings.map(({ name, call, formula }) => `<article class="card"><h3>${name}: <code>${call}</code></h3>
    <p class="quiet">${formula}</p><div class="reading"><canvas role="img" aria-label="The mesh as it is and as it was rebuilt"></canvas>
    <table class="parts"></table></div><p class="verdict" role="status"></p></article>`).join("");
  const cards = [...element("readings").children];
  cards.forEach((card, i) => small(card.querySelector("canvas"), (view) => {
    const rebuilt = readings[i].read(now.matrix)?.rebuilt;
    view.mesh(mesh.shape, [rebuilt, now.matrix], [colour("mesh"), colour("ghost")]);
  }));

  element("languages").innerHTML = languages.map((each) => `<label><input type="radio" name="language" class="unseen" value="${each}">${each}</label>`).join("");
  element("languages").querySelector("input").checked = true;
  element("languages").addEventListener("change", ({ target }) => {
    language = target.value;
    update();
  });
  element("copy").addEventListener("click", ({ target }) => copy(program(language, state), target));

  function update() {
    now = placement(state);
    showControls();
    section.querySelector(`[name=order][value=${state.order}]`).checked = true;
    const rotation = `R${state.order[0]}·(R${state.order[1]}·R${state.order[2]})`;
    element("product").textContent = state.scale === "first"
      ? `T·${rotation}·S: a point is scaled, then rotated, then moved. The right factor acts first.`
      : `T·S·${rotation}: a point is rotated, then scaled, then moved. The right factor acts first.`;
    fillMatrix(element("matrix"), now.matrix);
    fillMatrix(element("inverse"), now.inverse);
    element("singular").hidden = Boolean(now.inverse);
    cards.forEach((card, i) => {
      const read = readings[i].read(now.matrix);
      const row = (label, values, digits) => `<tr><th scope="row">${label}</th>${[...values].map((each) => `<td>${short(each, digits)}</td>`).join("")}</tr>`;
      card.querySelector("table").innerHTML = read ? `<tr><td></td><th>x</th><th>y</th><th>z</th></tr>${row("scale", read.scale)}${row("angle, °", [...read.angles].map(degrees), 1)}${
        row("move", read.move)}${read.shear ? row("shear", read.shear) : ""}` : "";
      const off = read && apart(read.rebuilt, now.matrix);
      const verdict = card.querySelector(".verdict");
      // Singles of this size are rounded by about 1e-7; the angles near gimbal lock by more.
      const isGood = read && off < 2e-5 * Math.max(1, ...now.matrix.map(Math.abs));
      verdict.className = `verdict ${isGood ? "good" : "off"}`;
      verdict.textContent = !read ? "Singular: KXM4Decompose returns 1, and nothing is read."
        : isGood ? `Rebuilds the matrix: no element is off by more than ${off.toPrecision(1)}.`
        : `Does not rebuild it: an element is off by ${short(off, 2)}. ${readings[i].reason(read, now.matrix)}`;
    });
    element("code").textContent = program(language, state);
  }
  onChange(update);
  update();
  return { use(next) { mesh = next; } };
}
