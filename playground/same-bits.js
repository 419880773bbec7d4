// The tab on which the digests of all functions, and of a simulation's states, are computed in this browser and
// compared with those of the native build.
import { BufferAttribute, BufferGeometry, Color } from "three";

import { loadCompiled } from "./compiled.js";
import native from "./digests.txt";
import { kx } from "./kx.js";
import nativeReplay from "./replay.txt";
import { View, colour, orbit, redraw } from "./view.js";

const element = (id) => document.getElementById(id);
const recorded = (text) => new Map(text.trim().split("\n").map((line) => line.split(" ")));
const stepsInAll = 10000;
/** So that there is something to see. */
const stepsInAMillisecond = 0.7;
/** For how long a frame may compute, in milliseconds. */
const slice = 9;
const scale = 1 / 8;

export async function sameBits(section) {
  section.innerHTML = `
<h2>A hundred bodies, ten thousand steps</h2>
<div class="stage">
  <figure>
    <canvas id="replay-view" tabindex="0" role="img" aria-label="Bodies that move between blocks, and rays that see some of them; the arrow keys turn the view"></canvas>
    <figcaption class="quiet">Each step places and turns 120 bodies, bounces them off blocks, walls and each other, and casts eight rays. A body that is seen shies away, so every bit of every answer counts for what comes after it.</figcaption>
  </figure>
  <div class="card">
    <p class="verdict" id="replay-verdict" role="status"></p>
    <progress id="replay-progress" max="${stepsInAll}"></progress>
    <table class="rows" aria-label="Digests of all states"><thead><tr><th>step</th><th>all states so far</th><th></th></tr></thead><tbody id="checkpoints"></tbody></table>
    <div class="bar choice"><button id="replay-again">Run again</button><button id="replay-bit" class="plain">Run with one bit changed</button></div>
  </div>
</div>

<h2>All 92 functions</h2>
<p class="quiet">Each function gets thousands of inputs: ordinary numbers, boundaries, zeros, infinities. The digest of what it gives back is computed here and compared with the one of the native build.</p>
<p id="digests-verdict" class="verdict" role="status">Computing…</p>
<div id="digests" role="group" aria-label="Functions; the arrow keys go from one to the next"></div>
<p id="digest-details" class="quiet" role="status">Focus or point at a function to see its digest.</p>

<h2>What this promises</h2>
<p>A function that is called with the same bits gives the same bits: in every browser, and in native programs on x86, ARM and s390x, little- and big-endian, under Linux and Windows. That is what games in lockstep and distributed simulators need of their geometry.</p>
<p>It does not cover what a program adds of its own: sines and powers of the C library or of <code>Math</code>, sums that a compiler fuses or reorders, another rounding mode. The replay is compiled with care for that; <code>docs/platforms.md</code> lists what to look out for. Functions that return angles take arctangents from the C library: their singles have agreed in every case that was measured.</p>`;
  const compiled = await loadCompiled();
  const work = [digests(compiled), replay(compiled)];
  const frame = () => {
    if (!section.hidden) work.forEach((each) => each());
    requestAnimationFrame(frame);
  };
  frame();
}

/** Makes the list of functions; returns what computes some more digests. */
function digests(compiled) {
  const wanted = recorded(native);
  const all = compiled.digests();
  const cells = all.map(({ name }) => Object.assign(document.createElement("button"), { textContent: name, tabIndex: -1, className: "function" }));
  const found = [];
  const list = element("digests");
  list.append(...cells);
  cells[0].tabIndex = 0;
  const show = ({ target }) => {
    const i = cells.indexOf(target);
    if (i < 0) return;
    const { name } = all[i];
    element("digest-details").textContent = !found[i] ? `${name}: not computed yet`
      : found[i] === wanted.get(name) ? `${name}: ${found[i]}, here and natively`
        : `${name}: ${found[i]} here, ${wanted.get(name)} natively`;
  };
  list.addEventListener("pointerover", show);
  list.addEventListener("focusin", show);
  list.addEventListener("keydown", (event) => {
    const step = { ArrowLeft: -1, ArrowUp: -1, ArrowRight: 1, ArrowDown: 1 }[event.key];
    if (!step) return;
    event.preventDefault();
    const from = cells.indexOf(document.activeElement);
    const to = (from + step + cells.length) % cells.length;
    [cells[from].tabIndex, cells[to].tabIndex] = [-1, 0];
    cells[to].focus();
  });

  return () => {
    for (const end = performance.now() + slice; found.length < all.length && performance.now() < end;) {
      const { name, digest } = all[found.length];
      const value = digest();
      cells[found.length].classList.add(value === wanted.get(name) ? "same" : "other");
      found.push(value);
      if (found.length < all.length) continue;
      const others = found.filter((each, i) => each !== wanted.get(all[i].name)).length;
      tell(element("digests-verdict"), others === 0, others === 0 ? `${all.length} of ${all.length} digests are those of the native build.`
        : `${others} of ${all.length} digests are not those of the native build.`);
    }
  };
}

function tell(verdict, isGood, text) {
  verdict.ariaBusy = "false";
  verdict.textContent = text;
  verdict.className = `verdict ${isGood ? "good" : "off"}`;
}

