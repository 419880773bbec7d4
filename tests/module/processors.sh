#!/bin/sh
# The digests of the preset gcc's build on processors without AVX, with AVX2 but no FMA, and without AVX-512, under
# an emulator: none may run a copy of the kernels that it has no instructions for.
set -eu
cd "$(dirname "$0")/../.."
./scripts/install qemu-user
./scripts/build gcc kx_digest
for processor in Nehalem Haswell,-fma Haswell; do
    qemu-x86_64 -cpu "$processor" build/gcc/tools/kx_digest 2>build/qemu.log >build/qemu.txt || {
        cat build/qemu.log >&2
        exit 1
    }
    diff tools/digest/digests.txt build/qemu.txt || {
        echo "as $processor: other bits" >&2
        exit 1
    }
done
