#pragma once

/**
 * Every tolerance of the library, named once.
 *
 * "Contract" values are observable and pinned by tests; "tuning" values may move as long as results do not.
 * The unit "path units" is that of the caller's coordinates; curve times run from 0 to 1.
 */
namespace vxTolerance {

// --- contract ---

/**
 * Absolute; a length, coordinate difference or coefficient up to this (inclusive unless said) counts as 0.
 */
constexpr double machineZero = 1e-12;
/** Absolute; a discriminant within this of 0 counts as a double root (half a unit in the last place of 1). */
constexpr double machineEpsilon = 1.12e-16;
/**
 * Relative to |u||v|: bound of the sine or cosine between two directions that count as parallel or
 * orthogonal.
 */
constexpr double angleMargin = 1e-7;
/** Path units; points this near (inclusive) are the same place for the engine. */
constexpr double closeDistance = 2e-7;
/** Curve time; nearer to an end than this is the end. */
constexpr double timeMargin = 4e-7;
/** Upper bound that goes with timeMargin; the same double as 0.9999996. */
constexpr double timeUpper = 1 - timeMargin;
/** Curve time; fat-line clipping has converged when both ranges are narrower. */
constexpr double clipWidth = 1e-9;
/**
 * Path units, strict, per axis: the element layer joins points nearer than this. Closing a subpath on its way
 * into the engine uses it as a distance, inclusive.
 */
constexpr double mergeExtent = 1.0;

// --- sentinels ---

/** Curve time that stands for "unknown" or "not on the curve"; compared exactly. */
constexpr double noTime = -100;
/** Arc-length offset that stands for "not computed"; compared exactly. */
constexpr double noOffset = -1;

static_assert(timeUpper == 0.9999996, "the two time margins are one contract");

} // namespace vxTolerance
