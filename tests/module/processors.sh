#!/bin/sh
# The digests of the preset gcc's build on processors without AVX-512 and without AVX, under an emulator: each
# must choose another copy of the kernels.
set -eu
cd "$(dirname "$0")/../.."
./scripts/install qemu-user
./scripts/build gcc kx_digest
for processor in Nehalem Haswell; do
    qemu-x86_64 -cpu "$processor" build/gcc/tools/digest/kx_digest 2>build/qemu.log >build/qemu.txt || {
        cat build/qemu.log >&2
        exit 1
    }
    diff tools/digest/digests.txt build/qemu.txt || {
        echo "as $processor: other bits" >&2
        exit 1
    }
done
