// Programs that make the matrix that is shown, and print it and its inverse; and what is copied.
import { radians, single } from "./kx.js";

const c = (value) => {
  const text = single(value);
  return `${/[.e]/.test(text) ? text : `${text}.0`}f`;
};
const list = (values, as) => values.map(as).join(", ");

const makers = {
  C: ({ p, r, s, order, scale }) => `#include <kxmaths5.h>
#include <stdio.h>

static void print(const KXM4 *m)
{
    for (int row = 0; row < 4; row++) {
        printf("%.9g %.9g %.9g %.9g\\n", m->m[row][0], m->m[row][1], m->m[row][2], m->m[row][3]);
    }
}

int main(void)
{
    KXM4 size, matrix, inverse;
    KXM4Scale(${list(s, c)}, &size);
${scale === "first" ? `    /* The right factor acts first: scaled, then rotated, then moved. */
    const KXPosition place = {${list([...p, ...r], c)}};
    KXM4Position(&matrix, NULL, &place, KX_ORDER_${order});
    KXM4Mult(&matrix, &size, &matrix);` : `    /* The right factor acts first: rotated, then scaled, then moved. */
    KXM4 move;
    KXM4Translate(${list(p, c)}, &move);
    KXM4Orientation(&matrix, NULL, ${list(r, c)}, KX_ORDER_${order});
    KXM4Mult(&size, &matrix, &matrix);
    KXM4Mult(&move, &matrix, &matrix);`}
    print(&matrix);
    if (KXM4Inverse(&matrix, &inverse) == 0) {
        print(&inverse);
    }
    return 0;
}
`,
  "C++": ({ p, r, s, order, scale }) => `#include <kxmaths5/print.hpp>
#include <iostream>

int main()
{
    std::cout.precision(9);
    const auto size = kxm::mat4::scale(${list(s, c)});
${scale === "first" ? `    // The right factor acts first: scaled, then rotated, then moved.
    const kxm::position place({${list(p, c)}}, ${list(r, c)});
    const auto matrix = place.matrix(kxm::order::${order.toLowerCase()}) * size;` : `    // The right factor acts first: rotated, then scaled, then moved.
    const auto rotation = kxm::mat4::rotation(${list(r, c)}, kxm::order::${order.toLowerCase()});
    const auto matrix = kxm::mat4::translation({${list(p, c)}}) * (size * rotation);`}
    std::cout << matrix << '\\n';
    if (const auto inverse = matrix.inverse()) {
        std::cout << *inverse << '\\n';
    }
}
`,
  Python: ({ p, r, s, order, scale }) => `import kxmaths5 as kx

size = kx.KXM4Scale(${list(s, single)})
${scale === "first" ? `# The right factor acts first: scaled, then rotated, then moved.
place = kx.KXPosition(${list([...p, ...r], single)})
matrix = kx.KXM4Mult(kx.KXM4Position(place, kx.KX_ORDER_${order})[0], size)` : `# The right factor acts first: rotated, then scaled, then moved.
rotation, _ = kx.KXM4Orientation(${list(r, single)}, kx.KX_ORDER_${order})
matrix = kx.KXM4Mult(kx.KXM4Translate(${list(p, single)}), kx.KXM4Mult(size, rotation))`}
print(matrix)
status, inverse = kx.KXM4Inverse(matrix)
if status == 0:
    print(inverse)
`,
  JavaScript: ({ p, r, s, order, scale }) => `import * as kx from "kxmaths5";

const size = kx.KXM4Scale(${list(s, single)});
${scale === "first" ? `// The right factor acts first: scaled, then rotated, then moved.
const place = new Float32Array([${list([...p, ...r], single)}]);
const matrix = kx.KXM4Mult(kx.KXM4Position(place, kx.KX_ORDER_${order}).matrix, size);` : `// The right factor acts first: rotated, then scaled, then moved.
const rotation = kx.KXM4Orientation(${list(r, single)}, kx.KX_ORDER_${order}).matrix;
const matrix = kx.KXM4Mult(kx.KXM4Translate(${list(p, single)}), kx.KXM4Mult(size, rotation));`}
console.log(...matrix);
const inverse = kx.KXM4Inverse(matrix); // Null if it is singular.
if (inverse) console.log(...inverse);
`,
};

export const languages = Object.keys(makers);

/** A program in one of the languages; angles in radians, as singles have them. */
export function program(language, state) {
  return makers[language]({ ...state, r: state.r.map(radians) });
}

/** Copies a text, and says so on the button. */
export async function copy(text, button) {
  button.dataset.label ??= button.textContent;
  try {
    await navigator.clipboard.writeText(text);
    button.textContent = "Copied";
  } catch {
    button.textContent = "The browser refused";
  }
  setTimeout(() => { button.textContent = button.dataset.label; }, 1500);
}
