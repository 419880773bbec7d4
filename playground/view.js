// A picture of meshes and lines. The camera is the library's; three.js draws the meshes, all pictures
// with one renderer, and lines and letters are drawn over them.
import { Camera, Color, DirectionalLight, DoubleSide, HemisphereLight, Mesh, MeshLambertMaterial, Scene, WebGLRenderer } from "three";

import { KX_DEPTH_MINUS_1_TO_1, kx, radians, vector } from "./kx.js";

const up = vector(0, 1, 0);
const target = vector(0, 0, 0);

/** three.js stores columns where the library stores rows. */
const toThree = (matrix, m) => matrix.fromArray(kx.KXM4Transpose(m));

class Renderer {
  constructor() {
    this.size = [0, 0];
    this.scene = new Scene();
    this.camera = new Camera();
    this.camera.matrixWorldAutoUpdate = false;
    this.light = new DirectionalLight(0xffffff, 2);
    this.meshes = ["solid", "ghost"].map((look) => {
      const material = new MeshLambertMaterial({ side: DoubleSide, transparent: look === "ghost", depthWrite: look === "solid" });
      if (look === "ghost") material.opacity = 0.4;
      return new Mesh(undefined, material);
    });
    this.coloured = new Mesh(undefined, new MeshLambertMaterial({ vertexColors: true, flatShading: true }));
    for (const mesh of [...this.meshes, this.coloured]) {
      mesh.matrixAutoUpdate = false;
      mesh.frustumCulled = false;
    }
    this.scene.add(this.coloured, ...this.meshes, this.light, new HemisphereLight(0xffffff, 0x8899aa, 1.6));
    this.three = new WebGLRenderer({ alpha: true, antialias: true });
    this.three.setPixelRatio(1);
    this.three.setScissorTest(true);
  }

  /**
   * Draws a shape with each of the matrices, the second as a ghost, and copies the picture. Without colours
   * it is drawn once, and its vertices have them.
   */
  draw(view, shape, matrices, colours) {
    const { width, height } = view.canvas;
    if (width > this.size[0] || height > this.size[1]) {
      this.size = [Math.max(width, this.size[0]), Math.max(height, this.size[1])];
      this.three.setSize(...this.size, false);
    }
    this.three.setViewport(0, 0, width, height);
    this.three.setScissor(0, 0, width, height);
    for (const mesh of [this.coloured, ...this.meshes]) mesh.visible = false;
    matrices.forEach((matrix, i) => {
      if (!matrix) return;
      const mesh = colours ? this.meshes[i] : this.coloured;
      mesh.visible = true;
      mesh.geometry = shape;
      if (colours) mesh.material.color = new Color(colours[i]);
      toThree(mesh.matrix, matrix);
    });
    toThree(this.camera.matrixWorld, view.placement);
    toThree(this.camera.matrixWorldInverse, view.view);
    toThree(this.camera.projectionMatrix, view.projection);
    this.light.position.setFromMatrixPosition(this.camera.matrixWorld).addScalar(2);
    this.three.render(this.scene, this.camera);
    performance.getEntriesByName("first picture").length || performance.mark("first picture");
    view.context.drawImage(this.three.domElement, 0, this.size[1] - height, width, height, 0, 0, width, height);
  }
}

let renderer;
function theRenderer() {
  if (renderer === undefined) {
    try {
      renderer = new Renderer();
    } catch {
      renderer = null;
      document.dispatchEvent(new CustomEvent("problem", { detail: "This browser has no WebGL, so the mesh is not drawn. The numbers are right all the same." }));
    }
  }
  return renderer;
}

/** The colour that the style sheet's variable has in the present theme. */
export function colour(name) {
  const probe = document.getElementById("probe");
  probe.style.color = `var(--${name})`;
  return getComputedStyle(probe).color;
}

const views = new Set();
let asked = 0;
function drawAll() {
  asked = 0;
  for (const view of views) if (view.isSeen) view.redraw();
}
/** Draws all pictures that are on the screen, once, at the next frame. */
export function redraw() {
  asked ||= requestAnimationFrame(drawAll);
}
const seen = new IntersectionObserver((entries) => {
  for (const { target: canvas, isIntersecting } of entries) canvas.view.isSeen = isIntersecting;
  redraw();
});
addEventListener("resize", redraw);

export class View {
  /** paint(view) draws; distance is that of the eye from the origin, and eye() its two angles. */
  constructor(canvas, { distance, eye, paint }) {
    Object.assign(this, { canvas, distance, eye, paint, context: canvas.getContext("2d") });
    canvas.view = this;
    views.add(this);
    seen.observe(canvas);
  }