/** Begins the replay; returns what makes some more of its steps. */
function replay(compiled) {
  const run = compiled.replay();
  const wanted = recorded(nativeReplay);
  const isCalm = matchMedia("(prefers-reduced-motion: reduce)").matches;
  let step = 0;
  let last = performance.now();
  let isChanged = false;
  /** How lately each body was seen: from 1 to 0. */
  const heat = new Float32Array(run.seen.length);
  const seenBefore = run.seen.slice();
  const rows = [...wanted].map(([after, digest]) => {
    const row = element("checkpoints").insertRow();
    row.innerHTML = `<td>${Number(after).toLocaleString("en")}</td><td><code></code></td><td></td>`;
    return { row, after: Number(after), digest };
  });

  const shape = new BufferGeometry();
  const boxes = run.corners.length / 24;
  // Two triangles for each face, counter-clockwise from outside. Bit 0 of a corner's number is for x, 1 for y, 2 for z.
  const faces = [[0, 4, 6, 2], [1, 3, 7, 5], [0, 1, 5, 4], [2, 6, 7, 3], [0, 2, 3, 1], [4, 5, 7, 6]];
  shape.setIndex(Array.from({ length: boxes }, (_, box) => faces.flatMap(([a, b, c, d]) => [a, b, c, a, c, d].map((i) => 8 * box + i))).flat());
  shape.setAttribute("position", new BufferAttribute(new Float32Array(run.corners.length), 3));
  shape.setAttribute("color", new BufferAttribute(new Float32Array(run.corners.length), 3));

  let azimuth = 30;
  let elevation = 24;
  const canvas = element("replay-view");
  const small = kx.KXM4Scale(scale, scale, scale);
  new View(canvas, { distance: 6.5, eye: () => [azimuth, elevation], paint(view) {
    run.draw();
    const { position, color } = shape.attributes;
    position.array.set(run.corners);
    const [body, hot, block] = ["mesh", "accent", "pale"].map((name) => new Color(colour(name)));
    for (let box = 0; box < boxes; box++) {
      const own = box < heat.length ? body.clone().lerp(hot, heat[box]) : block;
      for (let corner = 0; corner < 8; corner++) own.toArray(color.array, 24 * box + 3 * corner);
    }
    position.needsUpdate = color.needsUpdate = true;
    room(view);
    view.mesh(shape, [small]);
    const rays = kx.KXM4NP3I1(small, run.rays);
    for (let i = 0; i < rays.length; i += 6) {
      view.context.globalAlpha = 0.45;
      view.lines([rays.subarray(i, i + 3), rays.subarray(i + 3, i + 6)], { stroke: colour("accent"), width: 1 });
      view.context.globalAlpha = 1;
      view.dot(rays.subarray(i, i + 3), 2.5, colour("accent"));
    }
  } });
  orbit(canvas, { get: () => [azimuth, elevation], set([a, e]) { [azimuth, elevation] = [a, e]; redraw(); } });

  function start(changeABit) {
    run.start(changeABit);
    [step, isChanged] = [0, changeABit];
    heat.fill(0);
    seenBefore.fill(0);
    for (const { row } of rows) {
      row.className = "";
      row.cells[1].firstChild.textContent = row.cells[2].textContent = "";
    }
    // Every step would be read out otherwise.
    Object.assign(element("replay-verdict"), { className: "verdict", ariaBusy: "true" });
  }
  element("replay-again").addEventListener("click", () => start(false));
  element("replay-bit").addEventListener("click", () => start(true));
  start(false);

  return () => {
    const now = performance.now();
    const due = Math.min(stepsInAll, step + Math.ceil(stepsInAMillisecond * Math.min(now - last, 300)));
    last = now;
    if (step === stepsInAll) return;
    const drawn = step;
    while (step < due && performance.now() < now + 3 * slice) {
      run.step();
      step++;
      const reached = rows.find(({ after }) => after === step);
      if (!reached) continue;
      const digest = run.digest();
      const isSame = digest === reached.digest;
      reached.row.className = isSame ? "same" : "other";
      reached.row.cells[1].firstChild.textContent = digest;
      reached.row.cells[2].textContent = isSame ? "✓" : "≠";
    }
    run.draw();
    heat.forEach((each, i) => { heat[i] = run.seen[i] === seenBefore[i] ? each * 0.96 : 1; });
    seenBefore.set(run.seen);
    element("replay-progress").value = step;
    const verdict = element("replay-verdict");
    if (step < stepsInAll) {
      verdict.textContent = `Step ${step.toLocaleString("en")} of ${stepsInAll.toLocaleString("en")}${isChanged ? ", one bit changed" : ""}`;
    } else if (rows.every(({ row }) => row.className === "same")) {
      tell(verdict, true, "The same states as in the native program.");
    } else {
      tell(verdict, false, isChanged ? "One bit of one body was changed, and nothing is as in the native program." : "Not the states of the native program.");
    }
    if (!isCalm || step % 500 < step - drawn) redraw();
  };
}

/** The floor of the room, and its edges. */
function room(view) {
  const stroke = colour("grid");
  const [w, h] = [12 * scale, 6 * scale];
  for (const y of [-h, h]) view.lines([[-w, y, -w], [w, y, -w], [w, y, w], [-w, y, w]], { stroke, width: 1, close: true, fill: y < 0 ? colour("grid") : undefined });
  for (const x of [-w, w]) for (const z of [-w, w]) view.lines([[x, -h, z], [x, h, z]], { stroke, width: 1 });
}
