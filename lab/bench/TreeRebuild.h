// SPDX-License-Identifier: MIT
#pragma once

namespace quillon::bench {

// The device tree with 1,000 boards of 12 nodes: rebuild, expand all and paint, against a bare
// model in a bare view. False when the two do not compare.
[[nodiscard]] bool MeasureTreeRebuild(int rounds);

}  // namespace quillon::bench
