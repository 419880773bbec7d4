export function sameBits(section) {
  section.innerHTML = "<p class=quiet>The digests of all functions.</p>";
}
