// What the page shows, all of it but the mesh. It is in the address, so that a link shows the same.

const initial = {
  tab: "place",
  // Place: lengths, degrees, factors.
  p: [0.5, 0.1, 0], r: [40, 50, 20], s: [1, 1.4, 1],
  order: "YXZ",
  scale: "first",
  // The eye's azimuth and elevation, in degrees.
  eye: [25, 18],
  // Pick: the ray at the mesh; and box, ray and triangle, whose ray may be taken as a line.
  ray: [2.6, 2, 5.5, -0.37, -0.28, -0.88],
  box: [-1, -0.5, -0.5, 0, 0.5, 0.5],
  path: [-1.9, 0.27, 0.78, -1.2, 0.2, 0.5],
  triangle: [0.8, -0.8, -0.6, 1.7, -0.7, 0.5, 1.1, 0.9, -0.5],
  as: "ray",
};
const choices = {
  tab: ["place", "pick", "same-bits"],
  order: ["XYZ", "XZY", "YXZ", "YZX", "ZXY", "ZYX"],
  scale: ["first", "last"],
  as: ["ray", "line"],
};
export const orders = choices.order;
export const state = structuredClone(initial);

const listeners = [];
let writing = 0;

export function onChange(listener) {
  listeners.push(listener);
}

/** Numbers as they are in an address; undefined unless there are as many as there should be. */
function numbers(text, name) {
  const list = text.split(",").map(Number);
  return list.length === initial[name].length && list.every((each) => Math.abs(each) < 1e6) ? list : undefined;
}

/** Takes the state from the address. What makes no sense there is as it is at the start. */
export function readAddress() {
  const address = new URLSearchParams(location.hash.slice(1));
  for (const name of Object.keys(initial)) {
    const text = address.get(name);
    const good = text === null ? undefined : choices[name] ? choices[name].find((each) => each === text) : numbers(text, name);
    state[name] = good ?? structuredClone(initial[name]);
  }
}

function writeAddress() {
  writing = 0;
  const said = Object.keys(initial).filter((name) => String(state[name]) !== String(initial[name]));
  history.replaceState(null, "", `#${said.map((name) => `${name}=${state[name]}`).join("&")}`);
}

/** Browsers refuse an address that changes too often, as it would with a slider. */
export function change(changes) {
  Object.assign(state, changes);
  writing ||= setTimeout(writeAddress, 150);
  for (const listener of listeners) listener(Object.keys(changes));
}

export function reset(...names) {
  change(structuredClone(Object.fromEntries(names.map((name) => [name, initial[name]]))));
}

addEventListener("hashchange", () => {
  readAddress();
  for (const listener of listeners) listener(Object.keys(initial));
});
