#pragma once

// Pixel loops marked with this are compiled twice on x86-64: for the baseline
// instruction set and for AVX2, picked once at load time by the CPU. The loops
// are plain C++; wider vectors only change their speed, not their results.
// Defining DPC_NO_VECTOR_CLONES keeps the baseline alone, e.g. to measure it.
// On 64-bit ARM, NEON is always there: the loops are vectorised for it with
// GCC's full cost model, also in -O2 builds, whose cheap model leaves them scalar.
#if defined(__GNUC__) && !defined(__clang__) && defined(__x86_64__) && !defined(DPC_NO_VECTOR_CLONES)
#define DPC_VECTOR_CLONES __attribute__((target_clones("avx2", "default")))
#elif defined(__GNUC__) && !defined(__clang__) && defined(__aarch64__) && !defined(DPC_NO_VECTOR_CLONES)
#define DPC_VECTOR_CLONES __attribute__((optimize("tree-vectorize", "vect-cost-model=dynamic")))
#else
#define DPC_VECTOR_CLONES
#endif
