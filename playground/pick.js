export function pick(section) {
  section.innerHTML = "<p class=quiet>A ray at the mesh.</p>";
  return { use() {} };
}