  redraw() {
    const ratio = Math.min(devicePixelRatio, 2);
    const { clientWidth, clientHeight } = this.canvas;
    if (!clientWidth) return;
    Object.assign(this.canvas, { width: Math.round(clientWidth * ratio), height: Math.round(clientHeight * ratio) });
    this.width = clientWidth;
    this.height = clientHeight;
    const [azimuth, elevation] = this.eye();
    const eye = kx.KXREAToPoint(this.distance, radians(elevation), radians(azimuth));
    Object.assign(this, kx.look_at(eye, target, up));
    this.projection = kx.perspective(0.6, clientWidth / clientHeight, 0.1, 100, KX_DEPTH_MINUS_1_TO_1);
    this.toClip = kx.KXM4Mult(this.projection, this.view);
    this.position = eye;
    this.context.clearRect(0, 0, this.canvas.width, this.canvas.height);
    this.ratio = ratio;
    this.context.setTransform(ratio, 0, 0, ratio, 0, 0);
    this.paint(this);
  }

  mesh(shape, matrices, colours) {
    this.context.setTransform(1, 0, 0, 1, 0, 0);
    theRenderer()?.draw(this, shape, matrices, colours);
    this.context.setTransform(this.ratio, 0, 0, this.ratio, 0, 0);
  }

  /** Where a point is in the picture, in CSS pixels, and how far it is along the line of sight. */
  project(point) {
    const clip = kx.KXM4P4(this.toClip, vector(...point, 1));
    const [x, y] = kx.divide_by_w(clip) ?? [0, 0];
    return [(x + 1) / 2 * this.width, (1 - y) / 2 * this.height, clip[3]];
  }

  /** The ray through a place in the picture. */
  ray(column, row) {
    return kx.screen_to_ray(this.projection, this.placement, column, row, this.width, this.height);
  }

  lines(points, { stroke, fill, width = 1.5, close = false, dash = [] }) {
    const { context } = this;
    context.beginPath();
    for (const each of points) context.lineTo(...this.project(each));
    if (close) context.closePath();
    Object.assign(context, { lineWidth: width, lineJoin: "round", lineCap: "round" });
    context.setLineDash(dash);
    if (fill) Object.assign(context, { fillStyle: fill }).fill();
    if (stroke) Object.assign(context, { strokeStyle: stroke }).stroke();
  }

  dot(point, radius, fill) {
    const [x, y] = this.project(point);
    this.context.beginPath();
    this.context.arc(x, y, radius, 0, 7);
    Object.assign(this.context, { fillStyle: fill }).fill();
  }

  /** The ground, a little below the mesh where it is at the start. */
  floor() {
    const stroke = colour("grid");
    for (let i = -3; i <= 3; i++) {
      this.lines([[i, -1, -3], [i, -1, 3]], { stroke, width: 1 });
      this.lines([[-3, -1, i], [3, -1, i]], { stroke, width: 1 });
    }
  }

  /** The axes of a space, with letters at their ends. */
  axes(matrix, length, letters, width = 2) {
    const at = (...point) => kx.KXM4P3I1(matrix, vector(point));
    [..."xyz"].forEach((axis, i) => {
      const end = at(...[0, 1, 2].map((each) => (each === i ? length : 0)));
      this.lines([at(0, 0, 0), end], { stroke: colour(axis), width });
      if (!letters) return;
      const [x, y] = this.project(at(...[0, 1, 2].map((each) => (each === i ? length * 1.1 : 0))));
      Object.assign(this.context, { fillStyle: colour(axis), font: "600 13px system-ui", textAlign: "center", textBaseline: "middle" });
      this.context.fillText(letters[i], x, y);
    });
  }
}

/** Lets a picture be turned by dragging it and by the arrow keys; what isn't a drag is a click. */
export function orbit(canvas, { get, set, click, key }) {
  let from;
  const turn = (azimuth, elevation) => {
    const [a, e] = get();
    set([(a + azimuth + 540) % 360 - 180, Math.max(-80, Math.min(85, e + elevation))]);
  };
  canvas.addEventListener("pointerdown", (event) => {
    from = { x: event.clientX, y: event.clientY, far: 0 };
    canvas.setPointerCapture(event.pointerId);
  });
  canvas.addEventListener("pointermove", (event) => {
    if (!from) return;
    const [dx, dy] = [event.clientX - from.x, event.clientY - from.y];
    from.far += Math.abs(dx) + Math.abs(dy);
    if (from.far < 5) return;
    turn(-dx / 2, dy / 2);
    Object.assign(from, { x: event.clientX, y: event.clientY });
  });
  canvas.addEventListener("pointerup", (event) => {
    if (from?.far < 5) click?.(event.offsetX, event.offsetY);
    from = undefined;
  });
  canvas.addEventListener("pointercancel", () => { from = undefined; });
  canvas.addEventListener("keydown", (event) => {
    const step = { ArrowLeft: [-5, 0], ArrowRight: [5, 0], ArrowUp: [0, 5], ArrowDown: [0, -5] }[event.key];
    if (!step && event.key !== "Enter") return;
    event.preventDefault();
    if (!key?.(event, step) && step) turn(...step);
  });
}
