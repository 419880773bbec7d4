// The page's frame: tabs, the theme, the mesh, and what is wrong if something is.
import { copy } from "./code.js";
import { loadLibrary } from "./kx.js";
import { defaultMesh, readFile } from "./mesh.js";
import { pick } from "./pick.js";
import { place } from "./place.js";
import { sameBits } from "./same-bits.js";
import { change, onChange, readAddress, state } from "./state.js";
import { redraw } from "./view.js";

const element = (id) => document.getElementById(id);

const openers = { place, pick, "same-bits": sameBits };
const opened = new Map();
let mesh;

function show(problem) {
  element("problem").textContent = problem ?? "";
  element("problem").hidden = !problem;
}
document.addEventListener("problem", (event) => show(event.detail));

function openTab() {
  document.body.dataset.tab = state.tab;
  for (const name of Object.keys(openers)) {
    const tab = element(`tab-${name}`);
    tab.setAttribute("aria-selected", String(name === state.tab));
    tab.tabIndex = name === state.tab ? 0 : -1;
    element(name).hidden = name !== state.tab;
  }
  if (!opened.has(state.tab)) opened.set(state.tab, openers[state.tab](element(state.tab), mesh));
  redraw();
}

const tabs = [...document.querySelectorAll("[role=tab]")];
for (const tab of tabs) {
  tab.addEventListener("click", () => change({ tab: tab.getAttribute("aria-controls") }));
  tab.addEventListener("keydown", ({ key }) => {
    const step = { ArrowLeft: -1, ArrowRight: 1 }[key];
    if (!step) return;
    const next = tabs[(tabs.indexOf(tab) + step + tabs.length) % tabs.length];
    next.focus();
    next.click();
  });
}

function use(next) {
  mesh = next;
  element("mesh-name").textContent = `${mesh.name}, ${(mesh.triangles.length / 3).toLocaleString("en")} triangles`;
  for (const tab of opened.values()) tab?.use?.(mesh);
  redraw();
}

async function open(file) {
  if (!file) return;
  try {
    use(await readFile(file));
    show();
  } catch (error) {
    show(error.message);
  }
}
element("file").addEventListener("change", async (event) => {
  await open(event.target.files[0]);
  event.target.value = "";
});
addEventListener("dragover", (event) => event.preventDefault());
addEventListener("drop", (event) => {
  event.preventDefault();
  open(event.dataTransfer.files[0]);
});

element("theme").addEventListener("click", () => {
  const isDark = getComputedStyle(document.documentElement).colorScheme === "dark"
    || (!document.documentElement.dataset.theme && matchMedia("(prefers-color-scheme: dark)").matches);
  document.documentElement.dataset.theme = isDark ? "light" : "dark";
  redraw();
});
matchMedia("(prefers-color-scheme: dark)").addEventListener("change", redraw);

element("link").addEventListener("click", (event) => setTimeout(() => copy(location.href, event.target), 200));

onChange((names) => names.includes("tab") && openTab());
onChange(redraw);
readAddress();
loadLibrary().then(() => {
  use(defaultMesh());
  openTab();
}, (error) => show(`This browser cannot run the library: ${error.message}`));
